#pragma once
// Changes keys of a key file, so that writers in other threads and processes lose nothing. Any thread.
#include "host/services/keyfiles/keyFile.h"

using KeyValues = keyFile::Values;

enum class KeyFileSave {
    Stored,
    Refused,  // a name or a value that a key file cannot hold, or too much for one
    Busy,     // another writer did not let go of the lock in time
    NotRead,  // the old file is there, but could not be read; it may be sound, so it is left alone
    NotSaved, // no folder, no right to it, a full or failing disk
};

// Under a lock that all writers take, reads the file, changes these keys of the section and saves it whole,
// for its owner alone. All are stored, or none is and the old file stays, with a trace line. A file that was
// read and cannot be understood is kept aside first. Waits keyFileLock::WAIT_MS at most.
KeyFileSave keyFileWrite(const char* path, std::string_view section, const KeyValues& values);
