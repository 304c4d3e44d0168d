#include "frame/shippedTable.h"
#include "support/host/trace.h"

int shippedTableLoad(xmlFile& table, const char* path)
{
    const int isLoaded = table.LoadFromFile(path, XML_TABLE_LIMIT);
    if (table.GetLastRead() == FILE_READ_TOO_LARGE)
        nuxTrace(TRACE_NOTE, "%s is larger than %zu bytes, and not read", path, size_t(XML_TABLE_LIMIT));
    return isLoaded;
}
