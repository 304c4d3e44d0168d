#include "sip/boundedXml.h"
#include <cstring>
#include <expat.h>
#include <memory>

namespace {

struct tagReading
{
    XML_Parser pParser = nullptr;
    tagXmlNode* pRoot = nullptr;
    std::vector<tagXmlNode*> open;
    size_t nNodes = 0;
    bool bRefused = false;

    void refuse()
    {
        bRefused = true;
        XML_StopParser(pParser, XML_FALSE);
    }
};

std::string localName(const char* name)
{
    const char* colon = strrchr(name, ':');
    return colon ? colon + 1 : name;
}

void XMLCALL onStart(void* data, const XML_Char* name, const XML_Char** attributes)
{
    auto& reading = *static_cast<tagReading*>(data);
    if (++reading.nNodes > boundedXml::NODES_MAX || reading.open.size() >= boundedXml::DEPTH_MAX ||
        strlen(name) > boundedXml::TEXT_MAX) {
        reading.refuse();
        return;
    }
    tagXmlNode* node = reading.pRoot;
    if (!reading.open.empty()) {
        reading.open.back()->children.emplace_back();
        node = &reading.open.back()->children.back();
    }
    node->name = localName(name);
    for (; attributes[0]; attributes += 2) {
        if (node->attributes.size() >= boundedXml::ATTRIBUTES_MAX ||
            strlen(attributes[1]) > boundedXml::TEXT_MAX) {
            reading.refuse();
            return;
        }
        node->attributes.emplace_back(localName(attributes[0]), attributes[1]);
    }
    reading.open.push_back(node);
}

// Of an empty element that was refused the end is told all the same.
void XMLCALL onEnd(void* data, const XML_Char*)
{
    auto& reading = *static_cast<tagReading*>(data);
    if (!reading.bRefused)
        reading.open.pop_back();
}

void XMLCALL onText(void* data, const XML_Char* text, int length)
{
    auto& reading = *static_cast<tagReading*>(data);
    std::string& all = reading.open.back()->text;
    if (all.size() + size_t(length) > boundedXml::TEXT_MAX)
        reading.refuse();
    else
        all.append(text, size_t(length));
}

void XMLCALL onDoctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int)
{
    static_cast<tagReading*>(data)->refuse();
}

} // namespace

std::string tagXmlNode::attribute(const char* wanted) const
{
    for (const auto& each : attributes) {
        if (each.first == wanted)
            return each.second;
    }
    return "";
}

const tagXmlNode* tagXmlNode::child(const char* wanted) const
{
    for (const tagXmlNode& each : children) {
        if (each.name == wanted)
            return &each;
    }
    return nullptr;
}

std::string tagXmlNode::childText(const char* wanted) const
{
    const tagXmlNode* found = child(wanted);
    return found ? boundedXml::trimmed(found->text) : "";
}

std::string boundedXml::trimmed(const std::string& text)
{
    const char* blanks = " \t\r\n";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool boundedXml::read(const char* bytes, size_t size, tagXmlNode& root)
{
    root = {};
    if (size > BYTES_MAX)
        return false;
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    if (!parser)
        return false;
    tagReading reading;
    reading.pParser = parser.get();
    reading.pRoot = &root;
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser.get(), onText);
    XML_SetStartDoctypeDeclHandler(parser.get(), onDoctype);
    return XML_Parse(parser.get(), bytes, int(size), XML_TRUE) == XML_STATUS_OK && !reading.bRefused;
}
