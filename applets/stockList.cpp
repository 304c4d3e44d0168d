#include "applets/stockList.h"
#include "applets/stockInfo.h"
#include "frame/configFiles.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"

namespace {

const char* const kCode = "name";

// Null when there is none.
xmlElement* firstSlot(const xmlFile& file)
{
    const xmlElement* list = xmlFindElementFromRoot(&file, S_STOCK_ROOTMEUN);
    return list ? list->GetFirstChildElement() : nullptr;
}

int load(xmlFile& file)
{
    const int isLoaded = file.LoadFromFile(STOCK_DATA_XML, STOCK_DATA_LIMIT);
    if (!isLoaded)
        nuxTrace(TRACE_NOTE, "Fail to load xml file [%s]", STOCK_DATA_XML);
    return isLoaded;
}

} // namespace

int stockListRead(QStringList& codes)
{
    codes.clear();
    xmlFile file;
    if (!load(file))
        return 0;
    for (xmlElement* slot = firstSlot(file); slot; slot = xmlGetNextElement(slot)) {
        const phraseStringA& code = slot->GetAttributeValue(kCode);
        if (!code.IsEmpty())
            codes.append(toQString(code.GetString()));
    }
    return 1;
}

// A list that cannot be read is full: there would be nowhere to write to.
int stockListCount()
{
    QStringList codes;
    return stockListRead(codes) ? int(codes.size()) : STOCK_COUNT_LIMIT;
}

STOCK_LIST_SAVED stockListSave(const QStringList& codes)
{
    xmlFile file;
    if (!load(file))
        return STOCK_LIST_FAILED;
    qsizetype next = 0;
    for (xmlElement* slot = firstSlot(file); slot; slot = xmlGetNextElement(slot)) {
        slot->GetAttributeValue(kCode) = next < codes.size() ? fromQString(codes[next]) : chString();
        ++next;
    }
    if (!file.SaveToFile(STOCK_DATA_XML))
        return STOCK_LIST_FAILED;
    return next < codes.size() ? STOCK_LIST_FULL : STOCK_LIST_DONE;
}
