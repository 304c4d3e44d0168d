#include "tests/text/errorLines.h"
#include "tests/text/textBlock.h"

#include <cstddef>
#include <vector>

using NUX_StringHelper::chStringData;
using NUX_StringHelper::szNULL;

namespace {

class String : public testing::Test
{
protected:
    ~String() override { EXPECT_EQ(errors.Take(), ""); }

    errorLines errors;
};

} // namespace

TEST_F(String, IsOnePointerToItsText)
{
    static_assert(sizeof(chString) == sizeof(char*));
    chString text("abc");
    const char* pointer;
    memcpy(&pointer, static_cast<const void*>(&text), sizeof(pointer));
    EXPECT_EQ(pointer, text.GetText());
    EXPECT_STREQ(pointer, "abc");
}

TEST_F(String, HasItsHeaderDirectlyInFrontOfTheText)
{
    static_assert(offsetof(chStringData, m_nAllocLength) == 0);
    static_assert(offsetof(chStringData, m_nReferenceCount) == 4);
    static_assert(offsetof(chStringData, m_nDataLength) == 8);
    static_assert(sizeof(chStringData) == 12);
    chString text("abcde");
    chString other(text);
    int header[3];
    memcpy(header, text.GetText() - 12, sizeof(header));
    EXPECT_EQ(header[0], 16);
    EXPECT_EQ(header[1], 2);
    EXPECT_EQ(header[2], 5);
}

TEST_F(String, IsTheEmptyTextWithoutABlockByDefault)
{
    EXPECT_EQ(chString().GetText(), szNULL);
    EXPECT_EQ(chString().GetStringData(), nullptr);
    EXPECT_EQ(chString().GetLength(), 0);
    EXPECT_TRUE(chString().IsEmpty());
}

TEST_F(String, OfNullOrEmptyTextEqualsTheDefaultAndHoldsNoBlock)
{
    const chString null(nullptr, -1);
    const chString empty("", -1);
    EXPECT_TRUE(null == chString());
    EXPECT_TRUE(empty == chString());
    EXPECT_EQ(null.GetText(), szNULL);
    EXPECT_EQ(empty.GetText(), szNULL);
    EXPECT_EQ(chString(static_cast<const char*>(nullptr)).GetText(), szNULL);
}

TEST_F(String, OfZeroBytesIsEmpty)
{
    EXPECT_TRUE(chString("abc", 0) == chString());
    EXPECT_EQ(chString("abc", 0).GetStringData(), nullptr);
}

TEST_F(String, TakesAtMostTheBytesAskedFor)
{
    EXPECT_STREQ(chString("abcdef", 3), "abc");
    EXPECT_STREQ(chString("abcdef", 99), "abcdef");
    EXPECT_EQ(chString("abcdef", 99).GetLength(), 6);
    EXPECT_STREQ(chString("abcdef", -1), "abcdef");
}

TEST_F(String, ReadsNoByteBehindTheBytesAskedFor)
{
    std::vector<char> unterminated = {'a', 'b', 'c'};
    EXPECT_STREQ(chString(unterminated.data(), 3), "abc");
}

TEST_F(String, TakesNoPartOfALetter)
{
    const char* umlaut = "a\xC3\xA4z";
    EXPECT_STREQ(chString(umlaut, 2), "a");
    EXPECT_STREQ(chString(umlaut, 3), "a\xC3\xA4");
    const char* face = "\xF0\x9F\x98\x80";
    for (int count = 1; count < 4; ++count)
        EXPECT_EQ(chString(face, count).GetText(), szNULL) << count;
    EXPECT_STREQ(chString(face, 4), face);
}

TEST_F(String, TakesNoPartOfALetterThatIsDamagedAtTheEndWhoeverTakesIt)
{
    for (const char* damaged : {"ab\xC3", "ab\xE2\x82", "ab\xF0\x9F\x98"}) {
        const int length = static_cast<int>(strlen(damaged));
        chString assigned, copied, appended;
        assigned = damaged;
        copied.CopyTextFrom(damaged, length);
        appended += damaged;
        for (const chString& text : {chString(damaged), chString(damaged, -1), chString(damaged, length),
                                     chString(damaged, length + 5), assigned, copied, appended})
            EXPECT_STREQ(text, "ab");
    }
}

