#pragma once
// Making and reaching reference-counted objects of a class that the caller knows.
#include "support/host/object.h"

// Makes an object on the heap. The caller owns its first reference and gives it up with DestroyObject() or
// Release().
template <class T>
T& CreateObject()
{
    T* object = new T;
    object->AddRef();
    object->SetCreatFlag(1);
    return *object;
}

// The object that the handle counts. Nothing is checked: the handle is not null, and its object is a T.
template <class T>
T& GetObject(const chReferObject& handle)
{
    return static_cast<T&>(*handle.data());
}
