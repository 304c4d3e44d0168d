#include "support/host/managers.h"
#include "host/managers/weatherState.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"

namespace {

int countItems(const xmlElement* keys)
{
    int count = 0;
    for (xmlElement* element = keys->GetFirstChildElement(); element; element = xmlGetNextElement(element))
        count += qstrcmp(element->GetName(), "Item") == 0;
    return count;
}

} // namespace

int DssKeyManager::LoadFile(const char* path, int)
{
    xmlFile document;
    const xmlElement* keys =
        document.LoadFromFile(path) ? xmlFindElementFromRoot(&document, "DssKey", 0) : nullptr;
    if (!keys) {
        nuxTrace(TRACE_NOTE, "keys %s not loaded: %s", path ? path : "", document.GetErrorText());
        return 0;
    }
    m_nKeys = countItems(keys);
    return 1;
}

DssKeyManager* GetDssKeyManager()
{
    static DssKeyManager manager;
    return &manager;
}

void WeatherFrame::RefreshBySendRequest()
{
    weatherState()->Request();
}

WeatherFrame* GetWeatherFrame()
{
    static WeatherFrame frame;
    return &frame;
}
