#pragma once
// Files that cannot be torn: a reader sees the old file or the new one, whenever the power goes.
// Paths are device paths. Any thread, any number of processes: of two saves at a time one comes last,
// whole.
#include "support/text/nuxExport.h"
#include <stddef.h>
#include <sys/types.h>

// Makes the file hold exactly these bytes. It keeps its mode and owner; a link is saved through.
// 0 when that is not possible (full disk, read-only file, missing folder, not a plain file): the old
// file is as it was and nothing is left beside it.
// mode: of the new file from its first byte on, for what others must not read; 0 as said above.
NUX_API int fileSaveAtomic(const char* path, const char* data, size_t size, mode_t mode = 0);
