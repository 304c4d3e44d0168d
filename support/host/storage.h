#pragma once
// Removable storage and space. User-interface thread unless stated.
#include "support/container/chArray.h"
#include "support/host/api.h"
#include "support/host/message.h"
#include "support/text/chString.h"

enum STORAGE_TYPE { STORAGE_ANY = 0, STORAGE_USB = 1, STORAGE_SD = 2 };

struct tagStorageInfo
{
    int nType = STORAGE_ANY;
    chString strPath; // mount path, a device path below "/storage"
    chString strName; // what a person calls it
};

HX_HOST_API int device_GetStorageCount(STORAGE_TYPE type);
HX_HOST_API void device_GetStorageArray(chObjArray<tagStorageInfo, true, 4>& storages);
// DEVICE_MSG_EVENT goes to the processer when the storage at or below path comes, changes or goes.
HX_HOST_API void device_RegisterNotify(chMsgProcesser* processer, const char* path);
HX_HOST_API void device_UnRegisterNotify(chMsgProcesser* processer, const char* path);

// Which reserve a file is measured against: that of the media library, of a removable disk, of signage.
enum COUNT_ENOUTH_SPACE_INDEX { SPACE_MEDIA = 0, SPACE_STORAGE = 1, SPACE_NDECK = 2 };
// Any thread. Bytes free for files at path (a device path); -1 when it cannot be told.
HX_HOST_API long long getFreeSpace(const char* path);
// Bytes that stay free whatever is stored at path under that index. A removable disk never has to keep
// more free than its own bookkeeping.
HX_HOST_API long long PathReservedSpace(const char* path, COUNT_ENOUTH_SPACE_INDEX index);
// Any thread. 1 when the file source fits into directory with the reserve left free; 0 also when there is no
// source.
HX_HOST_API int IsEnoughSpace(const char* source, const char* directory, COUNT_ENOUTH_SPACE_INDEX index);
