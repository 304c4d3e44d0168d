#include "support/container/chList.h"
#include "support/text/chString.h"
#include "tests/container/countedValue.h"
#include "tests/text/errorLines.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <list>
#include <memory>
#include <random>
#include <set>

using NUX_AllocHelper::baseDynamicNodeAlloc;
using NUX_AllocHelper::chAlloc_Node_dynamic;
using NUX_ChainHelper::chain_node;
using NUX_ListHelper::chMeth_List;
using NUX_ListHelper::list_node_pointer;

namespace {

using intList = chObjList_dynamic<int, 16>;

class List : public testing::Test
{
protected:
    List()
    {
        countedValue::Living() = 0;
        countedValue::Ends().clear();
    }
    ~List() override { EXPECT_EQ(errors.Take(), ""); }

    static intList Of(std::initializer_list<int> values)
    {
        intList list;
        for (int value : values)
            list.push_back(value);
        return list;
    }

    template <class LIST>
    static std::string Text(const LIST& list)
    {
        std::string text;
        for (const auto& value : list)
            text += std::to_string(value) + " ";
        return text;
    }

    errorLines errors;
};

} // namespace

TEST_F(List, HasTheClassTreeOfItsNodes)
{
    using node = list_node_pointer<int>;
    static_assert(std::is_base_of_v<chMeth_List<chAlloc_Node_dynamic<node, 16>>, intList>);
    static_assert(
        std::is_base_of_v<chAlloc_Node_dynamic<node, 16>, chMeth_List<chAlloc_Node_dynamic<node, 16>>>);
    static_assert(std::is_base_of_v<baseDynamicNodeAlloc, chAlloc_Node_dynamic<node, 16>>);
}

TEST_F(List, HasItsFieldsInOrder)
{
    intList list;
    const char* base = reinterpret_cast<const char*>(&list);
    const char* count = reinterpret_cast<const char*>(&list.count);
    const char* sentinel = reinterpret_cast<const char*>(list.end().m_pThisNode);
    static_assert(sizeof(list.count) == 4);
    EXPECT_EQ(count - base, static_cast<long>(sizeof(baseDynamicNodeAlloc)));
    EXPECT_GT(sentinel, count);
    EXPECT_EQ(sentinel + 2 * sizeof(void*), base + sizeof(list));
}

TEST_F(List, NodeIsNextThenPrevThenTheValue)
{
    intList list = Of({7});
    chain_node* node = list.begin().m_pThisNode;
    chain_node* sentinel = list.end().m_pThisNode;
    struct image
    {
        void* next;
        void* prev;
        int value;
    } seen;
    memcpy(&seen, static_cast<const void*>(node), sizeof(void*) * 2 + sizeof(int));
    EXPECT_EQ(seen.next, static_cast<void*>(sentinel));
    EXPECT_EQ(seen.prev, static_cast<void*>(reinterpret_cast<char*>(sentinel) + sizeof(void*)))
        << "a prev link refers to the prev member of the node before";
    EXPECT_EQ(seen.value, 7);
    EXPECT_EQ(node->get_pNext(), sentinel);
    EXPECT_EQ(node->get_pPrev(), sentinel);
}

TEST_F(List, IsEmptyAtFirst)
{
    const intList list;
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.size(), 0);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(list.begin() == list.end());
}

TEST_F(List, AppendsAtTheTail)
{
    intList list;
    const intList::iterator first = list.append(1);
    list.push_back(2);
    const int three = 3;
    list.push_back(three);
    EXPECT_EQ(list.count, 3);
    EXPECT_EQ(*first, 1);
    EXPECT_EQ(Text(list), "1 2 3 ");
    EXPECT_EQ(list.front(), 1);
    EXPECT_EQ(list.back(), 3);
    list.front() = 9;
    EXPECT_EQ(Text(list), "9 2 3 ");
}

TEST_F(List, IsWalkedInBothDirections)
{
    intList list = Of({1, 2, 3});
    std::string back;
    for (intList::iterator it = list.end(); it != list.begin();)
        back += std::to_string(*--it) + " ";
    EXPECT_EQ(back, "3 2 1 ");
    intList::iterator it = list.begin();
    EXPECT_EQ(*it++, 1);
    EXPECT_EQ(*it--, 2);
    EXPECT_EQ(*it, 1);
    const intList::const_iterator reader = it;
    EXPECT_EQ(*reader, 1);
    EXPECT_EQ(std::distance(list.begin(), list.end()), 3);
    EXPECT_EQ(std::find(list.begin(), list.end(), 3), --list.end());
}

