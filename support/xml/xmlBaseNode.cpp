#include "support/xml/xmlBaseNode.h"

#include "support/xml/xmlChars.h"
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlStorage.h"

namespace {

std::string_view viewOf(const phraseConstTextA& text)
{
    return std::string_view(text.GetText(), size_t(text.GetLength()));
}

// "xml" itself is the declaration's.
std::string instructionTarget(const phraseConstTextA& name)
{
    const std::string target = xmlRepairName(viewOf(name));
    return strcasecmp(target.c_str(), "xml") == 0 ? "_" + target : target;
}

bool hasNode(const xmlBaseNode* document, xmlType type)
{
    for (const xmlBaseNode* node = document->GetFirstChild(); node; node = node->GetNext())
        if (node->GetType() == type)
            return true;
    return false;
}

} // namespace

const char* xmlBaseNode::GetText() const
{
    const bool holdsText = m_eType != xmlTypeElement && m_eType != xmlTypeDocument;
    return holdsText ? static_cast<const xmlTextNode*>(this)->GetValue().GetText() : "";
}

xmlDocument* xmlBaseNode::GetDocument() const
{
    return m_pStorage->GetDocument();
}

xmlElement* xmlBaseNode::ToElement()
{
    return m_eType == xmlTypeElement ? static_cast<xmlElement*>(this) : nullptr;
}

xmlElement* xmlBaseNode::GetFirstChildElement() const
{
    xmlBaseNode* node = m_pFirst;
    while (node && node->m_eType != xmlTypeElement)
        node = node->m_pNext;
    return static_cast<xmlElement*>(node);
}

xmlElement* xmlBaseNode::FindChildElement(const phraseConstTextA& name) const
{
    for (xmlBaseNode* node = m_pFirst; node; node = node->m_pNext)
        if (node->m_eType == xmlTypeElement && name.Same(node->m_pName, node->m_nNameLength))
            return static_cast<xmlElement*>(node);
    return nullptr;
}

xmlElement* xmlBaseNode::FindChildElementByAttribute(const phraseConstTextA& attribute,
                                                     const phraseConstTextA& value) const
{
    for (xmlBaseNode* node = m_pFirst; node; node = node->m_pNext) {
        xmlElement* element = node->ToElement();
        const phraseStringA* found = element ? element->FindAttributeValue(attribute) : nullptr;
        if (found && value.Same(found->GetText(), found->GetLength()))
            return element;
    }
    return nullptr;
}

bool xmlBaseNode::HoldsChildren() const
{
    return m_eType == xmlTypeElement || m_eType == xmlTypeDocument;
}

xmlElement* xmlBaseNode::AddChildElement(const phraseConstTextA& name)
{
    xmlBaseNode* node = AddChildXMLNode(xmlTypeElement, name);
    return node ? node->ToElement() : nullptr;
}

// What may stand where: text only in elements, one document type before the first element.
bool xmlBaseNode::MayHold(xmlType type) const
{
    switch (type) {
    case xmlTypeElement:
    case xmlTypeComment:
    case xmlTypeInstruction:
        return HoldsChildren();
    case xmlTypeText:
    case xmlTypeData:
        return m_eType == xmlTypeElement;
    case xmlTypeDocType:
        return m_eType == xmlTypeDocument && !GetFirstChildElement() && !hasNode(this, xmlTypeDocType);
    default:
        return false;
    }
}

xmlBaseNode* xmlBaseNode::AddChildXMLNode(xmlType type, const phraseConstTextA& name)
{
    if (!MayHold(type))
        return nullptr;
    xmlBaseNode* node;
    if (type == xmlTypeElement) {
        node = m_pStorage->NewElement(xmlRepairName(viewOf(name)));
    } else {
        xmlTextNode* text = m_pStorage->NewTextNode(type);
        if (type == xmlTypeInstruction)
            m_pStorage->SetName(text, instructionTarget(name));
        else if (type == xmlTypeDocType)
            text->m_value = ("<!DOCTYPE " + xmlRepairName(viewOf(name)) + ">").c_str();
        else
            text->SetText(name.GetText(), name.GetLength());
        node = text;
    }
    AppendChild(node);
    return node;
}

// Content only, no children. An entity reference may mean nothing in another document, so it becomes
// the text that stands for it.
xmlBaseNode* xmlBaseNode::CopyOf(const xmlBaseNode* node)
{
    if (node->m_eType == xmlTypeElement) {
        const xmlElement* from = static_cast<const xmlElement*>(node);
        xmlElement* element =
            m_pStorage->NewElement(std::string_view(from->m_pName, size_t(from->m_nNameLength)));
        for (const xmlAttribute* attribute = from->GetFirstAttribute(); attribute;
             attribute = attribute->GetNext())
            element->GetAttributeValue(attribute->GetName()) = *attribute;
        return element;
    }
    const xmlTextNode* from = static_cast<const xmlTextNode*>(node);
    const bool entity = node->m_eType == xmlTypeEntity;
    xmlTextNode* text = m_pStorage->NewTextNode(entity ? xmlTypeText : node->GetType());
    m_pStorage->SetName(text, entity ? "" : node->m_pName);
    text->m_value = entity ? fmtString("&%s;", node->m_pName) : from->m_value.GetString();
    return text;
}

xmlBaseNode* xmlBaseNode::AddChildCopy(const xmlBaseNode* node)
{
    if (!node || !MayHold(node->m_eType == xmlTypeEntity ? xmlTypeText : node->GetType()))
        return nullptr;
    // Put in its place only when complete: node may be this one, or above it.
    xmlBaseNode* copy = CopyOf(node);
    xmlBaseNode* target = copy;
    for (const xmlBaseNode* from = node;;) {
        if (from->m_pFirst) {
            from = from->m_pFirst;
        } else {
            for (; from != node && !from->m_pNext; from = from->m_pParent)
                target = target->m_pParent;
            if (from == node)
                break;
            from = from->m_pNext;
            target = target->m_pParent;
        }
        xmlBaseNode* child = CopyOf(from);
        target->AppendChild(child);
        target = child;
    }
    AppendChild(copy);
    return copy;
}

void xmlBaseNode::InsertChild(xmlBaseNode* child, xmlBaseNode* before)
{
    xmlBaseNode* next = before ? before->m_pNext : m_pFirst;
    child->m_pParent = this;
    child->m_pPrev = before;
    child->m_pNext = next;
    (before ? before->m_pNext : m_pFirst) = child;
    (next ? next->m_pPrev : m_pLast) = child;
}

void xmlBaseNode::Unlink()
{
    (m_pPrev ? m_pPrev->m_pNext : m_pParent->m_pFirst) = m_pNext;
    (m_pNext ? m_pNext->m_pPrev : m_pParent->m_pLast) = m_pPrev;
    m_pParent = m_pPrev = m_pNext = nullptr;
}

void xmlBaseNode::ClearChildren()
{
    m_pStorage->FreeChildren(this);
}

int xmlBaseNode::RemoveChild(xmlBaseNode* child)
{
    if (!child || child->m_pParent != this)
        return 0;
    child->Unlink();
    m_pStorage->FreeTree(child);
    return 1;
}
