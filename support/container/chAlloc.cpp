#include "support/container/chAlloc.h"

#include <climits>
#include <cstdlib>

namespace NUX_AllocHelper {

namespace {

constexpr size_t nodeAlignment = alignof(std::max_align_t);

size_t alignedSize(size_t size)
{
    return (size + nodeAlignment - 1) / nodeAlignment * nodeAlignment;
}

} // namespace

baseDynamicNodeAlloc::~baseDynamicNodeAlloc()
{
    while (m_pBlocks) {
        nodeBlock* next = m_pBlocks->pNext;
        std::free(m_pBlocks);
        m_pBlocks = next;
    }
}

bool baseDynamicNodeAlloc::make_block(int nodeSize, int blockCount)
{
    const size_t step = alignedSize(static_cast<size_t>(nodeSize));
    char* memory = nullptr;
    if (nodeSize > 0 && blockCount > 0)
        memory = static_cast<char*>(std::malloc(sizeof(nodeBlock) + step * static_cast<size_t>(blockCount)));
    if (!NUX_ASSERT(memory != nullptr, "pNode != NULL"))
        return false;
    m_pBlocks = new (memory) nodeBlock{m_pBlocks};
    memory += sizeof(nodeBlock);
    for (int i = blockCount - 1; i >= 0; --i)
        m_pFreeNode = new (memory + step * static_cast<size_t>(i)) freeNode{m_pFreeNode};
    return true;
}

int base_alloc_buffer(void*& buffer, int& allocCount, int newCount, int elementSize)
{
    if (newCount < 1 || elementSize < 1 || newCount > INT_MAX / elementSize)
        return 0;
    buffer = std::malloc(static_cast<size_t>(newCount) * static_cast<size_t>(elementSize));
    allocCount = buffer ? newCount : 0;
    return buffer != nullptr;
}

void base_free_buffer(void*& buffer, int& allocCount)
{
    std::free(buffer);
    buffer = nullptr;
    allocCount = 0;
}

} // namespace NUX_AllocHelper
