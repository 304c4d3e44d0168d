#pragma once

#include "support/text/dynamicAlloc.h"
#include "support/text/nuxError.h"
#include "support/text/nuxExport.h"

struct chFormatSurvey;

namespace NUX_StringHelper {

// The one empty text.
extern NUX_API const char szNULL[1];

// Sits directly in front of a text that is shared by reference.
struct chStringData
{
    int m_nAllocLength;    // capacity in bytes, without the terminator
    int m_nReferenceCount; // strings that share the block, at least 1
    int m_nDataLength;     // bytes of text, -1 when not known

    char* GetText() { return reinterpret_cast<char*>(this + 1); }
};
static_assert(sizeof(chStringData) == 12, "the text follows the three fields");

// A text of one pointer: reference-counted, copied on write, never null. The count is a plain
// integer, so an object and all that share its block belong to one thread at a time. Positions and
// counts are bytes; no operation leaves a part of a letter, and no text that is taken ends in one, also
// when it is damaged there. When memory is out, or a text would be
// larger than dynamicAlloc::MAX_BLOCK, a string stays as it was and the failure is reported.
template <class CHAR>
class NUX_API chReferenceStringT
{
public:
    chReferenceStringT() : m_lpszText(EmptyText()) {}
    // The whole text; null is the empty string.
    chReferenceStringT(const CHAR* text) : chReferenceStringT(text, -1) {}
    // At most `count` bytes of the text, -1 for all of it.
    chReferenceStringT(const CHAR* text, int count) : m_lpszText(EmptyText()) { CopyTextFrom(text, count); }
    chReferenceStringT(const chReferenceStringT& other) : m_lpszText(other.m_lpszText) { AddReference(); }
    chReferenceStringT(chReferenceStringT&& other) noexcept : m_lpszText(other.m_lpszText)
    {
        other.m_lpszText = EmptyText();
    }
    ~chReferenceStringT()
    {
        if (HasBlock())
            ReleaseStringData(GetStringData());
    }

    chReferenceStringT& operator=(const chReferenceStringT& other);
    chReferenceStringT& operator=(chReferenceStringT&& other) noexcept;
    chReferenceStringT& operator=(const CHAR* text);
    chReferenceStringT& operator+=(const chReferenceStringT& other);
    chReferenceStringT& operator+=(const CHAR* text);

    operator const CHAR*() const { return GetText(); }
    explicit operator bool() const = delete;
    const CHAR* GetText() const { return m_lpszText ? m_lpszText : szNULL; }
    bool IsEmpty() const { return *GetText() == 0; }
    // Finds out and stores a length that is not known, though it is a const operation.
    int GetLength() const;

    // A write goes straight into the block: only for a text that is not shared.
    template <class INDEX>
    CHAR& operator[](INDEX index)
    {
        return *TextAt(static_cast<long>(index));
    }
    template <class INDEX>
    const CHAR& operator[](INDEX index) const
    {
        return *TextAt(static_cast<long>(index));
    }

    // Assigns at most `count` bytes of the text, -1 for all of it. The text may be a part of this one.
    void CopyTextFrom(const CHAR* text, int count);
    // Makes the text this string's own, with room for `length` bytes, and shortens it to them; -1
    // keeps its length. Whoever then writes into the text keeps the bytes past its end zero and sets
    // m_nDataLength. Null when memory is out.
    chStringData* PrepareTextBuffer(int length);
    // The block, null when there is none.
    chStringData* GetStringData() const
    {
        return HasBlock() ? reinterpret_cast<chStringData*>(m_lpszText) - 1 : nullptr;
    }
    // Gives up this string's share of its block `stringData`, and is empty then.
    void ReleaseStringData(chStringData* stringData);

