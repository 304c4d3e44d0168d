#include "support/text/chString.h"

#include "support/text/chCharacter.h"
#include "support/text/chFormat.h"

#include <climits>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace NUX_StringHelper {

const char szNULL[1] = {0};

namespace {

constexpr int capacityStep = 16;
// Header, terminator and spare bytes.
constexpr int blockOverhead = 16;
constexpr int bytesPastCapacity = blockOverhead - static_cast<int>(sizeof(chStringData));

// The capacity for a requested length, or -1 when no block is that large.
int capacityFor(int length)
{
    if (length < 1)
        return capacityStep;
    if (length > dynamicAlloc::MAX_BLOCK - blockOverhead)
        return -1;
    return (length + capacityStep - 1) / capacityStep * capacityStep;
}

void copyText(char* lpszDes, const char* lpszSrc, int nCount)
{
    if (NUX_ASSERT(lpszSrc != nullptr && lpszDes != nullptr && nCount >= 0,
                   "lpszSrc != NULL && lpszDes != NULL && nCount >= 0"))
        memmove(lpszDes, lpszSrc, static_cast<size_t>(nCount));
}

// Clears the text from `begin` on up to `end`.
void clearText(chStringData* stringData, int begin, int end)
{
    if (end > begin)
        memset(stringData->GetText() + begin, 0, static_cast<size_t>(end - begin));
}

// A block of its own, or `old` made larger, with the new bytes cleared. Null when memory is out.
chStringData* allocBlock(chStringData* old, int capacity)
{
    const int oldCapacity = old ? old->m_nAllocLength : -bytesPastCapacity;
    chStringData* pNewStringData = nullptr;
    if (capacity >= 0)
        pNewStringData = static_cast<chStringData*>(dynamicAlloc::realloc(old, capacity + blockOverhead));
    if (!NUX_ASSERT(pNewStringData != nullptr, "pNewStringData != NULL"))
        return nullptr;
    pNewStringData->m_nAllocLength = capacity;
    clearText(pNewStringData, oldCapacity + bytesPastCapacity, capacity + bytesPastCapacity);
    return pNewStringData;
}

chStringData* newBlock(int length)
{
    chStringData* stringData = allocBlock(nullptr, capacityFor(length));
    if (stringData) {
        stringData->m_nReferenceCount = 1;
        stringData->m_nDataLength = 0;
    }
    return stringData;
}

// Bytes of the text that are taken when at most `count` are asked for, -1 for all. Whether a letter was cut
// by the count or before, the part that is left of it at the end is not taken.
int takenLength(const char* text, int count)
{
    const size_t length = count < 0 ? strlen(text) : strnlen(text, static_cast<size_t>(count));
    return chWholeLetters(text, length > INT_MAX ? INT_MAX : static_cast<int>(length));
}

const char* textOrEmpty(const char* lpszText)
{
    return NUX_ASSERT(lpszText != nullptr, "lpszText != NULL") ? lpszText : szNULL;
}

} // namespace

template <class CHAR>
chReferenceStringT<CHAR>& chReferenceStringT<CHAR>::operator=(const CHAR* text)
{
    CopyTextFrom(text, -1);
    return *this;
}

template <class CHAR>
chReferenceStringT<CHAR>& chReferenceStringT<CHAR>::operator+=(const chReferenceStringT& other)
{
    if (IsEmpty())
        return *this = other;
    AppendText(other.GetText(), other.GetLength());
    return *this;
}

template <class CHAR>
chReferenceStringT<CHAR>& chReferenceStringT<CHAR>::operator+=(const CHAR* text)
{
    text = textOrEmpty(text);
    AppendText(text, takenLength(text, -1));
    return *this;
}

template <class CHAR>
bool chReferenceStringT<CHAR>::IsOwnText(const CHAR* text) const
{
    return HasBlock() && text >= m_lpszText && text <= m_lpszText + GetStringData()->m_nAllocLength;
}

template <class CHAR>
CHAR* chReferenceStringT<CHAR>::TextAt(long nIndex) const
{
    if (NUX_ASSERT(nIndex >= 0 && nIndex < GetLength(), "nIndex >= 0 && nIndex < GetLength()"))
        return m_lpszText + nIndex;
    static thread_local CHAR spare;
    spare = 0;
    return &spare;
}

template <class CHAR>
int chReferenceStringT<CHAR>::MeasureLength() const
{
    return GetStringData()->m_nDataLength = static_cast<int>(strlen(m_lpszText));
}

template <class CHAR>
void chReferenceStringT<CHAR>::TakeBlock(chStringData* stringData)
{
    if (HasBlock() && GetStringData() != stringData)
        ReleaseStringData(GetStringData());
    m_lpszText = stringData->GetText();
}

