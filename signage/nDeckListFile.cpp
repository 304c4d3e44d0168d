#include "signage/nDeckListFile.h"
#include "signage/nDeckFileList.h"
#include "signage/nDeckFolder.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/xml/xmlFile.h"

namespace {

// In the order in which they are written.
void writeMedia(xmlElement& element, const _nDeckFileNode& node)
{
    element.SetAttributeValue("type", node.type);
    element.SetAttributeValue("path", node.path);
    element.SetAttributeValue("md5", node.md5);
    element.SetAttributeValue("size", node.size);
}

void writeLayout(xmlElement& element, const _nDeckFileNode& node)
{
    element.SetAttributeValue("type", node.type);
    element.SetAttributeValue("path", node.path);
    element.SetAttributeValue("md5", node.md5);
    element.SetAttributeValue("fromdt", node.fromdt);
    element.SetAttributeValue("todt", node.todt);
    element.SetAttributeValue("eventType", node.eventType);
}

chString attribute(const xmlElement* element, const char* name)
{
    const phraseStringA* value = element->FindAttributeValue(name);
    return value ? value->GetString() : chString();
}

_nDeckFileNode nodeOf(const xmlElement* element)
{
    _nDeckFileNode node;
    node.type = attribute(element, "type");
    node.path = attribute(element, "path");
    node.md5 = attribute(element, "md5");
    node.size = attribute(element, "size");
    node.fromdt = attribute(element, "fromdt");
    node.todt = attribute(element, "todt");
    node.eventType = attribute(element, "eventType");
    return node;
}

} // namespace

std::string nDeckListText(const nDeckNodeList& list)
{
    xmlDocument document;
    xmlElement* files = document.AddChildElement("files");
    for (const _nDeckFileNode& node : list) {
        xmlElement* element = files->AddChildElement("file");
        if (node.type == "media")
            writeMedia(*element, node);
        else if (node.type == "layout")
            writeLayout(*element, node);
    }
    const chString text = document.ExportToText();
    return std::string(text.GetText(), static_cast<size_t>(text.GetLength()));
}

bool nDeckListRead(nDeckNodeList& list)
{
    std::string text;
    xmlDocument document;
    const FILE_READ read = fileRead(NDECK_LIST, text, NDECK_LIST_LIMIT);
    if (read == FILE_READ_MISSING)
        return false;
    chString kept;
    const bool good = document.ParseDocument(text.data(), static_cast<int>(text.size())) != 0;
    // One that only could not be read may be sound.
    if (!good && read != FILE_READ_FAILED)
        fileCopyAside(NDECK_LIST, kept);
    const xmlElement* files = xmlFindElementFromRoot(&document, "files");
    xmlElement* element = files ? files->GetFirstChildElement() : nullptr;
    for (; element && list.size() < nDeckFileList::RECORD_LIMIT; element = xmlGetNextElement(element)) {
        if (strcmp(element->GetName(), "file") == 0)
            list.push_back(nodeOf(element));
    }
    return true;
}