    // As printf, see chFormat.h. Arguments may be parts of this text. Always 1.
    int Format(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    // `args` points to a va_list.
    int FormatV(const CHAR* fmt, void* args);

    // Removes `count` bytes from `index` on, and all of a letter that is hit in part.
    void RemoveAt(int index, int count);
    // The letters that lie wholly in the `count` bytes from `start` on, -1 for all from there.
    chReferenceStringT MidLetters(int start, int count) const;
    // The letters that lie wholly in the last `count` bytes.
    chReferenceStringT RightLetters(int count) const;
    // Deletes the last `count` bytes, and all of a letter that is hit in part.
    void ReverseDeleteLetters(int count);

private:
    static CHAR* EmptyText() { return const_cast<CHAR*>(szNULL); }
    // A record that was cleared to zero holds null, which is the empty string too.
    bool HasBlock() const { return m_lpszText != szNULL && m_lpszText != nullptr; }
    bool IsOwnText(const CHAR* text) const;
    void AddReference();
    CHAR* TextAt(long index) const;
    int MeasureLength() const;
    void TakeBlock(chStringData* stringData);
    void Clear();
    void Shorten(int length);
    void AppendText(const CHAR* text, int count);
    void PrintSurveyed(const CHAR* fmt, void* args, const chFormatSurvey& survey, int room);
    chStringData* ShareNoMore(int length);

    CHAR* m_lpszText;
};

template <class CHAR>
inline void chReferenceStringT<CHAR>::AddReference()
{
    if (HasBlock())
        ++GetStringData()->m_nReferenceCount;
}

template <class CHAR>
inline void chReferenceStringT<CHAR>::ReleaseStringData(chStringData* stringData)
{
    if (NUX_ASSERT(stringData->m_nReferenceCount >= 1, "pStringData->m_nReferenceCount >= 1") &&
        --stringData->m_nReferenceCount == 0)
        dynamicAlloc::free(stringData);
    m_lpszText = EmptyText();
}

template <class CHAR>
inline chReferenceStringT<CHAR>& chReferenceStringT<CHAR>::operator=(const chReferenceStringT& other)
{
    if (m_lpszText == other.m_lpszText)
        return *this;
    if (HasBlock())
        ReleaseStringData(GetStringData());
    m_lpszText = other.m_lpszText;
    AddReference();
    return *this;
}

template <class CHAR>
inline chReferenceStringT<CHAR>& chReferenceStringT<CHAR>::operator=(chReferenceStringT&& other) noexcept
{
    if (this == &other)
        return *this;
    if (HasBlock())
        ReleaseStringData(GetStringData());
    m_lpszText = other.m_lpszText;
    other.m_lpszText = EmptyText();
    return *this;
}

template <class CHAR>
inline int chReferenceStringT<CHAR>::GetLength() const
{
    if (!HasBlock())
        return 0;
    const int length = GetStringData()->m_nDataLength;
    return length >= 0 ? length : MeasureLength();
}

extern template class chReferenceStringT<char>;

// A text known when the program is built, with its length.
template <class CHAR>
class chConstTextT
{
public:
    constexpr chConstTextT(const CHAR* text)
        : m_lpszText(text ? text : szNULL),
          m_nLength(static_cast<int>(__builtin_strlen(text ? text : szNULL)))
    {
    }
    constexpr const CHAR* GetText() const { return m_lpszText; }
    constexpr int GetLength() const { return m_nLength; }

private:
    const CHAR* m_lpszText;
    int m_nLength;
};

using String = chReferenceStringT<char>;

// printf into a new string.
NUX_API String fmtString(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

NUX_API String operator+(const String& left, const String& right);
NUX_API String operator+(const String& left, const char* right);
NUX_API String operator+(const char* left, const String& right);
// Not a text and a letter, but a pointer moved by the letter's code.
String operator+(const String& left, char right) = delete;
String operator+(char left, const String& right) = delete;

NUX_API bool operator==(const String& left, const String& right);
NUX_API bool operator==(const String& left, const char* right);
inline bool operator==(const char* left, const String& right)
{
    return right == left;
}
inline bool operator!=(const String& left, const String& right)
{
    return !(left == right);
}
inline bool operator!=(const String& left, const char* right)
{
    return !(left == right);
}
inline bool operator!=(const char* left, const String& right)
{
    return !(right == left);
}
// By the bytes of the text.
NUX_API bool operator>(const String& left, const String& right);
inline bool operator<(const String& left, const String& right)
{
    return right > left;
}
bool operator>=(const String& left, const String& right) = delete;
bool operator<=(const String& left, const String& right) = delete;

// A decimal number as at the beginning of the text, 0 without one; cut to the range of an int.
NUX_API const String& operator>>(const String& text, int& number);
NUX_API const String& operator>>(const String& text, String& copy);

// Reads up to the next `token` into `phrase` and moves `cursor` behind it. 0 while a phrase was found,
// which may be empty; 1 at the end of the text, with `phrase` as it was.
NUX_API int nuxPeekPhraseByCharToken(const char*& cursor, String& phrase, char token);

NUX_API bool stringSame(const String& text, const chConstTextT<char>& other);

} // namespace NUX_StringHelper

using chString = NUX_StringHelper::chReferenceStringT<char>;
using NUX_StringHelper::chConstTextT;
using NUX_StringHelper::fmtString;
using NUX_StringHelper::nuxPeekPhraseByCharToken;
using NUX_StringHelper::stringSame;

static_assert(sizeof(chString) == sizeof(char*), "a string is one pointer");
