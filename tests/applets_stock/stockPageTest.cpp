// The page "Stock" with a feed that answers: what it shows, asks for and says.
#include "frame/modSetting.h"
#include "frame/popupDialog.h"
#include "support/host/button.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/screen.h"
#include "tests/applets_stock/stockTest.h"
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

const QColor kRed(232, 54, 26);
const QColor kGreen(0, 153, 68);

const char* const kSlow = "NetWork is not good, please wait for a while!";
const char* const kFailed = "Unable connect to Stock server, please check network.";

class StockPage : public StockTest
{
protected:
    QTimer* refreshTimer() const { return page->findChild<QTimer*>(); }
    void exitPage()
    {
        softKey(3);
        EXPECT_FALSE(page->isVisible());
    }
    void tapRefresh()
    {
        kit::tap(child<QPushButton>("btnRefresh"));
        ASSERT_TRUE(quiet());
    }
    QStringList colours() const
    {
        return {colour("labCurrentRate").name(), colour("labCurrentPriceRate").name()};
    }
    static QStringList both(const QColor& colour) { return {colour.name(), colour.name()}; }
};

using StockColours = StockPage;
using StockFailures = StockPage;
using StockLife = StockPage;

} // namespace

TEST_F(StockPage, OpensWithTheFirstStockOfTheFile)
{
    openStock({"HBR", "", "TIDE"});
    EXPECT_EQ(page->windowTitle(), "Stock");
    EXPECT_EQ(text("labStock"), "Stock");
    EXPECT_EQ(shownCodes(), (QStringList{"HBR", "TIDE"}));
    EXPECT_EQ(text("labDenominator"), "1/2");
    EXPECT_EQ(asked(), QStringList{"HBR"});
    EXPECT_EQ(shownQuote(), (QStringList{"HBR", "148.20", "+0.92%", "+1.35", "146.90", "146.85", "146.10",
                                         "148.60", "148.15", "148.25", "12.4B", "1.82M", "11/21/2026"}));
    EXPECT_EQ(softKeys(), (QStringList{"Add stock", "Delete stock", "2aB", "Exit"}));
    EXPECT_EQ(focusName(), "editSearch");
    EXPECT_EQ(stock(), g_pDlgStock);
    EXPECT_STREQ(stock()->strViewName, "strStockUI");
    EXPECT_TRUE(answerFiles().isEmpty());
    kit::shot("stock");
}

TEST_F(StockPage, HasItsCaptionsButtonsAndFonts)
{
    openStock({"HBR"});
    const std::pair<const char*, const char*> captions[] = {{"labOpeningPrice", "Opening Price"},
                                                            {"labPrevClosingPrice", "Prev Closing Price"},
                                                            {"labLow", "Low"},
                                                            {"labHigh", "High"},
                                                            {"labBidPrice", "Bid Price"},
                                                            {"labAskPrice", "Ask Price"},
                                                            {"labMarketCap", "Market Cap"},
                                                            {"labVolume", "Volume"},
                                                            {"labUpdated", "Updated:"}};
    for (const auto& [label, caption] : captions) {
        EXPECT_EQ(text(label), caption);
        EXPECT_EQ(colour(label), colour("labOpeningPrice")) << label;
    }
    EXPECT_EQ(child<QLabel>("labLowData")->font().pixelSize(), 22);
    for (const auto& [label, size, weight] :
         {std::tuple("labStock", 19, QFont::DemiBold), std::tuple("labUpdated", 16, QFont::Normal),
          std::tuple("labTime", 16, QFont::Normal), std::tuple("labStockName", 22, QFont::Normal),
          std::tuple("labCurrentPrice", 44, QFont::DemiBold),
          std::tuple("labCurrentRate", 24, QFont::DemiBold),
          std::tuple("labCurrentPriceRate", 24, QFont::DemiBold),
          std::tuple("labVolumeData", 22, QFont::DemiBold)}) {
        EXPECT_EQ(child<QLabel>(label)->font().pixelSize(), size) << label;
        EXPECT_EQ(child<QLabel>(label)->font().weight(), weight) << label;
    }
    for (const char* name : {"btnRefresh", "btnDelete"})
        EXPECT_EQ(child<QPushButton>(name)->focusPolicy(), Qt::NoFocus);
    const auto* refresh = child<QPushButton>("btnRefresh");
    const auto* remove = child<QPushButton>("btnDelete");
    for (int state = 0; state < 3; ++state) {
        const QString pictures = "/phone/resource/theme/default/bmp/button/btn_%1_bg0%2.png";
        EXPECT_EQ(GetButtonImage(refresh, state), pictures.arg("refresh").arg(state == 1 ? 2 : 1));
        EXPECT_EQ(GetButtonImage(remove, state), pictures.arg("delete").arg(state + 1));
    }
}

