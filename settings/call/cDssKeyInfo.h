#pragma once
// One programmable key as "/rundata/data/dsskey.xml" has it. A plain value. User-interface thread.
#include "support/text/chString.h"
#include "support/xml/xmlElement.h"

enum DSS_KEY_TYPE { DSS_KEY_NONE = 0, DSS_KEY_LINE, DSS_KEY_SPEED_DIAL, DSS_KEY_BLF, DSS_KEY_BLF_LIST };

class CDssKeyInfo
{
public:
    CDssKeyInfo() { Reset(); }
    // pNode: the key's Item; null leaves the record reset.
    explicit CDssKeyInfo(xmlElement* pNode);
    CDssKeyInfo(const CDssKeyInfo&) = default;
    // Takes the content over; the place of this record, m_iIndex, stays its own.
    CDssKeyInfo& operator=(const CDssKeyInfo& other);

    void Reset();
    // A Type that is none leaves the record as it is, but for a line that is none.
    void ParseNode(xmlElement* pNode);
    void ParseBLFNode(xmlElement* pNode);
    void ParseSpeedDialNode(xmlElement* pNode);
    void ParseBLFListNode(xmlElement* pNode);
    void ParseLineNode(xmlElement* pNode);
    void ParseNoneNode(xmlElement* pNode);
    // A line that is none becomes "Auto".
    void ReviseLine();
    // As the file and the list spell them, in English; empty for a code that is none.
    chString GetKeyTypeString() const;
    chString GetLineString() const;

    int m_iIndex;          // from 0; -1: not known. Neither it nor the name comes from the file
    chString m_strKeyName; // "01" to "20"
    int m_iType;           // DSS_KEY_TYPE
    int m_iLine;           // 0 to 3, -1 "Auto"
    chString m_strLabel;
    chString m_strExtension;
    chString m_strValue;

private:
    void takeLine(DSS_KEY_TYPE type, xmlElement* pDataNode);
    void clearTexts();
};

// m_iIndex takes no part.
bool operator==(const CDssKeyInfo& a, const CDssKeyInfo& b);
inline bool operator!=(const CDssKeyInfo& a, const CDssKeyInfo& b)
{
    return !(a == b);
}
