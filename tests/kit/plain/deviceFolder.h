#pragma once
// A folder that stands for a phone's file system, filled from the device image of this build.
#include <QByteArray>
#include <QString>

namespace kit {

// What of the firmware the folder gets.
enum class Firmware {
    Link,      // "/phone" leads to the image, as ./run makes it
    HardLinks, // the image's files under second names, each of which a test may replace
};

// Makes the folders of a new phone, with its factory settings. False when that does not succeed.
bool fillDeviceFolder(const QString& folder, Firmware firmware);
// Another content for one file of the image, in this folder alone, whose firmware is HardLinks.
bool replaceImageFile(const QString& folder, const QString& devicePath, const QByteArray& content);
// Path of a program of this build.
QString program(const char* name);

} // namespace kit
