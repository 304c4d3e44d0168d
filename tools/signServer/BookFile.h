#pragma once
// The displays' book on the disk, so that the server knows after a restart what they have. Any thread.
#include "tools/signServer/DisplayBook.h"

struct StoredBook
{
    DisplayBook::Records known, strangers;
};

// file: a path of this machine. Nothing for a file that is missing, damaged or larger than a book can be.
StoredBook ReadBookFile(const QByteArray& file);
// Readable by the server's user alone. 0 when it cannot be written; the old file then stays.
int WriteBookFile(const QByteArray& file, const StoredBook& book);