TEST_F(String, KeepsWhatIsNoPartOfALetter)
{
    for (const char* odd : {"a\xC3z", "ab\xFF", "ab\x80", "\xE2z\x82"}) {
        EXPECT_STREQ(chString(odd), odd);
        EXPECT_STREQ(chString(odd, static_cast<int>(strlen(odd))), odd);
    }
}

TEST_F(String, HasACapacityOfWholeSixteens)
{
    EXPECT_EQ(capacityOf(chString("a")), 16);
    EXPECT_EQ(capacityOf(chString("0123456789abcde")), 16);
    EXPECT_EQ(capacityOf(chString("0123456789abcdef")), 16);
    EXPECT_EQ(capacityOf(chString("0123456789abcdefg")), 32);
    EXPECT_EQ(capacityOf(chString(std::string(32, 'x').c_str())), 32);
    EXPECT_EQ(capacityOf(chString(std::string(33, 'x').c_str())), 48);
}

TEST_F(String, KeepsAllBytesPastTheTextZero)
{
    EXPECT_TRUE(isSound(chString("a")));
    EXPECT_TRUE(isSound(chString("0123456789abcdef")));
    EXPECT_TRUE(isSound(chString("0123456789abcdefg")));
}

TEST_F(String, CopyingSharesTheBlockAndCounts)
{
    chString first("abc");
    EXPECT_EQ(referencesOf(first), 1);
    {
        chString second(first);
        EXPECT_EQ(second.GetText(), first.GetText());
        EXPECT_EQ(referencesOf(first), 2);
        chString third;
        third = second;
        EXPECT_EQ(third.GetText(), first.GetText());
        EXPECT_EQ(referencesOf(first), 3);
    }
    EXPECT_EQ(referencesOf(first), 1);
}

TEST_F(String, AssigningReleasesTheOldBlock)
{
    chString first("abc"), second("def");
    chString keeper(second);
    second = first;
    EXPECT_EQ(referencesOf(keeper), 1);
    EXPECT_EQ(referencesOf(first), 2);
    second = chString();
    EXPECT_EQ(referencesOf(first), 1);
    EXPECT_EQ(second.GetText(), szNULL);
}

TEST_F(String, AssignedToItselfKeepsItsText)
{
    chString text("abc");
    const char* before = text.GetText();
    const chString& same = text;
    text = same;
    EXPECT_EQ(text.GetText(), before);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(referencesOf(text), 1);
    chString& itself = text;
    text = std::move(itself);
    EXPECT_STREQ(text, "abc");
    text = text.GetText();
    EXPECT_EQ(text.GetText(), before);
    EXPECT_STREQ(text, "abc");
}

TEST_F(String, EmptyIsSharedWithoutABlock)
{
    chString empty;
    chString copy(empty);
    chString assigned("abc");
    assigned = empty;
    EXPECT_EQ(copy.GetText(), szNULL);
    EXPECT_EQ(assigned.GetText(), szNULL);
}

TEST_F(String, MovingTakesThePointer)
{
    chString from("abc");
    const char* text = from.GetText();
    chString to(std::move(from));
    EXPECT_EQ(to.GetText(), text);
    EXPECT_EQ(referencesOf(to), 1);
    EXPECT_EQ(from.GetText(), szNULL);
    chString assigned("old");
    assigned = std::move(to);
    EXPECT_EQ(assigned.GetText(), text);
    EXPECT_EQ(to.GetText(), szNULL);
}

TEST_F(String, MayLieInARecordThatWasClearedToZero)
{
    alignas(chString) unsigned char record[sizeof(chString)] = {};
    chString& text = *reinterpret_cast<chString*>(record);
    EXPECT_EQ(text.GetLength(), 0);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text, "");
    EXPECT_TRUE(text == chString());
    EXPECT_STREQ(chString(text), "");
    text = "abc";
    EXPECT_STREQ(text, "abc");
    text.~chString();
}

TEST_F(String, WriteThroughThePrivateBufferLeavesTheOtherOwnerAlone)
{
    chString a("abc");
    chString b = a;
    chStringData* data = b.PrepareTextBuffer(-1);
    ASSERT_NE(data, nullptr);
    EXPECT_NE(a.GetText(), b.GetText());
    EXPECT_EQ(data->GetText(), b.GetText());
    data->GetText()[0] = 'x';
    EXPECT_STREQ(a, "abc");
    EXPECT_STREQ(b, "xbc");
    EXPECT_EQ(referencesOf(a), 1);
    EXPECT_EQ(referencesOf(b), 1);
    EXPECT_TRUE(isSound(b));
}

