// From page names to what opens them.
#include "frame/pageTable.h"
#include "frame/configFiles.h"
#include "frame/dlgIconviewForm.h"
#include "frame/menuOpening.h"
#include "frame/pageClass.h"
#include "frame/pageLists.h"
#include "frame/roomHooks.h"
#include "support/host/combo.h"
#include "support/host/dialogs.h"
#include "support/text/nuxError.h"
#include "tests/frame/failingMenu.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QApplication>
#include <QFile>
#include <QPointer>
#include <QTimer>

namespace {

// One class for each page of the table that is not the host's.
template <int N>
class NumberedPage : public dlgBarePage
{
public:
    NumberedPage(QWidget* parent, tagLeftBarInfo* info) : dlgBarePage(parent, info) {}
};

const char* const kPageClasses[] = {
    "dlgMediaManager", "dlgPhone_Setting",
    "dlgScreenSaver",  "dlgSound",
    "dlgSecurity",     "dlgAccount_Setting_Btn",
    "dlgWan",          "dlgForward_Setting",
    "dlgAuto_Answer",  "dlgVoice_Mail_Setting",
    "dlgDssKeyList",   "dlgKey_As_Send",
    "dlgStatus",       "dlgDateAndTime",
    "dlgCall_Waiting", "dlgVideoSet",
    "dlgHotline",      "dlgPictureDialSetting",
    "dlgTvOutPut",     "dlgAnonymousCallDialog",
    "dlgWeather",      "dlgStock",
    "dlgCalibration",  "dlgVersion_Detail",
    "dlgAutoServer",
};
enum { PAGE_CLASSES = sizeof kPageClasses / sizeof kPageClasses[0] };

template <int N>
void enterFrom()
{
    static PageClass page(kPageClasses[N], pagePopup<NumberedPage<N>>);
    if constexpr (N + 1 < PAGE_CLASSES)
        enterFrom<N + 1>();
}

QStringList g_calls;

QDialog* makeIndexed(const char* what, int index)
{
    g_calls.append(QString("%1 %2").arg(what).arg(index));
    return new dlgBarePage;
}

void enterHooks()
{
    tagRoomHooks& hooks = roomHooks();
    hooks.makeAccountPage = [](int index) { return makeIndexed("account", index); };
    hooks.makeDoorPhonePage = [](int index) { return makeIndexed("door phone", index); };
    hooks.voiceMessageDialOut = [] {
        g_calls.append("dial out");
        return 0;
    };
    hooks.loadMediaManager = [](QDialog* page, const char* title, const char* icon, MEDIA_FAMILY family,
                                const char* section) {
        g_calls.append(
            QString("%1 %2 %3 %4 %5").arg(page->isVisible()).arg(title, icon).arg(family).arg(section));
    };
    hooks.playImageFile = [] { return int(g_calls.contains("playable")); };
    hooks.playVideoFile = hooks.playImageFile;
    hooks.isNdeckEnable = [] { return int(!g_calls.contains("disabled")); };
    hooks.ndeckSetAutoUpdateEnable = [](int enable) { g_calls.append(QString("update %1").arg(enable)); };
    hooks.ndeckDownloadDisplayFrame = [] { g_calls.append("download"); };
    hooks.ndeckWindowDisplay = [](int show, int type, QWidget* parent, QRect rect) {
        const bool whole = rect == QRect(0, 0, 800, 480);
        g_calls.append(QString("window %1 %2 %3 %4").arg(show).arg(type).arg(parent == nullptr).arg(whole));
        return 1;
    };
}

void clearHooks()
{
    roomHooks() = tagRoomHooks();
}

const tagLeftBarInfo kInfo{HX_THEME("menu/menu_wan.png"), "Clicked"};

// The names are in the order in which they are tried.
struct Row
{
    const char* name;
    bool passesInfo;
    const char* pageClass; // of the rows that open one cached page and nothing else
};

const Row kExpected[] = {
    {"Directory", false, nullptr},
    {"Call Histroy", false, "dlgCallHistroy"},
    {"Wallpaper Manager", false, nullptr},
    {"Contact Picture Manage", false, nullptr},
    {"Photo Manager", false, nullptr},
    {"Video Manager", false, nullptr},
    {"Sound Manager", false, nullptr},
    {"Personalize", true, "dlgPhone_Setting"},
    {"Screen Saver", true, "dlgScreenSaver"},
    {"Sound Set", true, "dlgSound"},
    {"Security", true, "dlgSecurity"},
    {"Account Setting", false, "dlgAccount_Setting_Btn"},
    {"Account", false, nullptr},
    {"WAN", true, "dlgWan"},
    {"Forward", true, "dlgForward_Setting"},
    {"Auto Answer", true, "dlgAuto_Answer"},
    {"Voice Mail", true, "dlgVoice_Mail_Setting"},
    {"DSS Key", false, "dlgDssKeyList"},
    {"Key As Send", true, "dlgKey_As_Send"},
    {"Status", false, "dlgStatus"},
    {"Date & Time", true, "dlgDateAndTime"},
    {"Call Waiting", true, "dlgCall_Waiting"},
    {"Message", true, "dlgVoice_Mail_Setting"},
    {"Photo Play", false, nullptr},
    {"Video Play", false, nullptr},
    {"Factory", false, nullptr},
    {"Reboot", false, nullptr},
    {"Video Set", true, "dlgVideoSet"},
    {"Hotline", true, "dlgHotline"},
    {"Picture-dial Setting", true, "dlgPictureDialSetting"},
    {"TV Output", true, "dlgTvOutPut"},
    {"Anonymous Call", true, "dlgAnonymousCallDialog"},
    {"Door Phone", false, nullptr},
    {"Weather", false, "dlgWeather"},
    {"Stock", false, "dlgStock"},
    {"LCD Adjusting", false, nullptr},
    {"Ndeck", false, nullptr},
    {"Version Detail", false, nullptr},
    {"Auto Provision", true, "dlgAutoServer"},
    {"", false, nullptr},
};

// The phone without any room but the frame.
class BarePageTable : public FrameTest
{
protected:
    BarePageTable() { clearHooks(); }
    // The one box that opening the name shows.
    QString note(const char* name, const QStringList& answers = {"ok"})
    {
        kit::BoxAnswers boxes(answers);
        settingOpenPage(name, nullptr);
        m_strTitle = boxes.titles().value(0);
        EXPECT_EQ(boxes.unexpected(), 0) << name;
        return boxes.texts().join("|");
    }
    QString m_strTitle;
};

// With all rooms.
class PageTable : public BarePageTable
{
protected:
    PageTable()
    {
        enterFrom<0>();
        enterHooks();
        g_calls.clear();
    }
    ~PageTable() override { clearHooks(); }

