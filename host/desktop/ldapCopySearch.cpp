#include "host/desktop/ldapCopySearch.h"
#include "support/file/fileTools.h"
#include <string>

namespace {

const char* const kFile = "/rundata/data/ldap.xml";

bool readCopy(QList<tagDirectoryEntry>& entries)
{
    std::string content;
    return fileReadWhole(kFile, content, DIRECTORY_BYTES_MAX) &&
           directoryEntriesRead(QByteArray::fromStdString(content), entries);
}

bool matches(const tagDirectoryEntry& entry, const QString& text)
{
    return entry.strName.contains(text, Qt::CaseInsensitive) ||
           entry.strNumber.contains(text, Qt::CaseInsensitive);
}

} // namespace

void ldapCopySearch::search(const QString& text, Done done)
{
    QList<tagDirectoryEntry> all;
    QList<tagDirectoryEntry> found;
    const bool reachable = readCopy(all);
    for (const tagDirectoryEntry& entry : all) {
        if (matches(entry, text))
            found.append(entry);
    }
    done(reachable, found);
}
