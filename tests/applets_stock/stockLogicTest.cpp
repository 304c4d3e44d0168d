// What is asked for a code, and what is read of the replies.
#include "tests/applets_stock/stockTest.h"
#include <QFile>

namespace {

#define ANSWER "/rundata/data/X-download.xml"

class StockLogic : public StockTest
{
protected:
    bool readFeed(const QByteArray& reply)
    {
        writeFile(ANSWER, reply);
        return logic.XmlPhraseToStockInfoByGoogle(info, ANSWER);
    }
    bool readServer(const QByteArray& reply)
    {
        writeFile(ANSWER, reply);
        return logic.XmlPhraseToStockInfoByNdeck(info, ANSWER);
    }
    static QByteArray rows(const QList<std::pair<QByteArray, QByteArray>>& rows)
    {
        QByteArray reply = "<norvane><ndeck><RootMenu>";
        for (const auto& [title, value] : rows)
            reply += "<any title=\"" + title + "\" value=\"" + value + "\"/>";
        return reply + "</RootMenu></ndeck></norvane>";
    }
    bool readChange(const QByteArray& change, const QByteArray& percent)
    {
        info = {};
        return readFeed(quote("X", change, percent));
    }
    std::string percentOf(const QByteArray& change, const QByteArray& percent)
    {
        info = {};
        EXPECT_TRUE(readServer(rows({{"Change", change}, {"Change in Percent", percent}})));
        return info.strPercChange.GetText();
    }
    std::string dateOf(const QByteArray& date)
    {
        EXPECT_TRUE(readFeed("<xml_api_reply><finance><current_date_utc data=\"" + date +
                             "\"/></finance></xml_api_reply>"));
        return info.strUpdated.GetText();
    }
    static void useSignage()
    {
        const char* const system = "/rundata/config/system.ini";
        nuxSetRegistryString(system, "nDeck", "strServerURL", "http://sign");
        nuxSetRegistryString(system, "nDeck", "strServerKey", "key");
        nuxSetRegistryString(system, "nDeck", "bEnable", "1");
    }

    CStockLogic logic;
    tagCStockInfo info;
};

using StockInfo = StockLogic;
using StockRequest = StockLogic;

} // namespace

TEST_F(StockInfo, AnUnknownStockHasNotAvailableInAllThirteenFields)
{
    tagCStockInfo unknown = STOCK_DEF_INFO;
    for (const chString* field : fieldsOf(unknown))
        EXPECT_STREQ(*field, "N/A");
    EXPECT_EQ(sizeof unknown, 13 * sizeof(chString));
}

TEST_F(StockInfo, ACopyHasAllFieldsAndEachOfThemCountsInAComparison)
{
    for (int i = 0; i < 13; ++i) {
        tagCStockInfo one;
        tagCStockInfo other;
        *fieldsOf(one)[size_t(i)] = "x";
        EXPECT_FALSE(one == other) << i;
        EXPECT_TRUE(one != other) << i;
        CopyStockInfo(other, one);
        EXPECT_STREQ(*fieldsOf(other)[size_t(i)], "x") << i;
        EXPECT_TRUE(one == other) << i;
    }
}

TEST_F(StockInfo, TheTablesHoldTheNamesThatServersUse)
{
    QStringList titles;
    for (const char* title : S_STOCK_MAP)
        titles.append(title);
    EXPECT_EQ(
        titles.join("|").toStdString(),
        "Company Name|Last Trade|Change|Change in Percent|Open|Previous Close|Day's High|Day's Low|Bid|Ask|"
        "Volume|Last Trade Date|Last Trade Time|Market Cap");
    EXPECT_STREQ(S_STOCK_VALUE, "value");
    EXPECT_STREQ(S_STOCK_TITLE, "title");
    EXPECT_STREQ(S_STOCK_ROOTMEUN, "Stock");
}

TEST_F(StockLogic, EachFieldOfThePublicFeedIsOneElement)
{
    const char* const names[] = {
        "company", "last", "change", "perc_change", "open",   "y_close",         "low",
        "high",    "bid",  "ask",    "market_cap",  "volume", "current_date_utc"};
    QByteArray reply = "<xml_api_reply><finance>";
    for (const char* name : names)
        reply += QByteArray("<") + name + " data=\"" + QByteArray(name).left(6) + "\"/>";
    ASSERT_TRUE(readFeed(reply + "</finance></xml_api_reply>"));
    for (int i = 0; i < 13; ++i)
        EXPECT_EQ(QByteArray(*fieldsOf(info)[size_t(i)]), QByteArray(names[i]).left(6) + (i == 3 ? "%" : ""))
            << names[i];
}

