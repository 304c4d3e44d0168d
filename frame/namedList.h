#pragma once
// Objects by name, in the order in which they were added; the oldest entry of a name is the one found.
#include "support/container/chList.h"
#include "support/text/chString.h"

template <class T>
struct tagNamed
{
    chString strKey;
    T* pValue;
};

template <class T>
using chNamedList = chObjList_dynamic<tagNamed<T>, 16>;

// Null when there is none.
template <class T>
T* namedFind(const chNamedList<T>& list, const chString& key)
{
    for (const tagNamed<T>& entry : list) {
        if (entry.strKey == key)
            return entry.pValue;
    }
    return nullptr;
}
