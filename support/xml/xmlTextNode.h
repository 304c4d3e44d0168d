#pragma once
#include "support/xml/xmlBaseNode.h"

// A node that is content: text, data, comment, instruction, document type.
class NUX_API xmlTextNode : public xmlBaseNode
{
public:
    const phraseStringA& GetValue() const { return m_value; }
    // Text that would end the node early is spelled differently: "--" in a comment and "?>" in an
    // instruction get a blank inside. A document type or an entity reference stays as it is.
    void SetText(const char* text, int length);

private:
    friend class xmlBaseNode;
    friend class xmlReader;
    friend class xmlStorage;
    friend class xmlWriter;
    xmlTextNode(xmlType type, xmlStorage* storage);
    // Blank text here is content even where other blank text is not.
    bool SeparatesData() const;
    ~xmlTextNode() = default;

    phraseStringA m_value;
};
