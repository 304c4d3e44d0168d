#include "host/desktop/directoryEntry.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <cstring>

namespace {

using Entries = QList<tagDirectoryEntry>;

bool isNamed(const xmlElement* element, const char* name)
{
    return strcmp(element->GetName(), name) == 0;
}

QString contentOf(const xmlElement* element)
{
    chString text;
    PeekValue(element, text);
    return toQString(text).simplified();
}

void append(Entries& entries, const QString& name, const QString& number)
{
    if (!number.isEmpty() && entries.size() < DIRECTORY_ENTRIES_MAX)
        entries.append({name.isEmpty() ? number : name, number});
}

void appendEntry(const xmlElement* entry, Entries& entries)
{
    const xmlElement* nameElement = entry->FindChildElement("Name");
    const QString name = nameElement ? contentOf(nameElement) : QString();
    for (xmlElement* child = entry->GetFirstChildElement(); child; child = xmlGetNextElement(child)) {
        if (isNamed(child, "Telephone"))
            append(entries, name, contentOf(child));
    }
}

void appendItem(xmlElement* item, Entries& entries)
{
    append(entries, toQString(item->GetAttributeValue("name").GetString()).simplified(),
           toQString(item->GetAttributeValue("number").GetString()).simplified());
}

// The next element in document order.
xmlElement* nextInDocument(xmlElement* element)
{
    if (xmlElement* child = element->GetFirstChildElement())
        return child;
    for (xmlBaseNode* node = element; node; node = node->GetParent()) {
        if (xmlElement* next = xmlGetNextElement(node))
            return next;
    }
    return nullptr;
}

} // namespace

bool directoryEntriesRead(const QByteArray& text, QList<tagDirectoryEntry>& entries)
{
    xmlDocument document;
    if (!document.ParseDocument(text.constData(), int(text.size())))
        return false;
    for (xmlElement* element = document.GetRootElement(); element && entries.size() < DIRECTORY_ENTRIES_MAX;
         element = nextInDocument(element)) {
        if (isNamed(element, "DirectoryEntry"))
            appendEntry(element, entries);
        else if (isNamed(element, "item"))
            appendItem(element, entries);
    }
    return true;
}
