#pragma once
// The entries of a phone book in XML, as servers send it. Any thread.
#include <QByteArray>
#include <QList>
#include <QString>

struct tagDirectoryEntry
{
    QString strName;
    QString strNumber;
};

enum { DIRECTORY_BYTES_MAX = 4 << 20, DIRECTORY_ENTRIES_MAX = 2000 };

// Every <DirectoryEntry> with a <Name> and a <Telephone> for each number, and every <item name= number=/>,
// wherever they are; what has no number is left out. At most DIRECTORY_ENTRIES_MAX. False when the text is
// no XML.
bool directoryEntriesRead(const QByteArray& text, QList<tagDirectoryEntry>& entries);
