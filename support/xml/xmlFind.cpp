#include "support/xml/xmlFind.h"

#include "support/xml/xmlDocument.h"
#include "support/xml/xmlTextNode.h"

namespace NUX_XmlHelper {

const xmlBaseNode* Walk(const xmlBaseNode* node, const phraseConstTextA* names, size_t count)
{
    for (size_t i = 0; node && i < count && !names[i].IsEmpty(); ++i)
        node = node->FindChildElement(names[i]);
    return node;
}

xmlElement* FindFromRoot(const xmlBaseNode* node, const phraseConstTextA* names, size_t count)
{
    if (count == 0 || names[0].IsEmpty())
        return nullptr;
    const xmlBaseNode* found = Walk(node, names, count);
    return found ? const_cast<xmlBaseNode*>(found)->ToElement() : nullptr;
}

chString FirstChildText(const xmlBaseNode* node, xmlType type)
{
    const xmlBaseNode* child = node ? node->GetFirstChild() : nullptr;
    if (!child || child->GetType() != type)
        return chString();
    return static_cast<const xmlTextNode*>(child)->GetValue().GetString();
}

} // namespace NUX_XmlHelper

namespace {

// The node that holds the content value of node, or null.
xmlTextNode* contentOf(const xmlBaseNode* node)
{
    const xmlBaseNode* found = node;
    if (node && node->GetType() == xmlTypeElement) {
        found = node->GetFirstChild();
        while (found && found->GetType() != xmlTypeText && found->GetType() != xmlTypeData)
            found = found->GetNext();
    }
    const bool holds = found && found->GetType() != xmlTypeElement && found->GetType() != xmlTypeDocument &&
                       found->GetType() != xmlTypeEntity;
    return holds ? static_cast<xmlTextNode*>(const_cast<xmlBaseNode*>(found)) : nullptr;
}

// The node after this one in document order, not leaving the tree below top.
const xmlBaseNode* nextBelow(const xmlBaseNode* node, const xmlBaseNode* top)
{
    if (node->GetFirstChild())
        return node->GetFirstChild();
    while (node != top && !node->GetNext())
        node = node->GetParent();
    return node == top ? nullptr : node->GetNext();
}

} // namespace

xmlElement* xmlFindElementByName(const xmlBaseNode* node, const phraseConstTextA& name)
{
    const xmlBaseNode* found = node ? nextBelow(node, node) : nullptr;
    while (found &&
           !(found->GetType() == xmlTypeElement && name.Same(found->GetName(), found->GetNameLength())))
        found = nextBelow(found, node);
    return found ? const_cast<xmlBaseNode*>(found)->ToElement() : nullptr;
}

xmlElement* xmlGetNextElement(const xmlBaseNode* node)
{
    xmlBaseNode* next = node ? node->GetNext() : nullptr;
    while (next && next->GetType() != xmlTypeElement)
        next = next->GetNext();
    return next ? next->ToElement() : nullptr;
}

int PeekValue(const xmlBaseNode* node, chString& value)
{
    const xmlTextNode* content = contentOf(node);
    value = content ? content->GetValue().GetString() : chString();
    return content != nullptr;
}

int SetValue(xmlBaseNode* node, const chString& value)
{
    xmlTextNode* content = contentOf(node);
    if (!content && node)
        content = static_cast<xmlTextNode*>(node->AddChildXMLNode(xmlTypeText, ""));
    if (!content || content->GetType() == xmlTypeDocType)
        return 0;
    content->SetText(value.GetText(), value.GetLength());
    return 1;
}

xmlElement* xmlParseElementFromText(const char* text)
{
    xmlDocument* document = new xmlDocument;
    document->m_bFragment = true;
    xmlElement* element = document->ParseDocument(text) ? document->GetRootElement() : nullptr;
    if (!element)
        delete document;
    return element;
}

void xmlFreeElement(xmlElement* element)
{
    if (!element)
        return;
    xmlDocument* document = element->GetDocument();
    if (document->m_bFragment && element->GetParent() == document)
        delete document;
    else
        element->GetParent()->RemoveChild(element);
}
