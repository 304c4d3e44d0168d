#include "support/xml/xmlReader.h"

#include "support/xml/xmlChars.h"
#include "support/xml/xmlDecode.h"

#include <QRandomGenerator>
#include <algorithm>

namespace {

const size_t PRODUCED_FREE = 2 * 1024 * 1024; // bytes of text that any document may give
const size_t PRODUCED_FACTOR = 4;             // and for each byte of its own
const size_t NODES_FREE = 64 * 1024;          // nodes and attributes, beyond those that stand in the text
const size_t NODE_LENGTH = 2;                 // bytes of text to a node, at the least
const int ATTRIBUTE_LIMIT = 4096;             // of one element
const int DECLARED_LIMIT = 8192;              // attributes in lists; the parser compares each with the others
const char DOCTYPE_START[] = "<!DOCTYPE";
const char ROOT_START[] = "<r>";
const char ROOT_END[] = "</r>";

const char TOO_MUCH_ERROR[] = "The entities stand for too much text.";
const char OUTSIDE_ERROR[] = "There is text outside of the elements.";
const char REFERENCE_ERROR[] = "An attribute in an entity refers to an entity that is not declared here.";

xmlReader& readerOf(void* reader)
{
    return *static_cast<xmlReader*>(reader);
}

// The text ended before its end: what is wrong may be why it ended.
bool isOfTheEnd(XML_Error error)
{
    return error == XML_ERROR_NO_ELEMENTS || error == XML_ERROR_UNCLOSED_TOKEN ||
           error == XML_ERROR_PARTIAL_CHAR || error == XML_ERROR_UNCLOSED_CDATA_SECTION;
}

bool isCutLetter(std::string_view text)
{
    return xmlValidLength(text.substr(0, 4)) == 0;
}

// Both count from 1; a column is a letter.
void lineAndColumn(std::string_view text, int& line, int& column)
{
    size_t start = 0;
    line = 1;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (text[i] != '\n' && (text[i] != '\r' || pair))
            continue;
        ++line;
        start = i + 1;
    }
    const std::string_view last = text.substr(start);
    column =
        1 + int(std::count_if(last.begin(), last.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
}

} // namespace

xmlReader::xmlReader(xmlDocument& document, std::string_view bytes)
    : m_document(document), m_storage(*document.m_pStorage), m_bytes(bytes), m_pOpen(&document)
{
}

int xmlReader::Parse()
{
    const size_t limit = size_t(XML_TEXT_LIMIT);
    xmlDecoded decoded;
    xmlDecode(m_bytes.substr(0, limit), decoded);
    if (m_bytes.size() > limit && !decoded.error)
        decoded.error = "The document is too large.";
    m_text = decoded.text;
    m_storage.ExpectText(m_text.size());
    if (ReadWhole(decoded.plain) && !decoded.error)
        return 1;
    if (decoded.error && (!m_pOwnError || m_nOwnPlace == m_text.size()))
        NoteError(decoded.error, m_text.size());
    return 0;
}

bool xmlReader::ReadWhole(bool plain)
{
    m_parser = NewParser(plain ? "US-ASCII" : "UTF-8");
    const XML_Status status = Feed(m_text, true);
    // Some of the phone's files have several elements at document level, which the parser takes for an error.
    const bool more = status == XML_STATUS_ERROR &&
                      XML_GetErrorCode(m_parser) == XML_ERROR_JUNK_AFTER_DOC_ELEMENT && !m_bHasDocType &&
                      m_text[Place()] == '<';
    if (!more)
        return Finish(status);
    const size_t start = Place();
    XML_ParserFree(m_parser);
    return ReadInRoot(start);
}

// The rest of a document is read as the content of an element that is not its own.
bool xmlReader::ReadInRoot(size_t start)
{
    m_parser = NewParser("UTF-8");
    m_nShift = (long long)start - (long long)strlen(ROOT_START);
    m_nOutside = 1;
    m_bMoreToCome = true;
    XML_Status status = Feed(ROOT_START, false);
    if (status == XML_STATUS_OK)
        status = Feed(m_text.substr(start), false);
    m_bMoreToCome = false;
    if (status == XML_STATUS_OK)
        status = Feed(ROOT_END, true);
    return Finish(status);
}

XML_Parser xmlReader::NewParser(const char* encoding)
{
    XML_Parser parser = XML_ParserCreate(encoding);
    if (!parser)
        throw std::bad_alloc();
    XML_SetUserData(parser, this);
    XML_SetHashSalt(parser, (unsigned long)QRandomGenerator::global()->generate64() | 1);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, PRODUCED_FREE);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, PRODUCED_FACTOR);
    XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
    XML_SetElementHandler(parser, OnStartElement, OnEndElement);
    XML_SetCharacterDataHandler(parser, OnText);
    XML_SetCdataSectionHandler(parser, OnStartData, OnEndData);
    XML_SetCommentHandler(parser, OnComment);
    XML_SetProcessingInstructionHandler(parser, OnInstruction);
    XML_SetXmlDeclHandler(parser, OnDeclaration);
    XML_SetDoctypeDeclHandler(parser, OnStartDocType, OnEndDocType);
    XML_SetEntityDeclHandler(parser, OnEntity);
    XML_SetAttlistDeclHandler(parser, OnAttributeList);
    XML_SetDefaultHandlerExpand(parser, OnOther);
    return parser;
}

