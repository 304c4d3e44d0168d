// A reset to the factory's settings, on the running phone: it starts anew and works.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"

class Factory : public LivePhone
{
protected:
    void reset()
    {
        ctl({"open", "Factory"});
        waitPage("dlgMessageBox");
        EXPECT_EQ(widget("labText")["text"], "Reset to factory?");
        tap("btnYes");
    }
    void write(const QString& path, const QByteArray& content)
    {
        QDir().mkpath(QFileInfo(root() + path).path());
        QFile file(root() + path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    bool exists(const char* path) const { return QFile::exists(root() + path); }
    // Both players are there, as often as it takes them to start.
    bool arePlayersReachable()
    {
        QElapsedTimer waited;
        for (waited.start(); waited.elapsed() < 20000; QThread::msleep(50)) {
            if (exists("/rundata/run/app_hxMedia.sock") && exists("/rundata/run/app_hxMovie.sock"))
                return true;
        }
        return false;
    }
};

} // namespace

TEST_F(Factory, TellsTheUserAndStartsAnewThroughTheBootScreen)
{
    const qint64 before = pid();
    ctl({"config", USER_FILE, "Volume", "nRing", "7"});
    write("/rundata/data/mine.xml", "<Mine/>");
    reset();
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "The phone restarts with its factory settings.");
    shot("factory-note");
    restartBy({"screen"});
    EXPECT_EQ(pid(), before);
    EXPECT_NE(config(USER_FILE, "Volume", "nRing"), "7");
    EXPECT_FALSE(exists("/rundata/data/mine.xml"));
    EXPECT_FALSE(exists("/rundata/run/restart"));
    EXPECT_EQ(logOf("trace").filter("settingCacheWindows(0)").size(), 2) << "the boot of the new process";
    EXPECT_TRUE(logOf("command").isEmpty()) << "the old process";
}

// A box that nobody answers lies upon the note.
TEST_F(Factory, IsNotHeldUpByWhatIsAskedOverItsNote)
{
    reset();
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "The phone restarts with its factory settings.");
    ctl({"open", "Factory"});
    EXPECT_EQ(widget("labText")["text"], "Reset to factory?");
    restartBy({"screen"});
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}

TEST_F(Factory, LeavesThePlayersReachableAndTheRootTaken)
{
    ASSERT_TRUE(arePlayersReachable());
    reset();
    waitPage("dlgMessageBox");
    EXPECT_TRUE(exists("/rundata/run/app_hxPhone.sock")) << "removed under the running phone";
    EXPECT_TRUE(exists("/rundata/run/app_hxPhone.lock")) << "removed under the running phone";
    restartBy({"screen"});
    ASSERT_TRUE(arePlayersReachable());
    ctl({"post", "app_hxMedia", "0x70002", "0", "0"});
    ctl({"post", "app_hxMovie", "0x110002", "0", "0"});
    QProcess second;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    second.setProcessEnvironment(environment);
    second.start(HX_BUILD_DIR "/bin/hxPhone", {"--sysroot", root()});
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(second.readAllStandardError().contains("another phone already runs"));
}

// Its settings are asked for before it starts: what was written between the reset and its end is none of
// them.
TEST_F(Factory, WhatThePhoneWritesUntilItEndsDoesNotStay)
{
    reset();
    waitPage("dlgMessageBox");
    ctl({"config", USER_FILE, "Volume", "nRing", "7"});
    write("/rundata/nDeck/display.xml", "<Display/>");
    restartBy({"screen"});
    EXPECT_NE(config(USER_FILE, "Volume", "nRing"), "7");
    EXPECT_FALSE(exists("/rundata/nDeck/display.xml"));
}

TEST_F(Factory, AScriptThatFailsIsToldAndThePhoneGoesOn)
{
    // An image of its own, without the pristine copy.
    QFile::remove(root() + "/phone");
    QDir().mkpath(root() + "/phone");
    for (const char* part : {"resource", "scripts"})
        QFile::link(QString(HX_BUILD_DIR "/rootfs/phone/") + part, root() + "/phone/" + part);
    reset();
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "The phone could not be reset!");
    key("F4");
    waitPage("frmDesktop");
}

// The power had gone while the copy was made.
TEST_F(Factory, AHalfCopyIsGoneWithTheNextStart)
{
    kill();
    write("/rundata/.factory/data/half.xml", "<Half/>");
    write("/rundata/data/mine.xml", "<Mine/>");
    start();
    EXPECT_FALSE(exists("/rundata/.factory"));
    EXPECT_TRUE(exists("/rundata/data/mine.xml"));
}

// As an administrator may do it from a shell.
TEST_F(Factory, TheScriptAloneRestartsTheRunningPhone)
{
    QProcess script;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HX_SYSROOT", root());
    script.setProcessEnvironment(environment);
    script.start("/bin/sh", {root() + "/phone/scripts/factory.sh"});
    ASSERT_TRUE(script.waitForFinished(20000));
    EXPECT_EQ(script.exitCode(), 0);
    restartBy({"screen"});
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}