TEST_F(List, RemovesAtHeadAndTail)
{
    intList list = Of({1, 2, 3, 4});
    list.pop_front();
    list.pop_back();
    EXPECT_EQ(Text(list), "2 3 ");
    EXPECT_EQ(list.count, 2);
    list.pop_back();
    list.pop_front();
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(list.begin() == list.end());
    list.push_back(5);
    EXPECT_EQ(Text(list), "5 ");
}

TEST_F(List, RemovesAtAPlaceAndGivesTheNextOne)
{
    intList list = Of({1, 2, 3, 4, 5, 6});
    for (intList::iterator it = list.begin(); it != list.end();)
        it = *it % 2 ? list.erase(it) : ++it;
    EXPECT_EQ(Text(list), "2 4 6 ");
    EXPECT_TRUE(list.erase(--list.end()) == list.end());
    EXPECT_EQ(list.count, 2);
}

TEST_F(List, ReportsRemovingFromAnEmptyList)
{
    intList list;
    list.pop_front();
    list.pop_back();
    list.erase(list.begin());
    EXPECT_EQ(errors.Take(), "!empty() | !empty() | !empty()");
    EXPECT_EQ(list.count, 0);
    list.push_back(1);
    EXPECT_EQ(Text(list), "1 ");
}

TEST_F(List, ReportsTheFirstAndLastOfAnEmptyListAndGoesOn)
{
    intList list;
    list.front() = 5;
    EXPECT_EQ(list.back(), 0);
    EXPECT_EQ(errors.Take(), "!empty() | !empty()");
    const chObjList_dynamic<chString, 16> texts;
    EXPECT_STREQ(texts.front(), "");
    EXPECT_EQ(errors.Take(), "!empty()");
}

TEST_F(List, ReportsANullIteratorAndGoesOn)
{
    intList list = Of({1, 2});
    intList::iterator none;
    EXPECT_TRUE(list.erase(none) == list.end());
    EXPECT_EQ(errors.Take(), "it.m_pThisNode != NULL");
    EXPECT_TRUE(++none == intList::iterator());
    EXPECT_TRUE(--none == intList::iterator());
    EXPECT_EQ(*none, 0);
    EXPECT_EQ(errors.Take(), "it.m_pThisNode != NULL | it.m_pThisNode != NULL | it.m_pThisNode != NULL");
    EXPECT_EQ(Text(list), "1 2 ");
}

TEST_F(List, NullIteratorOfATypeWithoutADefaultGivesClearedMemory)
{
    struct pair
    {
        explicit pair(int number) : number(number) {}
        int number;
    };
    chObjList_dynamic<pair, 16>::iterator none;
    EXPECT_EQ(none->number, 0);
    EXPECT_EQ(errors.Take(), "it.m_pThisNode != NULL");
}

TEST_F(List, ReportsRemovingTheSentinel)
{
    intList list = Of({1});
    list.erase(list.end());
    EXPECT_EQ(errors.Take(), "it != end()");
    EXPECT_EQ(list.count, 1);
}

TEST_F(List, DestructionRemovesFromTheHead)
{
    {
        chObjList_dynamic<countedValue, 16> list;
        for (int i = 0; i < 4; ++i)
            list.append(i);
        EXPECT_EQ(countedValue::Living(), 4);
        countedValue::Ends().clear();
    }
    EXPECT_EQ(countedValue::Living(), 0);
    EXPECT_EQ(countedValue::Ends(), "0 1 2 3 ");
}

TEST_F(List, ClearDestroysAllAndTheListGoesOn)
{
    chObjList_dynamic<countedValue, 16> list;
    for (int i = 0; i < 100; ++i)
        list.push_back(i);
    list.clear();
    EXPECT_EQ(countedValue::Living(), 0);
    EXPECT_EQ(list.count, 0);
    list.push_back(1);
    EXPECT_EQ(countedValue::Living(), 1);
}

TEST_F(List, EveryRemovalDestroysItsValueOnce)
{
    chObjList_dynamic<countedValue, 16> list;
    for (int i = 0; i < 5; ++i)
        list.append(i);
    countedValue::Ends().clear();
    list.pop_front();
    list.pop_back();
    list.erase(++list.begin());
    EXPECT_EQ(countedValue::Ends(), "0 4 2 ");
    EXPECT_EQ(countedValue::Living(), 2);
}

