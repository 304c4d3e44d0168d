#pragma once
// Disks that a person plugs into a phone that is none: folders of this machine stand for them. Only with a
// device root. User-interface thread.
#include "support/host/api.h"
#include "support/host/storage.h"
#include <QString>

// dir: an existing folder of this machine. The device path of the new storage ("/storage/uDisk1"); that of
// the storage it is already; empty when it cannot be.
HX_HOST_API QString storageWorldPlug(STORAGE_TYPE type, const QString& dir);
// 1 when a storage that dir stands for was removed.
HX_HOST_API int storageWorldUnplug(const QString& dir);
