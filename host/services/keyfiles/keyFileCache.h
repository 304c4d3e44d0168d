#pragma once
// The key files that were read, kept until they change. Any thread.
//
// A write by any process of the phone is seen at the next read, through a number that all of them share
// (sharedGeneration). A change by a foreign program, an editor say, is seen after at most two ticks of 4 ms:
// the file's size, time and inode are looked at once a tick, since a look costs more than ten reads. A
// watch (qRegistryNotify) is told by the kernel and asks for a look at once.
#include "host/services/keyfiles/keyFile.h"
#include "host/services/keyfiles/sharedGeneration.h"
#include "support/file/fileTools.h"
#include <atomic>
#include <map>
#include <memory>
#include <mutex>

// Broken: it was read, but is no key file. Unreadable: it is there, but could not be read; it may be sound.
enum class KeyFileState { Missing, Good, Broken, Unreadable };
// Reads a key file; the document is empty unless it is good.
KeyFileState keyFileLoad(const char* path, keyFile& document);

class keyFileCache
{
public:
    // One file; lives until the process ends.
    struct Slot
    {
        std::string path; // device path
        keyFile document;
        KeyFileState state = KeyFileState::Missing;
        bool looked = false;
        bool fresh = false; // to be read again: written so shortly before that its time may not tell a later
                            // write, or not read at all
        bool held = false;  // changed in memory only
        tagFileStat stat;
        unsigned root = 0;
        uint64_t generation = 0;
        uint64_t tick = 0;
    };

    static keyFileCache& GetInstance();
    Slot* Open(std::string_view path);

    // Calls take with the value, or null when there is none, and gives what it gives. The value is valid
    // during the call, which must not use the cache.
    template <class TAKE>
    auto Read(Slot& slot, uint32_t sectionHash, std::string_view section, std::string_view key, TAKE take)
    {
        std::lock_guard<std::mutex> guard(m_lock);
        Refresh(slot);
        return take(slot.document.Find(sectionHash, section, key));
    }
    template <class TAKE>
    auto Read(std::string_view path, std::string_view section, std::string_view key, TAKE take)
    {
        const uint32_t sectionHash = keyFile::HashSection(section);
        std::lock_guard<std::mutex> guard(m_lock);
        Slot& slot = FindSlot(path);
        Refresh(slot);
        return take(slot.document.Find(sectionHash, section, key));
    }
    std::map<std::string, std::string> SectionValues(Slot& slot, std::string_view section);

    // After a key file was written: the readers of all processes look at their files again.
    void Written();
    // The next read of each file looks at it, whoever wrote it.
    void LookAgain();

    // Where nothing can be stored: from then on writes change what this process reads, and no file.
    void KeepInMemory(bool keep);
    bool IsInMemory() const { return m_inMemory; }
    // False for what a key file cannot hold; nothing is changed then.
    bool SetInMemory(std::string_view path, std::string_view section, const keyFile::Values& values);

private:
    keyFileCache() = default;
    Slot& FindSlot(std::string_view path);
    void Refresh(Slot& slot);
    void Look(Slot& slot, bool sameRoot);
    void Load(Slot& slot, const tagFileStat& stat);
    void SetUnreadable(Slot& slot);

    std::atomic<bool> m_inMemory{false};
    std::mutex m_lock;
    sharedGeneration m_generation;
    std::map<std::string, std::unique_ptr<Slot>, std::less<>> m_slots;
    Slot* m_pLast = nullptr; // that was found
};
