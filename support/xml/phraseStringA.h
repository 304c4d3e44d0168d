#pragma once
// The value of an attribute or of a text node. Valid as long as its node; its text until the next
// assignment. A value that was asked for but is not in the document is "null": it reads as the empty
// text, and joins the document when something is assigned to it.
// Assigned text is UTF-8. Characters that XML cannot hold are left out, bytes that are no UTF-8 become
// U+FFFD, so that a saved document can be loaded again.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"
#include <string.h>

class xmlBaseNode;

class NUX_API phraseStringA
{
public:
    phraseStringA() = default;
    phraseStringA(const phraseStringA& other);
    phraseStringA(const char* text) { *this = text; }
    phraseStringA(const chString& text) { *this = text; }
    phraseStringA& operator=(const phraseStringA& other);
    phraseStringA& operator=(const chString& text);
    phraseStringA& operator=(const char* text); // null is the empty text
    void SetText(const char* text, int length);

    const char* GetText() const { return m_pText; } // never null
    operator const char*() const { return m_pText; }
    explicit operator bool() const = delete; // IsEmpty() or IsNull()
    chString GetString() const;
    int GetLength() const { return m_nLength; } // bytes
    bool IsEmpty() const { return m_nLength == 0; }
    bool IsNull() const { return m_bNull; }

    // A null pointer is the empty text.
    bool operator==(const char* text) const { return strcmp(m_pText, text ? text : "") == 0; }
    bool operator!=(const char* text) const { return !(*this == text); }
    bool operator==(const chString& text) const { return *this == text.GetText(); }
    bool operator!=(const chString& text) const { return !(*this == text); }
    bool operator==(const phraseStringA& other) const { return *this == other.m_pText; }
    bool operator!=(const phraseStringA& other) const { return !(*this == other); }
    friend bool operator==(const char* text, const phraseStringA& value) { return value == text; }
    friend bool operator!=(const char* text, const phraseStringA& value) { return value != text; }

private:
    friend class xmlStorage;
    friend class xmlAttribute;
    friend class xmlTextNode;

    void Take(const chString& text);
    // Not assigned since it was read.
    bool IsStored() const { return m_pText != m_strOwned.GetText(); }

    const char* m_pText = "";
    int m_nLength = 0;
    bool m_bNull = true;
    xmlBaseNode* m_pHolder = nullptr; // the node it belongs to
    chString m_strOwned;              // keeps the text once one was assigned
};