    static QDialog* page(const char* name) { return PageClass::Find(name)->Open(1, 0); }
    static LeftBarOperation* barOf(QDialog* dialog) { return dynamic_cast<LeftBarOperation*>(dialog); }
};

} // namespace

TEST_F(PageTable, HasItsFortyRowsInOrder)
{
    static_assert(sizeof kExpected / sizeof kExpected[0] == PAGE_ROW_COUNT);
    for (int i = 0; i < PAGE_ROW_COUNT; ++i) {
        const tagPageRow& row = pageTable()[i];
        EXPECT_STREQ(row.szName, kExpected[i].name);
        EXPECT_EQ(row.eInfo == PASSES_INFO, kExpected[i].passesInfo) << row.szName;
        EXPECT_EQ(row.eMatch == MATCH_PREFIX, i == 12 || i == 32) << row.szName;
        EXPECT_EQ(row.eOverloads == PLAIN_OVERLOAD, i == 37) << row.szName;
    }
    EXPECT_EQ(pageTable()[PAGE_ROW_COUNT - 1].eMatch, MATCH_ANY);
}

TEST_F(PageTable, EachPlainRowOpensItsPageAndPassesItsInfoOrNone)
{
    for (const Row& row : kExpected) {
        if (!row.pageClass)
            continue;
        QDialog* dialog = page(row.pageClass);
        settingOpenPage(row.name, kInfo, nullptr);
        EXPECT_TRUE(dialog->isVisible()) << row.name;
        tagLeftBarInfo* info = barOf(dialog)->m_pLeftBarInfo;
        ASSERT_EQ(info != nullptr, row.passesInfo) << row.name;
        if (info) {
            EXPECT_EQ(info->strTitle, "Clicked") << row.name;
            EXPECT_EQ(info->strIcon, kInfo.strIcon) << row.name;
            EXPECT_EQ(barOf(dialog)->m_pLeftBar->title(), "Clicked") << row.name;
        }
        dialog->hide();
    }
}

