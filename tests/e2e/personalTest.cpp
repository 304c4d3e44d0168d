// What a person sets for himself, and what the phone makes of it: tones, volumes, wallpaper, language,
// do-not-disturb.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/recordedSound.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <cmath>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"
#define SYSTEM_FILE "/rundata/config/system.ini"

constexpr int kRate = 16000;
constexpr int kWaitMs = 20000;
constexpr double kPiece = 0.25; // seconds

class Personal : public LivePhone
{
protected:
    void SetUp() override
    {
        qputenv("HX_SOUND_SINK", kit::recordingSink(root() + "/sound.raw"));
        LivePhone::SetUp();
        qunsetenv("HX_SOUND_SINK");
        put("/rundata/media/ring/Low.wav", kit::waveFile(440, 3, kRate));
        put("/rundata/media/ring/Mid.wav", kit::waveFile(660, 3, kRate));
    }
    void put(const QString& path, const QByteArray& content)
    {
        QDir().mkpath(QFileInfo(root() + path).path());
        QFile file(root() + path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    kit::RecordedSound heard() { return kit::RecordedSound(root() + "/sound.raw"); }
    bool hears(double hertz)
    {
        return kit::waits([&] { return heard().last(kPiece, kRate).has(hertz); }, kWaitMs);
    }
    // As loud as a volume makes a tone of 0.8 of full scale.
    bool hears(double hertz, int volume)
    {
        const double part = volume / 100.0;
        const double loud = 0.8 * part * part * part;
        return kit::waits(
            [&] {
                const kit::RecordedSound piece = heard().last(kPiece, kRate);
                return piece.has(hertz) && std::fabs(piece.peak() - loud) < 0.05 * loud + 0.001;
            },
            kWaitMs);
    }
    bool isSilent()
    {
        kit::StillSound sound(root() + "/sound.raw");
        return kit::waits([&] { return sound.isStill(); }, kWaitMs);
    }
    void openPage(const char* name, const char* window)
    {
        ctl({"open", name});
        waitPage(window);
        waitIdle();
    }
    void touchBar(const QString& name, double part)
    {
        const QJsonObject at = widget(name);
        tap(at["x"].toInt() + int(at["w"].toInt() * part), at["y"].toInt() + at["h"].toInt() / 2);
    }
    // With the arrows, until the box shows it.
    void step(const QString& box, const QString& text)
    {
        const int count = int(widget(box)["items"].toArray().size());
        for (int steps = 0; steps < count && widget(box)["text"] != text; ++steps)
            key("Right");
        ASSERT_EQ(widget(box)["text"].toString(), text);
    }
    // What the page shows of it, within what scaling changes.
    bool isLikeSunset(const QImage& shown) const
    {
        const QImage file(root() + "/phone/resource/sysdata/wallpaper/Sunset.jpg");
        int far = 0;
        for (const QPoint at :
             {QPoint(30, 20), QPoint(150, 60), QPoint(250, 90), QPoint(60, 150), QPoint(280, 170)}) {
            const QColor seen = shown.pixelColor(at);
            const QColor wanted = file.pixelColor(at.x() * file.width() / 300, at.y() * file.height() / 180);
            far = qMax(far, qMax(qAbs(seen.red() - wanted.red()), qAbs(seen.blue() - wanted.blue())));
        }
        return far < 16;
    }
    int stored(const char* key) { return config(USER_FILE, "Volume", key).toInt(); }
    void ring()
    {
        ctl({"ring", "4711", "0", "Anna"});
        waitPage("frmCall");
        waitIdle();
    }
    bool isInCall() { return topWindow()["class"] == "frmCall"; }
    void waitForHome()
    {
        waitPage("frmDesktop");
        waitIdle();
    }
};

} // namespace

TEST_F(Personal, TheToneThatIsSetByFingerIsHeardWhileItIsSetAndRingsAtTheNextCall)
{
    tap("tileSetting");
    waitPage("dlgIconviewForm");
    softKey(0); // the second page of icons
    tap(557, 120);
    waitPage("dlgSound");
    waitIdle();
    EXPECT_EQ(topWindow()["title"], "Tones and Volume");
    shot("personal-sound");
    touchBar("barRing", 0.6); // it is heard at once
    EXPECT_TRUE(kit::waits([&] { return heard().peak() > 0.01; }, kWaitMs));
    tap("cmbBoxRingFile");
    shot("personal-sound-list");
    key("Escape");
    step("cmbBoxRingFile", "Mid.wav");
    ASSERT_TRUE(hears(660));
    softKey(0);
    waitPage("dlgIconviewForm");
    EXPECT_TRUE(isSilent());
    EXPECT_EQ(config(USER_FILE, "Ring", "strRingFile"), "/rundata/media/ring/Mid.wav");
    const int set = stored("nRing");
    EXPECT_GT(set, 45);
    ring();
    shot("personal-incoming");
    EXPECT_TRUE(hears(660, set)) << "as loud as it was set";
    key("Left"); // nothing
    EXPECT_TRUE(hears(660));
    softKey(3);
    EXPECT_TRUE(isSilent());
}

TEST_F(Personal, TheToneThatIsSetByKeysInChineseRingsAtTheNextCall)
{
    ctl({"set", "language", "Chinese"});
    openPage("Sound Set", "dlgSound");
    EXPECT_EQ(topWindow()["title"], "铃声和音量");
    shot("personal-sound-chinese");
    step("cmbBoxRingFile", "Low.wav");
    key("Down");
    key("Right", 4);
    ASSERT_TRUE(hears(440, 40));
    key("F1");
    waitForHome();
    EXPECT_EQ(stored("nRing"), 40);
    ring();
    shot("personal-incoming-chinese");
    EXPECT_TRUE(hears(440, 40));
    key("Up"); // louder
    EXPECT_TRUE(hears(440, 50));
    key("Return"); // answered
    EXPECT_TRUE(isSilent());
    EXPECT_TRUE(kit::waits([&] { return stored("nRing") == 50; }, kWaitMs)) << "and so it stays";
    shot("personal-talk-chinese");
    EXPECT_EQ(logOf("volume").last(), "50") << "the talk has the volume of its own, which is the same";
    key("F4");
    waitForHome();
}

TEST_F(Personal, ThePreviewOfAPageIsSilencedByACall)
{
    ctl({"config", USER_FILE, "Ring", "strRingFile", "/rundata/media/ring/Low.wav"});
    openPage("Sound Set", "dlgSound");
    step("cmbBoxRingFile", "Mid.wav");
    ASSERT_TRUE(hears(660));
    ring();
    EXPECT_TRUE(hears(440, 20)) << "the page's end does not end the ring";
    key("F4");
    EXPECT_TRUE(isSilent());
}

TEST_F(Personal, TheTalkVolumeIsThatOfCallsAndASampleOfItIsHeard)
{
    openPage("Sound Set", "dlgSound");
    touchBar("barTalk", 0.7);
    EXPECT_TRUE(kit::waits([&] { return heard().from(0.02, 0.12, kRate).has(697); }, kWaitMs));
    EXPECT_TRUE(heard().from(0.02, 0.12, kRate).has(1633));
    softKey(0);
    waitForHome();
    const int talk = stored("nTalkOutput");
    EXPECT_GT(talk, 50);
    ring();
    EXPECT_EQ(logOf("volume").last(), "20");
    softKey(0);
    EXPECT_EQ(logOf("volume").last().toInt(), talk);
    key("Up"); // louder
    EXPECT_EQ(logOf("volume").last().toInt(), talk + 10);
    // Set anew from the page, in the middle of the talk.
    openPage("Sound Set", "dlgSound");
    key("Down", 2);
    key("Left", 2);
    key("F1");
    EXPECT_TRUE(kit::waits([&] { return stored("nTalkOutput") == talk - 10; }, kWaitMs));
    EXPECT_EQ(logOf("volume").last().toInt(), talk - 10);
}

TEST_F(Personal, AWallpaperIsOnTheHomeScreenAtOnceAndAfterAStart)
{
    // Where neither time nor weather stands.
    const auto corner = [this] { return screen().copy(260, 45, 130, 95); };
    const QImage before = corner();
    openPage("Screen Saver", "dlgScreenSaver");
    EXPECT_EQ(topWindow()["title"], "Desktop Setting");
    shot("personal-screensaver");
    key("Down", 3);
    EXPECT_EQ(focusWidget()["name"], "cmbBoxPic");
    step("cmbBoxPic", "Sunset.jpg");
    EXPECT_TRUE(kit::waits([&] { return isLikeSunset(screen().copy(480, 196, 300, 180)); }, kWaitMs));
    shot("personal-screensaver-sunset");
    softKey(0);
    waitForHome();
    EXPECT_EQ(config(USER_FILE, "Theme", "strWallpaper"), "/phone/resource/sysdata/wallpaper/Sunset.jpg");
    EXPECT_EQ(logOf("broadcast").filter("0x10007 17 0").size(), 1);
    const QImage sunset = corner();
    EXPECT_NE(sunset, before);
    shot("personal-home-sunset");
    quit();
    start();
    EXPECT_EQ(corner(), sunset);
    // As another program does it.
    ctl({"config", USER_FILE, "Theme", "strWallpaper", "/phone/resource/sysdata/wallpaper/wallpaper.jpg"});
    EXPECT_EQ(corner(), sunset);
    ctl({"post", "app_hxPhone", "0x10007", "17", "0"});
    EXPECT_TRUE(kit::waits([&] { return corner() == before; }, kWaitMs));
}

TEST_F(Personal, NoLeavesTheLanguageForTheNextStart)
{
    tap("tileSetting");
    waitPage("dlgIconviewForm");
    softKey(0);
    tap(233, 120);
    waitPage("dlgPhone_Setting");
    waitIdle();
    shot("personal-phone");
    step("cmbBoxLanguage", "Français");
    softKey(0);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Reset language ?");
    shot("personal-language-question");
    tap("btnNo");
    waitPage("dlgIconviewForm");
    openPage("Personalize", "dlgPhone_Setting");
    EXPECT_EQ(topWindow()["title"], "Phone Setting") << "not before the next start";
    EXPECT_EQ(widget("cmbBoxLanguage")["text"], "Français");
    quit();
    start();
    openPage("Personalize", "dlgPhone_Setting");
    EXPECT_EQ(topWindow()["title"], "Réglage du téléphone");
    shot("personal-phone-french");
}

TEST_F(Personal, YesRestartsThePhoneIntoTheLanguage)
{
    const qint64 before = pid();
    openPage("Personalize", "dlgPhone_Setting");
    step("cmbBoxLanguage", "中文");
    key("F1");
    waitPage("dlgMessageBox");
    restartBy({"key", "Return"});
    EXPECT_EQ(pid(), before);
    shot("personal-home-chinese");
    key("Return"); // the focus begins on the settings
    waitPage("dlgIconviewForm");
    shot("personal-menu-chinese");
    for (const auto& [name, window, title] :
         {std::tuple{"Personalize", "dlgPhone_Setting", "话机设置"},
          std::tuple{"Screen Saver", "dlgScreenSaver", "桌面设置"},
          std::tuple{"TV Output", "dlgTvOutPut", "电视输出"},
          std::tuple{"Auto Provision", "dlgAutoServer", "更新服务器设置"}}) {
        openPage(name, window);
        EXPECT_EQ(topWindow()["title"].toString(), QString::fromUtf8(title));
        shot(QString("personal-%1-chinese").arg(window));
    }
}

TEST_F(Personal, WhoIsNotToBeDisturbedIsNotRung)
{
    shot("personal-home");
    tap(662, 20); // the bell
    EXPECT_EQ(config(USER_FILE, "DND", "bEnable"), "1");
    shot("personal-home-undisturbed");
    ctl({"ring", "4711", "0", "Anna"});
    waitIdle();
    EXPECT_FALSE(isInCall());
    EXPECT_EQ(heard().size(), 0);
    // The analogue line is a matter of its own.
    ctl({"set", "pstn", "1"});
    ctl({"ring", "4712", "pstn"});
    waitPage("frmCall");
    EXPECT_EQ(widget("labLine")["text"], "PSTN");
    key("F4");
    waitForHome();
    openPage("Personalize", "dlgPhone_Setting");
    tap("chkDndPstn");
    softKey(0);
    waitForHome();
    ctl({"ring", "4713", "pstn"});
    waitIdle();
    EXPECT_FALSE(isInCall());
    key("F8"); // the bell's key
    EXPECT_EQ(config(USER_FILE, "DND", "bEnable"), "0");
    ring();
    EXPECT_TRUE(isInCall());
    key("F4");
    waitForHome();
    openPage("Call Histroy", "dlgCallHistroy");
    shot("personal-history");
    QStringList names;
    for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
        for (const QJsonValue& row : entry.toObject()["rows"].toArray())
            names.append(row.toArray()[1].toString() + row.toArray()[0].toString());
    }
    EXPECT_EQ(names.count("4711Anna"), 2) << qPrintable(names.join("|"));
    EXPECT_EQ(names.filter("4713").size(), 1) << "the one that was refused on the analogue line";
}

