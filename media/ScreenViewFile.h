#pragma once
// Which files a show plays: the rules of "/phone/resource/screenview.xml" over the phone and its storages.
// User-interface thread.
#include "media/storageTools.h"
#include "support/container/chList.h"
#include "support/text/chString.h"
#include <cstdint>

class xmlElement;

struct tagFileRule
{
    int32_t bSubDir = 0; // non-zero: the folders below too
    chString strPath;    // of a storage: below its mount path
    chString strFilter;  // as nuxFindFile takes it
};

struct tagStorage
{
    chString strType; // "phone", "sdCard" or "uDisk"
    chObjList_dynamic<tagFileRule, 16> listFile;
};

struct tagViewFile
{
    int32_t nInterval = 0; // as the file says; shows have a pace of their own
    chObjList_dynamic<tagStorage, 16> listStorage;
};

class ScreenViewFile
{
public:
    using FileList = chObjList_dynamic<chString, 16>;

    // Append the device paths. False when the table or its section is missing; no file at all is no error.
    bool GetImageFileList(FileList& list);
    bool GetVideoFileList(FileList& list);
    bool GetFileListByType(FileList& list, const char* type);

    // Replaces the rules by those of one section.
    bool parseFileToStruct(const char* file, const char* type);
    const tagViewFile& GetViewFile() const { return m_viewFile; }

private:
    static void parseDevice(xmlElement* device, tagStorage& storage);
    static void AddFileList(const tagStorage& storage, FileList& list);
    static void AddFileListByStorage(const chStringArray& mounts, const tagStorage& storage, FileList& list);

    tagViewFile m_viewFile;
};
