#include "support/xml/xmlFile.h"

#include "support/file/atomicSave.h"
#include "support/file/keepAside.h"
#include "support/xml/xmlWriter.h"

#include <algorithm>

xmlFile::xmlFile(const char* path)
{
    if (path && !LoadFromFile(path))
        ClearDocument();
}

int xmlFile::LoadFromFile(const char* path, size_t limit)
{
    Forget(path);
    m_nLimit = limit;
    tagFileStat stat; // before the read: a later change is a change
    fileStat(path, stat);
    std::string data;
    m_eLastRead = fileRead(path, data, limit);
    if (m_eLastRead != FILE_READ_DONE) {
        ClearDocument();
        const bool isTooLarge = m_eLastRead == FILE_READ_TOO_LARGE;
        SetError(isTooLarge ? "The file is too large." : "The file cannot be read.", 1, 1);
        if (m_eLastRead == FILE_READ_FAILED)
            Remember(path, false, stat);
        return 0;
    }
    if (!ParseBytes(data.data(), data.size()))
        return 0;
    Remember(path, true, stat);
    return 1;
}

bool xmlFile::IsStale(const char* path) const
{
    const tagKnown* known = Find(path);
    tagFileStat stat;
    return !known || !known->bGood || !fileStat(path, stat) || !(stat == known->stat);
}

int xmlFile::SaveToFile(const char* path, mode_t mode)
{
    xmlWriter writer(*this);
    const std::string& text = writer.Write();
    if (!path || !writer.CanBeLoaded() || text.size() > m_nLimit)
        return 0;
    const OLD_FILE old = LookAtOld(path);
    chString kept;
    if (old == OLD_UNREAD || (old == OLD_DAMAGED && !fileCopyAside(path, kept)))
        return 0;
    if (fileSaveAtomic(path, text.data(), text.size(), mode)) {
        tagFileStat stat;
        fileStat(path, stat);
        Remember(path, true, stat);
        return 1;
    }
    if (!kept.IsEmpty())
        fileRemove(kept);
    return 0;
}

// What this document has loaded or saved itself is known to be good until it changes.
xmlFile::OLD_FILE xmlFile::LookAtOld(const char* path) const
{
    if (!IsStale(path))
        return OLD_GOOD;
    const tagKnown* known = Find(path);
    std::string data;
    const FILE_READ read = fileRead(path, data);
    if (read == FILE_READ_MISSING)
        return OLD_MISSING;
    if (read == FILE_READ_FAILED || (known && !known->bGood))
        return OLD_UNREAD;
    xmlFile old;
    const bool good = read == FILE_READ_DONE && old.ParseBytes(data.data(), data.size());
    return good ? OLD_GOOD : OLD_DAMAGED;
}

const xmlFile::tagKnown* xmlFile::Find(const char* path) const
{
    const auto found = std::find_if(m_known.begin(), m_known.end(),
                                    [path](const tagKnown& known) { return known.path == path; });
    return found == m_known.end() ? nullptr : &*found;
}

void xmlFile::Remember(const char* path, bool good, const tagFileStat& stat)
{
    Forget(path);
    m_known.push_back({path ? path : "", good, stat});
}

void xmlFile::Forget(const char* path)
{
    m_known.erase(std::remove_if(m_known.begin(), m_known.end(),
                                 [path](const tagKnown& known) { return known.path == (path ? path : ""); }),
                  m_known.end());
}
