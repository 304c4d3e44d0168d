#include "host/services/keyfiles/keyFileWriter.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "host/services/keyfiles/keyFileLock.h"
#include "host/services/system/runFolder.h"
#include "support/file/chAtomicFile.h"
#include "support/file/deviceRoot.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include <optional>

namespace {

constexpr mode_t kMode = 0600; // key files hold passwords

// The run folder is the phone's user's alone. A device root that is no phone's has none.
std::string lockFolderOf(const char* path)
{
    if (pathIsDirectory("/rundata") && runFolder::make())
        return runFolder::path();
    const std::string file = devicePathFollow(path).GetText();
    const size_t slash = file.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : file.substr(0, slash);
}

// Puts the text in the file's place, safe from a loss of power once the folder is flushed as well.
bool replace(chAtomicFile& file, const char* path, const std::string& text)
{
    return file.Open(path, kMode) && file.Write(text.data(), text.size()) && file.Flush() && file.Commit(0);
}

bool replaceDamaged(chAtomicFile& file, const char* path, const std::string& text)
{
    chString kept;
    if (!fileCopyAside(path, kept))
        return false;
    if (replace(file, path, text))
        return true;
    fileRemove(kept);
    return false;
}

// What is to be stored, made of what the file holds now.
struct NewFile
{
    keyFile document;
    KeyFileState old = KeyFileState::Missing;
    keyFile::Change change = keyFile::Change::None;

    KeyFileSave Make(const char* path, std::string_view section, const KeyValues& values)
    {
        old = keyFileLoad(path, document);
        if (old == KeyFileState::Unreadable)
            return KeyFileSave::NotRead;
        change = document.SetAll(section, values);
        return change == keyFile::Change::Refused ? KeyFileSave::Refused : KeyFileSave::Stored;
    }
};

// saved: of use only when the file was replaced.
KeyFileSave writeLocked(std::optional<chAtomicFile>& saved, const char* path, std::string_view section,
                        const KeyValues& values)
{
    const keyFileLock lock(lockFolderOf(path));
    if (!lock.IsTaken())
        return lock.IsBusy() ? KeyFileSave::Busy : KeyFileSave::NotSaved;
    NewFile file;
    const KeyFileSave result = file.Make(path, section, values);
    if (result != KeyFileSave::Stored || file.change == keyFile::Change::None)
        return result;
    const std::string text = file.document.Text();
    if (text.size() > keyFile::SIZE_LIMIT)
        return KeyFileSave::Refused;
    saved.emplace();
    const bool done =
        file.old == KeyFileState::Broken ? replaceDamaged(*saved, path, text) : replace(*saved, path, text);
    return done ? KeyFileSave::Stored : KeyFileSave::NotSaved;
}

KeyFileSave write(const char* path, std::string_view section, const KeyValues& values)
{
    NewFile asked;
    KeyFileSave result = asked.Make(path, section, values);
    // What is there already needs neither the lock nor a disk that can be written.
    if (result != KeyFileSave::Stored || asked.change == keyFile::Change::None)
        return result;
    std::optional<chAtomicFile> saved;
    result = writeLocked(saved, path, section, values);
    // The new file is in force; the next writer need not wait until the disk knows its name.
    if (result == KeyFileSave::Stored && saved && !saved->FlushFolder())
        fileReport(fmtString("the folder of %s could not be flushed", path));
    return result;
}

const char* reasonOf(KeyFileSave result)
{
    switch (result) {
    case KeyFileSave::Refused:
        return "it cannot hold the value";
    case KeyFileSave::Busy:
        return "another writer does not let go of it";
    case KeyFileSave::NotRead:
        return "what it holds cannot be read";
    default:
        return "its folder cannot be written";
    }
}

} // namespace

KeyFileSave keyFileWrite(const char* path, std::string_view section, const KeyValues& values)
{
    keyFileCache& cache = keyFileCache::GetInstance();
    if (cache.IsInMemory())
        return cache.SetInMemory(path, section, values) ? KeyFileSave::Stored : KeyFileSave::Refused;
    const KeyFileSave result = write(path, section, values);
    if (result == KeyFileSave::Stored)
        cache.Written();
    else
        nuxTrace(TRACE_NOTE, "The key file %s cannot be saved: %s", path, reasonOf(result));
    return result;
}