// All at once: the parser looks again at a token that comes in pieces, and counts lines between them.
XML_Status xmlReader::Feed(std::string_view text, bool last) const
{
    return XML_Parse(m_parser, text.data(), int(text.size()), last);
}

bool xmlReader::Finish(XML_Status status)
{
    if (status != XML_STATUS_OK && !m_pOwnError)
        NoteParserError();
    XML_ParserFree(m_parser);
    m_parser = nullptr;
    FlushText();
    CloseOpenElements();
    if (m_pOwnError)
        NoteError(m_pOwnError, m_nOwnPlace);
    return !m_pOwnError;
}

// Handlers

void xmlReader::OnStartElement(void* reader, const char* name, const char** attributes)
{
    readerOf(reader).StartElement(name, attributes);
}

void xmlReader::OnEndElement(void* reader, const char*)
{
    readerOf(reader).EndElement();
}

void xmlReader::OnText(void* reader, const char* text, int length)
{
    readerOf(reader).TakeText(std::string_view(text, size_t(length)));
}

void xmlReader::OnStartData(void* reader)
{
    xmlReader& self = readerOf(reader);
    self.m_bInData = true;
    self.TakeText(std::string_view());
}

void xmlReader::OnEndData(void* reader)
{
    readerOf(reader).m_bInData = false;
}

void xmlReader::OnComment(void* reader, const char* text)
{
    readerOf(reader).TakeNode(xmlTypeComment, std::string_view(), text);
}

void xmlReader::OnInstruction(void* reader, const char* target, const char* text)
{
    readerOf(reader).TakeNode(xmlTypeInstruction, target, text);
}

void xmlReader::OnDeclaration(void* reader, const char* version, const char*, int standalone)
{
    xmlReader& self = readerOf(reader);
    self.m_document.m_nStandalone = standalone;
    self.m_nSeen = self.Place() + self.Token().size();
    if (version && strncmp(version, "1.", 2) != 0)
        self.Stop("The version of XML is not known.", self.Place());
}

void xmlReader::OnStartDocType(void* reader, const char*, const char*, const char*, int)
{
    xmlReader& self = readerOf(reader);
    self.m_bInDocType = self.m_bHasDocType = true;
    self.m_nDocTypeStart = self.m_text.find(DOCTYPE_START, self.m_nSeen);
}

// It is kept as it stands.
void xmlReader::OnEndDocType(void* reader)
{
    xmlReader& self = readerOf(reader);
    const size_t start = self.m_nDocTypeStart;
    self.m_bInDocType = false;
    self.TakeNode(xmlTypeDocType, std::string_view(), self.m_text.substr(start, self.Place() + 1 - start));
    self.Within(self.m_entities.KnowsReferencesInTags(), REFERENCE_ERROR);
}

void xmlReader::OnEntity(void* reader, const char* name, int parameter, const char* text, int length,
                         const char*, const char*, const char*, const char*)
{
    xmlReader& self = readerOf(reader);
    const bool taken =
        !text || self.m_entities.Declare(name, std::string_view(text, size_t(length)), parameter != 0);
    self.Within(taken, "Too many entities stand for other entities.");
}

void xmlReader::OnAttributeList(void* reader, const char*, const char*, const char*, const char*, int)
{
    xmlReader& self = readerOf(reader);
    self.Within(++self.m_nDeclared <= DECLARED_LIMIT, "Too many attributes are declared.");
}

