#pragma once
// Makes a reference-counted object on the heap. The caller owns its first reference and gives it up with
// DestroyObject() or Release().
#include "support/host/object.h"

template <class T>
T& CreateObject()
{
    T* object = new T;
    object->AddRef();
    object->SetCreatFlag(1);
    return *object;
}