TEST_F(PageTable, ThePlainOverloadOpensTheSamePagesWithoutInfo)
{
    for (const Row& row : kExpected) {
        if (!row.pageClass)
            continue;
        QDialog* dialog = page(row.pageClass);
        settingOpenPage(row.name, nullptr);
        EXPECT_TRUE(dialog->isVisible()) << row.name;
        EXPECT_EQ(barOf(dialog)->m_pLeftBarInfo, nullptr) << row.name;
        dialog->hide();
    }
}

TEST_F(PageTable, ASecondInfoReplacesTheFirstInTheLeftBar)
{
    settingOpenPage("WAN", {HX_THEME("menu/menu_wan.png"), "WAN"}, nullptr);
    settingOpenPage("WAN", {HX_THEME("menu/menu_status.png"), "Status"}, nullptr);
    EXPECT_EQ(barOf(page("dlgWan"))->m_pLeftBar->title(), "Status");
    EXPECT_EQ(barOf(page("dlgWan"))->m_pLeftBar->icon(), HX_THEME("menu/menu_status.png"));
}

TEST_F(PageTable, NamesAreComparedWholeAndWithCase)
{
    for (const char* name : {"wan", "WAN ", "WA", "", "Status2"})
        EXPECT_EQ(note(name), "Unknow dialog type") << name;
    EXPECT_EQ(m_strTitle, "Note");
}

TEST_F(PageTable, TheLocalPhoneBookOpensAtOnceWithoutRemoteDirectoryAndLDAP)
{
    settingOpenPage("Directory", kInfo, nullptr);
    EXPECT_TRUE(page("dlgPhoneBook")->isVisible());
    EXPECT_EQ(barOf(page("dlgPhoneBook"))->m_pLeftBarInfo, nullptr);
    EXPECT_EQ(GetListFrame().size(), 0);
}

TEST_F(PageTable, WithLDAPTheDirectoryMenuOpens)
{
    writeKey(USER_INI, "LDAP", "bEnable", "1");
    settingOpenPage("Directory", nullptr);
    EXPECT_FALSE(page("dlgPhoneBook")->isVisible());
    ASSERT_EQ(GetListFrame().size(), 1);
    EXPECT_TRUE(GetListFrame().front().pValue->isVisible());
}

TEST_F(PageTable, WithARemoteDirectoryTheDirectoryMenuOpens)
{
    writeFile(REMOTE_BOOK_XML, "<root><RemotePhoneBook><item name='a' url='b'/></RemotePhoneBook></root>");
    settingOpenPage("Directory", nullptr);
    EXPECT_FALSE(page("dlgPhoneBook")->isVisible());
    EXPECT_EQ(GetListFrame().size(), 1);
}

TEST_F(PageTable, TheLocalPhoneBookOpensWhenTheDirectoryMenuCannotBeMade)
{
    writeFile(REMOTE_BOOK_XML, "<root><RemotePhoneBook><item name='a' url='b'/></RemotePhoneBook></root>");
    FailingMenu failing;
    settingOpenPage("Directory", nullptr);
    EXPECT_TRUE(page("dlgPhoneBook")->isVisible());
    EXPECT_EQ(GetListFrame().size(), 0);
}

