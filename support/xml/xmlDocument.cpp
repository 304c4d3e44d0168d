#include "support/xml/xmlDocument.h"

#include "support/xml/xmlReader.h"
#include "support/xml/xmlStorage.h"
#include "support/xml/xmlWriter.h"

xmlDocument::xmlDocument() : xmlBaseNode(xmlTypeDocument, new xmlStorage(this)) {}

xmlDocument::~xmlDocument()
{
    ClearDocument();
    delete m_pStorage;
}

void xmlDocument::ClearDocument()
{
    if (m_pStorage->HasOwnTexts())
        ClearChildren();
    m_pFirst = m_pLast = nullptr;
    m_pStorage->Reset();
    m_nStandalone = -1;
}

int xmlDocument::ParseDocument(const char* text, int length)
{
    if (!text || length < -1) {
        ClearDocument();
        SetError("There is no text.", 1, 1);
        return 0;
    }
    // The text may be one of this document's own.
    const std::string copy(text, length >= 0 ? size_t(length) : strlen(text));
    return ParseBytes(copy.data(), copy.size());
}

int xmlDocument::ParseBytes(const char* data, size_t size)
{
    ClearDocument();
    SetError("", 0, 0);
    return xmlReader(*this, std::string_view(data, size)).Parse();
}

chString xmlDocument::ExportToText() const
{
    xmlWriter writer(*this);
    const std::string& text = writer.Write();
    return chString(text.data(), int(text.size()));
}

void xmlDocument::SetError(const char* text, int line, int column)
{
    m_strError = text;
    m_nErrorLine = line;
    m_nErrorColumn = column;
}
