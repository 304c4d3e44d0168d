#pragma once
// Path texts, and the folders and files they name. Paths are device paths, null is an empty one.
// Any thread.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"

// 1 when there is a file or a folder of that name.
NUX_API int pathFileExist(const char* path);
NUX_API int pathIsDirectory(const char* path);
// The bare file name inside path: what follows the last slash.
NUX_API const char* pathGetFileNamePos(const char* path);
// The last "." of the file name inside path, so the extension comes with its dot; the end of the text
// when the name has none.
NUX_API const char* pathGetFileExtensionPos(const char* path);
// Cuts off the file name and the slash before it ("/a/b" becomes "/a", "/a" becomes "/"). 0 when there
// is nothing to cut.
NUX_API int pathRemoveFileSpec(chString& path);
// 1 for a bare file name: no slash, not "." or "..", no control characters, 1 to 255 bytes.
NUX_API int pathIsSafeName(const char* name);
// Makes the folder and those above it. 1 when it is there afterwards.
NUX_API int pathMakeDirectories(const char* path);
// The same for a folder that only its owner may use: one that is there already is closed to the others. 0
// also when it is somebody else's.
NUX_API int pathMakePrivateDirectory(const char* path);
