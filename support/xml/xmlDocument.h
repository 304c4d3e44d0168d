#pragma once
// A document in memory. It holds everything it was parsed from, in order: elements, attributes, text,
// data, comments, instructions, also those that nobody asked about. Blank text between elements is not
// kept. Several elements may stand at document level, as in some of the phone's files.
#include "support/xml/xmlBaseNode.h"

enum {
    XML_DEPTH_LIMIT = 512,             // levels of elements
    XML_TEXT_LIMIT = 60 * 1024 * 1024, // bytes of one document, so that it fits in one string
};

class NUX_API xmlDocument : public xmlBaseNode
{
public:
    xmlDocument();
    ~xmlDocument();

    // Replaces the content. length -1: up to the terminator. The encoding is UTF-8 unless the text says
    // otherwise. 0 when it is not well-formed, deeper or larger than the limits: what was read up to
    // there stays, and GetError...() tell where that is. A document type is kept as it stands, with what it
    // declares; nothing that it refers to is fetched, and such references stay what they are. In the value
    // of an attribute they read as they are spelled.
    int ParseDocument(const char* text, int length = -1);
    // The whole document in UTF-8, with its declaration. Elements that hold no text are indented. Empty
    // when it is more than a string can hold.
    chString ExportToText() const;

    void ClearDocument();
    xmlElement* GetRootElement() const { return GetFirstChildElement(); }
    // Of the last parse; line 0 and no text after a good one. Lines and columns count from 1, a column is a
    // letter.
    int GetErrorLine() const { return m_nErrorLine; }
    int GetErrorColumn() const { return m_nErrorColumn; }
    const char* GetErrorText() const { return m_strError.GetText(); }

protected:
    friend class xmlReader;
    friend class xmlWriter;
    friend NUX_API xmlElement* xmlParseElementFromText(const char* text);
    friend NUX_API void xmlFreeElement(xmlElement* element);

    int ParseBytes(const char* data, size_t size);
    void SetError(const char* text, int line, int column);

    int m_nStandalone = -1;   // as declared: 1 yes, 0 no, -1 not said
    bool m_bFragment = false; // made for one parsed element, ends with it
    int m_nErrorLine = 0;
    int m_nErrorColumn = 0;
    chString m_strError;
};
