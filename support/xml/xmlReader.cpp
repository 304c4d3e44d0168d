#include "support/xml/xmlReader.h"

#include "support/xml/xmlChars.h"

#include <algorithm>

namespace {

const size_t ENTITY_LIMIT = 4096;             // letters that one entity may stand for
const size_t PRODUCED_FREE = 4 * 1024 * 1024; // bytes of text that any document may give
const size_t PRODUCED_FACTOR = 4;             // and for each byte of its own
const size_t ATTRIBUTE_COST = 16;             // bytes that an attribute counts, beside its value
const size_t ATTRIBUTE_LIMIT = 4096;          // of one element
const size_t SHORTEST_ATTRIBUTE = 5;          // bytes
const char ROOT_START[] = "<hx-document>";
const char ROOT_END[] = "</hx-document>";

const char NUL_ERROR[] = "There is a NUL in the text.";

// What an open element has among its children.
enum { MARK_TEXT = 1, MARK_OTHER = 2, MARK_BLANK = 4 };

const size_t MOST_BYTES = 3;         // of UTF-8 for one unit of UTF-16
const size_t ROOM_LIMIT = 16 * 1024; // a larger text is measured before it is stored

// Writes UTF-8 to out, which has room for MOST_BYTES a unit, and returns its length.
size_t encode(QStringView text, char* out)
{
    const char16_t* from = text.utf16();
    const char16_t* const end = from + text.size();
    char* to = out;
    while (from != end && *from < 0x80)
        *to++ = char(*from++);
    for (; from != end; ++from) {
        char32_t code = *from;
        if (QChar::isHighSurrogate(code) && from + 1 != end && QChar::isLowSurrogate(from[1]))
            code = QChar::surrogateToUcs4(char16_t(code), *++from);
        else if (QChar::isSurrogate(code))
            code = QChar::ReplacementCharacter;
        if (code < 0x80) {
            *to++ = char(code);
            continue;
        }
        if (code < 0x800) {
            *to++ = char(0xc0 | (code >> 6));
        } else {
            if (code < 0x10000) {
                *to++ = char(0xe0 | (code >> 12));
            } else {
                *to++ = char(0xf0 | (code >> 18));
                *to++ = char(0x80 | ((code >> 12) & 0x3f));
            }
            *to++ = char(0x80 | ((code >> 6) & 0x3f));
        }
        *to++ = char(0x80 | (code & 0x3f));
    }
    return size_t(to - out);
}

void appendEncoded(std::string& out, QStringView text)
{
    const size_t before = out.size();
    out.resize(before + MOST_BYTES * size_t(text.size()));
    out.resize(before + encode(text, &out[before]));
}

qsizetype startOfText(const QByteArray& text)
{
    return text.startsWith("\xef\xbb\xbf") ? 3 : 0;
}

// Not UTF-16 or wider.
bool isByteText(const QByteArray& text)
{
    const QByteArray start = text.mid(startOfText(text), 2);
    return start.size() == 2 && start.indexOf('\0') < 0 && (unsigned char)start[0] < 0xfe;
}

// Behind the declaration, and the byte order mark before it.
qsizetype endOfDeclaration(const QByteArray& text)
{
    const qsizetype start = startOfText(text);
    if (qstrncmp(text.constData() + start, "<?xml", 5) != 0)
        return start;
    const qsizetype end = text.indexOf("?>", start);
    return end < 0 ? start : end + 2;
}

bool isUtf8Text(const QByteArray& text)
{
    const QByteArray declaration = text.left(endOfDeclaration(text)).toLower();
    return isByteText(text) && (!declaration.contains("encoding") || declaration.contains("utf-8"));
}

// Counts the attributes of the tag whose name begins at start.
size_t countAttributes(std::string_view text, size_t start)
{
    size_t count = 0;
    size_t at = start < text.size() && (text[start] == '!' || text[start] == '?') ? text.npos : start;
    while ((at = text.find_first_of("\"'<>", at)) != text.npos && text[at] != '<' && text[at] != '>') {
        const size_t end = text.find(text[at], at + 1);
        if (end == text.npos)
            return count;
        ++count;
        at = end + 1;
    }
    return count;
}

// The token reader compares each attribute of an element with all others, which takes hours where
// there are a million.
bool hasTooManyAttributes(std::string_view text)
{
    size_t tag = text.find('<');
    while (tag != text.npos) {
        const size_t next = text.find('<', tag + 1);
        const size_t length = (next == text.npos ? text.size() : next) - tag;
        if (length > ATTRIBUTE_LIMIT * SHORTEST_ATTRIBUTE && countAttributes(text, tag + 1) > ATTRIBUTE_LIMIT)
            return true;
        tag = next;
    }
    return false;
}

// Each "&" may be a reference to an entity, and all of them together have to stay within bounds.
int entityLimit(std::string_view text, size_t budget)
{
    const size_t references = size_t(std::count(text.begin(), text.end(), '&'));
    return int(std::min(ENTITY_LIMIT, budget / (references + 1)));
}

} // namespace