TEST_F(StockLogic, AnElementThatIsMissingOrEmptyIsNotAvailable)
{
    ASSERT_TRUE(readFeed("<xml_api_reply><finance><open data=\"\"/><low/></finance></xml_api_reply>"));
    EXPECT_TRUE(info == STOCK_DEF_INFO);
    xmlFile file(nullptr);
    file.ParseDocument("<a><b c=\"d\" e=\"\"/></a>");
    EXPECT_STREQ(CStockLogic::GetStockAttribute(file.GetRootElement(), "b", "c"), "d");
    EXPECT_STREQ(CStockLogic::GetStockAttribute(file.GetRootElement(), "b", "e"), "N/A");
    EXPECT_STREQ(CStockLogic::GetStockAttribute(file.GetRootElement(), "x", "c"), "N/A");
    EXPECT_STREQ(CStockLogic::GetStockAttribute(nullptr, "b", "c"), "");
}

TEST_F(StockLogic, ThePercentOfThePublicFeedGetsItsSigns)
{
    const char* const cases[][3] = {
        {"+0.05", "0.12", "+0.12%"},  {"-0.05", "-0.12", "-0.12%"}, {"-0.05", "0.12", "0.12%"},
        {"+0.05", "+0.12", "+0.12%"}, {"0.05", "0.12", "0.12%"},    {"+0.05", "-0.12", "-0.12%"},
        {"+0.05", "N/A", "N/A"},      {"", "0.12", "0.12%"},        {"+0.05", "", "N/A"}};
    for (const auto& [change, percent, shown] : cases) {
        ASSERT_TRUE(readChange(change, percent));
        EXPECT_STREQ(info.strPercChange, shown) << change << " " << percent;
    }
}

TEST_F(StockLogic, ADateOfMoreThanSixDigitsIsRewritten)
{
    EXPECT_EQ(dateOf("20261121"), "11/21/2026");
    EXPECT_EQ(dateOf("20261121140500"), "11/21/2026");
    EXPECT_EQ(dateOf("2026112"), "11/2/2026");
    EXPECT_EQ(dateOf("202611"), "202611");
}

TEST_F(StockLogic, AReplyWithoutItsRootItsPartOrItsFileIsRefused)
{
    for (const char* reply : {"<finance/>", "<xml_api_reply><other/></xml_api_reply>",
                              "<other><finance/></other>", "<xml_api_reply><finance>", "", "no XML"})
        EXPECT_FALSE(readFeed(reply)) << reply;
    for (const char* reply : {"<norvane/>", "<norvane><ndeck/></norvane>", "<ndeck><RootMenu/></ndeck>",
                              "<norvane><ndeck><RootMenu>", ""})
        EXPECT_FALSE(readServer(reply)) << reply;
    QFile::remove(hostPath(ANSWER));
    EXPECT_FALSE(logic.XmlPhraseToStockInfoByGoogle(info, ANSWER));
    EXPECT_FALSE(logic.XmlPhraseToStockInfoByNdeck(info, ANSWER));
}

TEST_F(StockLogic, RowsOfTheSignageServerAreFoundByTheirTitlesInAnyOrder)
{
    const std::pair<const char*, const char*> titles[] = {
        {"Company Name", "1"}, {"Last Trade", "2"},     {"Change", "3"},      {"Change in Percent", "+4"},
        {"Open", "5"},         {"Previous Close", "6"}, {"Day's Low", "7"},   {"Day's High", "8"},
        {"Bid", "9"},          {"Ask", "10"},           {"Market Cap", "11"}, {"Volume", "12"}};
    QList<std::pair<QByteArray, QByteArray>> sent;
    for (const auto& [title, value] : titles)
        sent.prepend({title, value});
    ASSERT_TRUE(readServer(rows(sent)));
    for (int i = 0; i < 12; ++i)
        EXPECT_STREQ(*fieldsOf(info)[size_t(i)], titles[i].second) << titles[i].first;
}

TEST_F(StockLogic, ARowThatIsMissingLeavesItsFieldAndTheCapIsAppended)
{
    info.strOpen = "as before";
    info.strMarketCap = "12";
    ASSERT_TRUE(readServer(rows({{"Market Cap", ".4B"}, {"open", "146"}})));
    EXPECT_STREQ(info.strOpen, "as before");
    EXPECT_STREQ(info.strMarketCap, "12.4B");
    EXPECT_STREQ(info.strLow, "");
}