namespace {

struct looksBack
{
    chObjList_dynamic<std::unique_ptr<looksBack>, 16>* list = nullptr;
    int* seen = nullptr;
    ~looksBack() { *seen = list->size(); }
};

} // namespace

TEST_F(List, ValueThatEndsFindsTheListWithoutIt)
{
    chObjList_dynamic<std::unique_ptr<looksBack>, 16> list;
    int seen = -1;
    for (int i = 0; i < 2; ++i)
        list.append(std::unique_ptr<looksBack>(new looksBack{&list, &seen}));
    list.pop_front();
    EXPECT_EQ(seen, 1);
    list.clear();
    EXPECT_EQ(seen, 0);
}

TEST_F(List, TakesNodesInBlocksOfSixteen)
{
    intList list;
    std::vector<const char*> nodes;
    for (int i = 0; i < 32; ++i)
        nodes.push_back(reinterpret_cast<const char*>(list.append(i).m_pThisNode));
    const long step = nodes[1] - nodes[0];
    EXPECT_GE(step, static_cast<long>(sizeof(list_node_pointer<int>)));
    for (size_t i = 1; i < 32; ++i)
        if (i != 16) {
            EXPECT_EQ(nodes[i] - nodes[i - 1], step) << i;
        }
}

TEST_F(List, UsesAReturnedNodeAgain)
{
    intList list = Of({1, 2, 3});
    const chain_node* freed = list.begin().m_pThisNode;
    list.pop_front();
    EXPECT_EQ(list.append(4).m_pThisNode, freed);
    EXPECT_EQ(Text(list), "2 3 4 ");
}

TEST_F(List, CopiesDeeply)
{
    intList list = Of({1, 2, 3});
    intList copy(list);
    copy.front() = 9;
    list.pop_back();
    EXPECT_EQ(Text(list), "1 2 ");
    EXPECT_EQ(Text(copy), "9 2 3 ");
    copy = list;
    EXPECT_EQ(Text(copy), "1 2 ");
    const intList& itself = copy;
    copy = itself;
    EXPECT_EQ(Text(copy), "1 2 ");
    EXPECT_EQ(copy.count, 2);
}

TEST_F(List, HoldsListsByValue)
{
    struct layout
    {
        intList regions;
    };
    chObjList_dynamic<layout, 16> layouts;
    layouts.push_back(layout{Of({1, 2})});
    layouts.push_back(layout{Of({3})});
    layouts.pop_front();
    EXPECT_EQ(Text(layouts.front().regions), "3 ");
}

TEST_F(List, KeepsSharedTexts)
{
    const chString text("abc");
    chObjList_dynamic<chString, 16> list;
    list.push_back(text);
    list.push_back("def");
    EXPECT_EQ(text.GetStringData()->m_nReferenceCount, 2);
    EXPECT_EQ(list.front().GetText(), text.GetText());
    list.clear();
    EXPECT_EQ(text.GetStringData()->m_nReferenceCount, 1);
}

TEST_F(List, SaysTheSameAsAStandardListAfterAnyOperations)
{
    std::mt19937 random(7);
    chObjList_dynamic<countedValue, 16> list;
    std::list<int> model;
    for (int step = 0; step < 20000; ++step) {
        const unsigned what = random() % 10;
        if (what < 5) {
            list.append(step);
            model.push_back(step);
        } else if (!model.empty() && what < 7) {
            what == 5 ? list.pop_front() : list.pop_back();
            what == 5 ? model.pop_front() : model.pop_back();
        } else if (!model.empty() && what < 9) {
            const int place = static_cast<int>(random() % model.size());
            list.erase(std::next(list.begin(), place));
            model.erase(std::next(model.begin(), place));
        } else if (random() % 100 == 0) {
            list.clear();
            model.clear();
        }
        ASSERT_EQ(list.size(), static_cast<int>(model.size()));
        ASSERT_EQ(countedValue::Living(), list.count);
        const bool same =
            step % 50 != 0 || std::equal(model.begin(), model.end(), list.begin(), list.end(),
                                         [](int a, const countedValue& b) { return a == b.Value(); });
        ASSERT_TRUE(same) << step;
    }
}