TEST_F(PageTable, TheMediaManagerGetsTitleIconAndSectionOfEachOfItsNames)
{
    const char* const names[] = {"Wallpaper Manager", "Contact Picture Manage", "Photo Manager",
                                 "Video Manager", "Sound Manager"};
    for (const char* name : names)
        settingOpenPage(name, kInfo, nullptr);
    const QString theme = "/phone/resource/theme/default/bmp/menu/";
    EXPECT_EQ(g_calls, QStringList({
                           "1 Wallpaper Manager " + theme + "menu_screensaver.png 0 wallpaper",
                           "1 Contact Picture Manage " + theme + "menu_contactimage.png 0 contact-image",
                           "1 Photo Manager " + theme + "menu_photomanage.png 0 ephoto",
                           "1 Video Manager " + theme + "menu_videomanage.png 1 ad",
                           "1 Ringtone Manager " + theme + "menu_soundset.png 2 sound",
                       }))
        << show(g_calls);
    EXPECT_TRUE(page("dlgMediaManager")->isVisible());
    EXPECT_EQ(barOf(page("dlgMediaManager"))->m_pLeftBarInfo, nullptr);
}

TEST_F(PageTable, AccountSettingIsTheListAndNotAnAccount)
{
    chString name("Account Setting");
    settingOpenPage(name, nullptr);
    EXPECT_TRUE(page("dlgAccount_Setting_Btn")->isVisible());
    EXPECT_STREQ(name.GetText(), "Account Setting");
    EXPECT_EQ(g_calls, QStringList());
}

TEST_F(PageTable, AnAccountByNameIsAlwaysNumber48AndItsDigitIsOverwritten)
{
    chString name("Account1");
    settingOpenPage(name, nullptr);
    EXPECT_STREQ(name.GetText(), "Account0");
    chString other("Account23");
    settingOpenPage(other, kInfo, nullptr);
    EXPECT_STREQ(other.GetText(), "Account03");
    EXPECT_EQ(g_calls, QStringList("account 48"));
    EXPECT_TRUE(PopupAccountDialog(48, 0)->isVisible());
    EXPECT_FALSE(page("dlgAccount_Setting_Btn")->isVisible());
}

TEST_F(PageTable, OnlyTheCallersOwnTextIsOverwritten)
{
    chString kept("Account3");
    chString name = kept;
    settingOpenPage(name, nullptr);
    EXPECT_STREQ(name.GetText(), "Account0");
    EXPECT_STREQ(kept.GetText(), "Account3");
}

TEST_F(PageTable, AnAccountWithoutDigitStaysWhole)
{
    static int reports;
    reports = 0;
    nuxSetErrorSink([](const char*) { ++reports; });
    chString name("Account");
    settingOpenPage(name, nullptr);
    nuxSetErrorSink(nullptr);
    EXPECT_EQ(reports, 0);
    EXPECT_STREQ(name.GetText(), "Account");
    EXPECT_EQ(name.GetLength(), 7);
    EXPECT_EQ(g_calls, QStringList("account 48"));
}

TEST_F(PageTable, ADoorPhoneIsOpenedByTheDigitBehindItsName)
{
    for (const char* name : {"Door Phone3", "Door Phone7x", "Door Phone", "Door Phone 2", "Door Phonex"})
        settingOpenPage(name, nullptr);
    EXPECT_EQ(g_calls, QStringList({"door phone 3", "door phone 7", "door phone 0"})) << show(g_calls);
    EXPECT_TRUE(PopupDoorPhoneDialog(3, 0)->isVisible());
}

TEST_F(PageTable, PagesByIndexAreMadeOnceAndShownOnDemand)
{
    QDialog* second = PopupAccountDialog(2, 0);
    EXPECT_FALSE(second->isVisible());
    EXPECT_EQ(PopupAccountDialog(2, 1), second);
    EXPECT_TRUE(second->isVisible());
    EXPECT_NE(PopupAccountDialog(1, 0), second);
    EXPECT_NE(PopupDoorPhoneDialog(2, 0), second);
    EXPECT_EQ(g_calls, QStringList({"account 2", "account 1", "door phone 2"})) << show(g_calls);
}

