#pragma once
// A node with attributes.
#include "support/xml/xmlBaseNode.h"

// One attribute. It ends with its node or when it is removed.
class NUX_API xmlAttribute : public phraseStringA
{
public:
    using phraseStringA::operator=;
    const char* GetName() const { return m_pName; }
    int GetNameLength() const { return m_nNameLength; }     // bytes
    const xmlAttribute* GetNext() const { return m_pNext; } // in document order

private:
    friend class xmlAttributeNode;
    friend class xmlReader;
    friend class xmlStorage;
    friend class xmlWriter;

    // True while the document's own declarations give this value and it need not be written.
    bool IsDeclared() const { return m_bDeclared && IsStored(); }
    // How the value is spelled in the document, where that says more than the value; otherwise null.
    const char* GetSpelling() const { return IsStored() ? m_pSpelling : nullptr; }

    const char* m_pName = "";
    int m_nNameLength = 0;
    bool m_bDeclared = false;
    const char* m_pSpelling = nullptr;
    xmlAttribute* m_pNext = nullptr;
};

class NUX_API xmlAttributeNode : public xmlBaseNode
{
public:
    // The value, or null when there is no such attribute.
    phraseStringA* FindAttributeValue(const phraseConstTextA& name) const;
    // The value. That of an absent attribute is null and empty; assigning to it makes the attribute.
    phraseStringA& GetAttributeValue(const phraseConstTextA& name);
    void SetAttributeValue(const phraseConstTextA& name, const phraseConstTextA& value);
    int RemoveAttribute(const phraseConstTextA& name);
    const xmlAttribute* GetFirstAttribute() const { return m_pFirstAttribute; }

protected:
    friend class phraseStringA;
    friend class xmlReader;
    friend class xmlStorage;
    friend class xmlWriter;

    using xmlBaseNode::xmlBaseNode;
    ~xmlAttributeNode() = default;
    void AppendAttribute(xmlAttribute* attribute);
    void AttributeAssigned(phraseStringA* value);

    xmlAttribute* m_pFirstAttribute = nullptr;
    xmlAttribute* m_pLastAttribute = nullptr;
    xmlAttribute* m_pAsked = nullptr; // asked for, but absent
};
