#include "support/xml/xmlWriter.h"

#include "support/xml/xmlChars.h"
#include "support/xml/xmlTextNode.h"

namespace {

const size_t INDENT = 4;
const size_t DEEPEST_INDENT = 32; // levels; the lines of deeper ones begin there too
const char DATA_START[] = "<![CDATA[";
const char DATA_END[] = "]]>";

std::string_view viewOf(const phraseStringA& value)
{
    return std::string_view(value.GetText(), size_t(value.GetLength()));
}

const phraseStringA& valueOf(const xmlBaseNode* node)
{
    return static_cast<const xmlTextNode*>(node)->GetValue();
}

} // namespace

const std::string& xmlWriter::Write()
{
    m_bDeclarations = HasItsDocType();
    WriteAll(true);
    // The blanks before deep lines are what a document can do without.
    if (m_text.size() > size_t(XML_TEXT_LIMIT))
        WriteAll(false);
    return m_text;
}

bool xmlWriter::HasItsDocType() const
{
    const xmlBaseNode* node = m_document.GetFirstChild();
    while (node && node->GetType() != xmlTypeDocType)
        node = node->GetNext();
    return node && node->m_nMarks == xmlBaseNode::MARK_READ;
}

// Stops where lines make it too large.
void xmlWriter::WriteAll(bool inLines)
{
    m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"";
    if (m_document.m_nStandalone >= 0)
        m_text += m_document.m_nStandalone ? " standalone=\"yes\"" : " standalone=\"no\"";
    m_text += "?>";
    m_levels.assign(1, Level{true, true});
    m_nIndent = inLines ? INDENT : 0;
    const xmlBaseNode* node = m_document.GetFirstChild();
    while (node && !(inLines && m_text.size() > size_t(XML_TEXT_LIMIT))) {
        const xmlBaseNode* next = WriteNode(node);
        const xmlBaseNode* parent = next ? nullptr : node->GetParent();
        while (!next && parent != &m_document) {
            next = CloseLevel(parent);
            parent = parent->GetParent();
        }
        node = next;
    }
    m_text += '\n';
}

bool xmlWriter::CanBeLoaded() const
{
    int elements = 0;
    bool docType = false;
    for (const xmlBaseNode* node = m_document.GetFirstChild(); node; node = node->GetNext()) {
        elements += node->GetType() == xmlTypeElement;
        docType = docType || node->GetType() == xmlTypeDocType;
    }
    // A document type belongs to one element.
    return elements > 0 && (elements == 1 || !docType) && m_nDeepest <= XML_DEPTH_LIMIT &&
           m_text.size() <= size_t(XML_TEXT_LIMIT);
}

xmlWriter::CONTENT xmlWriter::ContentOf(const xmlBaseNode* parent, bool& dropBlanks)
{
    bool text = false, blank = false, data = false, other = false;
    for (const xmlBaseNode* node = parent->GetFirstChild(); node; node = node->GetNext()) {
        const xmlType type = node->GetType();
        if (type != xmlTypeText) {
            text = text || type == xmlTypeEntity;
            data = data || type == xmlTypeData;
            other = true;
        } else if (!valueOf(node).IsEmpty()) {
            const bool isBlank = xmlIsBlankText(viewOf(valueOf(node)));
            blank = blank || isBlank;
            text = text || !isBlank;
        }
    }
    // As the reader does it.
    dropBlanks = other && !text;
    if (!text && !blank && !other)
        return CONTENT_NONE;
    return text || data || !other ? CONTENT_MIXED : CONTENT_LINES;
}

void xmlWriter::StartLine()
{
    m_text += '\n';
    m_text.append(m_nIndent * std::min(m_levels.size() - 1, DEEPEST_INDENT), ' ');
}

// Returns the node to write next: a child or a sibling, or null at the end of a level.
const xmlBaseNode* xmlWriter::WriteNode(const xmlBaseNode* node)
{
    const Level level = m_levels.back();
    const bool droppable = level.dropBlanks && node->GetType() == xmlTypeText &&
                           !static_cast<const xmlTextNode*>(node)->SeparatesData();
    if (droppable && xmlIsBlankText(viewOf(valueOf(node))))
        return node->GetNext();
    if (level.lines)
        StartLine();
    if (node->GetType() != xmlTypeElement) {
        WriteLeaf(node);
        return node->GetNext();
    }
    const xmlElement* element = static_cast<const xmlElement*>(node);
    m_nDeepest = std::max(m_nDeepest, m_levels.size());
    WriteTag(element);
    bool dropBlanks = false;
    const CONTENT content = ContentOf(element, dropBlanks);
    if (content == CONTENT_NONE) {
        m_text += "/>";
        return node->GetNext();
    }
    m_text += '>';
    m_levels.push_back(Level{level.lines && content == CONTENT_LINES, dropBlanks});
    return node->GetFirstChild();
}

const xmlBaseNode* xmlWriter::CloseLevel(const xmlBaseNode* parent)
{
    const bool lines = m_levels.back().lines;
    m_levels.pop_back();
    if (lines)
        StartLine();
    m_text += "</";
    m_text += parent->GetName();
    m_text += '>';
    return parent->GetNext();
}

void xmlWriter::WriteTag(const xmlElement* element)
{
    m_text += '<';
    m_text += element->GetName();
    for (const xmlAttribute* attribute = element->GetFirstAttribute(); attribute;
         attribute = attribute->GetNext())
        if (!m_bDeclarations || !attribute->IsDeclared())
            WriteAttribute(attribute);
}

void xmlWriter::WriteAttribute(const xmlAttribute* attribute)
{
    const char* spelling = m_bDeclarations ? attribute->GetSpelling() : nullptr;
    const char quote = spelling && strchr(spelling, '"') ? '\'' : '"';
    m_text += ' ';
    m_text += attribute->GetName();
    m_text += '=';
    m_text += quote;
    if (spelling)
        m_text += spelling;
    else
        xmlAppendAttribute(m_text, viewOf(*attribute));
    m_text += quote;
}

void xmlWriter::WriteLeaf(const xmlBaseNode* node)
{
    const phraseStringA& value = valueOf(node);
    switch (node->GetType()) {
    case xmlTypeText:
        xmlAppendText(m_text, viewOf(value));
        break;
    case xmlTypeData:
        WriteData(value);
        break;
    case xmlTypeComment:
        m_text.append("<!--").append(value.GetText()).append("-->");
        break;
    case xmlTypeInstruction:
        m_text.append("<?").append(node->GetName());
        m_text.append(value.IsEmpty() ? "" : " ").append(value.GetText()).append("?>");
        break;
    case xmlTypeEntity:
        m_text.append(m_bDeclarations ? "&" : "&amp;").append(node->GetName()).append(";");
        break;
    default:
        m_text += value.GetText();
        break;
    }
}

// The end mark inside the data is spread over two sections.
void xmlWriter::WriteData(const phraseStringA& text)
{
    std::string_view rest = viewOf(text);
    m_text += DATA_START;
    for (size_t end = rest.find(DATA_END); end != rest.npos; end = rest.find(DATA_END)) {
        m_text.append(rest.substr(0, end + 2)).append(DATA_END).append(DATA_START);
        rest.remove_prefix(end + 2);
    }
    m_text.append(rest).append(DATA_END);
}
