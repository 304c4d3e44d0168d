#include "support/xml/xmlTextNode.h"

#include "support/xml/xmlChars.h"

namespace {

void replaceAll(std::string& text, const char* from, const char* to)
{
    const size_t size = strlen(from);
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + 1))
        text.replace(at, size, to);
}

// A data section cannot spell a carriage return, and would be read with plain line ends.
std::string asData(std::string text)
{
    replaceAll(text, "\r\n", "\n");
    replaceAll(text, "\r", "\n");
    return text;
}

std::string asComment(std::string text)
{
    text = asData(text);
    replaceAll(text, "--", "- -");
    if (!text.empty() && text.back() == '-')
        text += ' ';
    return text;
}

// What stands behind the target; blanks before it would not be read back.
std::string asInstruction(std::string text)
{
    text = asData(text);
    text.erase(0, text.find_first_not_of(" \t\n"));
    replaceAll(text, "?>", "? >");
    return text;
}

std::string spelledFor(xmlType type, const std::string& text)
{
    switch (type) {
    case xmlTypeData:
        return asData(text);
    case xmlTypeComment:
        return asComment(text);
    case xmlTypeInstruction:
        return asInstruction(text);
    default:
        return text;
    }
}

} // namespace

xmlTextNode::xmlTextNode(xmlType type, xmlStorage* storage) : xmlBaseNode(type, storage)
{
    m_value.m_pHolder = this;
}

void xmlTextNode::SetText(const char* text, int length)
{
    if (GetType() == xmlTypeDocType || GetType() == xmlTypeEntity)
        return;
    const std::string given(text ? text : "", text && length > 0 ? size_t(length) : 0);
    const std::string clean = xmlCleanText(given);
    const std::string spelled = spelledFor(GetType(), clean);
    m_value.SetText(spelled.data(), int(spelled.size()));
}

bool xmlTextNode::SeparatesData() const
{
    return m_pPrev && m_pNext && m_pPrev->GetType() == xmlTypeData && m_pNext->GetType() == xmlTypeData;
}