xmlReader::xmlReader(xmlDocument& document, const char* text, size_t size)
    : m_document(document), m_storage(*document.m_pStorage),
      m_text(QByteArray::fromRawData(text, qsizetype(size))), m_pOpen(&document)
{
}

int xmlReader::Parse()
{
    if (hasTooManyAttributes(std::string_view(m_text.constData(), size_t(m_text.size())))) {
        m_document.SetError("An element has too many attributes.", 1, 0);
        return 0;
    }
    // The token reader takes a NUL for a blank in some places.
    const qsizetype nul = isByteText(m_text) ? m_text.indexOf('\0') : -1;
    if (nul >= 0)
        return ReadUpTo(nul, NUL_ERROR);
    if (ReadAll(m_text))
        return 1;
    if (HasMoreElements())
        return ReadInRoot();
    const qsizetype broken = m_document.GetFirstChild() ? -1 : FindBrokenLetter();
    return broken < 0 ? 0 : ReadUpTo(broken, "The text is not UTF-8.");
}

// Some of the phone's files have several elements at document level, which the token reader takes for
// an error.
int xmlReader::ReadInRoot()
{
    const QByteArray whole = WithOneRoot();
    StartAgain();
    m_bInRoot = true;
    return ReadAll(whole);
}

// The token reader gives nothing at all of a text with one letter that is not UTF-8.
qsizetype xmlReader::FindBrokenLetter() const
{
    const std::string_view text(m_text.constData(), size_t(m_text.size()));
    const qsizetype good = qsizetype(xmlValidLength(text));
    return good < m_text.size() && isUtf8Text(m_text) ? good : -1;
}

int xmlReader::ReadUpTo(qsizetype end, const char* error)
{
    StartAgain();
    if (ReadAll(m_text.left(end)) || !m_pOwnError)
        m_pOwnError = error;
    NoteError();
    return 0;
}

void xmlReader::StartAgain()
{
    m_document.ClearDocument();
    m_document.SetError("", 0, 0);
    m_nProduced = 0;
    m_pOwnError = nullptr;
}

size_t xmlReader::Budget() const
{
    return PRODUCED_FREE + PRODUCED_FACTOR * size_t(m_text.size());
}

bool xmlReader::ReadAll(const QByteArray& text)
{
    m_tokens.clear();
    m_tokens.setNamespaceProcessing(false);
    m_tokens.setEntityExpansionLimit(
        entityLimit(std::string_view(text.constData(), size_t(text.size())), Budget()));
    m_tokens.addData(text);
    m_pOpen = &m_document;
    m_nDepth = 0;
    bool good = true;
    while (good && !m_tokens.atEnd())
        good = ReadToken(m_tokens.readNext());
    FlushText();
    CloseOpenElements();
    if (good && !m_tokens.hasError() && !m_pOwnError)
        return true;
    NoteError();
    return false;
}

bool xmlReader::ReadToken(QXmlStreamReader::TokenType token)
{
    switch (token) {
    case QXmlStreamReader::StartElement:
        StartElement();
        break;
    case QXmlStreamReader::EndElement:
        EndElement();
        break;
    case QXmlStreamReader::Characters:
        TakeText();
        break;
    case QXmlStreamReader::Comment:
        TakeNode(xmlTypeComment, QStringView(), m_tokens.text());
        break;
    case QXmlStreamReader::ProcessingInstruction:
        TakeNode(xmlTypeInstruction, m_tokens.processingInstructionTarget(),
                 m_tokens.processingInstructionData());
        break;
    case QXmlStreamReader::DTD:
        TakeNode(xmlTypeDocType, QStringView(), m_tokens.text().trimmed());
        break;
    case QXmlStreamReader::EntityReference:
        TakeNode(xmlTypeEntity, m_tokens.name(), QStringView());
        break;
    case QXmlStreamReader::StartDocument:
        m_document.m_bStandalone = m_tokens.isStandaloneDocument();
        break;
    default:
        break;
    }
    return Within(m_nProduced <= Budget(), "The entities stand for too much text.");
}

bool xmlReader::Within(bool limit, const char* error)
{
    if (!limit && !m_pOwnError)
        m_pOwnError = error;
    return !m_pOwnError;
}

void xmlReader::StartElement()
{
    FlushText();
    if (!Within(m_nDepth < XML_DEPTH_LIMIT + (m_bInRoot ? 1 : 0), "The elements are nested too deeply."))
        return;
    ++m_nDepth;
    if (m_bInRoot && m_nDepth == 1)
        return;
    xmlElement* element = m_storage.NewElement(StoreName(m_tokens.qualifiedName()));
    AddAttributes(element);
    m_pOpen->m_nMarks |= MARK_OTHER;
    m_pOpen->AppendChild(element);
    m_pOpen = element;
}

void xmlReader::AddAttributes(xmlElement* element)
{
    const QXmlStreamAttributes attributes = m_tokens.attributes();
    for (const QXmlStreamAttribute& from : attributes) {
        xmlAttribute* attribute = m_storage.NewAttribute(element, StoreName(from.qualifiedName()));
        xmlStorage::SetStored(*attribute, Store(from.value()));
        element->AppendAttribute(attribute);
        m_nProduced += ATTRIBUTE_COST;
    }
}