TEST_F(StockPage, MarkupAndControlCharactersAreShownAsText)
{
    replies["HBR"] = quote("&lt;b&gt;A&#10;B&lt;/b&gt;");
    openStock({"HBR"});
    EXPECT_EQ(text("labStockName"), "<b>A B</b>");
    replies["HBR"] = quote("A\xe2\x80\xae"
                           "B");
    tapRefresh();
    EXPECT_EQ(text("labStockName"), "A B");
    replies["HBR"] = quote("A\xe2\x80\xa8\x42\xe2\x80\xa9\x43");
    tapRefresh();
    EXPECT_EQ(text("labStockName"), "A B C") << "nor separators of lines and paragraphs";
    for (const char* label : {"labStockName", "labCurrentPrice", "labTime", "labVolumeData"})
        EXPECT_EQ(child<QLabel>(label)->textFormat(), Qt::PlainText);
}

TEST_F(StockPage, LongTextsBecomeSmallerAndStayInTheirPlaces)
{
    openStock({"HBR"});
    replies["HBR"] = quote(QByteArray(100, 'W'), "+" + QByteArray(60000, '1'));
    tapRefresh();
    const QRect screen(0, 0, 800, 480);
    for (const QLabel* label : page->findChildren<QLabel*>())
        EXPECT_TRUE(screen.contains(label->geometry())) << qPrintable(label->objectName());
    EXPECT_LT(child<QLabel>("labStockName")->font().pixelSize(), 22);
    EXPECT_LE(text("labCurrentPriceRate").size(), 200);
    replies["HBR"] = quote("short");
    tapRefresh();
    EXPECT_EQ(child<QLabel>("labStockName")->font().pixelSize(), 22);
}

TEST_F(StockPage, ASelectionClearsThePageAndAsksForTheStock)
{
    openStock({"HBR", "TIDE", "LARK"});
    silent = true;
    kit::key(Qt::Key_Up);
    EXPECT_EQ(focusName(), "cmbStockList");
    EXPECT_EQ(softKeyTitle(2), "");
    kit::key(Qt::Key_Right);
    EXPECT_EQ(shownQuote(), nothingKnown());
    EXPECT_EQ(text("labDenominator"), "2/3");
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(text("labStockName"), "TIDE");
    EXPECT_EQ(asked(), (QStringList{"HBR", "TIDE"}));
    kit::BoxAnswers boxes;
    kit::stepTime(3100);
    EXPECT_TRUE(boxes.texts().isEmpty()) << "the answer came in time";
}

TEST_F(StockPage, AnAnswerThatKeepsWaitingIsToldAfterThreeSeconds)
{
    openStock({"HBR", "TIDE"});
    silent = true;
    list()->setCurrentIndex(1);
    kit::BoxAnswers boxes({"keep"});
    kit::stepTime(2000);
    EXPECT_TRUE(boxes.texts().isEmpty());
    kit::moveClocks(1000);
    EXPECT_TRUE(boxClosesByItself(boxes));
    EXPECT_EQ(boxes.texts(), QStringList{kSlow});
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    kit::stepTime(10000);
    EXPECT_EQ(boxes.texts().size(), 1) << "once";
}

TEST_F(StockPage, ItsEditHasItsInputMethodsInTheirOrder)
{
    openStock({});
    QLineEdit* edit = child<QLineEdit>("editSearch");
    EXPECT_EQ(qGetCurrentIME(edit), "2aB");
    QStringList methods;
    for (int i = 0; i < 4; ++i) {
        qShift2NextIME(edit);
        methods.append(qGetCurrentIME(edit));
    }
    EXPECT_EQ(methods, (QStringList{"ABC", "abc", "123", "2aB"}));
}

