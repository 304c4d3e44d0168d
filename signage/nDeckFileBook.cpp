#include "signage/nDeckFileBook.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckListFile.h"
#include "signage/serverConfig.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"

namespace {

constexpr int kReDownLoadNum = 3;

int fullBudget()
{
    return nDeckSettingInt("nReDownLoadNum", kReDownLoadNum);
}

// What a new record keeps of what is told about the file.
_nDeckFileNode newRecord(const _nDeckFileNode& told)
{
    _nDeckFileNode record;
    record.path = told.path;
    record.md5 = told.md5;
    record.nRetries = fullBudget();
    if (told.type == "media") {
        record.type = told.type;
        record.size = told.size;
    } else if (told.type == "layout") {
        record.type = told.type;
        record.fromdt = told.fromdt;
        record.todt = told.todt;
        record.eventType = told.eventType;
    }
    return record;
}

} // namespace

nDeckFileBook::nDeckFileBook(std::function<void()> read)
    : m_saver([this] { return nDeckListText(m_list.nodes()); }), m_read(std::move(read))
{
}

bool nDeckFileBook::IsKnown(const chString& path, const chString& md5) const
{
    const _nDeckFileNode* record = m_list.find(path);
    return record && (md5.IsEmpty() || record->md5 == md5);
}

const _nDeckFileNode* nDeckFileBook::FindStored(const chString& path)
{
    ReadStored();
    if (const _nDeckFileNode* record = m_list.find(path))
        return record;
    for (const _nDeckFileNode& record : m_stored) {
        if (record.path == path)
            return &record;
    }
    return nullptr;
}

int nDeckFileBook::GetRetries(const chString& md5) const
{
    const _nDeckFileNode* record = m_list.findMd5(md5);
    return record ? record->nRetries : 0;
}

std::vector<_nDeckFileNode> nDeckFileBook::WaitingFiles() const
{
    std::vector<_nDeckFileNode> waiting;
    if (!m_list.hasWaiting())
        return waiting;
    for (const _nDeckFileNode& record : m_list.nodes()) {
        if (nDeckHasSuffix(record.path, NDECK_WAITING))
            waiting.push_back(record);
    }
    return waiting;
}

void nDeckFileBook::Update(const _nDeckFileNode& node, const chString& newPath, int bRemove)
{
    ReadStored();
    if (m_list.find(node.path)) {
        if (newPath.IsEmpty() && !bRemove)
            return;
        if (nDeckHasSuffix(node.path, NDECK_WAITING))
            m_outlived.insert(node.path.GetText());
        if (newPath.IsEmpty())
            m_list.removeRecord(node.path);
        else
            m_list.renameRecord(node.path, newPath);
    } else if (!bRemove) {
        m_list.append(newRecord(node));
    }
    Save();
}

void nDeckFileBook::Remove(const chString& path)
{
    _nDeckFileNode node;
    node.path = path;
    Update(node, "", 1);
}

// A record that waits for another content of the file gives way, so that the new one has its own budget and
// is found by its own MD5.
bool nDeckFileBook::BeginFetch(const _nDeckFileNode& wanted)
{
    ReadStored();
    const _nDeckFileNode* present = m_list.find(wanted.path);
    if (present && present->md5 != wanted.md5)
        m_list.removeRecord(wanted.path);
    Update(wanted, "", 0);
    return m_list.find(wanted.path) != nullptr;
}

bool nDeckFileBook::TakeFetched(const chString& name, const chString& md5)
{
    _nDeckFileNode fetched;
    fetched.path = name + NDECK_FETCHING;
    fetched.md5 = md5;
    const chString waiting = name + NDECK_WAITING;
    if (m_list.removeRecord(waiting) || m_outlived.count(waiting.GetText()))
        StoreNow(); // or its stored record would speak of the content that comes now
    if (!fileRename(nDeckPath(fetched.path), nDeckPath(waiting)))
        return false;
    m_bNewFiles = true;
    m_unstored.insert(waiting.GetText());
    Update(fetched, waiting, 0);
    return true;
}

