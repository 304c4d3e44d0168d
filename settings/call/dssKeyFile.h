#pragma once
// The file of the programmable keys: the Nth Item is key N, and nobody adds, removes or moves one.
// User-interface thread.
#include "support/text/chString.h"
#include "support/xml/xmlFile.h"

#define DSS_KEY_XML "/rundata/data/dsskey.xml"
enum { DSS_KEY_COUNT = 20 };

// 0 when the file cannot be loaded, or is larger than keys can be, which is reported; the document is empty
// then.
int dssKeyLoad(xmlFile& document);
// The element of all keys; that there is none is reported.
xmlElement* dssKeyRoot(const xmlFile& document);
xmlElement* dssKeyFirst(xmlElement* keys);
xmlElement* dssKeyNext(xmlElement* item);
// number: from 1. Null beyond the last one.
xmlElement* dssKeyItem(xmlElement* keys, int number);
// "01" for the first.
chString dssKeyName(int number);
