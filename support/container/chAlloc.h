#pragma once

#include "support/text/nuxError.h"
#include "support/text/nuxExport.h"

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace NUX_AllocHelper {

// Hands out memory for nodes of one size and keeps what comes back for the next one. Its blocks are
// freed when it is destroyed. One thread at a time.
class NUX_API baseDynamicNodeAlloc
{
public:
    baseDynamicNodeAlloc() = default;
    ~baseDynamicNodeAlloc();
    baseDynamicNodeAlloc(const baseDynamicNodeAlloc&) = delete;
    baseDynamicNodeAlloc& operator=(const baseDynamicNodeAlloc&) = delete;

    // Uninitialised memory of `nodeSize` bytes, aligned for any ordinary type; `blockCount` nodes are
    // made at one go. The size is the same in every call. Null when memory is out.
    void* borrow_node(int nodeSize, int blockCount)
    {
        if (m_pFreeNode == nullptr && !make_block(nodeSize, blockCount))
            return nullptr;
        freeNode* node = m_pFreeNode;
        m_pFreeNode = node->pNext;
        return node;
    }

    void return_node(void* node)
    {
        if (!NUX_ASSERT(node != nullptr, "pNode != NULL"))
            return;
        freeNode* freed = static_cast<freeNode*>(node);
        freed->pNext = m_pFreeNode;
        m_pFreeNode = freed;
    }

private:
    struct freeNode
    {
        freeNode* pNext;
    };
    struct alignas(std::max_align_t) nodeBlock
    {
        nodeBlock* pNext;
    };

    bool make_block(int nodeSize, int blockCount);

    freeNode* m_pFreeNode = nullptr;
    nodeBlock* m_pBlocks = nullptr;
};

// Memory for nodes of one type, in blocks of N.
template <class NODE, int N>
class chAlloc_Node_dynamic : public baseDynamicNodeAlloc
{
public:
    using node_type = NODE;

    NODE* borrow_node()
    {
        static_assert(N > 0 && alignof(NODE) <= alignof(std::max_align_t), "a block holds aligned nodes");
        return static_cast<NODE*>(baseDynamicNodeAlloc::borrow_node(static_cast<int>(sizeof(NODE)), N));
    }
};

// What a container gives for an element that it does not have, after it has reported that: a fresh
// object, or cleared memory for a type that has no default. Each thread has its own.
template <class T>
T& chSpareObject()
{
    if constexpr (std::is_default_constructible_v<T>) {
        static thread_local T spare{};
        spare.~T();
        return *new (&spare) T();
    } else {
        alignas(T) static thread_local unsigned char spare[sizeof(T)];
        __builtin_memset(spare, 0, sizeof(spare));
        return *reinterpret_cast<T*>(spare);
    }
}

// Raw memory of `newCount` elements in `buffer`, which is null before. 0 when memory is out.
NUX_API int base_alloc_buffer(void*& buffer, int& allocCount, int newCount, int elementSize);
// Frees such a buffer; it is null and 0 afterwards. The elements are destroyed before.
NUX_API void base_free_buffer(void*& buffer, int& allocCount);

template <class T>
void chConstructObjects(T* objects, int count)
{
    if (!NUX_ASSERT(objects != nullptr && count > 0, "pObjects != NULL && nCount > 0"))
        return;
    for (int i = 0; i < count; ++i)
        new (objects + i) T();
}

template <class T>
void chDestroyObjects(T* objects, int count)
{
    if (!NUX_ASSERT(objects != nullptr && count > 0, "pObjects != NULL && nCount > 0"))
        return;
    for (int i = 0; i < count; ++i)
        objects[i].~T();
}

template <class T, class VALUE>
void chConstructObject(T* objects, VALUE&& value)
{
    if (NUX_ASSERT(objects != nullptr, "pObjects != NULL"))
        new (objects) T(std::forward<VALUE>(value));
}

} // namespace NUX_AllocHelper