TEST_F(String, ReleasedIsEmptyAgain)
{
    chString a("abc"), b(a);
    b.ReleaseStringData(b.GetStringData());
    EXPECT_EQ(b.GetText(), szNULL);
    EXPECT_EQ(referencesOf(a), 1);
}

TEST_F(String, ReportsABlockThatNobodyOwnsAndDoesNotFreeItTwice)
{
    chString text("abc");
    chStringData* data = text.GetStringData();
    data->m_nReferenceCount = 0;
    text.ReleaseStringData(data);
    EXPECT_EQ(errors.Take(), "pStringData->m_nReferenceCount >= 1");
    EXPECT_EQ(text.GetText(), szNULL);
    EXPECT_STREQ(data->GetText(), "abc");
    dynamicAlloc::free(data);
}

TEST_F(String, EmptiedAloneKeepsItsBlockWithAllBytesZero)
{
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        chString text("0123456789");
        const char* block = text.GetText();
        text.CopyTextFrom(nothing, -1);
        EXPECT_EQ(text.GetText(), block);
        EXPECT_EQ(text.GetStringData()->m_nDataLength, 0);
        EXPECT_TRUE(text == chString());
        for (int i = 0; i < textAreaBytes(text); ++i)
            EXPECT_EQ(block[i], 0) << i;
    }
    chString text("0123456789");
    text.CopyTextFrom("abc", 0);
    EXPECT_NE(text.GetStringData(), nullptr);
    EXPECT_EQ(text.GetLength(), 0);
}

TEST_F(String, EmptiedWhileSharedGoesToTheEmptyText)
{
    chString a("abc"), b(a);
    b.CopyTextFrom("", -1);
    EXPECT_EQ(b.GetText(), szNULL);
    EXPECT_STREQ(a, "abc");
    EXPECT_EQ(referencesOf(a), 1);
}

TEST_F(String, AssignedAShorterTextReusesItsBlockAndClearsTheRest)
{
    chString text("0123456789abcdef0123");
    const char* block = text.GetText();
    text = "xy";
    EXPECT_EQ(text.GetText(), block);
    EXPECT_EQ(capacityOf(text), 32);
    EXPECT_EQ(text.GetLength(), 2);
    EXPECT_TRUE(isSound(text));
}

TEST_F(String, AssignedALongerTextGrowsWithoutTouchingASharer)
{
    chString a("abc"), b(a);
    b = "0123456789abcdefg";
    EXPECT_EQ(capacityOf(b), 32);
    EXPECT_STREQ(a, "abc");
    EXPECT_EQ(referencesOf(a), 1);
    a = "0123456789abcdefg";
    EXPECT_EQ(capacityOf(a), 32);
    EXPECT_TRUE(isSound(a));
    EXPECT_TRUE(isSound(b));
}

TEST_F(String, CopyingItsOwnBufferIsNoOperation)
{
    chString text("abcdef");
    text.CopyTextFrom(text.GetText(), 2);
    EXPECT_STREQ(text, "abcdef");
    text.CopyTextFrom(text.GetText(), 0);
    EXPECT_STREQ(text, "");
}

TEST_F(String, TakesAPartOfItself)
{
    chString text("abcdef");
    text.CopyTextFrom(text.GetText() + 2, 3);
    EXPECT_STREQ(text, "cde");
    EXPECT_TRUE(isSound(text));
    chString shared("abcdef"), other(shared);
    const char* tail = strchr(shared.GetText(), 'e');
    shared.CopyTextFrom(tail, -1);
    EXPECT_STREQ(shared, "ef");
    EXPECT_STREQ(other, "abcdef");
}

TEST_F(String, RecomputesAndStoresALengthThatIsNotKnown)
{
    chString text("abcdef");
    chStringData* data = text.PrepareTextBuffer(-1);
    memset(data->GetText() + 2, 0, 4);
    data->m_nDataLength = -1;
    const chString& reader = text;
    EXPECT_EQ(reader.GetLength(), 2);
    EXPECT_EQ(data->m_nDataLength, 2);
}

TEST_F(String, IndexesByAnyIntegerAndWritesInPlace)
{
    chString text("abc");
    EXPECT_EQ(text[0], 'a');
    EXPECT_EQ(text[size_t{1}], 'b');
    EXPECT_EQ(text[2L], 'c');
    EXPECT_EQ(text[2U], 'c');
    const chString& reader = text;
    EXPECT_EQ(reader[0], 'a');
    chString shared(text);
    text[1] = 'X';
    EXPECT_STREQ(shared, "aXc");
}

