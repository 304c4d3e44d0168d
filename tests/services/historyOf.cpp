#include "tests/services/historyOf.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/phoneTest.h"

QStringList historyOf(const char* attribute, int count)
{
    QStringList values;
    kit::waitUntil([&] {
        values.clear();
        const xmlFile file("/rundata/data/callHistory.xml");
        const xmlElement* list = xmlFindElementFromRoot(&file, "CallHistory");
        xmlElement* call = list ? list->FindChildElement("Call") : nullptr;
        for (; call; call = xmlGetNextElement(call))
            values.append(QString::fromUtf8(call->GetAttributeValue(attribute).GetText()));
        return values.size() == count;
    });
    return values;
}