TEST_F(PageTable, AMessageOpensTheVoiceMailPageUnlessItDialsOutByItself)
{
    settingOpenPage("Message", kInfo, nullptr);
    EXPECT_TRUE(page("dlgVoice_Mail_Setting")->isVisible());
    page("dlgVoice_Mail_Setting")->hide();
    writeKey(SYSTEM_INI, "Features", "bAutoCallOutMessage", "2");
    settingOpenPage("Message", nullptr);
    EXPECT_TRUE(page("dlgVoice_Mail_Setting")->isVisible());
    page("dlgVoice_Mail_Setting")->hide();
    EXPECT_EQ(g_calls, QStringList());
    writeKey(SYSTEM_INI, "Features", "bAutoCallOutMessage", "1");
    settingOpenPage("Message", kInfo, nullptr);
    EXPECT_EQ(g_calls, QStringList("dial out"));
    EXPECT_FALSE(page("dlgVoice_Mail_Setting")->isVisible());
}

TEST_F(PageTable, APlayerThatCannotStartIsBlamedOnAnUpgrade)
{
    EXPECT_EQ(note("Photo Play"), "auto upgrading!");
    EXPECT_EQ(m_strTitle, "Note");
    EXPECT_EQ(note("Video Play"), "auto upgrading!");
    g_calls.append("playable");
    EXPECT_EQ(note("Photo Play", {}), "");
    EXPECT_EQ(note("Video Play", {}), "");
}

TEST_F(BarePageTable, AFactoryResetRunsOnlyAfterYes)
{
    EXPECT_EQ(note("Factory", {"no"}), "Reset to factory?");
    EXPECT_EQ(m_strTitle, "Note");
    EXPECT_EQ(logged("command"), QStringList());
    EXPECT_EQ(note("Factory", {"yes"}), "Reset to factory?");
    EXPECT_EQ(logged("command"), QStringList("/phone/scripts/factory.sh")) << show(logged("command"));
}

TEST_F(BarePageTable, ARebootHappensOnlyAfterYes)
{
    EXPECT_EQ(note("Reboot", {"no"}), "Reboot device?");
    EXPECT_EQ(m_strTitle, "Note");
    EXPECT_EQ(logged("reboot"), QStringList());
    EXPECT_EQ(note("Reboot", {"yes"}), "Reboot device?");
    EXPECT_EQ(logged("reboot").size(), 1);
}

TEST_F(PageTable, StockOpensOnlyWhenItsFileLoads)
{
    settingOpenPage("Stock", nullptr);
    EXPECT_TRUE(page("dlgStock")->isVisible());
    page("dlgStock")->hide();
    writeFile(STOCK_DATA_XML, "<Stock><item");
    EXPECT_EQ(note("Stock"), "Fail to load xml file [/rundata/data/stockData.xml]");
    QFile::remove(hostPath(STOCK_DATA_XML));
    EXPECT_EQ(note("Stock"), "Fail to load xml file [/rundata/data/stockData.xml]");
    EXPECT_EQ(m_strTitle, "Note");
    EXPECT_FALSE(page("dlgStock")->isVisible());
}

TEST_F(PageTable, TheNoteAboutStockClosesByItselfAfterThreeSeconds)
{
    QFile::remove(hostPath(STOCK_DATA_XML));
    kit::BoxAnswers boxes({"keep"});
    bool early = false;
    QTimer::singleShot(0, [&] {
        kit::stepTime(2800);
        early = QApplication::activeModalWidget() == nullptr;
        kit::stepTime(400);
    });
    settingOpenPage("Stock", nullptr);
    EXPECT_FALSE(early);
    EXPECT_EQ(boxes.texts().size(), 1);
}

TEST_F(PageTable, CalibrationAsksFirstAndIsMadeAnewEachTime)
{
    EXPECT_EQ(note("LCD Adjusting", {"no"}), "Touch screen calibration will begin.");
    EXPECT_EQ(m_strTitle, "Note");
    EXPECT_FALSE(page("dlgCalibration")->isVisible());
    const int before = QApplication::topLevelWidgets().size();
    EXPECT_EQ(note("LCD Adjusting", {"yes"}), "Touch screen calibration will begin.");
    EXPECT_EQ(note("LCD Adjusting", {"yes"}), "Touch screen calibration will begin.");
    QList<QWidget*> made;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->testAttribute(Qt::WA_DeleteOnClose) &&
            barOf(qobject_cast<QDialog*>(window)))
            made.append(window);
    }
    EXPECT_EQ(made.size(), 2);
    EXPECT_FALSE(page("dlgCalibration")->isVisible());
    for (QWidget* window : made)
        window->close();
    kit::settle();
    EXPECT_LE(QApplication::topLevelWidgets().size(), before);
}

