#pragma once
// Folders in which any user may put things, as "/tmp" is: what a stranger planted there (a link, a pipe, a
// file of his own) is neither followed, read nor written. All that opens a file in support/file/ goes
// through here. Paths are machine paths from devicePathFollow, which follows no link in such a folder.
// Any thread.
#include "support/text/nuxExport.h"
#include <sys/stat.h>
#include <sys/types.h>

enum SHARED_PLACE {
    PLACE_OURS,     // no shared folder on the way, or outside the device root
    PLACE_SHARED,   // below a shared folder, but nobody else can change the way there
    PLACE_STRANGERS // below one, and through a folder or a link that is somebody else's
};

NUX_API bool fileIsSharedFolder(const char* folder);
// A file that only this user, or the superuser, has made.
NUX_API bool fileIsTrusted(const struct stat& info);
NUX_API SHARED_PLACE filePlaceOf(const char* path);
// As open(2), closed on exec. In a shared folder only a plain file of ours is opened, never through a link
// and without waiting, and is emptied only after that is known; EACCES for anything else.
NUX_API int fileOpenSafely(const char* path, int flags, mode_t mode);