TEST_F(StockLogic, TheTimeOfTheLastTradeStandsTwice)
{
    ASSERT_TRUE(readServer(rows({{"Last Trade Time", "4:00pm"}, {"Last Trade Date", "11/21/2026"}})));
    EXPECT_STREQ(info.strUpdated, "11/21/2026 4:00pm4:00pm");
    info = {};
    ASSERT_TRUE(readServer(rows({})));
    EXPECT_STREQ(info.strUpdated, " ");
}

TEST_F(StockLogic, ThePercentOfTheServerTakesTheSignOfTheChangeAndNoPercentSign)
{
    EXPECT_EQ(percentOf("+0.05", "0.12%"), "+0.12%");
    EXPECT_EQ(percentOf("-0.05", "0.12%"), "-0.12%");
    EXPECT_EQ(percentOf("-0.05", "+0.12%"), "+0.12%");
    EXPECT_EQ(percentOf("+0.05", "-0.12"), "-0.12");
    EXPECT_EQ(percentOf("", "0.12"), "0.12");
    EXPECT_EQ(percentOf("0.05", "0.12"), "0.12");
}

TEST_F(StockLogic, AnErrorOfTheServerIsTraced)
{
    EXPECT_FALSE(
        readServer("<norvane><ndeck><result><error>bad key</error></result><RootMenu/></ndeck></norvane>"));
    EXPECT_EQ(traces().mid(traces().indexOf("stock download error"), 2),
              (QStringList{"stock download error", "stock error info(bad key)"}));
    mark();
    EXPECT_FALSE(readServer("<norvane><ndeck><result/><RootMenu/></ndeck></norvane>"));
    EXPECT_TRUE(traces().contains("stock download error"));
    EXPECT_TRUE(traces().filter("stock error info").isEmpty());
}

TEST_F(StockLogic, AStockExistsUnlessFiveFieldsSayNothing)
{
    tagCStockInfo unknown = STOCK_DEF_INFO;
    unknown.strCompany = "Somebody";
    EXPECT_FALSE(CStockLogic::IsExistStock(unknown));
    for (chString tagCStockInfo::*field :
         {&tagCStockInfo::strOpen, &tagCStockInfo::strPercChange, &tagCStockInfo::strPrevClose,
          &tagCStockInfo::strLow, &tagCStockInfo::strHigh}) {
        tagCStockInfo known = unknown;
        known.*field = "1";
        EXPECT_TRUE(CStockLogic::IsExistStock(known));
    }
}

TEST_F(StockLogic, AReplyIsReadByTheSourceThatIsInUse)
{
    writeFile(ANSWER, rows({{"Open", "5"}}));
    EXPECT_FALSE(logic.XmlPhraseToStockInfo(info, ANSWER));
    useSignage();
    EXPECT_TRUE(logic.XmlPhraseToStockInfo(info, ANSWER));
    nuxSetRegistryString("/rundata/config/system.ini", "nDeck", "bEnable", "0");
    nuxSetRegistryString(USER_INI, "Stock", "strSource", "Other");
    for (const QByteArray& reply : {rows({{"Open", "5"}}), quote("X")}) {
        writeFile(ANSWER, reply);
        EXPECT_FALSE(logic.XmlPhraseToStockInfo(info, ANSWER)) << reply.constData();
    }
    nuxSetRegistryString(USER_INI, "Stock", "strSource", "Google");
    EXPECT_TRUE(logic.XmlPhraseToStockInfo(info, ANSWER));
}

TEST_F(StockRequest, TheCodeIsPutBehindTheAddressOfTheFile)
{
    chString url;
    logic.GetURLFormGoogle("A B", url);
    EXPECT_EQ(QByteArray(url), http.url("/ig/api?stock=A B"));
    EXPECT_TRUE(traces().contains("enter GetURLFormGoogle"));
    url = chString();
    logic.GetURLFormGoogle("", url);
    EXPECT_EQ(QByteArray(url), http.url("/ig/api?stock="));
    replaceFirmwareFile(STOCK_SOURCE, "<StockSource><s title=\"Other\" address=\"x\"/></StockSource>");
    url = chString();
    logic.GetURLFormGoogle("HBR", url);
    EXPECT_STREQ(url, "HBR");
}

