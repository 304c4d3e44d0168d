#include "signage/nDeckFileList.h"
#include "signage/nDeckFolder.h"
#include <algorithm>

const _nDeckFileNode* nDeckFileList::find(const chString& path) const
{
    const auto found = m_byPath.find(path.GetText());
    return found == m_byPath.end() ? nullptr : &*found->second;
}

const _nDeckFileNode* nDeckFileList::findMd5(const chString& md5) const
{
    const auto found = m_byMd5.find(md5.GetText());
    return found == m_byMd5.end() ? nullptr : &*found->second.front();
}

void nDeckFileList::setRetries(const chString& md5, int retries)
{
    const auto found = m_byMd5.find(md5.GetText());
    if (found != m_byMd5.end())
        found->second.front()->nRetries = retries;
}

bool nDeckFileList::append(const _nDeckFileNode& node)
{
    if (m_nodes.size() >= RECORD_LIMIT || find(node.path))
        return false;
    const place added = m_nodes.append(node);
    if (added == m_nodes.end())
        return false;
    count(node.path, 1);
    m_byPath.emplace(node.path.GetText(), added);
    m_byMd5[node.md5.GetText()].push_back(added);
    return true;
}

bool nDeckFileList::removeRecord(const chString& path)
{
    const auto found = m_byPath.find(path.GetText());
    if (found == m_byPath.end())
        return false;
    const place node = found->second;
    count(path, -1);
    m_byPath.erase(found);
    forgetMd5(node);
    m_nodes.erase(node);
    return true;
}

bool nDeckFileList::renameRecord(const chString& path, const chString& newPath)
{
    if (path == newPath)
        return find(path) != nullptr;
    const auto found = m_byPath.find(path.GetText());
    if (found == m_byPath.end())
        return false;
    const place node = found->second;
    m_byPath.erase(found);
    removeRecord(newPath);
    count(path, -1);
    count(newPath, 1);
    node->path = newPath;
    m_byPath.emplace(newPath.GetText(), node);
    return true;
}

void nDeckFileList::clear()
{
    m_nWaiting = 0;
    m_byPath.clear();
    m_byMd5.clear();
    m_nodes.clear();
}

void nDeckFileList::count(const chString& path, int change)
{
    if (nDeckHasSuffix(path, NDECK_WAITING))
        m_nWaiting += change;
}

void nDeckFileList::forgetMd5(place node)
{
    const auto found = m_byMd5.find(node->md5.GetText());
    std::vector<place>& same = found->second;
    same.erase(std::find(same.begin(), same.end(), node));
    if (same.empty())
        m_byMd5.erase(found);
}
