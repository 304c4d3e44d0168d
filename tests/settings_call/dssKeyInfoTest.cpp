// The record of one programmable key.
#include "settings/call/cDssKeyInfo.h"
#include "settings/call/dssKeyFile.h"
#include "tests/settings_call/keyPageTest.h"

namespace {

class DssKeyInfo : public KeyPageTest
{
protected:
    static CDssKeyInfo parsed(const QByteArray& text)
    {
        xmlElement* item = xmlParseElementFromText(text);
        EXPECT_NE(item, nullptr) << text.constData();
        const CDssKeyInfo info(item);
        xmlFreeElement(item);
        return info;
    }
    // "type line label extension value".
    static std::string all(const CDssKeyInfo& info)
    {
        return std::to_string(info.m_iType) + " " + std::to_string(info.m_iLine) + " " +
               info.m_strLabel.GetText() + " " + info.m_strExtension.GetText() + " " +
               info.m_strValue.GetText();
    }
};

} // namespace

TEST_F(DssKeyInfo, EachTypeTakesWhatItKnowsAndClearsTheRest)
{
    const char* const data = "Line=\"2\" Label=\"l\" Extension=\"e\" Value=\"v\"";
    EXPECT_EQ(all(parsed(item("Speed Dial", data))), "2 2 l  v");
    EXPECT_EQ(all(parsed(item("Line", data))), "1 2   ");
    EXPECT_EQ(all(parsed(item("BLF List", data))), "4 2   ");
    EXPECT_EQ(all(parsed(item("BLF", data))), "3 2 l e v");
    EXPECT_EQ(all(parsed(item("N/A", data))), "0 -1   ");
    EXPECT_EQ(all(parsed(item("None", data))), "0 -1   ");
}

TEST_F(DssKeyInfo, AnotherParseClearsWhatTheRecordHad)
{
    CDssKeyInfo info;
    for (const char* type : {"Line", "BLF List", "N/A", "Speed Dial"}) {
        info.m_strLabel = info.m_strExtension = info.m_strValue = "old";
        xmlElement* node = xmlParseElementFromText(item(type, "Line=\"1\""));
        info.ParseNode(node);
        xmlFreeElement(node);
        EXPECT_EQ(std::string(info.m_strLabel.GetText()) + info.m_strExtension.GetText() +
                      info.m_strValue.GetText(),
                  "")
            << type;
    }
}

TEST_F(DssKeyInfo, AKeyThatIsFreeNowIsOfNoTypeAnyMore)
{
    CDssKeyInfo info = parsed(item("BLF", "Line=\"1\" Label=\"l\" Extension=\"e\" Value=\"v\""));
    xmlElement* node = xmlParseElementFromText("<Item Type=\"N/A\"/>");
    info.ParseNode(node);
    xmlFreeElement(node);
    EXPECT_EQ(all(info), "0 -1   ");
}

TEST_F(DssKeyInfo, AResetLeavesNothingOfARecord)
{
    CDssKeyInfo info = parsed(item("BLF", "Line=\"1\" Label=\"l\" Extension=\"e\" Value=\"v\""));
    info.m_strKeyName = "03";
    info.m_iIndex = 2;
    info.Reset();
    EXPECT_EQ(all(info), "0 0   ");
    EXPECT_STREQ(info.m_strKeyName, "");
    EXPECT_EQ(info.m_iIndex, -1);
}

TEST_F(DssKeyInfo, TheNamesAreComparedCaseForCase)
{
    EXPECT_EQ(all(parsed(item("speed dial", "Line=\"2\" Value=\"v\""))), "0 0   ");
    EXPECT_EQ(all(parsed(item("BLF list", "Line=\"2\""))), "0 0   ");
}

TEST_F(DssKeyInfo, NoneIsAnotherWordForNotAssigned)
{
    const CDssKeyInfo info = parsed("<Item Type=\"None\"/>");
    EXPECT_EQ(all(info), "0 -1   ");
    EXPECT_STREQ(info.GetKeyTypeString(), "N/A");
}

