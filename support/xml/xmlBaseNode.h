#pragma once
// A node of a document. Nodes belong to their document and end with it, or when they are removed;
// nobody deletes one. A document and its nodes belong to one thread at a time.
#include "support/text/nuxExport.h"
#include "support/xml/phraseConstTextA.h"
#include "support/xml/xmlType.h"
#include <stdint.h>

class xmlAttributeNode;
class xmlDocument;
class xmlElement;
class xmlStorage;

class NUX_API xmlBaseNode
{
public:
    xmlBaseNode(const xmlBaseNode&) = delete;
    xmlBaseNode& operator=(const xmlBaseNode&) = delete;

    xmlType GetType() const { return xmlType(m_eType); }
    // Of an element, an instruction (its target) and an entity reference; otherwise empty.
    const char* GetName() const { return m_pName; }
    int GetNameLength() const { return m_nNameLength; } // bytes
    // Content of a text, data, comment, instruction or document type node; otherwise empty.
    const char* GetText() const;

    xmlBaseNode* GetParent() const { return m_pParent; }
    xmlBaseNode* GetFirstChild() const { return m_pFirst; }
    xmlBaseNode* GetLastChild() const { return m_pLast; }
    xmlBaseNode* GetNext() const { return m_pNext; }
    xmlBaseNode* GetPrev() const { return m_pPrev; }
    xmlDocument* GetDocument() const;
    // This node when it is an element, otherwise null.
    xmlElement* ToElement();
    xmlElement* GetFirstChildElement() const;

    // First direct child element of that name, or null.
    xmlElement* FindChildElement(const phraseConstTextA& name) const;
    // First direct child element whose attribute is there and equals value, or null.
    xmlElement* FindChildElementByAttribute(const phraseConstTextA& attribute,
                                            const phraseConstTextA& value) const;

    // Appends a child. Null only on a node that holds no children (text and the like). What XML does not
    // allow in a name becomes "_".
    xmlElement* AddChildElement(const phraseConstTextA& name);
    // The same for any kind of node: name is the name of an element, an instruction (its target) or a
    // document type, and the content of text, data and comments. Null where the kind cannot stand: text
    // and data outside of an element, a second document type, one behind an element or inside of one.
    xmlBaseNode* AddChildXMLNode(xmlType type, const phraseConstTextA& name);
    // Appends a copy of a node and all below it, from this or another document.
    xmlBaseNode* AddChildCopy(const xmlBaseNode* node);
    void ClearChildren();
    // The child and all below it end. 0 when it is not a child of this node.
    int RemoveChild(xmlBaseNode* child);

protected:
    friend class phraseStringA;
    friend class xmlReader;
    friend class xmlStorage;
    friend class xmlWriter;

    xmlBaseNode(xmlType type, xmlStorage* storage) : m_eType(uint8_t(type)), m_pStorage(storage) {}
    ~xmlBaseNode() = default;
    void AppendChild(xmlBaseNode* child) { InsertChild(child, m_pLast); }
    // Behind the child before, null for the first place.
    void InsertChild(xmlBaseNode* child, xmlBaseNode* before);
    void Unlink();
    bool HoldsChildren() const;
    bool MayHold(xmlType type) const;
    xmlBaseNode* CopyOf(const xmlBaseNode* node);

    uint8_t m_eType;
    // The reader's notes: what an open element has among its children, and that the document was read with
    // this document type.
    enum { MARK_TEXT = 1, MARK_OTHER = 2, MARK_READ = 4 };
    uint8_t m_nMarks = 0;
    int m_nNameLength = 0;
    const char* m_pName = "";
    xmlStorage* m_pStorage;
    xmlBaseNode* m_pParent = nullptr;
    xmlBaseNode* m_pFirst = nullptr;
    xmlBaseNode* m_pLast = nullptr;
    xmlBaseNode* m_pPrev = nullptr;
    xmlBaseNode* m_pNext = nullptr;
};
