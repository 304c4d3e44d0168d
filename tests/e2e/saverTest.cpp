// A phone that is left alone: its savers, its dark screen, and how it comes back.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"

const char *const kTouch = "touch", *const kKey = "key", *const kCall = "call";
const QColor kRed(200, 30, 30), kGreen(30, 170, 60);

class Saver : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        put("/rundata/media/image/1.png", kRed);
        put("/rundata/media/image/2.png", kGreen);
        set("ScreenSaver", "nTimeout", 30);
    }
    void set(const char* section, const char* key, int value)
    {
        ctl({"config", USER_FILE, section, key, QString::number(value)});
        ctl({"post", "app_hxPhone", "0x10007", "0x11", "0"});
    }
    void put(const QString& path, const QColor& colour)
    {
        QDir().mkpath(QFileInfo(root() + path).path());
        QImage image(80, 48, QImage::Format_RGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(root() + path));
    }
    // A firmware of this phone's own, without one of its resources.
    bool useImageWithout(const QString& resource)
    {
        const QString phone = root() + "/phone";
        QFile::remove(phone); // the link to the one that all tests share
        return QProcess::execute("cp", {"-r", HX_BUILD_DIR "/rootfs/phone", phone}) == 0 &&
               QDir(phone + "/resource/" + resource).removeRecursively();
    }
    void leaveAlone(int seconds) { ctl({"set", "idle", QString::number(seconds)}); }
    QString topClass() { return topWindow()["class"].toString(); }
    bool comesUp(const QString& className)
    {
        return kit::waits([&] { return topClass() == className; }, 15000);
    }
    bool shows(const QColor& colour)
    {
        return kit::waits([&] { return screen().pixelColor(400, 240) == colour; }, 15000);
    }
    void wake(const char* by)
    {
        if (by == kTouch)
            tap(80, 270);
        else if (by == kKey)
            key("Return");
        else
            ctl({"ring", "333", "0", "Anna"});
    }
    bool isLit() { return ctl({"screen"}).toObject()["backlight"].toBool(); }
    void touchOnly(int x, int y, const QString& what)
    {
        ctl({"touch", QString::number(x), QString::number(y), what});
    }
    // Nothing comes, however long the phone has been left alone.
    void expectNothingComesOver(const QString& className)
    {
        leaveAlone(100000);
        ctl({"wait", "idle", "3000"});
        EXPECT_FALSE(kit::waits([&] { return topClass() != className; }, 1000));
        EXPECT_TRUE(isLit());
    }
};

} // namespace

TEST_F(Saver, PicturesChangeAndATouchEndsThemAndOpensNothing)
{
    leaveAlone(31);
    ASSERT_TRUE(comesUp("dlgImageScreen"));
    EXPECT_TRUE(shows(kRed));
    EXPECT_TRUE(shows(kGreen)) << "the next one";
    shot("saver-pictures");
    touchOnly(80, 270, "down");
    EXPECT_EQ(topClass(), "dlgImageScreen") << "a press alone does nothing";
    touchOnly(80, 270, "up");
    waitPage("frmDesktop");
    waitIdle();
    EXPECT_EQ(topClass(), "frmDesktop") << "the tile below was not pressed";
    shot("saver-ended");
    tap(80, 270);
    EXPECT_NE(topClass(), "frmDesktop") << "the next touch does";
}

TEST_F(Saver, FilmsPlayWhereTheyAreChosenAndACallEndsThem)
{
    set("ScreenSaver", "eType", 1);
    leaveAlone(31);
    ASSERT_TRUE(comesUp("dlgVideoScreen"));
    const QImage before = screen();
    EXPECT_TRUE(kit::waits([&] { return screen() != before && qGray(screen().pixel(400, 400)) > 8; }, 20000))
        << "the film that came with the phone";
    shot("saver-film");
    ctl({"ring", "333", "0", "Anna"});
    waitPage("frmCall");
    EXPECT_FALSE(ctl({"tree"}).toObject()["windows"].toArray().size() > 2) << "nothing plays below";
    shot("saver-call");
    softKey(3);
    waitPage("frmDesktop");
    leaveAlone(31);
    ASSERT_TRUE(comesUp("dlgVideoScreen"));
    const qsizetype touches = logOf("trace").filter("dlgVideoScreen::mousePressEvent").size();
    tap(395, 270);
    EXPECT_EQ(topClass(), "frmDesktop");
    EXPECT_EQ(logOf("trace").filter("dlgVideoScreen::mousePressEvent").size(), touches + 2)
        << "when the finger comes down, and as it lifts";
}