// What no other handler takes. In content, that is a reference to what the document does not contain.
void xmlReader::OnOther(void* reader, const char* text, int length)
{
    xmlReader& self = readerOf(reader);
    if (self.InContent() && length > 2 && text[0] == '&')
        self.TakeNode(xmlTypeEntity, std::string_view(text + 1, size_t(length) - 2), std::string_view());
}

// The tree

void xmlReader::StartElement(const char* name, const char** attributes)
{
    FlushText();
    if (!Within(m_nDepth < XML_DEPTH_LIMIT + m_nOutside, "The elements are nested too deeply."))
        return;
    if (++m_nDepth <= m_nOutside)
        return;
    xmlElement* element = m_storage.NewElement(name);
    AddAttributes(element, attributes);
    Append(element, xmlBaseNode::MARK_OTHER);
    m_pOpen = element;
    if (m_bHasDocType && StandsInText() && !m_entities.KnowsReferencesOf(Token()))
        KeepSpellings(element);
}

void xmlReader::AddAttributes(xmlElement* element, const char** attributes)
{
    const int specified = XML_GetSpecifiedAttributeCount(m_parser);
    for (int i = 0; attributes[i]; i += 2) {
        if (!Within(i / 2 < ATTRIBUTE_LIMIT, "An element has too many attributes.") || !CheckBudget())
            return;
        xmlAttribute* attribute = m_storage.NewAttribute(element, m_storage.Intern(attributes[i]));
        xmlStorage::SetStored(*attribute, Store(attributes[i + 1]));
        attribute->m_bDeclared = i >= specified;
        element->AppendAttribute(attribute);
        ++m_nNodes;
    }
}

void xmlReader::Append(xmlBaseNode* node, int mark)
{
    m_pOpen->m_nMarks |= mark;
    m_pOpen->AppendChild(node);
    ++m_nNodes;
    CheckBudget();
}

bool xmlReader::CheckBudget()
{
    const bool nodes = m_nNodes <= NODES_FREE + m_text.size() / NODE_LENGTH;
    const size_t produced = m_nProduced + m_pending.size();
    return Within(nodes && produced <= PRODUCED_FREE + PRODUCED_FACTOR * m_text.size(), TOO_MUCH_ERROR);
}

// The parser leaves out what it does not know, which would be lost.
void xmlReader::KeepSpellings(xmlElement* element)
{
    std::string_view tag = Token();
    for (xmlAttribute* attribute = element->m_pFirstAttribute; attribute && !attribute->m_bDeclared;
         attribute = attribute->m_pNext) {
        const size_t start = tag.find_first_of("\"'");
        const size_t end = tag.find(tag[start], start + 1);
        const std::string_view spelled = tag.substr(start + 1, end - start - 1);
        tag.remove_prefix(end + 1);
        if (m_entities.KnowsReferencesOf(spelled))
            continue;
        std::string value;
        m_entities.AppendValue(value, spelled);
        xmlStorage::SetStored(*attribute, Store(value));
        attribute->m_pSpelling = Store(spelled).data();
    }
}

void xmlReader::EndElement()
{
    FlushText();
    if (!Within(m_nDepth > m_nOutside || !m_bMoreToCome, OUTSIDE_ERROR))
        return;
    --m_nDepth;
    if (!InContent())
        return;
    PlaceBlanks(m_pOpen);
    m_pOpen = m_pOpen->m_pParent;
}

void xmlReader::TakeText(std::string_view text)
{
    if (!InContent()) {
        Within(!m_bInData && xmlIsBlankText(text) && StandsInText(), OUTSIDE_ERROR);
        return;
    }
    const xmlType type = m_bInData ? xmlTypeData : xmlTypeText;
    if (type != m_ePending)
        FlushText();
    m_ePending = type;
    m_pending += text;
    CheckBudget();
}

void xmlReader::FlushText()
{
    const xmlType type = m_ePending;
    if (type == xmlTypeNone)
        return;
    m_ePending = xmlTypeNone;
    if (type == xmlTypeText && xmlIsBlankText(m_pending)) {
        m_blanks.push_back(Blank{m_pOpen, m_pOpen->m_pLast, m_storage.Intern(m_pending)});
        m_pending.clear();
        return;
    }
    xmlTextNode* node = m_storage.NewTextNode(type);
    xmlStorage::SetStored(node->m_value, Store(m_pending));
    m_pending.clear();
    Append(node, type == xmlTypeText ? xmlBaseNode::MARK_TEXT : xmlBaseNode::MARK_OTHER);
}