template <class CHAR>
void chReferenceStringT<CHAR>::Clear()
{
    if (!HasBlock())
        return;
    chStringData* stringData = GetStringData();
    if (stringData->m_nReferenceCount > 1) {
        ReleaseStringData(stringData);
        return;
    }
    clearText(stringData, 0, stringData->m_nAllocLength);
    stringData->m_nDataLength = 0;
}

template <class CHAR>
void chReferenceStringT<CHAR>::CopyTextFrom(const CHAR* text, int count)
{
    if (text && text == m_lpszText && count != 0)
        return;
    const int length = text ? takenLength(text, count) : 0;
    if (length == 0) {
        Clear();
        return;
    }
    chStringData* stringData = GetStringData();
    if (!stringData || stringData->m_nReferenceCount > 1 || stringData->m_nAllocLength < length) {
        stringData = newBlock(length);
        if (!stringData)
            return;
        copyText(stringData->GetText(), text, length);
    } else {
        const int oldLength = GetLength();
        copyText(m_lpszText, text, length);
        clearText(stringData, length, oldLength);
    }
    stringData->m_nDataLength = length;
    TakeBlock(stringData);
}

template <class CHAR>
chStringData* chReferenceStringT<CHAR>::PrepareTextBuffer(int nMinLength)
{
    NUX_ASSERT(nMinLength >= 0 || nMinLength == -1, "nMinLength >= 0 || nMinLength == -1");
    chStringData* stringData = GetStringData();
    if (!stringData)
        stringData = newBlock(nMinLength);
    else if (stringData->m_nReferenceCount > 1)
        stringData = ShareNoMore(nMinLength);
    else if (nMinLength > stringData->m_nAllocLength)
        stringData = allocBlock(stringData, capacityFor(nMinLength));
    else if (nMinLength >= 0)
        Shorten(nMinLength);
    if (stringData)
        m_lpszText = stringData->GetText();
    return stringData;
}

// Clears the text of a block owned alone past `length` bytes.
template <class CHAR>
void chReferenceStringT<CHAR>::Shorten(int length)
{
    chStringData* stringData = GetStringData();
    const int known = stringData->m_nDataLength;
    const int end = known < 0 ? stringData->m_nAllocLength : known;
    if (length >= end)
        return;
    length = chWholeLetters(m_lpszText, length);
    clearText(stringData, length, end);
    if (known > length)
        stringData->m_nDataLength = length;
}

// Leaves a shared block for a private copy with room for `length` bytes, -1 for the text it has.
template <class CHAR>
chStringData* chReferenceStringT<CHAR>::ShareNoMore(int length)
{
    chStringData* shared = GetStringData();
    const int known = shared->m_nDataLength;
    const int held = known < 0 ? shared->m_nAllocLength : known;
    chStringData* own = newBlock(length < 0 ? held : length);
    if (!own)
        return nullptr;
    const int kept = held <= own->m_nAllocLength ? held : chWholeLetters(m_lpszText, own->m_nAllocLength);
    copyText(own->GetText(), m_lpszText, kept);
    own->m_nDataLength = known < 0 ? known : kept;
    --shared->m_nReferenceCount;
    return own;
}

// Adds bytes that may be a part of this text.
template <class CHAR>
void chReferenceStringT<CHAR>::AppendText(const CHAR* text, int count)
{
    const int length = GetLength();
    if (count == 0)
        return;
    const bool own = IsOwnText(text);
    const long place = own ? text - m_lpszText : 0;
    chStringData* stringData = PrepareTextBuffer(count > INT_MAX - length ? INT_MAX : length + count);
    if (!stringData)
        return;
    copyText(m_lpszText + length, own ? m_lpszText + place : text, count);
    stringData->m_nDataLength = length + count;
}

template <class CHAR>
int chReferenceStringT<CHAR>::Format(const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    const int result = FormatV(fmt, &args);
    va_end(args);
    return result;
}

template <class CHAR>
int chReferenceStringT<CHAR>::FormatV(const CHAR* fmt, void* args)
{
    fmt = textOrEmpty(fmt);
    chStringData* old = GetStringData();
    const CHAR* oldEnd = old ? m_lpszText + old->m_nAllocLength + 1 : nullptr;
    const chFormatSurvey survey = chSurveyFormat(fmt, args, old ? m_lpszText : nullptr, oldEnd);
    // Arguments that are parts of this text stay alive through a share of it.
    const chReferenceStringT hold(survey.bReadsRange ? *this : chReferenceStringT());
    PrintSurveyed(fmt, args, survey, survey.nEstimate);
    return 1;
}

