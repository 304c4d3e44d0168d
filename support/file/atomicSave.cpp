#include "support/file/atomicSave.h"

#include "support/file/chAtomicFile.h"

int fileSaveAtomic(const char* path, const char* data, size_t size, mode_t mode)
{
    chAtomicFile file;
    return file.Open(path, mode) && file.Write(data, size) && file.Commit();
}