void nDeckFileBook::StoreBeforeUse()
{
    if (m_saver.IsBehind())
        StoreNow();
}

void nDeckFileBook::StoreNow()
{
    m_saver.StoreNow();
    m_unstored.clear();
    m_outlived.clear();
}

bool nDeckFileBook::PutIntoUse(const chString& path)
{
    // The same content may have come again since the list was stored without it.
    if (m_unstored.count(path.GetText()))
        StoreBeforeUse();
    const chString plain = nDeckWithoutSuffix(path, NDECK_WAITING);
    if (!fileRename(nDeckPath(path), nDeckPath(plain))) {
        Remove(path);
        return false;
    }
    Remove(plain);
    _nDeckFileNode waiting;
    waiting.path = path;
    Update(waiting, plain, 0);
    return true;
}

void nDeckFileBook::Forget(const chString& path)
{
    fileRemove(nDeckPath(path));
    Remove(path);
}

void nDeckFileBook::Save()
{
    m_stored.clear();
    m_saver.Touch(m_bNewFiles);
    m_bNewFiles = false;
}

// ---- What the last run has left

void nDeckFileBook::ReadStored()
{
    if (m_bStoredKnown)
        return;
    m_bStoredKnown = true;
    nDeckNodeList stored;
    nDeckListRead(stored);
    TakeStored(stored, {});
    m_read();
    m_stored = stored;
}

bool nDeckFileBook::HasStored() const
{
    return m_saver.IsBehind() || pathFileExist(NDECK_LIST);
}

bool nDeckFileBook::Restore(const TakeCall& take)
{
    nDeckNodeList stored;
    const bool isThere = HasStored();
    if (m_saver.IsBehind()) {
        StoreNow(); // what waits comes into use here
        stored = m_list.nodes();
    } else if (isThere)
        nDeckListRead(stored);
    m_bStoredKnown = true;
    m_stored.clear();
    bool isWhole = false;
    if (isThere) {
        m_list.clear();
        isWhole = TakeStored(stored, take);
    }
    m_read();
    if (isWhole)
        Save();
    return isWhole;
}

// False when a record has no name.
bool nDeckFileBook::TakeStored(const nDeckNodeList& stored, const TakeCall& take)
{
    nDeckNameSet waiting;
    for (const _nDeckFileNode& record : stored) {
        if (nDeckHasSuffix(record.path, NDECK_WAITING))
            waiting.insert(nDeckPlainName(record.path).GetText());
    }
    for (_nDeckFileNode record : stored) {
        if (record.type.IsEmpty())
            return true;
        if (record.path.IsEmpty())
            return false;
        // A newer file of the name has come into use, or does now: the record that speaks of it counts.
        if (waiting.count(record.path.GetText()) || !nDeckIsFileName(nDeckPlainName(record.path)) ||
            IsTakenAlready(record.path))
            continue;
        const bool isThere = TakeStoredFile(record);
        if (take)
            take(record, isThere);
    }
    return true;
}

bool nDeckFileBook::IsTakenAlready(const chString& path) const
{
    return !nDeckHasSuffix(path, NDECK_FETCHING) && m_list.find(nDeckWithoutSuffix(path, NDECK_WAITING));
}

// record: gets the name and the budget that it has from now on. True when it is in the list.
bool nDeckFileBook::TakeStoredFile(_nDeckFileNode& record)
{
    if (nDeckHasSuffix(record.path, NDECK_FETCHING)) {
        fileRemove(nDeckPath(record.path));
        return false;
    }
    const chString plain = nDeckWithoutSuffix(record.path, NDECK_WAITING);
    if (plain != record.path) {
        m_outlived.insert(record.path.GetText());
        fileRename(nDeckPath(record.path), nDeckPath(plain));
    }
    record.path = plain;
    record.nRetries = fullBudget();
    return pathFileExist(nDeckPath(plain)) && m_list.append(record);
}
