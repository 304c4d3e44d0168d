// The page "Status": what it shows of versions, network and accounts, and that it follows them.
#include "host/services/phone/phoneBackend.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/system/netWorld.h"
#include "settings/system/dlgStatus.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "tests/settings_system/systemPageTest.h"
#include <QLabel>
#include <arpa/inet.h>

namespace {

const char* const kVersionFile = "/phone/resource/version.ini";

class StatusPage : public SystemPageTest
{
protected:
    StatusPage()
    {
        in_addr address = {};
        inet_pton(AF_INET, "192.168.1.20", &address);
        netWorld().address = address;
        netWorld().mac = "00:11:22:AA:BB:CC";
        netWorld().type = NET_TYPE_PPPOE;
        netWorld().cable = 1;
        netWorld().conflict = 0;
        phoneService::instance().backend();
        for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
            setLine(index, LINE_REGISTERED, "Name " + QString::number(index));
    }
    ~StatusPage() override { netWorld() = tagNetWorld(); }

    void openStatus() { open("Status"); }
    QString text(const char* label) const { return child<QLabel>(label)->text(); }
    static void setLine(int index, int state, const QString& name)
    {
        tagLineSetting line;
        line.state = state;
        line.name = name;
        line.user = "100" + QString::number(index);
        line.server = "pbx" + QString::number(index) + ".test";
        ASSERT_TRUE(phoneSimulation::instance()->setLine(index, line));
        kit::settle();
    }
    static void setWhyNot(int index, const char* reason)
    {
        tagLineSetting line;
        line.state = LINE_REGISTER_FAILED;
        line.whyNot = reason;
        ASSERT_TRUE(phoneSimulation::instance()->setLine(index, line));
        kit::settle();
    }
    void next() { softKey(2); }
};

} // namespace

TEST_F(StatusPage, TellsVersionsNetworkAndTheFirstAccount)
{
    replaceFirmwareFile(kVersionFile, "[Version]\nstrRomVersion=1.2.3.4\nstrHardware=Board 7\n");
    openStatus();
    EXPECT_STREQ(page->metaObject()->className(), "dlgStatus");
    const char* const shown[][3] = {
        {"labSoftVersion", "SoftWare Version", "1.2.3.4"},
        {"labHardVersion", "HardWare Version", "Board 7"},
        {"labIPAddress", "IP Address", "192.168.1.20"},
        {"labMACAddress", "MAC Address", "00:11:22:AA:BB:CC"},
        {"labWANType", "WAN Port Type", "PPPoE"},
        {"labLinkStatus", "Link Status", "Connected"},
        {"labDisplayName", "Display Name", "Name 0"},
        {"labPhoneNumber", "Phone Number", "1000"},
        {"labServer", "Server", "pbx0.test"},
        {"labStatus", "Status", "Registered"},
    };
    for (const auto& row : shown) {
        EXPECT_EQ(text(row[0]), row[1]);
        EXPECT_EQ(text(("value" + QByteArray(row[0] + 3)).constData()), row[2]) << row[0];
    }
    EXPECT_EQ(text("labVersion"), "Version");
    EXPECT_EQ(text("labNetwork"), "Network");
    EXPECT_EQ(text("labAccount"), "Account 1");
    kit::shot("status");
}

TEST_F(StatusPage, CarriesItsTitlesAndThreeSoftKeys)
{
    openStatus();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Status");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Status");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(), "/phone/resource/theme/default/bmp/menu/menu_status.png");
    EXPECT_EQ(softKeyTitle(0), "");
    EXPECT_EQ(softKeyTitle(1), "Version Detail");
    EXPECT_EQ(softKeyTitle(2), "Next");
    EXPECT_EQ(softKeyTitle(3), "Back");
    back();
    EXPECT_FALSE(page->isVisible());
}

TEST_F(StatusPage, HasFirstValuesUntilSomethingIsKnown)
{
    dlgStatus status(nullptr, nullptr);
    page = &status;
    const char* const first[][2] = {
        {"valueSoftVersion", "0.0.0.0"},
        {"valueHardVersion", "VideoPhone"},
        {"valueIPAddress", "0.0.0.0"},
        {"valueMACAddress", "00:00:00:00:00:00"},
        {"valueWANType", "DHCP"},
        {"valueLinkStatus", "Connected"},
        {"valueDisplayName", ""},
        {"valuePhoneNumber", ""},
        {"valueServer", ""},
        {"valueStatus", "Unregistered"},
    };
    for (const auto& row : first)
        EXPECT_EQ(text(row[0]), row[1]) << row[0];
    kit::settle();
    EXPECT_EQ(text("valueIPAddress"), "192.168.1.20");
    EXPECT_EQ(text("valueSoftVersion"), "1.0.0.1");
}

TEST_F(StatusPage, AMissingVersionFileGivesEmptyVersions)
{
    replaceFirmwareFile(kVersionFile, "");
    openStatus();
    EXPECT_EQ(text("valueSoftVersion"), "");
    EXPECT_EQ(text("valueHardVersion"), "");
}

