#pragma once
// A document in a file. Paths are device paths.
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlElement.h"
#include "support/xml/xmlFind.h"
#include <string>
#include <vector>

class NUX_API xmlFile : public xmlDocument
{
public:
    // Loads path at once; one that cannot be loaded leaves an empty document, as null does.
    explicit xmlFile(const char* path = nullptr);
    ~xmlFile() = default;

    // 0 when the file is missing, cannot be read or is not well-formed; GetErrorText() tells why.
    int LoadFromFile(const char* path);
    // Whole or not at all; 0 leaves the old file. A document that could not be loaded again (without an
    // element, beyond the limits) is not saved. A file that this document failed to load is kept aside
    // before it is replaced.
    int SaveToFile(const char* path);

private:
    bool IsNotUnderstood(const char* path) const;
    void ForgetFailure(const char* path);

    std::vector<std::string> m_notUnderstood; // the files that are there, but could not be loaded
};