TEST_F(StockPage, ThreeSecondsAreEnoughToBeTold)
{
    openStock({"HBR", "TIDE"});
    silent = true;
    kit::BoxAnswers boxes({"ok"});
    list()->setCurrentIndex(1);
    kit::stepTime(3500); // a coarse timer
    EXPECT_EQ(boxes.texts(), QStringList{kSlow});
}

TEST_F(StockPage, TheRefreshButtonAsksAgainAndStartsNoTimer)
{
    openStock({"HBR"});
    silent = true;
    kit::tap(child<QPushButton>("btnRefresh"));
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    kit::BoxAnswers boxes;
    kit::stepTime(10000);
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(asked(), (QStringList{"HBR", "HBR"}));
    EXPECT_EQ(text("labStockName"), "HBR") << "the old quote stays meanwhile";
}

TEST_F(StockPage, TheDeleteButtonDeletesNothing)
{
    openStock({"HBR"});
    kit::BoxAnswers boxes;
    kit::tap(child<QPushButton>("btnDelete"));
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(shownCodes(), QStringList{"HBR"});
}

TEST_F(StockPage, TheTimerRunsAndRefreshesNothing)
{
    openStock({"HBR"});
    EXPECT_TRUE(refreshTimer()->isActive());
    EXPECT_EQ(refreshTimer()->interval(), 60000);
    kit::stepTime(200000);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(asked().size(), 1);
    stock()->OnTimer(0, 0);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(asked().size(), 2);
    exitPage();
    EXPECT_FALSE(refreshTimer()->isActive());
}

TEST_F(StockPage, TheStoredTimeIsThatOfTheTimerAndNeverNone)
{
    writeFile(USER_INI, "[Stock]\nnRiseColor=1\n");
    openStock({});
    EXPECT_EQ(refreshTimer()->interval(), 60000) << "where none is stored";
    exitPage();
    for (const auto& [stored, interval] : {std::pair("5", 5000), std::pair("0", 1000), std::pair("-3", 1000),
                                           std::pair("2147483647", 2147483000)}) {
        nuxSetRegistryString(USER_INI, "Stock", "nTime", stored);
        openStock({});
        EXPECT_EQ(refreshTimer()->interval(), interval);
        exitPage();
    }
}

TEST_F(StockPage, EachDownloadStartsTheTimerAnew)
{
    openStock({"HBR"});
    kit::stepTime(50000);
    tapRefresh();
    EXPECT_GT(refreshTimer()->remainingTime(), 50000);
}

TEST_F(StockPage, AQuoteThatIsTheSameDoesNotRefreshThePageNorEndTheWait)
{
    replies["TIDE"] = quote("HBR");
    openStock({"HBR", "TIDE"});
    kit::BoxAnswers boxes({"ok"});
    select(1);
    EXPECT_EQ(shownQuote(), nothingKnown());
    EXPECT_TRUE(boxComes(boxes, 3000));
    EXPECT_EQ(boxes.texts(), QStringList{kSlow});
}

TEST_F(StockPage, TheQuoteOnShowIsForgottenWhenThePageOpens)
{
    openStock({"HBR"});
    EXPECT_STREQ(GetGlobalCStockController().GetStockInfo().strCompany, "HBR");
    exitPage();
    silent = true;
    open("Stock");
    EXPECT_STREQ(GetGlobalCStockController().GetStockInfo().strCompany, "N/A");
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    release();
    ASSERT_TRUE(quiet());
    EXPECT_STREQ(GetGlobalCStockController().GetStockInfo().strCompany, "HBR");
}

TEST_F(StockPage, TheInputMethodIsShownWhileTheEditHasTheFocus)
{
    openStock({"HBR"});
    softKey(2);
    EXPECT_EQ(softKeyTitle(2), "ABC");
    kit::key(Qt::Key_Up);
    EXPECT_EQ(softKeyTitle(2), "");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(softKeyTitle(2), "ABC");
    exitPage();
    openPage();
    EXPECT_EQ(softKeyTitle(2), "2aB");
    EXPECT_TRUE(traces().contains("-----dlgStock installEventFilter----------"));
    EXPECT_TRUE(traces().contains("-----dlgStock removeEventFilter----------"));
}