TEST_F(StatusPage, NamesEveryPortType)
{
    openStatus();
    const char* const names[] = {"DHCP", "PPPoE", "Static IP"};
    for (int type = 0; type < 3; ++type) {
        netWorld().type = type;
        kit::stepTime(1000);
        EXPECT_EQ(text("valueWANType"), names[type]);
    }
}

TEST_F(StatusPage, APortTypeThatIsNoneGivesWayToTheStoredOne)
{
    netWorld().type = 7;
    writeFile(SYSTEM_FILE, "");
    openStatus();
    EXPECT_EQ(text("valueWANType"), "DHCP");
    const char* const stored[][2] = {
        {"1", "PPPoE"}, {"2", "Static IP"}, {"0", "DHCP"}, {"3", "NULL"}, {"-1", "NULL"}};
    for (const auto& value : stored) {
        writeFile(SYSTEM_FILE, QByteArray("[Network]\neWANType=") + value[0] + "\n");
        kit::stepTime(1000);
        EXPECT_EQ(text("valueWANType"), value[1]) << value[0];
    }
}

TEST_F(StatusPage, AnUnpluggedCableShowsUpWithinASecond)
{
    openStatus();
    for (const bool isIn : {false, true, false}) {
        netWorld().cable = isIn;
        kit::stepTime(1000);
        EXPECT_EQ(text("valueLinkStatus"), isIn ? "Connected" : "Disconnected");
    }
}

TEST_F(StatusPage, AnAddressThatCollidesIsAConflictUnlessTheCableIsOut)
{
    openStatus();
    netWorld().conflict = 1;
    kit::stepTime(1000);
    EXPECT_EQ(text("valueLinkStatus"), "Conflict");
    netWorld().cable = 0;
    kit::stepTime(1000);
    EXPECT_EQ(text("valueLinkStatus"), "Disconnected");
}

TEST_F(StatusPage, WhatChangedWhileItWasHiddenIsThereWithTheShow)
{
    openStatus();
    back();
    netWorld().cable = 0;
    openStatus();
    EXPECT_EQ(text("valueLinkStatus"), "Disconnected");
}

TEST_F(StatusPage, NamesEveryStateOfALine)
{
    openStatus();
    const char* const states[] = {"Disabled",     "Registering",     "Registered",  "Register failed",
                                  "Unregistered", "Default account", "Inexistence", "Unregistering",
                                  "Exit",         "Unknown"};
    for (int state = 0; state < 10; ++state) {
        setLine(0, state, "A");
        EXPECT_EQ(text("valueStatus"), states[state]);
    }
}

TEST_F(StatusPage, EveryLanguageHasRoomForEveryStateAndEveryLink)
{
    openStatus();
    for (const char* language : {"German", "French", "Spanish", "Chinese"}) {
        GetLanguageHelper()->SetLanguage(language);
        kit::settle();
        kit::shot(QString("status-") + language);
        for (const char* key : {"Connected", "Disconnected", "Conflict"}) {
            netWorld().cable = qstrcmp(key, "Disconnected") != 0;
            netWorld().conflict = qstrcmp(key, "Conflict") == 0;
            kit::stepTime(1000);
            EXPECT_EQ(text("valueLinkStatus"), qTranslate(key));
        }
        const char* const states[] = {"Disabled",     "Registering",     "Registered",  "Register failed",
                                      "Unregistered", "Default account", "Inexistence", "Unregistering"};
        for (int state = 0; state < 8; ++state) {
            setLine(0, state, "A");
            EXPECT_EQ(text("valueStatus"), qTranslate(states[state]));
        }
        setLine(0, LINE_EXIT, "A");
        EXPECT_EQ(text("valueStatus"), qTranslate("Exit", "state of a line"));
        EXPECT_NE(text("valueStatus"), "Exit");
    }
}

TEST_F(StatusPage, EveryLanguageHasRoomForEachReasonWhyALineIsNotRegistered)
{
    openStatus();
    EXPECT_EQ(text("valueWhyNot"), "");
    const char* const reasons[] = {"The server does not accept name or password",
                                   "The server does not answer",
                                   "The server's name is not known",
                                   "The name service does not answer",
                                   "The STUN server does not answer",
                                   "The server does not know the user name",
                                   "The server is out of service",
                                   "The server asks for the password in an unknown way",
                                   "The server refuses the registration",
                                   "The line is not registered",
                                   "There is no secure connection to the server",
                                   "The phone has no usable certificates",
                                   "The certificate of the server is for another name",
                                   "The certificate of the server is from an unknown authority",
                                   "The certificate of the server has expired",
                                   "The certificate of the server is not valid yet",
                                   "The server does not accept the certificate of the phone",
                                   "The server refuses a secure connection",
                                   "The server knows no secure connection"};
    for (const char* language : {"English", "German", "French", "Spanish", "Chinese"}) {
        GetLanguageHelper()->SetLanguage(language);
        for (const char* reason : reasons) {
            setWhyNot(0, reason);
            EXPECT_EQ(text("valueWhyNot"), qTranslate(reason)) << language;
            EXPECT_EQ(qTranslate(reason) == reason, qstrcmp(language, "English") == 0) << language;
        }
        kit::shot(QString("status-why-") + language);
    }
    next();
    EXPECT_EQ(text("valueWhyNot"), "") << "that is another line";
}

