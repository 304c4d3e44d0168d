#include "host/binding/mediaFiles.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/host/text.h"
#include "support/xml/xmlFile.h"
#include <cstring>

namespace {

void addFolder(QList<tagFileOfType>& all, const char* folder, const char* filter, const char* shortname)
{
    chObjList_dynamic<chString, 16> files;
    nuxFindFile(folder, filter, files, 0);
    for (const chString& file : files)
        all.append({toQString(chString(shortname) + pathGetFileNamePos(file)), file});
}

} // namespace

QList<tagFileOfType> mediaFilesOf(const char* table, const char* type)
{
    QList<tagFileOfType> all;
    xmlFile document;
    if (!document.LoadFromFile(table) || !document.GetRootElement())
        return all;
    xmlElement* media = document.GetRootElement()->FindChildElement(type);
    if (!media)
        return all;
    const chString filter = media->GetAttributeValue("filter").GetString();
    xmlElement* folder = xmlFindElementFromRoot(media, "filelist", "item", 0);
    for (; folder; folder = xmlGetNextElement(folder)) {
        if (strcmp(folder->GetName(), "item") == 0)
            addFolder(all, folder->GetAttributeValue("path"), filter, folder->GetAttributeValue("shortname"));
    }
    return all;
}
