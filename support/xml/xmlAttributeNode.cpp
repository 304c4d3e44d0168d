#include "support/xml/xmlAttributeNode.h"

#include "support/xml/xmlChars.h"
#include "support/xml/xmlStorage.h"

namespace {

xmlAttribute* findIn(xmlAttribute* list, const phraseConstTextA& name)
{
    while (list && !name.Same(list->GetName(), list->GetNameLength()))
        list = const_cast<xmlAttribute*>(list->GetNext());
    return list;
}

} // namespace

phraseStringA* xmlAttributeNode::FindAttributeValue(const phraseConstTextA& name) const
{
    return findIn(m_pFirstAttribute, name);
}

phraseStringA& xmlAttributeNode::GetAttributeValue(const phraseConstTextA& name)
{
    xmlAttribute* found = findIn(m_pFirstAttribute, name);
    if (!found)
        found = findIn(m_pAsked, name);
    if (found)
        return *found;
    const std::string_view given(name.GetText(), size_t(name.GetLength()));
    const std::string possible = xmlRepairName(given);
    if (possible != given)
        return GetAttributeValue(phraseConstTextA(possible.data(), int(possible.size())));
    found = m_pStorage->NewAttribute(ToElement(), m_pStorage->Intern(given));
    found->m_pNext = m_pAsked;
    m_pAsked = found;
    return *found;
}

void xmlAttributeNode::SetAttributeValue(const phraseConstTextA& name, const phraseConstTextA& value)
{
    GetAttributeValue(name).SetText(value.GetText(), value.GetLength());
}

int xmlAttributeNode::RemoveAttribute(const phraseConstTextA& name)
{
    xmlAttribute* before = nullptr;
    xmlAttribute* found = m_pFirstAttribute;
    while (found && !name.Same(found->m_pName, found->m_nNameLength)) {
        before = found;
        found = found->m_pNext;
    }
    if (!found)
        return 0;
    (before ? before->m_pNext : m_pFirstAttribute) = found->m_pNext;
    if (found == m_pLastAttribute)
        m_pLastAttribute = before;
    m_pStorage->FreeAttribute(found);
    return 1;
}

void xmlAttributeNode::AppendAttribute(xmlAttribute* attribute)
{
    attribute->m_pNext = nullptr;
    (m_pLastAttribute ? m_pLastAttribute->m_pNext : m_pFirstAttribute) = attribute;
    m_pLastAttribute = attribute;
}

// An attribute that was only asked for joins the others, behind them.
void xmlAttributeNode::AttributeAssigned(phraseStringA* value)
{
    xmlAttribute* attribute = static_cast<xmlAttribute*>(value);
    xmlAttribute** link = &m_pAsked;
    while (*link && *link != attribute)
        link = &(*link)->m_pNext;
    if (*link)
        *link = attribute->m_pNext;
    AppendAttribute(attribute);
}