TEST_F(StockRequest, WithoutTheFileNothingIsAskedAndNothingIsSaid)
{
    kit::BoxAnswers boxes;
    QFile::remove(hostPath(STOCK_SOURCE));
    chReferObject nobody;
    EXPECT_FALSE(logic.SendStockRequest(nobody, "HBR"));
    EXPECT_TRUE(traces().contains("Fail to load xml file [" STOCK_SOURCE "]"));
    EXPECT_EQ(taskPendingCount(), 0);
    kit::settle();
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(StockRequest, TheSignageServerIsAskedWithItsKeys)
{
    useSignage();
    chString url;
    logic.GetURLFormCode("A&b", url);
    const QByteArray address(url);
    EXPECT_TRUE(address.startsWith("http://sign/service/stock.htm?&serverKey=key&hardwareKey="));
    EXPECT_TRUE(address.endsWith("&version=2.0&language=en&code=A&b"));
    EXPECT_TRUE(traces().contains("CStockLogic::GetURLFormNdeck"));
}

TEST_F(StockRequest, TracesAddressAndFileAndIsPosted)
{
    chReferObject nobody;
    EXPECT_FALSE(logic.SendStockRequest(nobody, ""));
    EXPECT_TRUE(logic.SendStockRequest(nobody, "HBR"));
    const QString address = http.url("/ig/api?stock=HBR");
    const QStringList lines = traces().filter("SendStockRequest");
    EXPECT_EQ(lines.mid(lines.size() - 4),
              (QStringList{"enter SendStockRequest", "CStockLogic::SendStockRequest stockURL=" + address,
                           "CStockLogic::SendStockRequest fullpath = /rundata/data/HBR-download.xml",
                           "leave SendStockRequest"}));
    EXPECT_STREQ(logic.Action().strLocalFile, "/rundata/data/HBR-download.xml");
    ASSERT_TRUE(quiet());
    EXPECT_EQ(asked(), QStringList{"HBR"});
    nuxSetRegistryString(USER_INI, "Stock", "strSource", "Other");
    EXPECT_FALSE(logic.SendStockRequest(nobody, "HBR"));
}

TEST_F(StockRequest, GoesOutWithoutANetworkToo)
{
    netWorld().state = NET_DOWN;
    chReferObject nobody;
    EXPECT_TRUE(logic.SendStockRequest(nobody, "HBR"));
    ASSERT_TRUE(quiet());
    EXPECT_EQ(asked(), QStringList{"HBR"});
}

TEST_F(StockRequest, TheActionGivesUpAReferenceForEachViewItIsGiven)
{
    chObject first;
    chObject second;
    for (int i = 0; i < 10; ++i) {
        first.AddRef();
        second.AddRef();
    }
    {
        CStockAction action;
        EXPECT_EQ(action.GetUiObj(), nullptr);
        action.SetUiObj(&first);
        EXPECT_EQ(action.GetUiObj(), &first);
        EXPECT_EQ(first.GetRefCount(), 9);
        action.SetUiObj(&first);
        EXPECT_EQ(first.GetRefCount(), 8);
        action.SetUiObj(&second);
        EXPECT_EQ(first.GetRefCount(), 7);
        EXPECT_EQ(second.GetRefCount(), 9);
        action.SetUiObj(nullptr);
        EXPECT_EQ(second.GetRefCount(), 8);
        EXPECT_EQ(action.GetUiObj(), nullptr);
        action.SetUiObj(&first);
        EXPECT_EQ(first.GetRefCount(), 6);
    }
    EXPECT_EQ(first.GetRefCount(), 5) << "the end of the action is one more";
}

TEST_F(StockLogic, WhatAPhoneThatEndedLeftOfItsAnswersGoes)
{
    const char* const answers[] = {"/rundata/data/OLD-download.xml", "/rundata/data/.NEW-download.xml.save0"};
    const char* const others[] = {"/rundata/data/OLD-download.xml.bak", "/rundata/data/notes.xml",
                                  "/rundata/data/sub/OLD-download.xml", "/rundata/OLD-download.xml"};
    QDir().mkpath(hostPath("/rundata/data/sub"));
    for (const char* file : answers)
        writeFile(file, "<left/>");
    for (const char* file : others)
        writeFile(file, "<kept/>");
    const CStockLogic next;
    for (const char* file : answers)
        EXPECT_FALSE(QFileInfo::exists(hostPath(file))) << file;
    for (const char* file : others)
        EXPECT_EQ(readFile(file), "<kept/>") << file;
}
