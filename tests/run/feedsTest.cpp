// ./run keeps the weather and stock feeds beside the phone.
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/run/runScript.h"
#include "tests/server/signServer.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTcpServer>
#include <algorithm>
#include <csignal>
#include <sys/stat.h>

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What the feeds of that port say; empty when nobody is there.
QByteArray feed(int port, const QByteArray& query)
{
    const Wire wire(port, Wire::MayFail);
    wire.trySend("GET /ig/api?" + query + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
    return wire.readAll().body;
}

bool tells(int port, const QByteArray& query, const QByteArray& what)
{
    return eventually([&] { return feed(port, query).contains(what); });
}

QByteArray logOf(const RunScript& phone)
{
    return readFile(phone.root() + "/signage.log");
}

} // namespace

TEST(RunFeeds, AreBesideThePhoneWithoutAnyOption)
{
    RunScript phone;
    phone.startPage();
    EXPECT_TRUE(tells(phone.feedsPort(), "weather=London", "<forecast_information>"));
    EXPECT_TRUE(tells(phone.feedsPort(), "stock=HRBR", "Harbour House Group"));
    EXPECT_TRUE(phone.output().contains("at http://127.0.0.1:" + QByteArray::number(phone.feedsPort())));
    // Signage stays off.
    EXPECT_FALSE(readFile(phone.root() + "/rundata/config/system.ini").contains("strServerURL=http"));
    EXPECT_FALSE(logOf(phone).contains("register.htm"));
}

TEST(RunFeeds, HaveTheAddressThatThePhoneNames)
{
    const QByteArray script = readFile(HX_SOURCE_DIR "/run");
    EXPECT_TRUE(script.contains("feeds_port=${HX_FEEDS_PORT:-6090}"));
    for (const char* name : {"WeatherSource.xml", "StockSource.xml"})
        EXPECT_TRUE(readFile(QString(HX_BUILD_DIR "/rootfs/phone/resource/") + name)
                        .contains("address=\"http://127.0.0.1:6090/ig/api?"))
            << name;
}

TEST(RunFeeds, OfASecondPhoneTakeOverWhenTheFirstHasEnded)
{
    RunScript first, second;
    first.startPage();
    ASSERT_TRUE(tells(first.feedsPort(), "weather=London", "<forecast_information>"));
    second.shareFeeds(first);
    second.startPage();
    EXPECT_TRUE(eventually([&] { return logOf(second).contains("is another program's; waiting for it"); }));
    first.signal(SIGTERM);
    ASSERT_TRUE(first.waitEnd());
    EXPECT_TRUE(eventually([&] { return logOf(second).contains("feeds: at "); }));
    EXPECT_TRUE(tells(first.feedsPort(), "weather=London", "<forecast_information>"));
}

TEST(RunFeeds, WaitForAStrangerToLeaveTheirAddress)
{
    RunScript phone;
    QTcpServer stranger;
    ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost, quint16(phone.feedsPort())));
    phone.startPage();
    EXPECT_EQ(phone.ctl({"screen"}).toObject()["top"].toString(), "frmDesktop");
    stranger.close();
    EXPECT_TRUE(tells(phone.feedsPort(), "weather=London", "<forecast_information>"));
}

TEST(RunFeeds, ComeAgainWhenTheirServerDiesAndThePhoneGoesOn)
{
    RunScript phone;
    phone.startPage();
    ASSERT_TRUE(tells(phone.feedsPort(), "weather=London", "<forecast_information>"));
    const qint64 server = phone.processOf("hxSignServer"), itself = phone.processOf("hxPhone");
    ::kill(pid_t(server), SIGKILL);
    ASSERT_TRUE(eventually([&] { return phone.output().contains("The demonstration server has ended"); }));
    EXPECT_TRUE(tells(phone.feedsPort(), "weather=London", "<forecast_information>"));
    EXPECT_EQ(phone.processOf("hxPhone"), itself);
    EXPECT_NE(phone.processOf("hxSignServer"), server);
}

TEST(RunFeeds, EndWithThePhoneAlsoWhenItIsKilled)
{
    for (const int number : {SIGTERM, SIGKILL}) {
        RunScript phone;
        phone.startPage();
        ASSERT_TRUE(tells(phone.feedsPort(), "weather=London", "<forecast_information>"));
        const QList<qint64> started = phone.descendants();
        phone.signal(number);
        ASSERT_TRUE(phone.waitEnd());
        EXPECT_TRUE(kit::waits([&] { return std::none_of(started.begin(), started.end(), isAlive); }, 10000));
        EXPECT_FALSE(phone.output().contains("has ended: weather")) << phone.output().constData();
    }
}

// The phone of a shop keeps its show; what leaves the factory does as it is written.
TEST(RunFeeds, TheDemonstrationKeepsItsShowAndTheFactoryDoesNot)
{
    RunScript phone;
    phone.startPage({"--signage"});
    const auto keeps = [](const QString& file) {
        QSettings settings(file, QSettings::IniFormat);
        return settings.value("nDeck/bKeepShow", "absent").toString();
    };
    EXPECT_EQ(keeps(phone.root() + "/rundata/config/system.ini"), "1");
    EXPECT_EQ(keeps(HX_SOURCE_DIR "/rootfs/factory/config/system.ini"), "0");
}

TEST(RunFeeds, FollowTheBuildButKeepWhatTheUserChanged)
{
    RunScript phone;
    const QString shown = phone.root() + "/signage";
    // As a start of an earlier version has left it: the marker is as old as its files.
    ASSERT_TRUE(QDir().mkpath(shown));
    const QDateTime then = QDateTime::currentDateTime().addYears(-1);
    const auto put = [&](const char* name, const QByteArray& text, const QDateTime& time) {
        QFile file(shown + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        ASSERT_TRUE(file.flush() && file.setFileTime(time, QFileDevice::FileModificationTime));
    };
    put("server.ini", "[server]\nkey=demo\npassword=demo\n[displays]\nDemo=*\n", then);
    put("weather.xml", "<weather/>", then.addSecs(-1));
    put(".hxSignage", "", then);
    put("stock.xml", "<stocks><stock code='MINE' company='My own' price='7'/></stocks>", then.addDays(3));
    phone.startPage();
    EXPECT_TRUE(tells(phone.feedsPort(), "weather=Auckland", "<forecast_information>"));
    EXPECT_TRUE(tells(phone.feedsPort(), "stock=MINE", "My own"));
    // What the user has is kept by the next start, and what is the build's can follow it again.
    EXPECT_LE(QFileInfo(shown + "/weather.xml").lastModified(),
              QFileInfo(shown + "/.hxSignage").lastModified());
}