TEST_F(StatusPage, TheLanguageChangesInPlace)
{
    openStatus();
    next();
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    EXPECT_EQ(text("labAccount"), "Konto 2");
    EXPECT_EQ(text("valueStatus"), "Angemeldet");
    EXPECT_EQ(text("valueLinkStatus"), "Verbunden");
    EXPECT_EQ(text("labSoftVersion"), "Software");
    EXPECT_EQ(softKeyTitle(2), "Weiter");
}

TEST_F(StatusPage, NextGoesThroughTheAccountsAndRound)
{
    openStatus();
    for (const int index : {1, 2, 3, 0, 1}) {
        next();
        EXPECT_EQ(text("labAccount"), QString("Account %1").arg(index + 1));
        EXPECT_EQ(text("valueDisplayName"), QString("Name %1").arg(index));
        EXPECT_EQ(text("valuePhoneNumber"), QString("100%1").arg(index));
        EXPECT_EQ(text("valueServer"), QString("pbx%1.test").arg(index));
    }
}

TEST_F(StatusPage, TheArrowsGoThroughTheAccountsBothWays)
{
    openStatus();
    const std::pair<Qt::Key, int> steps[] = {
        {Qt::Key_Left, 4}, {Qt::Key_Up, 3}, {Qt::Key_Right, 4}, {Qt::Key_Down, 1}};
    for (const auto& [key, number] : steps) {
        kit::key(key);
        EXPECT_EQ(text("labAccount"), QString("Account %1").arg(number));
    }
    EXPECT_EQ(static_cast<dlgStatus*>(page)->SwitchAccountInfo(false), 1);
}

TEST_F(StatusPage, OpensWithTheFirstAccountAlsoAfterTheThird)
{
    openStatus();
    next();
    next();
    EXPECT_EQ(text("labAccount"), "Account 3");
    back();
    openStatus();
    EXPECT_EQ(text("labAccount"), "Account 1");
    EXPECT_EQ(text("valueDisplayName"), "Name 0");
}

TEST_F(StatusPage, FollowsTheAccountOnViewAndNoOther)
{
    openStatus();
    next();
    setLine(1, LINE_REGISTER_FAILED, "New");
    EXPECT_EQ(text("valueDisplayName"), "New");
    EXPECT_EQ(text("valueStatus"), "Register failed");
    setLine(0, LINE_DISABLED, "Other");
    EXPECT_EQ(text("labAccount"), "Account 2");
    EXPECT_EQ(text("valueDisplayName"), "New");
}

TEST_F(StatusPage, TakesAccountMessagesAndNoOthers)
{
    openStatus();
    msgObject refresh(PHONE_PUBLIC_MSG_ACCOUNT_REFRESH, 0, LINE_REGISTERED);
    EXPECT_EQ(dynamic_cast<dlgStatus*>(page)->TryThreadMessage(refresh), 1);
    msgObject other(CONFIG_MSG_BCAST_CHANGED, 0, 0);
    EXPECT_EQ(dynamic_cast<dlgStatus*>(page)->TryThreadMessage(other), 0);
}

TEST_F(StatusPage, HiddenItIsToldOfNothingAndAsksForNothing)
{
    openStatus();
    back();
    setLine(0, LINE_REGISTER_FAILED, "New");
    netWorld().cable = 0;
    kit::stepTime(3000);
    EXPECT_EQ(text("valueDisplayName"), "Name 0");
    EXPECT_EQ(text("valueLinkStatus"), "Connected");
}

TEST_F(StatusPage, AServerMayHaveLettersOfAnyLanguage)
{
    tagLineSetting line;
    line.state = LINE_REGISTERED;
    line.user = "1000";
    line.server = QString::fromUtf8("münchen-東京.test");
    ASSERT_TRUE(phoneSimulation::instance()->setLine(0, line));
    openStatus();
    EXPECT_EQ(text("valueServer"), line.server);
}

TEST_F(StatusPage, ANameLongerThanThePageEndsWithDots)
{
    setLine(0, LINE_REGISTERED, QString(100, 'W'));
    openStatus();
    EXPECT_TRUE(text("valueDisplayName").startsWith("WWWW"));
    EXPECT_TRUE(text("valueDisplayName").endsWith("…"));
}

TEST_F(StatusPage, VersionDetailOpensFromIt)
{
    openStatus();
    softKey(1);
    EXPECT_STREQ(kit::windows().value(0)->metaObject()->className(), "dlgVersion_Detail");
    EXPECT_TRUE(page->isVisible());
}
