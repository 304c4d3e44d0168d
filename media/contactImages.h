#pragma once
// The pictures of the contacts in "/rundata/data/contactData.xml". User-interface thread.
#include "support/text/chString.h"

// Whether a contact of any group has the picture; false also when the file is missing or cannot be read.
bool IsContactImageUse(const chString& path);
// Every contact that has it gets the picture of a contact without one. 0 when the file cannot be read or
// saved.
int ClearUseImage(const chString& path);