TEST_F(Saver, TheScreenGetsDarkAndLightAgainAtATouchAKeyAndACall)
{
    set("Sleep", "nTimeout", 60);
    shot("sleep-before");
    for (const char* by : {kTouch, kKey, kCall}) {
        leaveAlone(61);
        ASSERT_TRUE(comesUp("dlgScreenSleep")) << by;
        EXPECT_FALSE(isLit());
        EXPECT_EQ(screen().pixelColor(80, 270), QColor(Qt::black));
        shot("sleep-dark");
        wake(by);
        const QString wanted = by == kCall ? "frmCall" : "frmDesktop";
        waitPage(wanted);
        EXPECT_TRUE(isLit()) << by;
        waitIdle();
        EXPECT_EQ(topClass(), wanted) << by << " does nothing else";
        shot(QString("sleep-after-") + by);
    }
    EXPECT_EQ(logOf("backlight"), QStringList({"off", "on", "off", "on", "off", "on"}));
}

TEST_F(Saver, NothingComesOverABoxACallOrAPlayer)
{
    ctl({"open", "Reboot"});
    waitPage("dlgMessageBox");
    expectNothingComesOver("dlgMessageBox");
    tap("btnNo");
    waitPage("frmDesktop");

    ctl({"ring", "333", "0", "Anna"});
    waitPage("frmCall");
    expectNothingComesOver("frmCall");
    softKey(3);
    waitPage("frmDesktop");

    ctl({"open", "Photo Play"});
    waitPage("dlgImagePlay");
    EXPECT_TRUE(ctl({"screen"}).toObject()["saverHeld"].toBool());
    expectNothingComesOver("dlgImagePlay");
    key("5");
    waitPage("frmDesktop");

    ctl({"set", "upgrading", "1"});
    leaveAlone(31);
    EXPECT_TRUE(comesUp("dlgImageScreen")) << "an update keeps players away, and no saver";
}

TEST_F(Saver, APulledStickTakesItsPicturesAlong)
{
    QTemporaryDir stick;
    for (const char* name : {"1.png", "2.png"})
        ASSERT_TRUE(QFile::rename(root() + "/rundata/media/image/" + name, stick.filePath(name)));
    // Its pictures alone: the phone's own come before them.
    ASSERT_TRUE(useImageWithout("sysdata/ephoto"));
    ctl({"set", "storage", "plug", "usb", stick.path()});
    leaveAlone(31);
    ASSERT_TRUE(comesUp("dlgImageScreen"));
    ASSERT_TRUE(shows(kGreen));
    ctl({"set", "storage", "unplug", stick.path()});
    EXPECT_TRUE(comesUp("frmDesktop"));
    put("/rundata/media/image/3.png", kRed);
    ctl({"post", "app_hxPhone", "0x10007", "0x11", "0"});
    EXPECT_TRUE(shows(kRed)) << "what is there now";
}

TEST_F(Saver, ThePhoneBringsPicturesOfItsOwn)
{
    for (const char* name : {"1.png", "2.png"})
        ASSERT_TRUE(QFile::remove(root() + "/rundata/media/image/" + name));
    leaveAlone(31);
    ASSERT_TRUE(comesUp("dlgImageScreen"));
    const QImage first(HX_BUILD_DIR "/rootfs/phone/resource/sysdata/ephoto/Dunes.jpg");
    EXPECT_TRUE(shows(first.pixelColor(400, 240)));
    shot("saver-stock");
}
