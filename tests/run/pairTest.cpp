// "./run --pair": two phones with real lines, and the exchange between them.
#include "host/desktop/pressGuard.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/players/films.h"
#include "tests/run/runScript.h"
#include <QColor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>

namespace {

constexpr int kStartMs = 60000;

class RunPair : public testing::Test
{
protected:
    void start(const QStringList& options = {})
    {
        m_pair.launch(QStringList{"--pair", "--built", HX_BUILD_DIR, "--root", m_pair.root(), "--control",
                                  m_pair.root() + "/ctl", "--port", "0"} +
                      options);
        ASSERT_TRUE(anna.open(m_pair.root() + "/ctl.anna", kStartMs)) << m_pair.output().constData();
        ASSERT_TRUE(ben.open(m_pair.root() + "/ctl.ben", kStartMs)) << m_pair.output().constData();
        for (ControlLink* phone : {&anna, &ben})
            phone->ask({"wait", "page", "frmDesktop", "20000"});
        for (const char* name : {"Anna", "Ben"})
            ASSERT_TRUE(eventually([&] {
                return m_pair.output().contains(QByteArray(name) + ": line 1 is registered: 200");
            })) << m_pair.output().constData();
    }
    // The only call there; empty for none.
    static QJsonObject callOf(ControlLink& phone)
    {
        const QJsonArray calls = phone.ask({"calls"}).toObject()["calls"].toArray();
        return calls.size() == 1 ? calls[0].toObject() : QJsonObject();
    }
    static bool talks(ControlLink& phone)
    {
        return eventually([&] { return callOf(phone)["state"].toString() == "talking"; });
    }
    // The name on the call screen, which is on top.
    static QString nameShown(ControlLink& phone)
    {
        const QJsonObject top = phone.ask({"tree"}).toObject()["windows"].toArray().first().toObject();
        for (const QJsonValue& widget : top["widgets"].toArray()) {
            if (widget.toObject()["name"] == "labName")
                return widget.toObject()["text"].toString();
        }
        return QString();
    }
    static bool showsAt(ControlLink& phone, const char* key, const char* lamp)
    {
        return eventually([&] {
            return phone.ask({"dsskey", key, "show"}).toObject()["lamp"].toString() == QLatin1String(lamp);
        });
    }
    // Of the key of the other phone.
    static bool shows(ControlLink& phone, const char* lamp) { return showsAt(phone, "3", lamp); }
    static qsizetype callCount(ControlLink& phone)
    {
        return phone.ask({"calls"}).toObject()["calls"].toArray().size();
    }
    static QJsonObject callNo(ControlLink& phone, int id)
    {
        for (const QJsonValue& call : phone.ask({"calls"}).toObject()["calls"].toArray()) {
            if (call.toObject()["id"].toInt() == id)
                return call.toObject();
        }
        return QJsonObject();
    }
    // Anna calls by a key, the other one answers; the call at her phone.
    int talkAsAnna(const char* key, ControlLink& other)
    {
        anna.ask({"dsskey", key, "press"});
        EXPECT_TRUE(eventually([&] { return callOf(other)["state"].toString() == "ringing"; }));
        other.ask({"wait", "page", "frmCall", "5000"}); // the key is for what is on the screen
        other.ask({"key", "F1"});
        EXPECT_TRUE(talks(other));
        const QJsonObject call = anna.ask({"calls"}).toObject()["calls"].toArray().last().toObject();
        const int id = call["id"].toInt();
        EXPECT_TRUE(eventually([&] { return callNo(anna, id)["state"].toString() == "talking"; }));
        return id;
    }
    // With the password that is told for it.
    void registerGuest(ControlLink& phone)
    {
        static const QRegularExpression told("password ([a-z0-9]+), server 127\\.0\\.0\\.1:(\\d+)");
        const QRegularExpressionMatch match = told.match(QString::fromUtf8(m_pair.output()));
        const char* const file = "/rundata/config/user/voip/sipAccount0.cfg";
        const QList<QStringList> keys{{"Enable", "1"},
                                      {"DisplayName", "Cleo"},
                                      {"AuthName", "1003"},
                                      {"UserName", "1003"},
                                      {"password", match.captured(1)},
                                      {"SIPServerHost", "127.0.0.1"},
                                      {"SIPServerPort", match.captured(2)}};
        for (const QStringList& key : keys)
            phone.ask({"config", file, "account", key[0], key[1]});
        phone.ask({"post", "app_hxPhone", "65543", "3", "0"});
    }
    static void shot(ControlLink& phone, const QString& name)
    {
        phone.ask({"wait", "idle", "10000"});
        QDir().mkpath(QStringLiteral(HX_BUILD_DIR) + "/shots");
        phone.ask({"shot", QStringLiteral(HX_BUILD_DIR) + "/shots/" + name + ".png"});
    }
    QByteArray read(const QString& name) const
    {
        QFile file(m_pair.root() + "/" + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    int numberSeen(ControlLink& phone);
    int numberAt(ControlLink& phone, const QRect& place);
    // The widget of the uppermost window.
    static void tap(ControlLink& phone, const QString& name)
    {
        const QJsonArray windows = phone.ask({"tree"}).toObject()["windows"].toArray();
        for (const QJsonValue& entry :
             windows.isEmpty() ? QJsonArray() : windows.first()["widgets"].toArray()) {
            const QJsonObject widget = entry.toObject();
            if (widget["name"] == name)
                phone.ask({"touch", QString::number(widget["x"].toInt() + widget["w"].toInt() / 2),
                           QString::number(widget["y"].toInt() + widget["h"].toInt() / 2)});
        }
    }

    RunScript m_pair;
    ControlLink anna, ben;
};

} // namespace

TEST_F(RunPair, ThePhonesCallEachOtherByTheirKeysAndHangUp)
{
    start();
    // Each has an address of its own to be opened at.
    static const QRegularExpression address("(Anna|Ben): http://127\\.0\\.0\\.1:(\\d+)/[0-9a-f]{32}/");
    QStringList ports;
    for (auto it = address.globalMatch(QString::fromUtf8(m_pair.output())); it.hasNext();)
        ports.append(it.next().captured(2));
    EXPECT_EQ(ports.size(), 2) << m_pair.output().constData();
    EXPECT_NE(ports.value(0).toStdString(), ports.value(1).toStdString());

    EXPECT_EQ(anna.ask({"dsskey", "3", "show"}).toObject()["number"].toString().toStdString(), "1001");
    EXPECT_EQ(anna.ask({"dsskey", "5", "show"}).toObject()["number"].toString().toStdString(), "*97");
    EXPECT_EQ(ben.ask({"dsskey", "3", "show"}).toObject()["number"].toString().toStdString(), "1002");
    EXPECT_TRUE(shows(anna, "idle"));
    EXPECT_TRUE(shows(ben, "idle"));
    anna.ask({"dsskey", "3", "press"});
    ASSERT_TRUE(eventually([&] { return callOf(ben)["state"].toString() == "ringing"; }))
        << m_pair.output().constData();
    EXPECT_EQ(callOf(ben)["name"].toString().toStdString(), "Anna");
    EXPECT_EQ(callOf(ben)["number"].toString().toStdString(), "1002");
    EXPECT_EQ(nameShown(anna).toStdString(), "Ben") << "not whom the phone book has there";
    EXPECT_EQ(nameShown(ben).toStdString(), "Anna");
    EXPECT_TRUE(shows(anna, "ringing"));
    EXPECT_TRUE(shows(ben, "busy"));
    ben.ask({"key", "F1"});
    EXPECT_TRUE(talks(ben));
    EXPECT_TRUE(talks(anna));
    EXPECT_TRUE(shows(anna, "busy"));
    anna.ask({"key", "F4"});
    EXPECT_TRUE(eventually([&] { return callOf(ben).isEmpty() && callOf(anna).isEmpty(); }));
    EXPECT_TRUE(shows(anna, "idle"));
}

TEST_F(RunPair, AThirdPhoneIsPutThroughAndJoinedByTheSecond)
{
    start();
    RunScript guest;
    guest.launch(
        {"--built", HX_BUILD_DIR, "--root", guest.root(), "--control", guest.root() + "/ctl", "--port", "0"});
    ControlLink cleo;
    ASSERT_TRUE(cleo.open(guest.root() + "/ctl", kStartMs)) << guest.output().constData();
    cleo.ask({"wait", "page", "frmDesktop", "20000"});
    EXPECT_TRUE(showsAt(anna, "4", "unknown")) << "nobody has registered it";
    registerGuest(cleo);
    EXPECT_TRUE(showsAt(anna, "4", "idle"));

    const int toBen = talkAsAnna("3", ben);
    ASSERT_GT(toBen, 0);
    const int toCleo = talkAsAnna("4", cleo);
    ASSERT_GT(toCleo, 0);
    EXPECT_TRUE(eventually([&] { return callOf(ben)["remoteHeld"].toBool(); }));
    shot(anna, "three-first-held");
    shot(ben, "three-held-there");

    anna.ask({"join", QString::number(toCleo), QString::number(toBen)});
    EXPECT_TRUE(eventually([&] { return callNo(anna, toBen)["joined"].toInt() == toCleo; }));
    EXPECT_TRUE(eventually([&] { return !callOf(ben)["remoteHeld"].toBool(); }));
    shot(anna, "three-joined");
    anna.ask({"split", QString::number(toCleo)});
    EXPECT_TRUE(eventually([&] { return callOf(ben)["remoteHeld"].toBool(); }));

    anna.ask({"connect", QString::number(toBen), QString::number(toCleo)});
    EXPECT_TRUE(eventually([&] { return callCount(anna) == 0; }));
    EXPECT_TRUE(talks(ben));
    EXPECT_TRUE(talks(cleo));
    EXPECT_TRUE(eventually([&] {
        return callOf(ben)["number"].toString() == "1003" || callOf(cleo)["number"].toString() == "1001";
    }));
    shot(ben, "three-connected-ben");
    shot(cleo, "three-connected-cleo");
    QThread::msleep(pressGuard::SETTLE_MS + 100); // a press counts again on a screen that has changed
    ben.ask({"key", "F4"});
    EXPECT_TRUE(eventually([&] { return callCount(ben) == 0 && callCount(cleo) == 0; }));
}

// Between the shades and below the corner of the own picture: the surface has 640 by 480 in its middle.
int RunPair::numberSeen(ControlLink& phone)
{
    return numberAt(phone, QRect(112, 210, 576, 100));
}

int RunPair::numberAt(ControlLink& phone, const QRect& place)
{
    const QString file = m_pair.root() + "/seen.ppm";
    phone.ask({"shot", file});
    return numberIn(QImage(file).copy(place));
}

TEST_F(RunPair, EachPhoneShowsTheOtherOnesPictureAndHoldTakesItAway)
{
    constexpr int kAnna = 173;
    constexpr int kBen = 90;
    ASSERT_TRUE(numberedPicture(QSize(640, 480), kAnna).save(m_pair.root() + "/Anna.png"));
    ASSERT_TRUE(numberedPicture(QSize(640, 480), kBen).save(m_pair.root() + "/Ben.png"));
    qputenv("HX_PICTURE_SOURCE",
            "filesrc location=" + m_pair.root().toUtf8() + "/NAME.png ! pngdec ! imagefreeze is-live=true");
    start();
    qunsetenv("HX_PICTURE_SOURCE");
    anna.ask({"dsskey", "3", "press"});
    ASSERT_TRUE(eventually([&] { return callOf(ben)["state"].toString() == "ringing"; }));
    ben.ask({"key", "F1"});
    ASSERT_TRUE(talks(ben) && talks(anna));
    EXPECT_TRUE(eventually([&] { return numberSeen(anna) == kBen; }));
    EXPECT_TRUE(eventually([&] { return numberSeen(ben) == kAnna; }));
    EXPECT_EQ(callOf(anna)["picture"].toString().toStdString(), "H.264");
    // The own one, small.
    const auto ownSeen = [&](ControlLink& phone) {
        const QString file = m_pair.root() + "/own.png";
        phone.ask({"shot", file});
        return numberIn(QImage(file).copy(612, 92, 160, 102));
    };
    EXPECT_TRUE(eventually([&] { return ownSeen(anna) == kAnna; }));
    EXPECT_TRUE(eventually([&] { return ownSeen(ben) == kBen; }));
    tap(anna, "actHold");
    EXPECT_TRUE(eventually([&] { return callOf(anna)["picture"].toString().isEmpty(); }))
        << m_pair.output().constData();
    EXPECT_NE(numberSeen(anna), kBen);
    EXPECT_TRUE(eventually([&] { return numberSeen(ben) != kAnna; })) << "nor does it stand still there";
    shot(ben, "pictures-held-there");
    tap(anna, "actHold");
    EXPECT_TRUE(eventually([&] { return numberSeen(anna) == kBen; }));
    anna.ask({"key", "F4"});
    EXPECT_TRUE(eventually([&] { return callOf(ben).isEmpty() && callOf(anna).isEmpty(); }));
    EXPECT_NE(numberSeen(anna), kBen);
}

// Each camera shows two numbers in turn, so that a picture that stands still is none that goes on.
TEST_F(RunPair, InAConferenceWithPicturesEachIsSeenByAllWhoMay)
{
    const QList<std::pair<QString, int>> numbers{{"Anna", 172}, {"Ben", 90}, {"Cleo", 40}};
    for (const auto& [name, number] : numbers) {
        for (const int turn : {0, 1}) {
            const QString file = QString("%1/%2-%3.png").arg(m_pair.root(), name).arg(turn);
            ASSERT_TRUE(numberedPicture(QSize(640, 480), number + turn).save(file));
        }
    }
    const QByteArray source = "multifilesrc location=" + m_pair.root().toUtf8() +
                              "/NAME-%d.png start-index=0 stop-index=1 loop=true "
                              "caps=image/png,framerate=(fraction)2/1 ! pngdec ! identity sync=true";
    qputenv("HX_PICTURE_SOURCE", source);
    start();
    qputenv("HX_PICTURE_SOURCE", QByteArray(source).replace("NAME", "Cleo"));
    RunScript guest;
    guest.launch(
        {"--built", HX_BUILD_DIR, "--root", guest.root(), "--control", guest.root() + "/ctl", "--port", "0"});
    qunsetenv("HX_PICTURE_SOURCE");
    ControlLink cleo;
    ASSERT_TRUE(cleo.open(guest.root() + "/ctl", kStartMs)) << guest.output().constData();
    cleo.ask({"wait", "page", "frmDesktop", "20000"});
    registerGuest(cleo);
    ASSERT_TRUE(showsAt(anna, "4", "idle"));

    const int toBen = talkAsAnna("3", ben);
    const int toCleo = talkAsAnna("4", cleo);
    const QRect whole(112, 210, 576, 100);
    const auto goesOn = [&](ControlLink& phone, const QRect& place, int number) {
        for (const int turn : {0, 1, 0, 1}) {
            if (!eventually([&] { return numberAt(phone, place) == number + turn; }))
                return false;
        }
        return true;
    };
    EXPECT_TRUE(goesOn(cleo, whole, 172));
    anna.ask({"join", QString::number(toCleo), QString::number(toBen)});
    EXPECT_TRUE(goesOn(ben, whole, 172));
    EXPECT_TRUE(goesOn(cleo, whole, 172)) << m_pair.output().constData();
    EXPECT_TRUE(goesOn(anna, QRect(0, 210, 400, 100), 90)) << "the older one is on the left";
    EXPECT_TRUE(goesOn(anna, QRect(400, 210, 400, 100), 40));
    shot(anna, "pictures-conference");
    shot(cleo, "pictures-conference-cleo");
    anna.ask({"touch", "300", "250"});
    EXPECT_TRUE(goesOn(anna, QRect(0, 220, 400, 100), 90)) << "over the whole screen";
    EXPECT_TRUE(goesOn(anna, QRect(400, 220, 400, 100), 40));
    shot(anna, "pictures-conference-full");
    anna.ask({"touch", "300", "250"});
    tap(anna, "actVideo");
    EXPECT_TRUE(eventually([&] { return numberAt(ben, whole) == -1 && numberAt(cleo, whole) == -1; }));
    EXPECT_TRUE(goesOn(anna, QRect(0, 210, 400, 100), 90)) << "they are still seen";
    shot(anna, "pictures-conference-camera-off");
    tap(anna, "actVideo");
    EXPECT_TRUE(goesOn(ben, whole, 172) && goesOn(cleo, whole, 172));
    anna.ask({"split", QString::number(toCleo)});
    EXPECT_TRUE(eventually([&] { return numberAt(ben, whole) == -1; }));
    EXPECT_TRUE(goesOn(anna, whole, 40) && goesOn(cleo, whole, 172));
    shot(anna, "pictures-split");
    anna.ask({"join", QString::number(toCleo), QString::number(toBen)});
    EXPECT_TRUE(goesOn(ben, whole, 172) && goesOn(cleo, whole, 172));
    cleo.ask({"key", "F4"});
    EXPECT_TRUE(eventually([&] { return callCount(cleo) == 0; }));
    EXPECT_TRUE(goesOn(ben, whole, 172) && goesOn(anna, whole, 90));
}

TEST_F(RunPair, WithoutCamerasThePhonesHaveTestPicturesThatCanBeToldApart)
{
    start();
    anna.ask({"dsskey", "3", "press"});
    ASSERT_TRUE(eventually([&] { return callOf(ben)["state"].toString() == "ringing"; }));
    ben.ask({"key", "F1"});
    // Colours and white on the line through the middle, left of the corner.
    const auto pointsOf = [&](ControlLink& phone) {
        const QString file = m_pair.root() + "/seen.png";
        phone.ask({"shot", file});
        const QImage picture(file);
        std::pair<int, int> points; // coloured, white
        for (int y = 100; y < 300 && !picture.isNull(); y += 4) {
            for (int x = 112; x < 596; x += 4) {
                const QColor colour = picture.pixelColor(x, y);
                points.first += colour.saturation() > 200 && colour.value() > 120;
                points.second += colour.saturation() < 20 && colour.value() > 200;
            }
        }
        return points;
    };
    EXPECT_TRUE(eventually([&] { return pointsOf(anna).first > 2000; })) << m_pair.output().constData();
    EXPECT_TRUE(eventually([&] {
        const auto [coloured, white] = pointsOf(ben);
        return white > 20 && white < 500 && coloured < 100;
    })) << m_pair.output().constData();
}

TEST_F(RunPair, TheVoiceMailAnswersAndHangsUp)
{
    start();
    ben.ask({"dsskey", "5", "press"});
    EXPECT_TRUE(talks(ben));
    EXPECT_TRUE(eventually([&] { return callOf(ben).isEmpty(); }));
}

TEST_F(RunPair, PasswordsAreNewWithEachStartAndNobodyElses)
{
    start();
    const QByteArray accounts = read("accounts");
    EXPECT_EQ(QFileInfo(m_pair.root() + "/accounts").permissions() &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              0);
    const QList<QByteArray> rows = accounts.trimmed().split('\n');
    ASSERT_EQ(rows.size(), 3);
    QList<QByteArray> passwords;
    for (const QByteArray& row : rows)
        passwords.append(row.split(' ').value(1));
    EXPECT_GE(passwords[0].size(), 16);
    EXPECT_NE(passwords[0].toStdString(), passwords[1].toStdString());
    EXPECT_TRUE(read("ben/rundata/config/user/voip/sipAccount0.cfg").contains("password=" + passwords[0]));
    EXPECT_TRUE(read("anna/rundata/config/user/voip/sipAccount0.cfg").contains("password=" + passwords[1]));
    // Only the guest's is told: somebody has to type it.
    const QByteArray said = m_pair.output();
    EXPECT_FALSE(said.contains(passwords[0]) || said.contains(passwords[1]));
    EXPECT_TRUE(said.contains(passwords[2]));
    m_pair.signal(SIGTERM);
    ASSERT_TRUE(m_pair.waitEnd());
    anna.close();
    ben.close();
    start();
    EXPECT_FALSE(read("accounts").contains(passwords[0]));
}

TEST_F(RunPair, EndsWithAllThatItHasStartedHoweverItEnds)
{
    for (const int number : {SIGTERM, SIGKILL}) {
        start();
        const QList<qint64> started = m_pair.descendants();
        EXPECT_GE(started.size(), 12);
        m_pair.signal(number);
        ASSERT_TRUE(m_pair.waitEnd());
        EXPECT_TRUE(kit::waits([&] { return std::none_of(started.begin(), started.end(), isAlive); }, 20000));
        anna.close();
        ben.close();
    }
}

TEST_F(RunPair, GoesOnWithOnePhoneAndEndsWithTheSecond)
{
    start();
    anna.ask({"quit"});
    EXPECT_TRUE(eventually([&] { return m_pair.output().contains("Anna: The phone has ended."); }));
    EXPECT_FALSE(m_pair.waitEnd(2000));
    EXPECT_TRUE(ben.isAlive());
    ben.ask({"quit"});
    ASSERT_TRUE(m_pair.waitEnd());
    EXPECT_EQ(m_pair.exitCode(), 0);
    EXPECT_TRUE(m_pair.output().contains("Both phones have ended.")) << m_pair.output().constData();
}

TEST_F(RunPair, TellsThatTheExchangeIsGone)
{
    start();
    const qint64 exchange = m_pair.processOf("hxRegistrar");
    ASSERT_GT(exchange, 0);
    ::kill(pid_t(exchange), SIGKILL);
    ASSERT_TRUE(m_pair.waitEnd());
    EXPECT_NE(m_pair.exitCode(), 0);
    EXPECT_TRUE(m_pair.output().contains("the exchange has ended unexpectedly"))
        << m_pair.output().constData();
}
