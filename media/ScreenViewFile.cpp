#include "media/ScreenViewFile.h"
#include "frame/shippedTable.h"
#include "support/file/findFile.h"
#include "support/host/storage.h"
#include "support/xml/xmlFile.h"
#include <cstdlib>

namespace {

const char* const kTable = "/phone/resource/screenview.xml";

int32_t numberOf(xmlElement* element, const char* attribute)
{
    return element ? int32_t(strtol(element->GetAttributeValue(attribute), nullptr, 10)) : 0;
}

void mountPaths(STORAGE_TYPE type, chStringArray& paths)
{
    chObjArray<tagStorageInfo, true, 4> storages;
    device_GetStorageArray(storages);
    for (const tagStorageInfo& storage : storages) {
        if (storage.nType == type)
            paths.Append(storage.strPath);
    }
}

void findFiles(const chString& folder, const tagFileRule& rule, ScreenViewFile::FileList& list)
{
    nuxFindFile(folder, rule.strFilter, list, rule.bSubDir);
}

} // namespace

bool ScreenViewFile::GetImageFileList(FileList& list)
{
    return GetFileListByType(list, "ImageView");
}

bool ScreenViewFile::GetVideoFileList(FileList& list)
{
    return GetFileListByType(list, "VideoView");
}

bool ScreenViewFile::GetFileListByType(FileList& list, const char* type)
{
    if (!parseFileToStruct(kTable, type))
        return false;
    chStringArray disks;
    chStringArray cards;
    mountPaths(STORAGE_USB, disks);
    mountPaths(STORAGE_SD, cards);
    for (const tagStorage& storage : m_viewFile.listStorage) {
        if (storage.strType == "sdCard")
            AddFileListByStorage(cards, storage, list);
        else if (storage.strType == "uDisk")
            AddFileListByStorage(disks, storage, list);
        else if (storage.strType == "phone")
            AddFileList(storage, list);
    }
    return true;
}

// Siblings are taken whatever their names are: files of older phones have devices under other names.
bool ScreenViewFile::parseFileToStruct(const char* file, const char* type)
{
    m_viewFile = tagViewFile();
    xmlFile document;
    xmlElement* view = shippedTableLoad(document, file) ? xmlFindElementFromRoot(&document, type) : nullptr;
    if (!view)
        return false;
    m_viewFile.nInterval = numberOf(xmlFindElementFromRoot(view, "time", "timeout"), "interval");
    xmlElement* device = xmlFindElementFromRoot(view, "storage", "device");
    for (; device; device = xmlGetNextElement(device)) {
        tagStorage storage;
        parseDevice(device, storage);
        m_viewFile.listStorage.push_back(storage);
    }
    return true;
}

void ScreenViewFile::parseDevice(xmlElement* device, tagStorage& storage)
{
    storage.strType = device->GetAttributeValue("type").GetString();
    xmlElement* item = xmlFindElementFromRoot(device, "file", "item");
    for (; item; item = xmlGetNextElement(item)) {
        tagFileRule rule;
        rule.bSubDir = numberOf(item, "bSubDir");
        rule.strPath = item->GetAttributeValue("path").GetString();
        rule.strFilter = item->GetAttributeValue("filter").GetString();
        storage.listFile.push_back(rule);
    }
}

void ScreenViewFile::AddFileList(const tagStorage& storage, FileList& list)
{
    for (const tagFileRule& rule : storage.listFile)
        findFiles(rule.strPath, rule, list);
}

void ScreenViewFile::AddFileListByStorage(const chStringArray& mounts, const tagStorage& storage,
                                          FileList& list)
{
    for (const chString& mount : mounts) {
        for (const tagFileRule& rule : storage.listFile)
            findFiles(mount + rule.strPath, rule, list);
    }
}
