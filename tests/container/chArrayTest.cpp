#include "support/container/chArray.h"
#include "support/text/chString.h"
#include "tests/container/countedValue.h"
#include "tests/text/errorLines.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>

namespace {

using countedArray = chObjArray<countedValue, true, 4>;
using intArray = chObjArray<int, true, 4>;

class Array : public testing::Test
{
protected:
    Array()
    {
        countedValue::Living() = 0;
        countedValue::Ends().clear();
    }
    ~Array() override { EXPECT_EQ(errors.Take(), ""); }

    errorLines errors;
};

} // namespace

TEST_F(Array, IsEmptyAtFirst)
{
    intArray array;
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.size(), 0);
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.GetAllocCount(), 0);
    EXPECT_TRUE(array.begin() == array.end());
}

TEST_F(Array, HasItsFieldsInOrder)
{
    static_assert(std::is_base_of_v<NUX_ArrayHelper::chMeth_ObjArray<int, true, 4>, intArray>);
    intArray array;
    array.SetArraySize(5);
    struct image
    {
        int* elements;
        int allocCount;
        int elementCount;
    } seen;
    static_assert(sizeof(seen) == sizeof(array));
    memcpy(&seen, static_cast<const void*>(&array), sizeof(seen));
    EXPECT_EQ(seen.elements, array.begin());
    EXPECT_EQ(seen.allocCount, 8);
    EXPECT_EQ(seen.elementCount, 5);
}

TEST_F(Array, GrowsInStepsOfFour)
{
    intArray array;
    const int expected[] = {4, 4, 4, 4, 8, 8, 8, 8, 12};
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(array.Append(i), 1);
        EXPECT_EQ(array.GetAllocCount(), expected[i]) << i;
    }
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(array[i], i);
}

TEST_F(Array, SetArraySizeDefaultConstructsTheNewElements)
{
    intArray numbers;
    EXPECT_EQ(numbers.SetArraySize(6), 1);
    EXPECT_EQ(numbers.GetAllocCount(), 8);
    for (int number : numbers)
        EXPECT_EQ(number, 0);
    countedArray array;
    array.SetArraySize(3);
    EXPECT_EQ(countedValue::Living(), 3);
    array.SetArraySize(5);
    EXPECT_EQ(countedValue::Living(), 5);
}

TEST_F(Array, SetArraySizeWithinTheRoomAllocatesNothing)
{
    intArray array;
    array.SetArraySize(5);
    const int* before = array.begin();
    EXPECT_EQ(array.SetArraySize(8), 1);
    EXPECT_EQ(array.begin(), before);
    EXPECT_EQ(array.SetArraySize(0), 1);
    EXPECT_EQ(array.SetArraySize(8), 1);
    EXPECT_EQ(array.begin(), before);
    EXPECT_EQ(array.GetAllocCount(), 8);
}

TEST_F(Array, ShrinkingDestroysTheElementsPastTheSize)
{
    countedArray array;
    for (int i = 0; i < 6; ++i)
        array.Append(i);
    countedValue::Ends().clear();
    EXPECT_EQ(array.SetArraySize(3), 1);
    EXPECT_EQ(countedValue::Ends(), "3 4 5 ");
    EXPECT_EQ(countedValue::Living(), 3);
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(array[2].Value(), 2);
    EXPECT_EQ(array.SetArraySize(3), 1);
    EXPECT_EQ(countedValue::Living(), 3);
}

TEST_F(Array, GrowingKeepsTheElements)
{
    chObjArray<chString, true, 4> array;
    array.Append("a");
    const char* text = array[0].GetText();
    array.SetArraySize(100);
    EXPECT_EQ(array[0].GetText(), text);
    EXPECT_EQ(array[0].GetStringData()->m_nReferenceCount, 1);
    EXPECT_STREQ(array[99], "");
    EXPECT_EQ(array.GetAllocCount(), 100);
}

