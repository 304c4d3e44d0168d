#include "media/mediaTable.h"
#include "frame/configFiles.h"
#include "frame/xmlUnderRoot.h"
#include "support/file/findFile.h"
#include "support/file/path.h"

namespace {

void appendFolder(xmlElement* folder, const chString& filter, std::vector<tagMediaFile>& files)
{
    const chString shortName = folder->GetAttributeValue("shortname").GetString();
    chObjList_dynamic<chString, 16> found;
    nuxFindFile(folder->GetAttributeValue("path"), filter, found, 0);
    tagMediaFile file;
    file.nShortName = shortName.GetLength();
    file.bReadOnly = folder->GetAttributeValue("bReadOnly") == "1";
    for (const chString& path : found) {
        if (files.size() >= MEDIA_FILE_LIMIT)
            return;
        file.strName = shortName + pathGetFileNamePos(path);
        file.strPath = path;
        files.push_back(file);
    }
}

} // namespace

bool mediaFilesRead(const char* type, std::vector<tagMediaFile>& files)
{
    if (!type || !*type)
        return false;
    const xmlFile table(MEDIA_FILE_XML);
    xmlElement* section = xmlFindUnderRoot(table, type);
    if (!section)
        return false;
    const chString filter = section->GetAttributeValue("filter").GetString();
    xmlElement* list = section->FindChildElement("filelist");
    xmlElement* folder = list ? list->GetFirstChildElement() : nullptr;
    for (int count = 0; folder && count < MEDIA_FOLDER_LIMIT; folder = xmlGetNextElement(folder), ++count)
        appendFolder(folder, filter, files);
    return true;
}