template <class CHAR>
void chReferenceStringT<CHAR>::PrintSurveyed(const CHAR* fmt, void* args, const chFormatSurvey& survey,
                                             int room)
{
    chStringData* stringData = PrepareTextBuffer(room);
    if (!stringData)
        return;
    clearText(stringData, 0, GetLength());
    const int length = chPrintSurveyed(m_lpszText, room + 1, fmt, args, survey);
    stringData->m_nDataLength = length <= room ? length : -1;
    if (length > room)
        PrintSurveyed(fmt, args, survey, length);
}

template <class CHAR>
void chReferenceStringT<CHAR>::RemoveAt(int nIndex, int nCount)
{
    const int length = GetLength();
    if (!NUX_ASSERT(nIndex >= 0 && nIndex <= length, "nIndex >= 0 && nIndex <= GetLength()") ||
        !NUX_ASSERT(chLetterStart(GetText(), nIndex) == nIndex, "!chIsTrailbyte(m_lpszText[nIndex])"))
        return;
    if (nCount <= 0 || nIndex == length)
        return;
    const int end = nCount >= length - nIndex ? length : chLetterEnd(m_lpszText, nIndex + nCount);
    chStringData* stringData = PrepareTextBuffer(-1);
    if (!stringData)
        return;
    copyText(m_lpszText + nIndex, m_lpszText + end, length - end);
    stringData->m_nDataLength = length - (end - nIndex);
    clearText(stringData, stringData->m_nDataLength, length);
}

template <class CHAR>
chReferenceStringT<CHAR> chReferenceStringT<CHAR>::MidLetters(int start, int count) const
{
    const int length = GetLength();
    if (start < 0)
        start = 0;
    if (start >= length || count == 0)
        return chReferenceStringT();
    const int end = count < 0 || count >= length - start ? length : chLetterStart(m_lpszText, start + count);
    start = chLetterEnd(m_lpszText, start);
    if (start == 0 && end == length)
        return *this;
    return start < end ? chReferenceStringT(m_lpszText + start, end - start) : chReferenceStringT();
}

template <class CHAR>
chReferenceStringT<CHAR> chReferenceStringT<CHAR>::RightLetters(int count) const
{
    const int length = GetLength();
    if (count <= 0)
        return chReferenceStringT();
    return MidLetters(count < length ? length - count : 0, -1);
}

template <class CHAR>
void chReferenceStringT<CHAR>::ReverseDeleteLetters(int count)
{
    const int length = GetLength();
    if (count <= 0 || length == 0)
        return;
    const int kept = count < length ? chLetterStart(m_lpszText, length - count) : 0;
    RemoveAt(kept, length - kept);
}

template class chReferenceStringT<char>;

String fmtString(const char* fmt, ...)
{
    String text;
    va_list args;
    va_start(args, fmt);
    text.FormatV(fmt, &args);
    va_end(args);
    return text;
}

String operator+(const String& left, const String& right)
{
    String sum(left);
    sum += right;
    return sum;
}

String operator+(const String& left, const char* right)
{
    String sum(left);
    sum += right;
    return sum;
}

String operator+(const char* left, const String& right)
{
    String sum(left);
    sum += right;
    return sum;
}

bool operator==(const String& left, const String& right)
{
    if (left.GetLength() != right.GetLength())
        return false;
    return left.GetText() == right.GetText() || strcmp(left, right) == 0;
}

bool operator==(const String& left, const char* right)
{
    right = textOrEmpty(right);
    return left.GetText() == right || strcmp(left, right) == 0;
}

bool operator>(const String& left, const String& right)
{
    return strcmp(left, right) > 0;
}

const String& operator>>(const String& text, int& number)
{
    const long value = strtol(text, nullptr, 10);
    number = static_cast<int>(value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : value);
    return text;
}

const String& operator>>(const String& text, String& copy)
{
    copy = text;
    return text;
}

int nuxPeekPhraseByCharToken(const char*& cursor, String& phrase, char token)
{
    if (!NUX_ASSERT(cursor != nullptr, "lpszText != NULL") || *cursor == 0)
        return 1;
    // Only whole letters are compared, so that a token never splits one.
    const char* end = cursor;
    while (*end != 0 && *end != token)
        end += chLetterLength(end);
    phrase = String(cursor, static_cast<int>(end - cursor));
    cursor = *end != 0 ? end + 1 : end;
    return 0;
}

bool stringSame(const String& text, const chConstTextT<char>& other)
{
    return text.GetLength() == other.GetLength() && strcmp(text, other.GetText()) == 0;
}

} // namespace NUX_StringHelper