TEST_F(Array, DestructionDestroysAllAndReportsNothing)
{
    {
        countedArray array;
        array.SetArraySize(7);
    }
    EXPECT_EQ(countedValue::Living(), 0);
}

TEST_F(Array, ReportsAnIndexOutsideAndGoesOn)
{
    const std::string text = "this->m_aT != NULL && iIndex >= 0 && iIndex < m_nElementCount";
    intArray array;
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(errors.Take(), text);
    array.SetArraySize(2);
    for (int index : {-1, 2, 3, INT_MAX, INT_MIN}) {
        array[index] = 77;
        EXPECT_EQ(errors.Take(), text) << index;
    }
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[1], 0);
    const intArray& reader = array;
    EXPECT_EQ(reader[2], 0);
    EXPECT_EQ(errors.Take(), text);
}

TEST_F(Array, ReportsASizeThatCannotBeAndStaysAsItWas)
{
    intArray array;
    array.Append(5);
    EXPECT_EQ(array.SetArraySize(-1), 0);
    EXPECT_EQ(errors.Take(), "nCount >= 0");
    EXPECT_EQ(array.SetArraySize(INT_MAX), 0);
    EXPECT_EQ(errors.Take(), "pObjects != NULL");
    EXPECT_EQ(array.GetSize(), 1);
    EXPECT_EQ(array[0], 5);
    EXPECT_EQ(array.GetAllocCount(), 4);
}

TEST_F(Array, AppendsAnElementOfItself)
{
    chObjArray<chString, true, 4> array;
    array.Append("first");
    for (int i = 0; i < 20; ++i)
        array.Append(array[0]);
    EXPECT_EQ(array.GetSize(), 21);
    EXPECT_STREQ(array[20], "first");
    EXPECT_EQ(array[0].GetStringData()->m_nReferenceCount, 21);
}

TEST_F(Array, CopiesDeeply)
{
    countedArray array;
    array.SetArraySize(5);
    countedArray copy(array);
    EXPECT_EQ(countedValue::Living(), 10);
    copy[0] = 9;
    EXPECT_EQ(array[0].Value(), 0);
    array.SetArraySize(1);
    copy = array;
    EXPECT_EQ(copy.GetSize(), 1);
    EXPECT_EQ(copy[0].Value(), 0);
    EXPECT_EQ(countedValue::Living(), 2);
    const countedArray& itself = copy;
    copy = itself;
    EXPECT_EQ(copy.GetSize(), 1);
    copy = countedArray();
    EXPECT_TRUE(copy.empty());
}

TEST_F(Array, OfPlainMemoryIsClearedWhenItIsNew)
{
    chObjArray<int, false, 4> array;
    array.SetArraySize(3);
    array[1] = 5;
    array.SetArraySize(1);
    array.SetArraySize(3);
    EXPECT_EQ(array[1], 0);
    array.Append(7);
    array.Append(8);
    EXPECT_EQ(array[4], 8);
    EXPECT_EQ(array.GetAllocCount(), 8);
}

TEST_F(Array, SaysTheSameAsAStandardVectorAfterAnyOperations)
{
    std::mt19937 random(3);
    chObjArray<chString, true, 4> array;
    std::vector<std::string> model;
    for (int step = 0; step < 5000; ++step) {
        if (random() % 3) {
            const std::string text = std::to_string(random());
            array.Append(text.c_str());
            model.push_back(text);
        } else {
            const int size = static_cast<int>(random() % 40);
            array.SetArraySize(size);
            model.resize(static_cast<size_t>(size));
        }
        ASSERT_EQ(array.GetSize(), static_cast<int>(model.size()));
        ASSERT_EQ(array.GetAllocCount() % 4, 0);
        ASSERT_TRUE(std::equal(model.begin(), model.end(), array.begin(), array.end(),
                               [](const std::string& a, const chString& b) { return b == a.c_str(); }));
    }
}
