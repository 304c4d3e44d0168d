#pragma once
// The folder of the signage files, and which names a server may put there. Any thread.
#include "support/text/chString.h"

#define NDECK_FOLDER "/rundata/nDeck/"
#define NDECK_SCHEDULE "FileList.xml"
#define NDECK_LIST NDECK_FOLDER "display.xml"
#define NDECK_REGISTER_REPLY NDECK_FOLDER "register.tmp"
#define NDECK_FETCHING ".ing" // behind the name of a file that is fetched
#define NDECK_WAITING ".new"  // behind the name of one that was verified and is not in use yet

enum : int {
    NDECK_NAME_LIMIT = 140,           // bytes; every suffix and the player's record hold it
    NDECK_REPLY_LIMIT = 64 << 10,     // bytes of a registration reply
    NDECK_REPLY_MS = 60000,           // that its transfer may take
    NDECK_SCHEDULE_LIMIT = 1 << 20,   // bytes of a schedule
    NDECK_SCHEDULE_MS = 120000,       // that its transfer may take: no other one begins before its end
    NDECK_LAYOUT_FILE_LIMIT = 1 << 20 // bytes of a layout file
};

// The device path of a file of the folder.
chString nDeckPath(const chString& name);
// Makes the folder if it is not there.
void nDeckMakeFolder();

// 1 for a bare name that neither leads out of the folder nor is one of the client's own, and that can be
// asked for; a name that is refused is traced. name: without a suffix.
bool nDeckIsFileName(const char* name);
// The name that a file has in use: what is before its suffixes.
chString nDeckPlainName(const chString& name);
// Whether the name is longer than the suffix and ends in it; what is before it.
bool nDeckHasSuffix(const chString& name, const char* suffix);
chString nDeckWithoutSuffix(const chString& name, const char* suffix);
