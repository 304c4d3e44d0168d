#pragma once
// Builds a document from its text. Inside this folder only.
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlEntities.h"
#include "support/xml/xmlStorage.h"

#include <expat.h>
#include <string>
#include <string_view>
#include <vector>

class xmlReader
{
public:
    // The text has to stay until the end of Parse. document is empty.
    xmlReader(xmlDocument& document, std::string_view bytes);
    // 0 at the first error; what came before it is in the document, and the document knows the place.
    int Parse();

private:
    static void OnStartElement(void* reader, const char* name, const char** attributes);
    static void OnEndElement(void* reader, const char* name);
    static void OnText(void* reader, const char* text, int length);
    static void OnStartData(void* reader);
    static void OnEndData(void* reader);
    static void OnComment(void* reader, const char* text);
    static void OnInstruction(void* reader, const char* target, const char* text);
    static void OnDeclaration(void* reader, const char* version, const char* encoding, int standalone);
    static void OnStartDocType(void* reader, const char* name, const char* system, const char* outside,
                               int hasSubset);
    static void OnEndDocType(void* reader);
    static void OnEntity(void* reader, const char* name, int parameter, const char* text, int length,
                         const char* base, const char* system, const char* outside, const char* notation);
    static void OnAttributeList(void* reader, const char* element, const char* attribute, const char* type,
                                const char* value, int required);
    static void OnOther(void* reader, const char* text, int length);

    bool ReadWhole(bool plain);
    bool ReadInRoot(size_t start);
    XML_Parser NewParser(const char* encoding);
    XML_Status Feed(std::string_view text, bool last) const;
    bool Finish(XML_Status status);

    void StartElement(const char* name, const char** attributes);
    void EndElement();
    void AddAttributes(xmlElement* element, const char** attributes);
    void Append(xmlBaseNode* node, int mark);
    void KeepSpellings(xmlElement* element);
    void TakeText(std::string_view text);
    void TakeNode(xmlType type, std::string_view name, std::string_view text);
    void FlushText();
    void PlaceBlanks(xmlBaseNode* element);
    void CloseOpenElements();

    bool InContent() const { return m_pOpen != &m_document; }
    size_t Place() const;
    std::string_view Token() const;
    bool StandsInText() const;
    bool CheckBudget();
    bool Within(bool limit, const char* error);
    void Stop(const char* error, size_t place);
    void NoteParserError();
    void NoteError(const char* error, size_t place);

    std::string_view Store(std::string_view text);

    // Blank text of an open element.
    struct Blank
    {
        xmlBaseNode* parent;
        xmlBaseNode* before; // the node that it follows, or null
        std::string_view text;
    };

    xmlDocument& m_document;
    xmlStorage& m_storage;
    std::string_view m_bytes;
    std::string_view m_text; // the same in UTF-8
    XML_Parser m_parser = nullptr;
    long long m_nShift = 0; // from a place that the parser tells to that in the text
    xmlBaseNode* m_pOpen;   // the innermost open element, or the document
    int m_nDepth = 0;       // of open elements
    int m_nOutside = 0;     // of these, those that are not the document's
    bool m_bInData = false;
    bool m_bInDocType = false;
    bool m_bHasDocType = false;
    bool m_bMoreToCome = false; // the parser does not have all of the text yet
    size_t m_nSeen = 0;         // where the last token before the document type ended
    size_t m_nDocTypeStart = 0;
    size_t m_nProduced = 0; // bytes of text so far
    size_t m_nNodes = 0;    // and nodes with attributes
    int m_nDeclared = 0;    // attributes in lists
    xmlEntities m_entities;
    const char* m_pOwnError = nullptr;
    size_t m_nOwnPlace = 0;
    std::vector<Blank> m_blanks;
    std::string m_pending; // text that may go on with the next token
    xmlType m_ePending = xmlTypeNone;
};
