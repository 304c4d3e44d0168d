#pragma once
// Lists that the phone reads from XML once and keeps. User-interface thread.
#include "support/container/chList.h"
#include "support/host/api.h"
#include "support/text/chString.h"

struct tagRingFile
{
    chString strName; // visible name
    chString strPath; // device path
};

class HX_HOST_API qMyXmlCache
{
public:
    // A path that is there already gets the new name.
    void addRingFileData(const char* name, const char* path);
    void removeRingFileData(const char* name, const char* path);
    // The ring tones of the media table and those added since, in that order.
    const chObjList_dynamic<tagRingFile, 16>& ringFiles();

private:
    void Load();
    chObjList_dynamic<tagRingFile, 16> m_lstRing;
    bool m_bLoaded = false;
};

HX_HOST_API qMyXmlCache* getMyXmlCache();
