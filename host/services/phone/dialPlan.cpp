#include "host/services/phone/dialPlan.h"
#include "support/file/path.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"
#include <algorithm>

namespace {
const char* const kFile = "/rundata/data/dialplan.xml";

QString valueOf(xmlElement* rule, const char* attribute)
{
    return toQString(rule->GetAttributeValue(attribute).GetString());
}
} // namespace

void dialPlan::read()
{
    m_bRead = true;
    xmlFile file;
    if (pathFileExist(kFile) && !file.LoadFromFile(kFile, XML_LIST_LIMIT)) {
        nuxTrace(TRACE_NOTE, "The dial plan cannot be read: %s", file.GetErrorText());
        return;
    }
    m_rules.clear();
    m_nLongest = 0;
    const xmlElement* list = xmlFindElementFromRoot(&file, "DialRule");
    xmlElement* rule = list ? list->FindChildElement("Data") : nullptr;
    for (; rule; rule = xmlGetNextElement(rule)) {
        const QString prefix = valueOf(rule, "Prefix");
        if (prefix.isEmpty() || m_rules.contains(prefix))
            continue;
        m_rules.insert(prefix, valueOf(rule, "Replace"));
        m_nLongest = std::max(m_nLongest, prefix.size());
    }
}

QString dialPlan::rewrite(const QString& number)
{
    if (number.contains('@') || number.contains(':'))
        return number;
    if (!m_bRead)
        read();
    for (qsizetype length = std::min(m_nLongest, number.size()); length > 0; --length) {
        const auto rule = m_rules.constFind(number.left(length));
        if (rule != m_rules.constEnd())
            return *rule + number.mid(length);
    }
    return number;
}
