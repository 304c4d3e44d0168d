#pragma once
// Small questions about storages, paths and pictures that the media pages share. Paths are device paths.
// User-interface thread.
#include "support/container/chArray.h"
#include "support/text/chString.h"
#include <functional>

class QLabel;
class QWidget;
class videoAssistant;

using chStringArray = chObjArray<chString, true, 4>;

// Appends the mount path of every storage device.
void GetFileArrayInStorage(chStringArray& paths);
// Null texts are empty ones, and the empty text starts every text.
bool IsPartOfAll(const char* part, const char* all); // all starts with part
bool IsExistCurrentStorage(const char* path);        // path starts with a mount path
bool IsDirInclude(const char* path, const chStringArray& paths);
bool IsFileInArray(const char* name, const chStringArray& names); // exactly
// The picture in the size of the label; a large one comes a moment later, unless another was set by then. A
// file that is not there, or is no picture, leaves the label as it is: false when that is known at once.
// told: once it is known whether it is on the label, maybe before the call is over; never when another was
// set by then.
bool SetLabelImage(QLabel* label, const char* file, const std::function<void(bool isShown)>& told = nullptr);
// Reads it ahead.
void PrepareLabelImage(const QLabel* label, const char* file);
// The placeholder closes and is deleted; the new surface takes its geometry and belongs to its parent.
videoAssistant* qReplaceVideoAssistant(QWidget* placeholder, int mode);
