#include "settings/call/dssKeyFile.h"
#include "support/text/nuxError.h"
#include <cstring>

namespace {

xmlElement* itemFrom(xmlElement* element)
{
    while (element && strcmp(element->GetName(), "Item") != 0)
        element = xmlGetNextElement(element);
    return element;
}

} // namespace

int dssKeyLoad(xmlFile& document)
{
    if (document.LoadFromFile(DSS_KEY_XML, XML_LIST_LIMIT))
        return 1;
    // What was read before the fault is no file of keys, and never stored as one.
    document.ClearDocument();
    nuxErrorMessage(false, __FILE__, __LINE__, fmtString("Fail to load xml file [%s]", DSS_KEY_XML));
    return 0;
}

xmlElement* dssKeyRoot(const xmlFile& document)
{
    xmlElement* pNodeRoot = xmlFindElementFromRoot(&document, "DssKey");
    NUX_ASSERT(pNodeRoot != nullptr, "pNodeRoot != NULL");
    return pNodeRoot;
}

xmlElement* dssKeyFirst(xmlElement* keys)
{
    return keys ? itemFrom(keys->GetFirstChildElement()) : nullptr;
}

xmlElement* dssKeyNext(xmlElement* item)
{
    return itemFrom(xmlGetNextElement(item));
}

xmlElement* dssKeyItem(xmlElement* keys, int number)
{
    xmlElement* item = number > 0 ? dssKeyFirst(keys) : nullptr;
    for (int i = 1; item && i < number; ++i)
        item = dssKeyNext(item);
    return item;
}

chString dssKeyName(int number)
{
    return number < 10 ? fmtString("0%d", number) : fmtString("%d", number);
}
