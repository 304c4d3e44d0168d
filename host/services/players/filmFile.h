#pragma once
#include "support/file/fileTools.h"
#include "support/host/api.h"
#include <QByteArray>

// The file of this machine that a film's device path means: a regular file inside the device root that can be
// read. False for anything else; stat tells a changed file from one that was seen before. Any thread.
HX_HOST_API bool filmFileFind(const QByteArray& devicePath, QByteArray& machinePath, tagFileStat& stat);