void xmlReader::EndElement()
{
    FlushText();
    --m_nDepth;
    if (m_pOpen == &m_document)
        return;
    DropBlanks(m_pOpen);
    m_pOpen = m_pOpen->m_pParent;
}

void xmlReader::TakeText()
{
    const xmlType type = m_tokens.isCDATA() ? xmlTypeData : xmlTypeText;
    if (type != m_ePending)
        FlushText();
    m_ePending = type;
    appendEncoded(m_pending, m_tokens.text());
    Within(m_nProduced + m_pending.size() <= Budget(), "The entities stand for too much text.");
}

void xmlReader::FlushText()
{
    const xmlType type = m_ePending;
    if (type == xmlTypeNone)
        return;
    m_ePending = xmlTypeNone;
    const bool blank = type == xmlTypeText && xmlIsBlankText(m_pending);
    const bool outside = m_pOpen == &m_document;
    if (!outside || !blank)
        Within(!outside, "There is text outside of the elements.");
    if (!outside) {
        m_nProduced += m_pending.size();
        m_pOpen->m_nMarks |= blank ? MARK_BLANK : type == xmlTypeText ? MARK_TEXT : MARK_OTHER;
        xmlTextNode* node = m_storage.NewTextNode(type);
        if (blank) {
            xmlStorage::SetStored(node->m_value, m_storage.Intern(m_pending));
        } else {
            char* place = m_storage.ReserveText(m_pending.size());
            m_pending.copy(place, m_pending.size());
            xmlStorage::SetStored(node->m_value, m_storage.KeepText(m_pending.size()));
        }
        m_pOpen->AppendChild(node);
    }
    m_pending.clear();
}

void xmlReader::TakeNode(xmlType type, QStringView name, QStringView text)
{
    FlushText();
    m_pOpen->m_nMarks |= type == xmlTypeEntity ? MARK_TEXT : MARK_OTHER;
    xmlTextNode* node = m_storage.NewTextNode(type);
    m_storage.SetName(node, StoreName(name));
    xmlStorage::SetStored(node->m_value, Store(text));
    m_pOpen->AppendChild(node);
}

// Blank text means something where it stands alone, beside other text or between two data sections, but
// not between elements.
void xmlReader::DropBlanks(xmlBaseNode* element) const
{
    const int marks = element->m_nMarks;
    if (!(marks & MARK_BLANK) || !(marks & MARK_OTHER) || (marks & MARK_TEXT))
        return;
    xmlBaseNode* node = element->m_pFirst;
    while (node) {
        xmlBaseNode* next = node->m_pNext;
        if (node->m_eType == xmlTypeText && !static_cast<xmlTextNode*>(node)->SeparatesData())
            element->RemoveChild(node);
        node = next;
    }
}

void xmlReader::CloseOpenElements()
{
    for (; m_pOpen != &m_document; m_pOpen = m_pOpen->m_pParent)
        DropBlanks(m_pOpen);
}

void xmlReader::NoteError()
{
    const std::string text = m_pOwnError ? m_pOwnError : m_tokens.errorString().toStdString();
    const int line = int(m_tokens.lineNumber());
    const int column = int(m_tokens.columnNumber());
    m_document.SetError(text.c_str(), line, line == m_nRootLine ? column - m_nRootColumns : column);
}

bool xmlReader::HasMoreElements() const
{
    if (m_pOwnError || m_tokens.error() != QXmlStreamReader::NotWellFormedError || m_nDepth != 0)
        return false;
    const xmlBaseNode* node = m_document.GetFirstChild();
    while (node && node->GetType() != xmlTypeDocType)
        node = node->GetNext();
    return !node && m_document.GetRootElement() && isByteText(m_text);
}

QByteArray xmlReader::WithOneRoot()
{
    const qsizetype start = endOfDeclaration(m_text);
    m_nRootLine = 1 + int(m_text.left(start).count('\n'));
    m_nRootColumns = int(sizeof(ROOT_START) - 1);
    return m_text.left(start) + ROOT_START + m_text.mid(start) + ROOT_END;
}

std::string_view xmlReader::Store(QStringView text)
{
    const size_t room = MOST_BYTES * size_t(text.size());
    const bool hasNul = text.contains(QChar(u'\0'));
    if (room > ROOM_LIMIT || hasNul) {
        m_scratch.clear();
        appendEncoded(m_scratch, text);
        if (!Within(!hasNul, NUL_ERROR))
            m_scratch = xmlCleanText(m_scratch);
        char* place = m_storage.ReserveText(m_scratch.size());
        m_scratch.copy(place, m_scratch.size());
        m_nProduced += m_scratch.size();
        return m_storage.KeepText(m_scratch.size());
    }
    const size_t size = encode(text, m_storage.ReserveText(room));
    m_nProduced += size;
    return m_storage.KeepText(size);
}

std::string_view xmlReader::StoreName(QStringView name)
{
    m_scratch.clear();
    appendEncoded(m_scratch, name);
    if (!Within(m_scratch.find('\0') == std::string::npos, NUL_ERROR))
        m_scratch = xmlRepairName(m_scratch);
    return m_storage.Intern(m_scratch);
}