void xmlReader::TakeNode(xmlType type, std::string_view name, std::string_view text)
{
    if (m_bInDocType)
        return;
    FlushText();
    m_nSeen = Place() + Token().size();
    xmlTextNode* node = m_storage.NewTextNode(type);
    if (type == xmlTypeDocType)
        node->m_nMarks = xmlBaseNode::MARK_READ;
    m_storage.SetName(node, name);
    xmlStorage::SetStored(node->m_value, Store(text));
    Append(node, type == xmlTypeEntity ? xmlBaseNode::MARK_TEXT : xmlBaseNode::MARK_OTHER);
}

// Blank text means something where it stands alone, beside other text or between two data sections, but
// not between elements. What an element holds is known at its end.
void xmlReader::PlaceBlanks(xmlBaseNode* element)
{
    const bool all = element->m_nMarks != xmlBaseNode::MARK_OTHER;
    for (; !m_blanks.empty() && m_blanks.back().parent == element; m_blanks.pop_back()) {
        const Blank& blank = m_blanks.back();
        const xmlBaseNode* next = blank.before ? blank.before->m_pNext : element->m_pFirst;
        const bool separates =
            blank.before && next && blank.before->m_eType == xmlTypeData && next->m_eType == xmlTypeData;
        if (!all && !separates)
            continue;
        xmlTextNode* node = m_storage.NewTextNode(xmlTypeText);
        xmlStorage::SetStored(node->m_value, blank.text);
        element->InsertChild(node, blank.before);
        ++m_nNodes;
    }
}

void xmlReader::CloseOpenElements()
{
    for (; m_pOpen != &m_document; m_pOpen = m_pOpen->m_pParent)
        PlaceBlanks(m_pOpen);
}

std::string_view xmlReader::Store(std::string_view text)
{
    char* place = m_storage.ReserveText(text.size());
    text.copy(place, text.size());
    m_nProduced += text.size();
    return m_storage.KeepText(text.size());
}

// Places and errors

// Of what the parser is at, in the text. In an entity, that is the reference to it.
size_t xmlReader::Place() const
{
    const long long index = XML_GetCurrentByteIndex(m_parser);
    const long long place = index < 0 ? (long long)m_text.size() : index + m_nShift;
    return size_t(std::clamp(place, 0ll, (long long)m_text.size()));
}

std::string_view xmlReader::Token() const
{
    return m_text.substr(Place(), size_t(XML_GetCurrentByteCount(m_parser)));
}

// False for what comes out of a reference.
bool xmlReader::StandsInText() const
{
    return Token().substr(0, 1) != "&";
}

bool xmlReader::Within(bool limit, const char* error)
{
    if (!limit)
        Stop(error, Place());
    return !m_pOwnError;
}

void xmlReader::Stop(const char* error, size_t place)
{
    if (m_pOwnError)
        return;
    m_pOwnError = error;
    m_nOwnPlace = place;
    XML_StopParser(m_parser, XML_FALSE);
}

void xmlReader::NoteParserError()
{
    const XML_Error error = XML_GetErrorCode(m_parser);
    const std::string_view rest = m_text.substr(Place());
    m_pOwnError = XML_ErrorString(error);
    m_nOwnPlace = isOfTheEnd(error) ? m_text.size() : Place();
    if (error == XML_ERROR_AMPLIFICATION_LIMIT_BREACH)
        m_pOwnError = TOO_MUCH_ERROR;
    else if (error == XML_ERROR_INVALID_TOKEN && !rest.empty() && rest[0] == '\0')
        m_pOwnError = "There is a NUL in the text.";
    else if ((error == XML_ERROR_INVALID_TOKEN || error == XML_ERROR_PARTIAL_CHAR) && !rest.empty() &&
             isCutLetter(rest))
        m_pOwnError = "The text is not UTF-8.";
}

void xmlReader::NoteError(const char* error, size_t place)
{
    int line, column;
    lineAndColumn(m_text.substr(0, place), line, column);
    m_document.SetError(error, line, column);
}
