#include "support/container/chAlloc.h"
#include "tests/container/countedValue.h"
#include "tests/text/errorLines.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <set>

using NUX_AllocHelper::base_alloc_buffer;
using NUX_AllocHelper::base_free_buffer;
using NUX_AllocHelper::baseDynamicNodeAlloc;

namespace {

class Alloc : public testing::Test
{
protected:
    ~Alloc() override { EXPECT_EQ(errors.Take(), ""); }

    errorLines errors;
};

} // namespace

TEST_F(Alloc, NodesAreApartAlignedAndWritable)
{
    for (int size : {1, 8, 17, 24, 100}) {
        baseDynamicNodeAlloc alloc;
        std::set<char*> nodes;
        for (int i = 0; i < 50; ++i) {
            char* node = static_cast<char*>(alloc.borrow_node(size, 16));
            ASSERT_NE(node, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(node) % alignof(std::max_align_t), 0u);
            memset(node, 0x5A, static_cast<size_t>(size));
            nodes.insert(node);
        }
        ASSERT_EQ(nodes.size(), 50u);
        char* before = nullptr;
        for (char* node : nodes) {
            if (before) {
                EXPECT_GE(node - before, size);
            }
            before = node;
        }
    }
}

TEST_F(Alloc, ReturnedNodeIsTheNextToBeBorrowed)
{
    baseDynamicNodeAlloc alloc;
    void* first = alloc.borrow_node(24, 16);
    void* second = alloc.borrow_node(24, 16);
    alloc.return_node(first);
    EXPECT_EQ(alloc.borrow_node(24, 16), first);
    alloc.return_node(first);
    alloc.return_node(second);
    EXPECT_EQ(alloc.borrow_node(24, 16), second);
    EXPECT_EQ(alloc.borrow_node(24, 16), first);
}

TEST_F(Alloc, ReportsANullNode)
{
    baseDynamicNodeAlloc alloc;
    alloc.return_node(nullptr);
    EXPECT_EQ(errors.Take(), "pNode != NULL");
    EXPECT_NE(alloc.borrow_node(24, 16), nullptr);
}

TEST_F(Alloc, ReportsABlockThatCannotBe)
{
    baseDynamicNodeAlloc alloc;
    EXPECT_EQ(alloc.borrow_node(0, 16), nullptr);
    EXPECT_EQ(alloc.borrow_node(24, 0), nullptr);
    EXPECT_EQ(errors.Take(), "pNode != NULL | pNode != NULL");
}

TEST_F(Alloc, BufferIsRawMemoryWithItsCount)
{
    void* buffer = nullptr;
    int count = 0;
    EXPECT_EQ(base_alloc_buffer(buffer, count, 8, 24), 1);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(count, 8);
    memset(buffer, 1, 8 * 24);
    base_free_buffer(buffer, count);
    EXPECT_EQ(buffer, nullptr);
    EXPECT_EQ(count, 0);
}

TEST_F(Alloc, BufferThatCannotBeIsRefused)
{
    for (int count : {0, -1, INT_MAX / 24 + 1, INT_MAX}) {
        void* buffer = nullptr;
        int allocCount = 0;
        EXPECT_EQ(base_alloc_buffer(buffer, allocCount, count, 24), 0) << count;
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(allocCount, 0);
    }
}

TEST_F(Alloc, ReportsObjectsThatAreNot)
{
    NUX_AllocHelper::chConstructObjects(static_cast<int*>(nullptr), 1);
    int object = 5;
    NUX_AllocHelper::chConstructObjects(&object, 0);
    NUX_AllocHelper::chDestroyObjects(static_cast<int*>(nullptr), 1);
    NUX_AllocHelper::chDestroyObjects(&object, -1);
    const std::string both = "pObjects != NULL && nCount > 0";
    EXPECT_EQ(errors.Take(), both + " | " + both + " | " + both + " | " + both);
    NUX_AllocHelper::chConstructObject(static_cast<int*>(nullptr), 7);
    EXPECT_EQ(errors.Take(), "pObjects != NULL");
    EXPECT_EQ(object, 5);
}

TEST_F(Alloc, SpareObjectIsFreshEachTime)
{
    NUX_AllocHelper::chSpareObject<int>() = 7;
    EXPECT_EQ(NUX_AllocHelper::chSpareObject<int>(), 0);
    NUX_AllocHelper::chSpareObject<std::string>() = "a text that is long enough for the heap";
    EXPECT_EQ(NUX_AllocHelper::chSpareObject<std::string>(), "");
}
