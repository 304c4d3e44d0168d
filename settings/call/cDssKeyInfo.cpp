#include "settings/call/cDssKeyInfo.h"
#include "support/host/trace.h"
#include "support/text/nuxError.h"
#include "support/xml/xmlFind.h"
#include <climits>
#include <cstdlib>

namespace {

const char* const kTypes[] = {"N/A", "Line", "Speed Dial", "BLF", "BLF List"};
const char* const kLines[] = {"Auto", "Line 1", "Line 2", "Line 3", "Line 4"};
constexpr unsigned int kLastType = 4;
constexpr unsigned int kLastLine = 4; // in the table, which begins with -1

// The settings of the key; they have to be there.
xmlElement* dataOf(xmlElement* pNode)
{
    xmlElement* pDataNode = xmlFindElementFromRoot(pNode, "ItemData");
    NUX_ASSERT(pDataNode != nullptr, "pDataNode != NULL");
    return pDataNode;
}

chString textOf(xmlElement* pDataNode, const char* name)
{
    return pDataNode ? pDataNode->GetAttributeValue(name).GetString() : chString();
}

} // namespace

CDssKeyInfo::CDssKeyInfo(xmlElement* pNode)
{
    Reset();
    if (pNode)
        ParseNode(pNode);
}

CDssKeyInfo& CDssKeyInfo::operator=(const CDssKeyInfo& other)
{
    if (this == &other)
        return *this;
    m_strKeyName = other.m_strKeyName;
    m_iType = other.m_iType;
    m_iLine = other.m_iLine;
    m_strValue = other.m_strValue;
    m_strLabel = other.m_strLabel;
    m_strExtension = other.m_strExtension;
    return *this;
}

void CDssKeyInfo::Reset()
{
    m_iIndex = -1;
    m_iType = DSS_KEY_NONE;
    m_iLine = 0;
    m_strKeyName = "";
    clearTexts();
}

void CDssKeyInfo::clearTexts()
{
    m_strLabel = "";
    m_strExtension = "";
    m_strValue = "";
}

void CDssKeyInfo::ParseNode(xmlElement* pNode)
{
    if (!pNode) {
        nuxTrace(TRACE_NOTE, "int CDssKeyInfo::ParseNode pNode is Null!");
        return;
    }
    const chString type = pNode->GetAttributeValue("Type").GetString();
    if (type == "Speed Dial")
        ParseSpeedDialNode(pNode);
    else if (type == "Line")
        ParseLineNode(pNode);
    else if (type == "BLF List")
        ParseBLFListNode(pNode);
    else if (type == "BLF")
        ParseBLFNode(pNode);
    else if (type == "N/A" || type == "None")
        ParseNoneNode(pNode);
    ReviseLine();
}

// A line that is not there is the first one. What no line can be stays none.
void CDssKeyInfo::takeLine(DSS_KEY_TYPE type, xmlElement* pDataNode)
{
    const long line = strtol(textOf(pDataNode, "Line").GetText(), nullptr, 10);
    m_iLine = line < INT_MIN || line > INT_MAX ? INT_MAX : int(line);
    m_iType = type;
}

void CDssKeyInfo::ParseSpeedDialNode(xmlElement* pNode)
{
    nuxTrace(TRACE_NOTE, "dlgDssKeyList::ParseSpeedDialNode");
    xmlElement* pDataNode = dataOf(pNode);
    takeLine(DSS_KEY_SPEED_DIAL, pDataNode);
    m_strLabel = textOf(pDataNode, "Label");
    // The number of the list of speed dials stands there, and is that list's own.
    m_strExtension = "";
    m_strValue = textOf(pDataNode, "Value");
}

void CDssKeyInfo::ParseBLFNode(xmlElement* pNode)
{
    nuxTrace(TRACE_NOTE, "dlgDssKeyList::ParseBLFNode");
    xmlElement* pDataNode = dataOf(pNode);
    takeLine(DSS_KEY_BLF, pDataNode);
    m_strExtension = textOf(pDataNode, "Extension");
    m_strLabel = textOf(pDataNode, "Label");
    m_strValue = textOf(pDataNode, "Value");
}

void CDssKeyInfo::ParseBLFListNode(xmlElement* pNode)
{
    nuxTrace(TRACE_NOTE, "dlgDssKeyList::ParseBLFListNode");
    takeLine(DSS_KEY_BLF_LIST, dataOf(pNode));
    clearTexts();
}

void CDssKeyInfo::ParseLineNode(xmlElement* pNode)
{
    takeLine(DSS_KEY_LINE, dataOf(pNode));
    clearTexts();
}

void CDssKeyInfo::ParseNoneNode(xmlElement*)
{
    m_iType = DSS_KEY_NONE;
    m_iLine = -1;
    clearTexts();
}

void CDssKeyInfo::ReviseLine()
{
    if (unsigned(m_iLine) + 1 <= kLastLine)
        return;
    nuxTrace(TRACE_NOTE, "Parse DssKey Line error(%d)", m_iLine);
    m_iLine = -1;
}

chString CDssKeyInfo::GetKeyTypeString() const
{
    return unsigned(m_iType) > kLastType ? chString() : chString(kTypes[m_iType]);
}

chString CDssKeyInfo::GetLineString() const
{
    const unsigned int place = unsigned(m_iLine) + 1;
    return place > kLastLine ? chString() : chString(kLines[place]);
}

bool operator==(const CDssKeyInfo& a, const CDssKeyInfo& b)
{
    return a.m_iType == b.m_iType && a.m_iLine == b.m_iLine && a.m_strKeyName == b.m_strKeyName &&
           a.m_strValue == b.m_strValue && a.m_strLabel == b.m_strLabel &&
           a.m_strExtension == b.m_strExtension;
}
