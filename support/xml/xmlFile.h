#pragma once
// A document in a file. Paths are device paths.
#include "support/file/fileTools.h"
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlElement.h"
#include "support/xml/xmlFind.h"
#include <string>
#include <sys/types.h>
#include <vector>

enum : size_t {
    // Bytes of a table that comes with the phone and is read while somebody waits: eight times the largest.
    XML_TABLE_LIMIT = 256 * 1024,
    // Of a list that pages change, and that is read on the user-interface thread: hundreds of times what one
    // holds.
    XML_LIST_LIMIT = 1024 * 1024
};
enum : mode_t { XML_FILE_PRIVATE = 0600 }; // for its owner alone

class NUX_API xmlFile : public xmlDocument
{
public:
    // Loads path at once; one that cannot be loaded leaves an empty document, as null does.
    explicit xmlFile(const char* path = nullptr);
    ~xmlFile() = default;

    // 0 when the file is missing, cannot be read, has more than limit bytes or is not well-formed;
    // GetErrorText() tells why.
    int LoadFromFile(const char* path, size_t limit = LIMIT);
    // What became of the last load's read: one that failed says nothing about what the file holds, so
    // nothing that was to be added to it may take its place.
    FILE_READ GetLastRead() const { return m_eLastRead; }
    // Whether the file has changed, or gone, since this document loaded or saved it; true where it did
    // neither.
    bool IsStale(const char* path) const;
    // Whole or not at all; 0 leaves the old file. A document that could not be loaded again (without an
    // element, beyond the limits, or that of the last load) is not saved. An old file that is not well-formed
    // is kept aside before it is replaced, whichever document it is that replaces it; one that this document
    // could not read, or that cannot be read now, is left alone. mode: of the new file, for what others must
    // not read; 0 as fileSaveAtomic.
    int SaveToFile(const char* path, mode_t mode = 0);

private:
    enum : size_t { LIMIT = 256u << 20 }; // bytes of any document
    enum OLD_FILE { OLD_MISSING, OLD_GOOD, OLD_DAMAGED, OLD_UNREAD };
    struct tagKnown
    {
        std::string path;
        bool bGood; // read and well-formed, else it could not be read
        tagFileStat stat;
    };
    OLD_FILE LookAtOld(const char* path) const;
    const tagKnown* Find(const char* path) const;
    void Remember(const char* path, bool good, const tagFileStat& stat);
    void Forget(const char* path);

    FILE_READ m_eLastRead = FILE_READ_MISSING;
    size_t m_nLimit = LIMIT;       // of the last load
    std::vector<tagKnown> m_known; // the files that this document has loaded, saved or failed to read
};
