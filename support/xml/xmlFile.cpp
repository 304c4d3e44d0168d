#include "support/xml/xmlFile.h"

#include "support/file/atomicSave.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/xml/xmlWriter.h"

#include <algorithm>

xmlFile::xmlFile(const char* path)
{
    if (path && !LoadFromFile(path))
        ClearDocument();
}

int xmlFile::LoadFromFile(const char* path)
{
    std::string data;
    const bool read = fileReadWhole(path, data) != 0;
    if (!read) {
        ClearDocument();
        SetError("The file cannot be read.", 1, 1);
    }
    const bool loaded = read && ParseBytes(data.data(), data.size());
    ForgetFailure(path);
    if (!loaded && pathFileExist(path))
        m_notUnderstood.push_back(path);
    return loaded;
}

int xmlFile::SaveToFile(const char* path)
{
    xmlWriter writer(*this);
    const std::string& text = writer.Write();
    if (!path || !writer.CanBeLoaded())
        return 0;
    chString kept;
    if (IsNotUnderstood(path) && pathFileExist(path) && !fileCopyAside(path, kept))
        return 0;
    if (fileSaveAtomic(path, text.data(), text.size())) {
        ForgetFailure(path);
        return 1;
    }
    if (!kept.IsEmpty())
        fileRemove(kept);
    return 0;
}

bool xmlFile::IsNotUnderstood(const char* path) const
{
    return std::find(m_notUnderstood.begin(), m_notUnderstood.end(), path) != m_notUnderstood.end();
}

void xmlFile::ForgetFailure(const char* path)
{
    const auto found = std::find(m_notUnderstood.begin(), m_notUnderstood.end(), path ? path : "");
    if (found != m_notUnderstood.end())
        m_notUnderstood.erase(found);
}
