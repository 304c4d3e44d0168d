#pragma once
// The folder that stands for the phone's "/". Empty on a phone. Any thread.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"

// A folder of this machine; null, "" and "/" mean none. Until the first call it is the environment's
// HX_SYSROOT. A relative folder is taken from the working directory at the time of the call.
NUX_API void deviceSetRoot(const char* folder);
// Without a slash at its end; empty when there is none.
NUX_API chString deviceGetRoot();
// Another number after each call of deviceSetRoot, for whoever keeps mapped paths.
NUX_API unsigned deviceGetRootNumber();

// The root put before an absolute device path; ".." never leads out of it. A relative path stays as it
// is, null gives the empty text.
NUX_API chString devicePath(const char* path);
// As devicePath, and every link on the way is followed inside the root; links that go round in a circle are
// not. Two kinds lead to a folder of this machine: a link in "/storage", which stands for a plugged disk, and
// "/phone" and "/mini-boot" when they are links, which stand for the device image.
// A link in a folder where any user may put things stays as it is (sharedFolder.h).
NUX_API chString devicePathFollow(const char* path);
// As devicePathFollow, but what the last part names stays as it is, also when it is a link: for those who
// remove or rename it.
NUX_API chString devicePathFollowFolder(const char* path);
// The device path of the file that path names in the end, which is path itself when it names no link.
NUX_API chString devicePathTarget(const char* path);
