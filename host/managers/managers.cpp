#include "support/host/managers.h"
#include "host/managers/dssKeys.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"

namespace {

QList<tagDssKey> keysOf(const xmlElement* list, int& count)
{
    QList<tagDssKey> keys;
    count = 0;
    for (xmlElement* element = list->GetFirstChildElement(); element; element = xmlGetNextElement(element)) {
        if (qstrcmp(element->GetName(), "Item") != 0)
            continue;
        if (++count <= DSS_KEYS_MAX)
            keys.append(dssKeyOf(element));
    }
    return keys;
}

} // namespace

int DssKeyManager::LoadFile(const char* path, int)
{
    xmlFile document;
    const bool isRead = path && document.LoadFromFile(path, XML_LIST_LIMIT);
    const xmlElement* keys = isRead ? xmlFindElementFromRoot(&document, "DssKey", 0) : nullptr;
    if (!keys) {
        nuxTrace(TRACE_NOTE, "keys %s not loaded: %s", path ? path : "", document.GetErrorText());
        return 0;
    }
    dssKeysTake(keysOf(keys, m_nKeys));
    return 1;
}

DssKeyManager* GetDssKeyManager()
{
    static DssKeyManager manager;
    return &manager;
}