TEST_F(StockPage, ExitClearsTheEditAndOpeningAgainBeginsWithTheFirst)
{
    openStock({"HBR", "TIDE"});
    select(1);
    kit::type("NEW");
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "NEW");
    exitPage();
    EXPECT_TRUE(stock()->IsClosed());
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "");
    openPage();
    EXPECT_FALSE(stock()->IsClosed());
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_EQ(text("labStockName"), "HBR");
}

TEST_F(StockPage, EveryOtherWayToCloseIsLikeExit)
{
    openStock({"HBR"});
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(page->isVisible());
    EXPECT_TRUE(stock()->IsClosed());
    openPage();
    page->close();
    EXPECT_TRUE(stock()->IsClosed());
    EXPECT_FALSE(refreshTimer()->isActive());
}

TEST_F(StockColours, ARiseIsGreenAndAFallRed)
{
    openStock({"HBR", "TIDE"});
    EXPECT_EQ(colours(), both(kGreen));
    replies["TIDE"] = quote("TIDE", "-1", "-2");
    select(1);
    EXPECT_EQ(colours(), both(kRed));
}

TEST_F(StockColours, WithRiseColourNoughtARiseIsRedAndAFallGreen)
{
    nuxSetRegistryString(USER_INI, "Stock", "nRiseColor", "0");
    openStock({"HBR", "TIDE"});
    EXPECT_EQ(colours(), both(kRed));
    replies["TIDE"] = quote("TIDE", "-1", "-2");
    select(1);
    EXPECT_EQ(colours(), both(kGreen));
}

TEST_F(StockColours, WithoutARiseColourItIsTheDefault)
{
    writeFile(USER_INI, "[Stock]\n");
    openStock({"HBR"});
    EXPECT_EQ(colours(), both(kGreen));
}

TEST_F(StockColours, AnyOtherChangeLeavesTheColours)
{
    openStock({"HBR", "TIDE"});
    const QStringList before = colours();
    for (const char* change : {"", "0.00", "N/A"}) {
        replies["TIDE"] = quote(QByteArray("TIDE") + change, change, "0");
        select(1);
        EXPECT_EQ(text("labStockName"), QString("TIDE") + change);
        EXPECT_EQ(colours(), before) << change;
        select(0);
    }
}

TEST_F(StockColours, AColourThatIsNoneIsTheDefault)
{
    nuxSetRegistryString(USER_INI, "Stock", "nRiseColor", "77");
    openStock({"HBR"});
    EXPECT_EQ(colours(), both(kGreen));
}

TEST_F(StockFailures, AFailedDownloadIsToldAndThePageStaysAsItWas)
{
    openStock({"HBR"});
    failing.insert("HBR");
    kit::BoxAnswers boxes({"keep"});
    kit::tap(child<QPushButton>("btnRefresh"));
    EXPECT_TRUE(boxClosesByItself(boxes));
    EXPECT_EQ(boxes.texts(), QStringList{kFailed});
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(text("labStockName"), "HBR");
    EXPECT_TRUE(answerFiles().isEmpty());
    EXPECT_EQ(traces().filter("result = ").last(), "result = 0");
}

TEST_F(StockFailures, AReplyThatCannotBeReadAndAnErrorAreDataExceptions)
{
    openStock({"HBR"});
    for (const char* reply : {"<xml_api_reply><finance>", "<other/>", ""}) {
        replies["HBR"] = reply;
        kit::BoxAnswers boxes({"ok"});
        kit::tap(child<QPushButton>("btnRefresh"));
        ASSERT_TRUE(kit::waitUntil([&] { return !boxes.texts().isEmpty(); }, kWaitMs));
        EXPECT_EQ(boxes.texts(), QStringList{"data exception."}) << reply;
        EXPECT_EQ(text("labStockName"), "HBR");
        EXPECT_TRUE(answerFiles().isEmpty());
    }
}

