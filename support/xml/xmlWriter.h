#pragma once
// Writes a document as UTF-8 text. Inside this folder only.
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlElement.h"

#include <string>
#include <vector>

class xmlWriter
{
public:
    explicit xmlWriter(const xmlDocument& document) : m_document(document) {}

    const std::string& Write();
    // False when what was written would not be read back: no element, too deep, too large.
    bool CanBeLoaded() const;

private:
    // How the children of an element are written.
    enum CONTENT {
        CONTENT_NONE,
        CONTENT_LINES, // each on a line of its own, blank text left out
        CONTENT_MIXED  // as they stand
    };
    struct Level
    {
        bool lines;      // its children are on lines of their own
        bool dropBlanks; // blank text between them is left out
    };

    void WriteAll(bool inLines);
    bool HasItsDocType() const;
    static CONTENT ContentOf(const xmlBaseNode* parent, bool& dropBlanks);
    void StartLine();
    const xmlBaseNode* WriteNode(const xmlBaseNode* node);
    const xmlBaseNode* CloseLevel(const xmlBaseNode* parent);
    void WriteTag(const xmlElement* element);
    void WriteAttribute(const xmlAttribute* attribute);
    void WriteLeaf(const xmlBaseNode* node);
    void WriteData(const phraseStringA& text);

    const xmlDocument& m_document;
    std::string m_text;
    std::vector<Level> m_levels;
    size_t m_nIndent = 0; // blanks for each level
    size_t m_nDeepest = 0;
    bool m_bDeclarations = false; // those that the document was read with are written too
};
