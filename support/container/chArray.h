#pragma once

#include "support/container/chAlloc.h"

namespace NUX_ArrayHelper {

// A growable array. OBJECTS: the elements are constructed and destroyed; without it they are plain
// memory, cleared when they are new. Its room grows to a multiple of STEP and never shrinks. When
// memory is out the array stays as it was.
template <class T, bool OBJECTS, int STEP>
class chMeth_ObjArray
{
    static_assert(STEP > 0 && alignof(T) <= alignof(std::max_align_t), "elements lie in a plain buffer");
    static_assert(OBJECTS || std::is_trivially_copyable_v<T>, "plain memory holds plain types");

public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    chMeth_ObjArray() = default;
    // Copies are deep.
    chMeth_ObjArray(const chMeth_ObjArray& other) { append_all(other); }
    chMeth_ObjArray& operator=(const chMeth_ObjArray& other)
    {
        if (this == &other)
            return *this;
        SetArraySize(0);
        append_all(other);
        return *this;
    }
    ~chMeth_ObjArray()
    {
        SetArraySize(0);
        free_buffer(m_aT, m_nAllocCount);
        NUX_ASSERT(m_aT == nullptr && m_nAllocCount == 0, "m_aT == NULL && m_nAllocCount == 0");
    }

    T& operator[](int index) { return element(index); }
    const T& operator[](int index) const { return element(index); }
    int GetSize() const { return m_nElementCount; }
    int size() const { return m_nElementCount; }
    bool empty() const { return m_nElementCount == 0; }
    // The elements there is room for.
    int GetAllocCount() const { return m_nAllocCount; }

    iterator begin() { return m_aT; }
    iterator end() { return m_aT + m_nElementCount; }
    const_iterator begin() const { return m_aT; }
    const_iterator end() const { return m_aT + m_nElementCount; }

    // New elements are default-constructed, those past `count` are destroyed. 1, or 0 when memory is out.
    int SetArraySize(int count)
    {
        if (!NUX_ASSERT(count >= 0, "nCount >= 0"))
            return 0;
        if (count > m_nAllocCount && !grow(count))
            return 0;
        if (count > m_nElementCount)
            construct(m_aT + m_nElementCount, count - m_nElementCount);
        else if (count < m_nElementCount)
            destroy(m_aT + count, m_nElementCount - count);
        m_nElementCount = count;
        return 1;
    }

    // The value may be an element of this array. 1, or 0 when memory is out.
    int Append(const T& value)
    {
        T copy(value);
        if (m_nElementCount == m_nAllocCount && !grow(m_nElementCount + 1))
            return 0;
        NUX_AllocHelper::chConstructObject(m_aT + m_nElementCount, std::move(copy));
        ++m_nElementCount;
        return 1;
    }

private:
    T& element(int iIndex) const
    {
        const bool within = NUX_ASSERT(this->m_aT != nullptr && iIndex >= 0 && iIndex < m_nElementCount,
                                       "this->m_aT != NULL && iIndex >= 0 && iIndex < m_nElementCount");
        return within ? m_aT[iIndex] : NUX_AllocHelper::chSpareObject<T>();
    }

    static void construct(T* objects, int count)
    {
        if constexpr (OBJECTS)
            NUX_AllocHelper::chConstructObjects(objects, count);
        else
            __builtin_memset(static_cast<void*>(objects), 0, sizeof(T) * static_cast<size_t>(count));
    }

    static void destroy(T* objects, int count)
    {
        if constexpr (OBJECTS)
            NUX_AllocHelper::chDestroyObjects(objects, count);
    }

    static void free_buffer(T*& elements, int& allocCount)
    {
        void* buffer = elements;
        NUX_AllocHelper::base_free_buffer(buffer, allocCount);
        elements = nullptr;
    }

    // Moves to a buffer with room for `count` elements, rounded up to the step.
    bool grow(int count)
    {
        void* buffer = nullptr;
        int allocCount = 0;
        const int rest = count % STEP;
        const int roundedCount = rest && count <= __INT_MAX__ - STEP ? count + STEP - rest : count;
        NUX_AllocHelper::base_alloc_buffer(buffer, allocCount, roundedCount, static_cast<int>(sizeof(T)));
        T* objects = static_cast<T*>(buffer);
        if (!NUX_ASSERT(objects != nullptr, "pObjects != NULL"))
            return false;
        for (int i = 0; i < m_nElementCount; ++i)
            NUX_AllocHelper::chConstructObject(objects + i, std::move(m_aT[i]));
        if (m_nElementCount > 0)
            destroy(m_aT, m_nElementCount);
        free_buffer(m_aT, m_nAllocCount);
        m_aT = objects;
        m_nAllocCount = allocCount;
        return true;
    }

    void append_all(const chMeth_ObjArray& other)
    {
        if (other.m_nElementCount > m_nAllocCount && !grow(other.m_nElementCount))
            return;
        for (const T& value : other) {
            NUX_AllocHelper::chConstructObject(m_aT + m_nElementCount, value);
            ++m_nElementCount;
        }
    }

    T* m_aT = nullptr;
    int m_nAllocCount = 0;
    int m_nElementCount = 0;
};

template <class T, bool OBJECTS, int STEP>
class chObjArray : public chMeth_ObjArray<T, OBJECTS, STEP>
{
};

} // namespace NUX_ArrayHelper

using NUX_ArrayHelper::chObjArray;
