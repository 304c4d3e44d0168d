#pragma once
// Builds a document from its text. Inside this folder only.
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlStorage.h"

#include <QXmlStreamReader>
#include <string>

class xmlReader
{
public:
    // The text has to stay until the end of Parse. document is empty.
    xmlReader(xmlDocument& document, const char* text, size_t size);
    // 0 at the first error; what came before it is in the document, and the document knows the place.
    int Parse();

private:
    bool ReadAll(const QByteArray& text);
    int ReadInRoot();
    qsizetype FindBrokenLetter() const;
    int ReadUpTo(qsizetype end, const char* error);
    void StartAgain();
    size_t Budget() const;
    bool ReadToken(QXmlStreamReader::TokenType token);
    void StartElement();
    void EndElement();
    void AddAttributes(xmlElement* element);
    void TakeText();
    void TakeNode(xmlType type, QStringView name, QStringView text);
    void TakeDeclaration();
    void FlushText();
    void DropBlanks(xmlBaseNode* element) const;
    void CloseOpenElements();
    bool Within(bool limit, const char* error);
    void NoteError();

    bool HasMoreElements() const;
    QByteArray WithOneRoot();

    std::string_view Store(QStringView text);
    std::string_view StoreName(QStringView name);

    xmlDocument& m_document;
    xmlStorage& m_storage;
    QXmlStreamReader m_tokens;
    QByteArray m_text;
    xmlBaseNode* m_pOpen;   // the innermost open element, or the document
    int m_nDepth = 0;       // of open elements
    bool m_bInRoot = false; // reading inside of an element that is not the document's
    int m_nRootLine = 0;    // where that was put in, and how many letters it takes there
    int m_nRootColumns = 0;
    size_t m_nProduced = 0; // bytes of text so far
    const char* m_pOwnError = nullptr;
    std::string m_pending; // text that may go on with the next token
    xmlType m_ePending = xmlTypeNone;
    std::string m_scratch;
};
