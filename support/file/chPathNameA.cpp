#include "support/file/chPathNameA.h"

#include "support/file/path.h"

chPathNameA& chPathNameA::Append(const char* name)
{
    const char* rest = name ? name : "";
    const int length = m_strPath.GetLength();
    if (length == 0) {
        m_strPath = rest;
        return *this;
    }
    while (*rest == '/')
        ++rest;
    if (m_strPath.GetText()[length - 1] != '/')
        m_strPath += "/";
    m_strPath += rest;
    return *this;
}

chPathNameA& chPathNameA::SetExtension(const char* extension)
{
    const long stem = GetExtension() - m_strPath.GetText();
    m_strPath = chString(m_strPath.GetText(), int(stem)) + (extension ? extension : "");
    return *this;
}

int chPathNameA::RemoveFileSpec()
{
    return pathRemoveFileSpec(m_strPath);
}

const char* chPathNameA::GetFileName() const
{
    return pathGetFileNamePos(m_strPath);
}

const char* chPathNameA::GetExtension() const
{
    return pathGetFileExtensionPos(m_strPath);
}