TEST_F(String, ReportsAnIndexOutsideTheTextAndStaysWhole)
{
    chString text("abc");
    for (int index : {-1, 3, 1000}) {
        text[index] = 'X';
        EXPECT_EQ(errors.Take(), "nIndex >= 0 && nIndex < GetLength()") << index;
    }
    const chString reader;
    EXPECT_EQ(reader[0], 0);
    EXPECT_EQ(errors.Take(), "nIndex >= 0 && nIndex < GetLength()");
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(*szNULL, 0);
}

// ---- the copy-on-write door ----

TEST_F(String, PreparesAFreshBlockOfTheLength)
{
    for (int length : {-1, 0, 1, 16}) {
        chString text;
        chStringData* data = text.PrepareTextBuffer(length);
        EXPECT_EQ(data->m_nAllocLength, 16) << length;
        EXPECT_EQ(data->m_nReferenceCount, 1);
        EXPECT_EQ(data->m_nDataLength, 0);
        EXPECT_TRUE(isSound(text));
    }
    chString text;
    EXPECT_EQ(text.PrepareTextBuffer(17)->m_nAllocLength, 32);
}

TEST_F(String, PreparingKeepsABlockOwnedAloneForNoLength)
{
    chString text("abc");
    const char* before = text.GetText();
    EXPECT_EQ(text.PrepareTextBuffer(-1)->GetText(), before);
    EXPECT_STREQ(text, "abc");
}

TEST_F(String, PreparingMoreThanTheCapacityKeepsTheTextAndClearsTheNewBytes)
{
    chString text("0123456789abcdef");
    chStringData* data = text.PrepareTextBuffer(100);
    EXPECT_EQ(data->m_nAllocLength, 112);
    EXPECT_EQ(data->m_nDataLength, 16);
    EXPECT_STREQ(text, "0123456789abcdef");
    EXPECT_TRUE(isSound(text));
}

TEST_F(String, PreparingLessThanTheTextShortensIt)
{
    chString text("0123456789");
    chStringData* data = text.PrepareTextBuffer(4);
    EXPECT_EQ(data->m_nDataLength, 4);
    EXPECT_EQ(data->m_nAllocLength, 16);
    EXPECT_STREQ(text, "0123");
    EXPECT_TRUE(isSound(text));
}

TEST_F(String, PreparingMoreThanTheTextWithinTheCapacityKeepsItsLength)
{
    chString text("0123");
    EXPECT_EQ(text.PrepareTextBuffer(12)->m_nDataLength, 4);
    EXPECT_STREQ(text, "0123");
}

TEST_F(String, PreparingWithAnUnknownLengthClearsUpToTheCapacity)
{
    chString text("0123");
    chStringData* data = text.PrepareTextBuffer(16);
    memcpy(data->GetText(), "0123456789abcdef", 16);
    data->m_nDataLength = -1;
    text.PrepareTextBuffer(5);
    EXPECT_EQ(data->m_nDataLength, -1);
    EXPECT_STREQ(text, "01234");
    EXPECT_TRUE(isSound(text));
}

TEST_F(String, PreparingASharedBlockTakesTheCapacityFromTheLength)
{
    const chString origin("0123456789abcdefghij");
    const auto prepared = [&](int length) {
        chString copy(origin);
        copy.PrepareTextBuffer(length);
        EXPECT_EQ(referencesOf(origin), 1);
        EXPECT_EQ(referencesOf(copy), 1);
        EXPECT_TRUE(isSound(copy));
        return copy;
    };
    EXPECT_EQ(capacityOf(prepared(0)), 16);
    EXPECT_STREQ(prepared(0), "0123456789abcdef");
    EXPECT_EQ(prepared(0).GetLength(), 16);
    EXPECT_STREQ(prepared(5), "0123456789abcdef");
    EXPECT_EQ(capacityOf(prepared(40)), 48);
    EXPECT_STREQ(prepared(40), origin);
    EXPECT_EQ(capacityOf(prepared(-1)), 32);
    EXPECT_STREQ(prepared(-1), origin);
    EXPECT_STREQ(origin, "0123456789abcdefghij");
}