TEST_F(PageTable, TheSignageWindowIsShownAndWithInfoTheScheduleIsFetchedFirst)
{
    settingOpenPage("Ndeck", nullptr);
    EXPECT_EQ(g_calls, QStringList("window 1 2 1 1"));
    g_calls.clear();
    settingOpenPage("Ndeck", kInfo, nullptr);
    EXPECT_EQ(g_calls, QStringList({"update 0", "download", "update 1", "window 1 2 1 1"})) << show(g_calls);
}

TEST_F(PageTable, ADisabledSignageClientOpensNothing)
{
    g_calls = QStringList("disabled");
    EXPECT_EQ(note("Ndeck", {}), "");
    settingOpenPage("Ndeck", kInfo, nullptr);
    EXPECT_EQ(g_calls, QStringList("disabled"));
}

TEST_F(PageTable, VersionDetailIsKnownToThePlainOverloadOnly)
{
    settingOpenPage("Version Detail", nullptr);
    EXPECT_TRUE(page("dlgVersion_Detail")->isVisible());
    page("dlgVersion_Detail")->hide();
    kit::BoxAnswers boxes({"ok"});
    settingOpenPage("Version Detail", kInfo, nullptr);
    EXPECT_EQ(boxes.texts(), QStringList("Unknow dialog type"));
    EXPECT_FALSE(page("dlgVersion_Detail")->isVisible());
}

TEST_F(BarePageTable, ANameWhosePageIsNotThereIsUnknownWithoutAQuestionFirst)
{
    for (const Row& row : kExpected) {
        const QString name = row.name;
        if (QStringList({"Directory", "Call Histroy", "Factory", "Reboot"}).contains(name))
            continue;
        EXPECT_EQ(note(row.name), "Unknow dialog type") << row.name;
        EXPECT_EQ(m_strTitle, "Note");
    }
}

TEST_F(BarePageTable, StockWithoutItsRoomIsUnknownWhateverItsFileHolds)
{
    QFile::remove(hostPath(STOCK_DATA_XML));
    EXPECT_EQ(note("Stock"), "Unknow dialog type");
}

TEST_F(BarePageTable, AVoiceMessageWithoutItsRoomIsUnknown)
{
    writeKey(SYSTEM_INI, "Features", "bAutoCallOutMessage", "1");
    EXPECT_EQ(note("Message"), "Unknow dialog type");
}

TEST_F(BarePageTable, ForOneCustomerAnUnknownPageIsUnderConstruction)
{
    replaceFirmwareFile(VERSION_INI, "[Version]\nstrRomVersion=1.2.42.7\n");
    EXPECT_EQ(note("No such page"), "This feature is under construction.");
    EXPECT_EQ(m_strTitle, "Note");
}

TEST_F(BarePageTable, TheCustomerIsToldByTheThirdPhraseOfTheVersion)
{
    struct
    {
        const char* version;
        int kovar;
        const char* trace;
    } const cases[] = {
        {"1.2.42", 1, "strSignature = 42 nIndex = 3"},   {"1.2.42.9", 1, "strSignature = 42 nIndex = 3"},
        {"1.42", 0, "strSignature = 42 nIndex = 2"},     {"42.42.43", 0, "strSignature = 43 nIndex = 3"},
        {"1.2.042", 0, "strSignature = 042 nIndex = 3"}, {"0.0.0.0", 0, "strSignature = 0 nIndex = 3"},
    };
    for (const auto& one : cases) {
        replaceFirmwareFile(VERSION_INI, QByteArray("[Version]\nstrRomVersion=") + one.version + "\n");
        EXPECT_EQ(CheckKovarVersion(), one.kovar) << one.version;
        EXPECT_TRUE(traced(one.trace)) << one.version << ": " << show(logged("trace"));
    }
}

