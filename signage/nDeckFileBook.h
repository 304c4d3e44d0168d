#pragma once
// The records of the signage folder and the files that they speak of, in step with each other and with what
// of them outlives the phone ("display.xml"). User-interface thread.
#include "signage/nDeckFileList.h"
#include "signage/nDeckListSaver.h"
#include <functional>
#include <vector>

class nDeckFileBook
{
public:
    // The record of a file that the last run has left; bThere: the file is in the folder and the record in
    // the list.
    using TakeCall = std::function<void(const _nDeckFileNode& record, bool bThere)>;

    // read: called when the list of the last run was read.
    explicit nDeckFileBook(std::function<void()> read);

    const nDeckNodeList& Nodes() const { return m_list.nodes(); }
    // Null when there is none.
    const _nDeckFileNode* Find(const chString& path) const { return m_list.find(path); }
    // An empty md5 fits every record.
    bool IsKnown(const chString& path, const chString& md5) const;
    // The record, or what the last run has stored of it while the list says nothing yet; null when there is
    // none.
    const _nDeckFileNode* FindStored(const chString& path);
    // Of the first record with that md5; 0 when there is none.
    int GetRetries(const chString& md5) const;
    void SetRetries(const chString& md5, int nTimes) { m_list.setRetries(md5, nTimes); }
    // Those that were verified and are not in use yet.
    std::vector<_nDeckFileNode> WaitingFiles() const;

    // The one writer of the list: renames, removes or appends a record, the last with a full budget.
    void Update(const _nDeckFileNode& node, const chString& newPath, int bRemove);
    // A record for a file that is to be fetched. False when the list is full.
    bool BeginFetch(const _nDeckFileNode& wanted);
    // The file that was fetched waits from now on. False when it has gone meanwhile.
    bool TakeFetched(const chString& name, const chString& md5);
    // The file that waits takes the old one's place in one step. Where it is missing the old one stays, and
    // false is returned. StoreBeforeUse first; what came after it is stored by this.
    bool PutIntoUse(const chString& path);
    // A file must never hold another content than its stored record says: the list is stored before a file of
    // the name is replaced, or comes back.
    void StoreBeforeUse();
    // Removes file and record.
    void Forget(const chString& path);

    // Reads what the last run has left, before anything is written over it; does so once.
    void ReadStored();
    bool HasStored() const;
    // Begins anew with it. False when there is nothing or a record has no name.
    bool Restore(const TakeCall& take);
    // Whether "display.xml" says what the list says; it follows a moment later.
    bool IsStored() const { return !m_saver.IsBehind(); }

private:
    void Remove(const chString& path);
    bool TakeStored(const nDeckNodeList& stored, const TakeCall& take);
    bool IsTakenAlready(const chString& path) const;
    bool TakeStoredFile(_nDeckFileNode& record);
    void Save();
    void StoreNow();

    nDeckFileList m_list;
    nDeckListSaver m_saver;
    std::function<void()> m_read;
    bool m_bNewFiles = false; // files were verified since the list was saved
    nDeckNameSet m_unstored;  // what waits since the last StoreNow()
    nDeckNameSet m_outlived;  // what "display.xml" may still call waiting, though the list does not
    bool m_bStoredKnown = false;
    nDeckNodeList m_stored; // what "display.xml" held, until the list itself speaks for it
};
