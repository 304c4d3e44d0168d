// The clock that a person sets, by a server or by hand, and the zone that everything on the screen shows.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/timeServer.h"
#include <QJsonArray>
#include <ctime>

namespace {

#define SYSTEM_FILE "/rundata/config/system.ini"

constexpr int kWaitMs = 20000;
constexpr long long kServersUtc = 1800000000; // 2027-01-15 08:00:00

class Clock : public LivePhone
{
protected:
    void openPage()
    {
        ctl({"open", "Date & Time"});
        waitPage("dlgDateAndTime");
        waitIdle();
    }
    void saveToHome()
    {
        softKey(0);
        waitPage("frmDesktop");
        waitIdle();
    }
    void set(const char* key, const QString& value) { ctl({"config", SYSTEM_FILE, "LocalTime", key, value}); }
    void typeOver(const QString& edit, const QString& text)
    {
        tap(edit);
        waitIdle();
        for (int left = int(widget(edit)["text"].toString().size()); left > 0; --left)
            key("Backspace");
        ctl({"type", text});
        ASSERT_EQ(widget(edit)["text"].toString(), text);
    }
    QString fields(const QStringList& edits)
    {
        QStringList texts;
        for (const QString& edit : edits)
            texts.append(widget(edit)["text"].toString());
        return texts.join(' ');
    }
    QString dateAndHour() { return fields({"editYear", "editMonth", "editDay", "editHour"}); }
    bool homeShows(const char* text)
    {
        return kit::waits([&] { return widget("homeClock")["text"] == text; }, kWaitMs);
    }
    // The text in the corner of a menu.
    bool menuShows(const QString& text)
    {
        return kit::waits(
            [&] {
                for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
                    if (entry.toObject()["text"] == text)
                        return true;
                }
                return false;
            },
            kWaitMs);
    }
    bool isTraced(const QString& text)
    {
        return kit::waits([&] { return !logOf("trace").filter(text).isEmpty(); }, kWaitMs);
    }
};

} // namespace

TEST_F(Clock, GoesOverTheChangeToSummerTimeOnTheScreenAndInTheCallHistory)
{
    set("strTimeName", "+01:00 ");
    set("strZoneName", "Germany, Berlin");
    ctl({"set", "clock", "2027-03-28", "01:59:57"});
    ASSERT_TRUE(homeShows("01:59"));
    shot("clock-before-summer-time");
    EXPECT_TRUE(homeShows("03:00"));
    shot("clock-summer-time");
    ctl({"menu", "setting.xml"});
    waitPage("dlgIconviewForm");
    EXPECT_TRUE(menuShows("28/03/2027 03:00"));
    ctl({"ring", "4711", "0", "Anna"});
    waitPage("frmCall");
    waitIdle();
    key("F4");
    ctl({"open", "Call Histroy"});
    waitPage("dlgCallHistroy");
    waitIdle();
    QStringList rows;
    for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
        for (const QJsonValue& row : entry.toObject()["rows"].toArray())
            rows.append(row.toVariant().toStringList().join(' '));
    }
    EXPECT_EQ(rows.filter("03:00").size(), 1) << qPrintable(rows.join('|'));
}

TEST_F(Clock, ThatASaveAsksTheServerForIsThatOfTheZoneAndStaysOverTheNextStart)
{
    kit::TimeServer server(kServersUtc);
    const time_t machine = time(nullptr);
    ctl({"set", "net", "state=2"});
    set("nNTPPort", QString::number(server.port()));
    set("strTimeName", "+05:00 ");
    set("strZoneName", "Uzbekistan, Tashkent");
    openPage();
    tap("radBtnNTP");
    key("Up", 2);
    key("Right");
    EXPECT_EQ(widget("cmbBoxTimeZone")["text"], "+05:30 India, New Delhi");
    shot("clock-page");
    typeOver("editTimeServer", "127.0.0.1");
    saveToHome();
    ASSERT_TRUE(isTraced("Time server 127.0.0.1: the clock moves by"));
    EXPECT_EQ(server.asked(), 1);
    openPage();
    EXPECT_EQ(dateAndHour(), "2027 01 15 13");
    EXPECT_EQ(widget("cmbBoxTimeZone")["text"], "+05:30 India, New Delhi");
    // A server that lies afterwards changes nothing.
    kit::tagTimeAnswer lie;
    lie.nUtc = kServersUtc + 86400;
    lie.nStratum = 16;
    server.answer(QList<kit::tagTimeAnswer>{lie});
    saveToHome();
    ASSERT_TRUE(isTraced("Time server 127.0.0.1: its stratum is 16"));
    quit();
    start();
    ASSERT_TRUE(kit::waits([&] { return server.asked() == 3; }, kWaitMs));
    openPage();
    EXPECT_EQ(dateAndHour(), "2027 01 15 13") << "the phone's clock went on";
    EXPECT_LT(time(nullptr) - machine, 300) << "the machine's stays as it is";
}

TEST_F(Clock, IsSetByHandAndAServerThatIsNoneIsRefused)
{
    openPage();
    tap("radBtnNTP");
    typeOver("editTimeServer", "time_server!");
    softKey(0);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Time server is invalid!");
    shot("clock-server-refused");
    key("Return");
    waitPage("dlgDateAndTime");
    EXPECT_EQ(focusWidget()["name"], "editTimeServer");
    tap("radBtnManualMode");
    EXPECT_FALSE(widget("cmbBoxTimeZone")["enabled"].toBool());
    for (const auto& [edit, text] :
         {std::pair{"editYear", "2028"}, std::pair{"editMonth", "02"}, std::pair{"editDay", "29"},
          std::pair{"editHour", "23"}, std::pair{"editMinute", "58"}, std::pair{"editSecond", "10"}})
        typeOver(edit, text);
    shot("clock-by-hand");
    saveToHome();
    EXPECT_EQ(logOf("clock"), QStringList{"2028-02-29 23:58:10"});
    EXPECT_EQ(config(SYSTEM_FILE, "LocalTime", "bNTPEnable"), "0");
    ctl({"menu", "setting.xml"});
    waitPage("dlgIconviewForm");
    EXPECT_TRUE(menuShows("29/02/2028 23:58"));
    key("F4");
    quit();
    start();
    openPage();
    EXPECT_EQ(dateAndHour(), "2028 02 29 23");
}
