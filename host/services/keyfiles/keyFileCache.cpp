#include "host/services/keyfiles/keyFileCache.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <cstdlib>
#include <ctime>

namespace {

constexpr uint64_t kTickMs = 4;
// The coarsest step of a file's time, doubled.
constexpr long long kFreshNs = 20 * 1000000LL;

uint64_t nowMs()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000u + static_cast<uint64_t>(now.tv_nsec) / 1000000u;
}

bool isFresh(const tagFileStat& stat)
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return std::llabs(now.tv_sec * 1000000000LL + now.tv_nsec - stat.nModifiedNs) < kFreshNs;
}

} // namespace

KeyFileState keyFileLoad(const char* path, keyFile& document)
{
    document = keyFile();
    std::string text;
    switch (fileRead(path, text, keyFile::SIZE_LIMIT)) {
    case FILE_READ_DONE:
        return document.Parse(text) ? KeyFileState::Good : KeyFileState::Broken;
    case FILE_READ_MISSING:
        return KeyFileState::Missing;
    case FILE_READ_TOO_LARGE:
        return KeyFileState::Broken;
    default:
        return KeyFileState::Unreadable;
    }
}

keyFileCache& keyFileCache::GetInstance()
{
    // Never ended: threads and other objects may read to the last.
    static keyFileCache* cache = new keyFileCache;
    return *cache;
}

keyFileCache::Slot* keyFileCache::Open(std::string_view path)
{
    std::lock_guard<std::mutex> guard(m_lock);
    return &FindSlot(path);
}

keyFileCache::Slot& keyFileCache::FindSlot(std::string_view path)
{
    // Who reads a key reads more of the same file.
    if (m_pLast && m_pLast->path == path)
        return *m_pLast;
    auto found = m_slots.find(path);
    if (found == m_slots.end()) {
        auto slot = std::make_unique<Slot>();
        slot->path = path;
        found = m_slots.emplace(slot->path, std::move(slot)).first;
    }
    m_pLast = found->second.get();
    return *m_pLast;
}

std::map<std::string, std::string> keyFileCache::SectionValues(Slot& slot, std::string_view section)
{
    std::lock_guard<std::mutex> guard(m_lock);
    Refresh(slot);
    return slot.document.SectionValues(section);
}

void keyFileCache::Written()
{
    std::lock_guard<std::mutex> guard(m_lock);
    m_generation.Follow(deviceGetRootNumber(), nowMs());
    m_generation.CountUp();
}

void keyFileCache::LookAgain()
{
    std::lock_guard<std::mutex> guard(m_lock);
    for (auto& slot : m_slots)
        slot.second->looked = false;
}

void keyFileCache::KeepInMemory(bool keep)
{
    m_inMemory = keep;
}

bool keyFileCache::SetInMemory(std::string_view path, std::string_view section, const keyFile::Values& values)
{
    std::lock_guard<std::mutex> guard(m_lock);
    Slot& slot = FindSlot(path);
    Refresh(slot);
    keyFile changed = slot.document;
    if (changed.SetAll(section, values) == keyFile::Change::Refused)
        return false;
    slot.document = std::move(changed);
    slot.held = true;
    return true;
}

void keyFileCache::Refresh(Slot& slot)
{
    const unsigned root = deviceGetRootNumber();
    if (slot.held && slot.root == root)
        return;
    const uint64_t now = nowMs();
    m_generation.Follow(root, now);
    // Taken before the file is looked at: a write in between is looked at again.
    const uint64_t generation = m_generation.Value();
    const uint64_t tick = now / kTickMs;
    const bool sameRoot = slot.root == root;
    if (slot.looked && sameRoot && slot.generation == generation && slot.tick == tick &&
        m_generation.IsShared())
        return;
    slot.root = root;
    slot.generation = generation;
    slot.tick = tick;
    slot.held = false;
    if (!sameRoot)
        slot.document = keyFile();
    Look(slot, sameRoot);
    slot.looked = true;
}

void keyFileCache::Look(Slot& slot, bool sameRoot)
{
    tagFileStat stat;
    const FILE_READ found = fileLook(slot.path.c_str(), stat);
    if (found == FILE_READ_MISSING) {
        slot.document = keyFile();
        slot.state = KeyFileState::Missing;
        return;
    }
    const bool known = sameRoot && slot.state != KeyFileState::Missing && slot.stat == stat;
    if (found == FILE_READ_FAILED)
        SetUnreadable(slot);
    else if (!known || slot.fresh)
        Load(slot, stat);
}

void keyFileCache::Load(Slot& slot, const tagFileStat& stat)
{
    const bool fresh = isFresh(stat);
    keyFile document;
    const KeyFileState state = keyFileLoad(slot.path.c_str(), document);
    if (state == KeyFileState::Unreadable) {
        SetUnreadable(slot);
        return;
    }
    const bool wasTold = slot.state == KeyFileState::Broken && slot.stat == stat;
    slot.stat = stat;
    slot.fresh = fresh;
    slot.state = state;
    slot.document = std::move(document);
    if (state == KeyFileState::Broken && !wasTold)
        nuxTrace(TRACE_NOTE, "The key file %s cannot be understood, its defaults are used",
                 slot.path.c_str());
}

// What was known of the file stays in force, and it is tried again at the next look.
void keyFileCache::SetUnreadable(Slot& slot)
{
    if (slot.state != KeyFileState::Unreadable)
        nuxTrace(TRACE_NOTE, "The key file %s cannot be read, its last known values are used",
                 slot.path.c_str());
    slot.state = KeyFileState::Unreadable;
    slot.fresh = true;
}
