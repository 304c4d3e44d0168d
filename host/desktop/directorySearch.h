#pragma once
// A search in a directory of names. User-interface thread.
#include "host/desktop/directoryEntry.h"
#include <functional>
#include <memory>

class directorySearch
{
public:
    virtual ~directorySearch() = default;
    // reachable: the directory could be asked; entries: those whose name or number contains the text.
    using Done = std::function<void(bool reachable, const QList<tagDirectoryEntry>& entries)>;
    // done is called once, at once or later, unless another search begins or stop() is called before.
    virtual void search(const QString& text, Done done) = 0;
    virtual void stop() = 0;
};

// What the LDAP page searches from now on. The first is the phone's copy of the directory.
void directorySearchSet(std::unique_ptr<directorySearch> search);
directorySearch& directorySearchGet();
