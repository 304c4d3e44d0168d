#pragma once
// A table that the phone is shipped with, for a page. User-interface thread.
#include "support/xml/xmlFile.h"

// Loads it when it is no larger than XML_TABLE_LIMIT. 0 as for a missing file otherwise, which is traced.
int shippedTableLoad(xmlFile& table, const char* path);