TEST_F(DssKeyInfo, ALineThatIsNoneBecomesAutoAndIsTraced)
{
    const struct
    {
        const char* stored;
        int line;
        const char* trace; // null: none
    } cases[] = {{"7", -1, "(7)"},
                 {"4", -1, "(4)"},
                 {"-2", -1, "(-2)"},
                 {"-1", -1, nullptr},
                 {"3", 3, nullptr},
                 {"", 0, nullptr},
                 {"2nd", 2, nullptr},
                 {"4294967296", -1, "(2147483647)"},
                 {"99999999999999999999", -1, "(2147483647)"}};
    for (const auto& one : cases) {
        mark();
        const QByteArray data = QByteArray("Line=\"") + one.stored + "\"";
        EXPECT_EQ(parsed(item("BLF", data)).m_iLine, one.line) << one.stored;
        EXPECT_EQ(reports("Parse DssKey Line error"), one.trace ? 1 : 0) << one.stored;
        if (one.trace) {
            EXPECT_EQ(reports(QString("Parse DssKey Line error") + one.trace), 1) << one.stored;
        }
    }
}

TEST_F(DssKeyInfo, ALineKeyWithoutALineIsOnTheFirst)
{
    EXPECT_EQ(parsed(item("Line", "")).m_iLine, 0);
}

TEST_F(DssKeyInfo, TheNumberOfTheSpeedDialListIsNotTheEditors)
{
    EXPECT_EQ(all(parsed(item("Speed Dial", "Line=\"0\" Extension=\"4711\""))), "2 0   ");
}

TEST_F(DssKeyInfo, AnUnknownTypeLeavesARecordReset)
{
    EXPECT_EQ(all(parsed(item("Sculpture", "Line=\"2\" Value=\"v\""))), "0 0   ");
    EXPECT_EQ(all(parsed("<Item/>")), "0 0   ");
    EXPECT_EQ(CDssKeyInfo().m_iIndex, -1);
}

TEST_F(DssKeyInfo, MissingSettingsAreReportedAndReadAsEmpty)
{
    for (const char* type : {"Line", "Speed Dial", "BLF", "BLF List"}) {
        mark();
        EXPECT_EQ(parsed(QByteArray("<Item Type=\"") + type + "\"/>").m_iLine, 0);
        EXPECT_EQ(reports("pDataNode != NULL"), 1) << type;
    }
    mark();
    parsed("<Item Type=\"N/A\"/>");
    EXPECT_EQ(reports("pDataNode != NULL"), 0);
}

TEST_F(DssKeyInfo, ANodeThatIsNoneIsTracedAndChangesNothing)
{
    CDssKeyInfo info;
    info.m_iType = DSS_KEY_BLF;
    info.m_iLine = 9;
    info.ParseNode(nullptr);
    EXPECT_EQ(reports("int CDssKeyInfo::ParseNode pNode is Null!"), 1);
    EXPECT_EQ(info.m_iType, DSS_KEY_BLF);
    EXPECT_EQ(info.m_iLine, 9);
    mark();
    const CDssKeyInfo made(nullptr);
    EXPECT_EQ(all(made), "0 0   ");
    EXPECT_EQ(reports("pNode is Null"), 0);
}

TEST_F(DssKeyInfo, TheParsersAreTraced)
{
    const struct
    {
        const char* type;
        const char* trace; // null: none
    } cases[] = {{"Speed Dial", "dlgDssKeyList::ParseSpeedDialNode"},
                 {"BLF", "dlgDssKeyList::ParseBLFNode"},
                 {"BLF List", "dlgDssKeyList::ParseBLFListNode"},
                 {"Line", nullptr},
                 {"N/A", nullptr}};
    for (const auto& one : cases) {
        mark();
        parsed(item(one.type, "Line=\"0\""));
        EXPECT_EQ(reports("dlgDssKeyList::Parse"), one.trace ? 1 : 0) << one.type;
        if (one.trace) {
            EXPECT_EQ(traces().count(one.trace), 1) << one.type;
        }
    }
}

