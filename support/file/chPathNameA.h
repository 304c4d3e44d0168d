#pragma once
// A path put together piece by piece.
#include "support/text/chString.h"
#include "support/text/nuxExport.h"

class NUX_API chPathNameA
{
public:
    chPathNameA() = default;
    chPathNameA(const char* path) : m_strPath(path) {}
    chPathNameA(const char* folder, const char* name) : m_strPath(folder) { Append(name); }

    // Puts name behind the path, with exactly one slash between them.
    chPathNameA& Append(const char* name);
    // The extension, given with its dot, takes the place of the present one.
    chPathNameA& SetExtension(const char* extension);
    // Cuts off the file name. 0 when there is none.
    int RemoveFileSpec();

    const char* GetFileName() const;
    const char* GetExtension() const; // with its dot; empty when there is none
    const chString& GetPath() const { return m_strPath; }
    int IsEmpty() const { return m_strPath.IsEmpty() ? 1 : 0; }
    operator const char*() const { return m_strPath.GetText(); }

private:
    chString m_strPath;
};
