#pragma once
// A constant text handed to a call: a pointer and a length, nothing is copied. It lives as long as the
// text it was made of.
#include "support/text/chString.h"
#include "support/xml/phraseStringA.h"
#include <string.h>

class phraseConstTextA
{
public:
    phraseConstTextA() = default;
    phraseConstTextA(const char* text) : m_pText(text ? text : ""), m_nLength(int(strlen(m_pText))) {}
    phraseConstTextA(const char* text, int length) : m_pText(text ? text : ""), m_nLength(text ? length : 0)
    {
    }
    phraseConstTextA(const chString& text) : m_pText(text.GetText()), m_nLength(int(strlen(m_pText))) {}
    phraseConstTextA(const phraseStringA& text) : m_pText(text.GetText()), m_nLength(text.GetLength()) {}

    // Never null; not always terminated, GetLength() tells where it ends.
    const char* GetText() const { return m_pText; }
    int GetLength() const { return m_nLength; } // bytes
    bool IsEmpty() const { return m_nLength == 0; }
    bool Same(const char* text, int length) const
    {
        return length == m_nLength && memcmp(text, m_pText, size_t(length)) == 0;
    }

private:
    const char* m_pText = "";
    int m_nLength = 0;
};