TEST_F(Personal, WhereSignageIsTheSaverThePageOffersNone)
{
    setSignageKey("bEnable", "1");
    openPage("Screen Saver", "dlgScreenSaver");
    EXPECT_FALSE(widget("cmbBoxScreenSaver")["visible"].toBool());
    EXPECT_FALSE(widget("cmbBoxScreenType")["visible"].toBool());
    EXPECT_EQ(focusWidget()["name"], "cmbBoxSleep");
    shot("personal-screensaver-signage");
    key("F4");
    waitForHome();
    setSignageKey("bEnable", "0");
    openPage("Screen Saver", "dlgScreenSaver");
    EXPECT_TRUE(widget("cmbBoxScreenSaver")["visible"].toBool());
}

TEST_F(Personal, TelevisionAndUpdateServerAreStoredAndNobodyIsTold)
{
    openPage("TV Output", "dlgTvOutPut");
    shot("personal-tv");
    step("cmbBoxTvOutput", "Manual");
    softKey(0);
    waitForHome();
    EXPECT_EQ(config(USER_FILE, "TVOut", "bTvOutput"), "0");
    openPage("Auto Provision", "dlgAutoServer");
    ctl({"type", "http://pbx/phones"});
    shot("personal-server");
    softKey(0);
    waitForHome();
    EXPECT_EQ(config(SYSTEM_FILE, "AutoProvision", "strServerURL"), "http://pbx/phones");
    EXPECT_TRUE(logOf("broadcast").filter("0x10007 ").isEmpty());
}