TEST_F(StockFailures, AQuoteWithoutDataShowsThatNothingIsKnown)
{
    openStock({"HBR"});
    replies["HBR"] = "<xml_api_reply><finance/></xml_api_reply>";
    kit::BoxAnswers boxes({"ok"});
    kit::tap(child<QPushButton>("btnRefresh"));
    ASSERT_TRUE(kit::waitUntil([&] { return text("labStockName") == "N/A"; }, kWaitMs));
    EXPECT_EQ(boxes.texts(), QStringList{"No site information"});
    EXPECT_EQ(shownQuote(), nothingKnown());
    EXPECT_TRUE(GetGlobalCStockController().GetStockInfo() == STOCK_DEF_INFO);
    EXPECT_TRUE(answerFiles().isEmpty());
}

TEST_F(StockFailures, WithoutTheSourceFileTheTimerAloneTellsIt)
{
    QFile::remove(hostPath(STOCK_SOURCE));
    kit::BoxAnswers boxes({"ok"});
    openStock({"HBR", "TIDE"});
    EXPECT_TRUE(boxes.texts().isEmpty());
    select(1);
    EXPECT_TRUE(boxComes(boxes, 3000));
    EXPECT_EQ(boxes.texts(), QStringList{kSlow});
    EXPECT_TRUE(asked().isEmpty());
}

TEST_F(StockFailures, ANewerRequestTakesThePlaceOfTheOneUnderWay)
{
    openStock({"HBR", "TIDE", "LARK"});
    silent = true;
    list()->setCurrentIndex(1);
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    list()->setCurrentIndex(2);
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 2; }, kWaitMs));
    kit::BoxAnswers boxes;
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(text("labStockName"), "LARK");
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_TRUE(answerFiles().isEmpty());
}

TEST_F(StockFailures, AnAnswerWhoseCodeWasReplacedIsDiscarded)
{
    openStock({"HBR"});
    CStockAction& action = CreateObject<CStockAction>();
    action.SetUiObj(stock());
    action.nResult = 1;
    action.strLocalFile = "/rundata/data/TIDE-download.xml";
    writeFile(action.strLocalFile, quote("TIDE"));
    kit::BoxAnswers boxes;
    GetGlobalCStockController().OnCallback(&action);
    EXPECT_TRUE(
        traces().contains("CStockController::OnCallback localFile = /rundata/data/TIDE-download.xml"));
    EXPECT_TRUE(traces().contains("result = 1"));
    EXPECT_EQ(traces().last(), "Not new stock!");
    EXPECT_EQ(text("labStockName"), "HBR");
    EXPECT_TRUE(answerFiles().isEmpty());
    EXPECT_TRUE(boxes.texts().isEmpty());
    action.DestroyObject();
}

TEST_F(StockFailures, ACodeThatLeadsOutOfTheFolderFailsAndTouchesNothing)
{
    writeFile("/rundata/config/x-download.xml", "<kept/>");
    kit::BoxAnswers boxes({"ok", "ok"});
    openStock({"../config/x", "a/b", "HBR"});
    ASSERT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 1; }, kWaitMs));
    select(1);
    ASSERT_TRUE(kit::waitUntil([&] { return boxes.texts().size() == 2; }, kWaitMs));
    EXPECT_EQ(boxes.texts(), (QStringList{kFailed, kFailed}));
    EXPECT_TRUE(asked().isEmpty());
    EXPECT_EQ(readFile("/rundata/config/x-download.xml"), "<kept/>");
    EXPECT_TRUE(traces().contains("CStockLogic::SendStockRequest fullpath = "
                                  "/rundata/data/../config/x-download.xml"));
    select(2);
    EXPECT_EQ(text("labStockName"), "HBR");
}

TEST_F(StockFailures, TenMegabytesAreNotTaken)
{
    openStock({"HBR"});
    replies["HBR"] = "<xml_api_reply>" + QByteArray(10 << 20, ' ') + "</xml_api_reply>";
    kit::BoxAnswers boxes({"ok"});
    kit::tap(child<QPushButton>("btnRefresh"));
    ASSERT_TRUE(kit::waitUntil([&] { return !boxes.texts().isEmpty(); }, kWaitMs));
    EXPECT_EQ(boxes.texts(), QStringList{kFailed});
    EXPECT_TRUE(answerFiles().isEmpty());
}

