#pragma once
// The records of the signage folder in their order, found by name and by MD5 without a walk. No two records
// have one name. User-interface thread.
#include "signage/displayFrame.h"
#include <string>
#include <unordered_map>
#include <vector>

class nDeckFileList
{
public:
    enum : int { RECORD_LIMIT = 20000 };

    const nDeckNodeList& nodes() const { return m_nodes; }
    // Null when there is none.
    const _nDeckFileNode* find(const chString& path) const;
    // The first record with that MD5.
    const _nDeckFileNode* findMd5(const chString& md5) const;
    void setRetries(const chString& md5, int retries); // of that one
    bool hasWaiting() const { return m_nWaiting > 0; } // records of files that wait for their use

    // False when there is a record of the name, or no room for one more.
    bool append(const _nDeckFileNode& node);
    bool removeRecord(const chString& path);
    // Takes the place of a record of the new name.
    bool renameRecord(const chString& path, const chString& newPath);
    void clear();

private:
    using place = nDeckNodeList::iterator;
    void forgetMd5(place node);
    void count(const chString& path, int change);

    nDeckNodeList m_nodes;
    int m_nWaiting = 0;
    std::unordered_map<std::string, place> m_byPath;
    std::unordered_map<std::string, std::vector<place>> m_byMd5; // each in the order of the list
};
