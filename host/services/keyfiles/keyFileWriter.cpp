#include "host/services/keyfiles/keyFileWriter.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "support/file/atomicSave.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileSystemCalls.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace {

// The lock is one on the folder that holds the file: it needs no file of its own, and is gone with its
// process.
class FolderLock
{
public:
    explicit FolderLock(const char* path)
    {
        const std::string file = devicePathFollow(path).GetText();
        const size_t slash = file.rfind('/');
        const std::string folder = slash == std::string::npos ? "."
                                   : slash == 0               ? "/"
                                                              : file.substr(0, slash);
        m_nFd = fileGetSystemCalls().open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
        if (m_nFd >= 0 && !Take())
            Close();
    }
    ~FolderLock() { Close(); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    bool IsTaken() const { return m_nFd >= 0; }

private:
    bool Take() const
    {
        int result;
        do
            result = fileGetSystemCalls().flock(m_nFd, LOCK_EX);
        while (result != 0 && errno == EINTR);
        return result == 0;
    }
    void Close()
    {
        if (m_nFd >= 0)
            fileGetSystemCalls().close(m_nFd);
        m_nFd = -1;
    }
    int m_nFd = -1;
};

enum class Change { Refused, None, Done };

Change setValues(keyFile& document, std::string_view section, const KeyValues& values)
{
    Change change = Change::None;
    for (const auto& [key, value] : values) {
        const std::string* old = document.Find(section, key);
        if (old && *old == value)
            continue;
        if (!document.Set(section, key, value))
            return Change::Refused;
        change = Change::Done;
    }
    return change;
}

bool save(const char* path, const std::string& text)
{
    return fileSaveAtomic(path, text.data(), text.size()) != 0;
}

bool saveBesideKept(const char* path, KeyFileState state, const std::string& text)
{
    chString kept;
    if (!fileCopyAside(path, kept))
        return false;
    // What must not be read cannot be written over either, so it makes room.
    const bool makesRoom = state == KeyFileState::Unreadable;
    if ((!makesRoom || fileRemove(path)) && save(path, text))
        return true;
    if (pathFileExist(path))
        fileRemove(kept);
    else
        fileRename(kept, path);
    return false;
}

bool saveOver(const char* path, KeyFileState state, const std::string& text)
{
    const bool isOurs = state == KeyFileState::Missing || state == KeyFileState::Good;
    return isOurs ? save(path, text) : saveBesideKept(path, state, text);
}

} // namespace

int keyFileWrite(const char* path, std::string_view section, const KeyValues& values)
{
    const FolderLock lock(path);
    if (!lock.IsTaken()) {
        nuxTrace(TRACE_NOTE, "The key file %s cannot be saved: its folder cannot be used", path);
        return 0;
    }
    keyFile document;
    const KeyFileState state = keyFileLoad(path, document);
    const Change change = setValues(document, section, values);
    if (change != Change::Done)
        return change == Change::None;
    const std::string text = document.Text();
    if (text.size() > keyFile::SIZE_LIMIT || !saveOver(path, state, text)) {
        nuxTrace(TRACE_NOTE, "The key file %s cannot be saved", path);
        return 0;
    }
    keyFileCache::GetInstance().Written();
    return 1;
}