TEST_F(String, PreparingASharedBlockTakesTheCapacityFromTheTextItHas)
{
    chString origin("0123456789abcdefghij");
    origin = "ab";
    ASSERT_EQ(capacityOf(origin), 32);
    chString copy(origin);
    copy.PrepareTextBuffer(-1);
    EXPECT_EQ(capacityOf(copy), 16);
}

TEST_F(String, PreparingASharedBlockOfUnknownLengthTakesTheOldCapacity)
{
    chString origin("0123456789abcdefghij");
    origin = "ab";
    origin.GetStringData()->m_nDataLength = -1;
    chString copy(origin);
    chStringData* data = copy.PrepareTextBuffer(-1);
    EXPECT_EQ(data->m_nAllocLength, 32);
    EXPECT_EQ(data->m_nDataLength, -1);
    EXPECT_STREQ(copy, "ab");
    EXPECT_EQ(copy.GetLength(), 2);
}

TEST_F(String, PreparingLeavesNoPartOfALetter)
{
    chString alone("a\xE2\x82\xAC");
    alone.PrepareTextBuffer(3);
    EXPECT_STREQ(alone, "a");
    EXPECT_EQ(alone.GetLength(), 1);
    EXPECT_TRUE(isSound(alone));
    const chString origin("0123456789abcd\xE2\x82\xAC");
    chString copy(origin);
    copy.PrepareTextBuffer(0);
    EXPECT_STREQ(copy, "0123456789abcd");
    EXPECT_TRUE(isSound(copy));
}

TEST_F(String, PreparingReportsAnImpossibleLengthAndKeepsTheText)
{
    chString text("abc");
    EXPECT_NE(text.PrepareTextBuffer(-2), nullptr);
    EXPECT_EQ(errors.Take(), "nMinLength >= 0 || nMinLength == -1");
    EXPECT_STREQ(text, "abc");
}

// ---- memory that is out ----

TEST_F(String, StaysAsItWasWhenMemoryIsOut)
{
    for (int length : {dynamicAlloc::MAX_BLOCK - 15, dynamicAlloc::MAX_BLOCK, 0x7fffffff}) {
        chString empty;
        EXPECT_EQ(empty.PrepareTextBuffer(length), nullptr);
        EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
        EXPECT_EQ(empty.GetText(), szNULL);

        chString alone("abc");
        EXPECT_EQ(alone.PrepareTextBuffer(length), nullptr);
        EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
        EXPECT_STREQ(alone, "abc");
        EXPECT_TRUE(isSound(alone));

        chString shared(alone);
        EXPECT_EQ(shared.PrepareTextBuffer(length), nullptr);
        EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
        EXPECT_EQ(shared.GetText(), alone.GetText());
        EXPECT_EQ(referencesOf(alone), 2);
    }
}

TEST_F(String, TakesTheLargestTextAndRefusesALargerOne)
{
    const int largest = dynamicAlloc::MAX_BLOCK - 16;
    const std::string huge(static_cast<size_t>(largest) + 1, 'x');
    EXPECT_EQ(chString(huge.c_str(), largest).GetLength(), largest);
    EXPECT_EQ(errors.Take(), "");
    EXPECT_EQ(chString(huge.c_str()).GetText(), szNULL);
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    chString text("abc");
    text = huge.c_str();
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    text += huge.c_str();
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    EXPECT_EQ(text.Format("%s", huge.c_str()), 1);
    EXPECT_EQ(errors.Take(), "pNewStringData != NULL");
    EXPECT_STREQ(text, "abc");
    EXPECT_TRUE(isSound(text));
}

TEST(DynamicAlloc, GivesNothingForASizeOutOfRangeAndKeepsTheOldBlock)
{
    char* block = static_cast<char*>(dynamicAlloc::realloc(nullptr, 8));
    ASSERT_NE(block, nullptr);
    memcpy(block, "1234567", 8);
    EXPECT_EQ(dynamicAlloc::realloc(block, dynamicAlloc::MAX_BLOCK + 1), nullptr);
    EXPECT_EQ(dynamicAlloc::realloc(block, 0), nullptr);
    EXPECT_EQ(dynamicAlloc::realloc(block, -5), nullptr);
    EXPECT_STREQ(block, "1234567");
    block = static_cast<char*>(dynamicAlloc::realloc(block, 4000));
    EXPECT_STREQ(block, "1234567");
    dynamicAlloc::free(block);
    dynamicAlloc::free(nullptr);
}