TEST_F(DssKeyInfo, ItsPlaceTakesNoPartInComparisonAndAssignment)
{
    CDssKeyInfo first = parsed(item("BLF", "Line=\"1\" Label=\"l\" Extension=\"e\" Value=\"v\""));
    first.m_strKeyName = "03";
    CDssKeyInfo second = first;
    second.m_iIndex = 7;
    EXPECT_TRUE(first == second);
    second.Reset();
    second.m_iIndex = 7;
    second = first;
    EXPECT_EQ(second.m_iIndex, 7);
    EXPECT_TRUE(first == second);
    const CDssKeyInfo& same = second;
    second = same;
    EXPECT_EQ(all(second), "3 1 l e v");
    const CDssKeyInfo copy(second);
    EXPECT_EQ(copy.m_iIndex, 7);
}

TEST_F(DssKeyInfo, EachFieldButThePlaceTellsRecordsApart)
{
    const CDssKeyInfo first = parsed(item("BLF", "Line=\"1\" Label=\"l\" Extension=\"e\" Value=\"v\""));
    CDssKeyInfo other = first;
    other.m_iType = DSS_KEY_LINE;
    EXPECT_TRUE(first != other);
    other = first;
    other.m_iLine = 2;
    EXPECT_TRUE(first != other);
    for (chString CDssKeyInfo::*const text : {&CDssKeyInfo::m_strKeyName, &CDssKeyInfo::m_strLabel,
                                              &CDssKeyInfo::m_strExtension, &CDssKeyInfo::m_strValue}) {
        other = first;
        other.*text = "another";
        EXPECT_TRUE(first != other);
    }
}

TEST_F(DssKeyInfo, CodesThatAreNoneHaveNoText)
{
    CDssKeyInfo info;
    for (const int type : {5, -1}) {
        info.m_iType = type;
        EXPECT_STREQ(info.GetKeyTypeString(), "") << type;
    }
    for (const int line : {4, -2}) {
        info.m_iLine = line;
        EXPECT_STREQ(info.GetLineString(), "") << line;
    }
    const char* const lines[] = {"Auto", "Line 1", "Line 2", "Line 3", "Line 4"};
    for (int line = -1; line <= 3; ++line) {
        info.m_iLine = line;
        EXPECT_STREQ(info.GetLineString(), lines[line + 1]);
    }
    const char* const types[] = {"N/A", "Line", "Speed Dial", "BLF", "BLF List"};
    for (int type = 0; type <= 4; ++type) {
        info.m_iType = type;
        EXPECT_STREQ(info.GetKeyTypeString(), types[type]);
    }
}

TEST_F(DssKeyInfo, KeysAreNamedWithTwoDigitsAndFoundByTheirPlace)
{
    EXPECT_STREQ(dssKeyName(1), "01");
    EXPECT_STREQ(dssKeyName(9), "09");
    EXPECT_STREQ(dssKeyName(10), "10");
    EXPECT_STREQ(dssKeyName(20), "20");
    writeFile(KEY_FILE, "<DssKey><note/><Item Type=\"Line\"/><!-- two --><x/><Item Type=\"BLF\"/></DssKey>");
    xmlFile file;
    ASSERT_EQ(dssKeyLoad(file), 1);
    EXPECT_STREQ(dssKeyItem(dssKeyRoot(file), 2)->GetAttributeValue("Type").GetText(), "BLF");
    EXPECT_EQ(dssKeyItem(dssKeyRoot(file), 3), nullptr);
    EXPECT_EQ(dssKeyItem(dssKeyRoot(file), 0), nullptr);
    EXPECT_EQ(dssKeyItem(nullptr, 1), nullptr);
}