TEST_F(StockLife, AClosedPageHearsNothing)
{
    openStock({"HBR", "TIDE"});
    silent = true;
    list()->setCurrentIndex(1);
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    exitPage();
    kit::BoxAnswers boxes;
    release();
    ASSERT_TRUE(quiet());
    kit::stepTime(4000);
    EXPECT_EQ(shownQuote(), nothingKnown()) << "a good answer";
    EXPECT_STREQ(GetGlobalCStockController().GetStockInfo().strCompany, "HBR");
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(StockLife, WhatCameForAClosedPageGoesWithTheNextRequest)
{
    openStock({"HBR"});
    silent = true;
    kit::tap(child<QPushButton>("btnRefresh"));
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    exitPage();
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(answerFiles(), QStringList{"HBR-download.xml"});
    openStock({"TIDE"});
    EXPECT_TRUE(answerFiles().isEmpty());
}

TEST_F(StockLife, ACoveredPageSaysNothing)
{
    openStock({"HBR", "TIDE"});
    silent = true;
    list()->setCurrentIndex(1);
    QWidget cover;
    cover.setGeometry(0, 0, 800, 480);
    screenBringUp(&cover);
    kit::BoxAnswers boxes;
    kit::stepTime(4000);
    EXPECT_TRUE(logged("box").isEmpty());
}

TEST_F(StockLife, AThousandClosesOpensAndQuestionsTouchNoDeadPage)
{
    openStock({"HBR"});
    silent = true;
    for (int i = 0; i < 1000; ++i) {
        exitPage();
        settingOpenPage(chString("Stock"), nullptr);
        kit::settle();
    }
    EXPECT_EQ(stock()->GetRefCount() < 0, true) << "the count says nothing of the page's life";
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(text("labStockName"), "HBR");
}

TEST_F(StockLife, APageThatIsDestroyedWhileItWaitsIsAskedNoMore)
{
    writeList({"HBR"});
    silent = true;
    for (int i = 0; i < 20; ++i) {
        const QPointer<dlgStock> own = PopupDialog<dlgStock>(nullptr, 0, 1, 0);
        ASSERT_TRUE(kit::waitUntil([this] { return held() >= 1; }, kWaitMs));
        EXPECT_EQ(g_pDlgStock, own.data());
        own->close();
        kit::settle();
        ASSERT_TRUE(own.isNull());
        EXPECT_EQ(g_pDlgStock, nullptr);
        EXPECT_EQ(UpdataStockData(), 0);
        EXPECT_EQ(GetGlobalCStockController().Logic().Action().GetUiObj(), nullptr);
    }
    kit::BoxAnswers boxes;
    release();
    ASSERT_TRUE(quiet());
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(StockLife, WhatIsNoAnswerIsIgnored)
{
    openStock({"HBR"});
    kit::BoxAnswers boxes;
    HttpAction other;
    GetGlobalCStockController().OnCallback(nullptr);
    GetGlobalCStockController().OnCallback(&other);
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(text("labStockName"), "HBR");
}

TEST_F(StockLife, AnOpeningShowsNothingOfTheQuoteBefore)
{
    openStock({"HBR"});
    EXPECT_EQ(text("labStockName"), "HBR");
    exitPage();
    writeList({"TIDE"});
    failing.insert("TIDE");
    kit::BoxAnswers boxes({"ok"});
    settingOpenPage(chString("Stock"), nullptr);
    ASSERT_TRUE(kit::waitUntil([&] { return !boxes.texts().isEmpty(); }, kWaitMs));
    for (const char* label : {"labStockName", "labCurrentPrice", "labTime", "labVolumeData"})
        EXPECT_EQ(text(label), "N/A") << label;
}

TEST_F(StockPage, TheVolumeIsThatOfTradesInEveryLanguage)
{
    GetLanguageHelper()->SetLanguage("German");
    openStock({"HBR"});
    EXPECT_EQ(text("labVolume"), "Umsatz");
    GetLanguageHelper()->SetLanguage("Chinese");
    kit::settle();
    EXPECT_EQ(text("labVolume"), QString::fromUtf8("\u6210\u4ea4\u91cf"));
    GetLanguageHelper()->SetLanguage("English");
    kit::settle();
    EXPECT_EQ(text("labVolume"), "Volume");
}