TEST_F(BarePageTable, AVersionThatIsNotThereIsNoCustomersVersion)
{
    replaceFirmwareFile(VERSION_INI, "");
    EXPECT_EQ(CheckKovarVersion(), 0);
    EXPECT_TRUE(traced("strSignature = 0 nIndex = 3"));
}

TEST_F(BarePageTable, OpeningAPageIsTracedAsAScope)
{
    settingOpenPage("Call Histroy", nullptr);
    EXPECT_GE(tracedTimes("settingOpenPage(Call Histroy)"), 2) << show(logged("trace"));
}

TEST_F(BarePageTable, DirectoryViewsAreOpenedByNumber)
{
    const auto visible = [](const char* name) { return PageClass::Find(name)->Open(1, 0)->isVisible(); };
    settingOpenPage(3, "a", "b", nullptr);
    settingOpenPage(-1, "a", "b", nullptr);
    EXPECT_FALSE(visible("dlgPhoneBook") || visible("dlgRemotePhoneBook") || visible("dlgLDAP"));
    settingOpenPage(0, "a", "b", nullptr);
    EXPECT_TRUE(visible("dlgPhoneBook"));
    settingOpenPage(1, "Team", "/rundata/data/book.xml", nullptr);
    EXPECT_TRUE(visible("dlgRemotePhoneBook"));
    settingOpenPage(2, "Company", "", nullptr);
    EXPECT_TRUE(visible("dlgLDAP"));
    EXPECT_EQ(PopupDialog<dlgLDAP>(nullptr, 1, 0, 0)->findChild<qTopBar*>()->title(), "Company");
}

TEST_F(BarePageTable, TheRemoteBookGetsTheSecondTextAsItsAddress)
{
    settingOpenPage(1, "Team", "http://127.0.0.1:9/book.xml", nullptr);
    const dlgRemotePhoneBook* book = PopupDialog<dlgRemotePhoneBook>(nullptr, 1, 0, 0);
    const qTopBar* bar = book->findChild<qTopBar*>();
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->title(), "Team");
}

TEST_F(BarePageTable, ADialNumberBoxIsItsOwnAndEndsWhenItIsClosed)
{
    static QPointer<dlgBarePage> box;
    settingDialNum(nullptr, nullptr);
    roomHooks().makeDialNumberBox = [](qDialNumberItem*, QWidget* parent) -> QDialog* {
        return box = new dlgBarePage(parent);
    };
    settingDialNum(nullptr, nullptr);
    ASSERT_FALSE(box.isNull());
    EXPECT_TRUE(box->isVisible());
    kit::settle();
    box->close();
    kit::settle();
    EXPECT_TRUE(box.isNull());
}

TEST_F(BarePageTable, ACameraIsOpenedByItemOrByTitleAndADoorPhoneByNeither)
{
    static dlgBarePage* camera = nullptr;
    static QString title;
    settingIpCamera(nullptr, nullptr);
    settingIpCamera_DoorPhone("SettingIPCamera", "Gate", nullptr);
    camera = new dlgBarePage;
    roomHooks().ipCameraPageOfItem = [](QWidget*, IPCameraIconViewItem*) -> QDialog* { return camera; };
    roomHooks().ipCameraPageOfTitle = [](const QString& text) -> QDialog* {
        title = text;
        return camera;
    };
    settingIpCamera(nullptr, nullptr);
    EXPECT_TRUE(camera->isVisible());
    camera->hide();
    settingIpCamera_DoorPhone("SettingIPCamera3", "Gate", nullptr);
    EXPECT_TRUE(camera->isVisible());
    EXPECT_EQ(title, "Gate");
    camera->hide();
    for (const char* kind : {"SettingDoorPhone", "settingIPCamera", "", "Other"})
        settingIpCamera_DoorPhone(kind, "Door", nullptr);
    EXPECT_FALSE(camera->isVisible());
    EXPECT_EQ(title, "Gate");
    delete camera;
}
