#include "host/managers/generatedMenu.h"
#include "support/host/module.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"

// The module refreshes a generated menu through its manager before it shows it, and loads the file for
// that: a refresh inside a refresh has nothing left to do.
void generatedMenuRefresh(const char* file)
{
    static bool refreshing = false;
    if (refreshing || !hostModule().refreshMenu)
        return;
    refreshing = true;
    hostModule().refreshMenu(chString(file));
    refreshing = false;
}

const xmlElement* generatedMenuLoad(xmlFile& document, const char* file, const char* list)
{
    const chString path = chString("/rundata/data/") + file;
    const xmlElement* found =
        document.LoadFromFile(path, XML_LIST_LIMIT) ? xmlFindElementFromRoot(&document, list, 0) : nullptr;
    if (!found)
        nuxTrace(TRACE_NOTE, "devices of %s not loaded: %s", file, document.GetErrorText());
    return found;
}
