// Documents from files, memory cards and servers. Whatever could be read of one must be written as a
// document that reads as the same again, and whatever is assigned to a document must be readable.
#include "support/xml/xmlFile.h"
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void expectReadBack(const xmlDocument& document)
{
    const chString text = document.ExportToText();
    xmlDocument again;
    if (!again.ParseDocument(text, text.GetLength()) || again.ExportToText() != text)
        abort();
}

void parse(const char* data, int size)
{
    xmlDocument document;
    const int parsed = document.ParseDocument(data, size);
    if (parsed == (document.GetErrorLine() != 0))
        abort();
    if (document.GetRootElement())
        expectReadBack(document);
    else if (parsed)
        abort();
}

void expectContent(const xmlDocument& document, const phraseStringA& value)
{
    xmlDocument again;
    if (!again.ParseDocument(document.ExportToText()) ||
        again.GetRootElement()->GetAttributeValue("v") != value ||
        xmlGetTextContent(again.GetRootElement(), "t") != value.GetString())
        abort();
}

void assign(const chString& text)
{
    xmlDocument values;
    xmlElement* root = values.AddChildElement("r");
    root->GetAttributeValue("v") = text;
    SetValue(root->AddChildElement("t"), text);
    expectContent(values, root->GetAttributeValue("v"));

    xmlDocument document;
    document.AddChildXMLNode(xmlTypeComment, text);
    document.AddChildXMLNode(xmlTypeDocType, text);
    document.AddChildXMLNode(xmlTypeInstruction, text);
    xmlElement* element = document.AddChildElement(text);
    element->GetAttributeValue(text) = text;
    element->AddChildElement("d")->AddChildXMLNode(xmlTypeData, text);
    SetValue(element->AddChildXMLNode(xmlTypeInstruction, "i"), text);
    element->AddChildXMLNode(xmlTypeComment, text);
    expectReadBack(document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* bytes = reinterpret_cast<const char*>(data);
    parse(bytes, int(size));
    assign(chString(bytes, int(size)));
    return 0;
}
