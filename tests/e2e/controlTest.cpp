// The control interface itself, as a shell sees it.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QLocalSocket>
#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <vector>

namespace {

bool isPng(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(4) == "\x89PNG";
}

class Control : public LivePhone
{
protected:
    QJsonValue ctl(const QStringList& command, int expectedExit = 0) { return hxctl(command, expectedExit); }
    static int runBare(const QStringList& words)
    {
        QProcess process;
        process.start(kit::program("hxctl"), words);
        process.waitForFinished(10000);
        return process.exitCode();
    }
};

} // namespace

TEST_F(Control, TheSocketIsForItsOwnerAlone)
{
    const QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser |
                                    QFile::WriteUser | QFile::ExeUser;
    EXPECT_EQ(QFileInfo(root() + "/control").permissions() & ~mine, QFile::Permissions());
}

TEST_F(Control, BadUsageAndAMissingPhoneExitWithTwo)
{
    EXPECT_EQ(runBare({}), 2);
    EXPECT_EQ(runBare({"-s", root() + "/nothing-here", "tree"}), 2);
    EXPECT_EQ(runBare({"-s", root() + "/control", "dance"}), 2);
    EXPECT_EQ(runBare({"-s", root() + "/control", "touch", "x", "1"}), 2);
    EXPECT_EQ(runBare({"-s", root() + "/control", "touch-raw", "7"}), 2);
    EXPECT_EQ(runBare({"--help"}), 0);
    EXPECT_EQ(runBare({"-s", root() + "/control", "--help"}), 0);
    EXPECT_EQ(runBare({"-s", root() + "/nothing-here", "-h"}), 0);
}

TEST_F(Control, ARefusalSaysWhyAndExitsWithOne)
{
    EXPECT_FALSE(ctl({"post", "nobody", "1", "2", "3"}, 1).toObject()["error"].toString().isEmpty());
    EXPECT_FALSE(ctl({"wait", "page", "dlgNowhere", "50"}, 1).toObject()["error"].toString().isEmpty());
    EXPECT_FALSE(ctl({"set", "line", "9", "state=2"}, 1).toObject()["error"].toString().isEmpty());
    EXPECT_FALSE(ctl({"key", "NoSuchKey"}, 1).toObject()["error"].toString().isEmpty());
}

TEST_F(Control, TheTreeTellsWhatIsOnTheScreen)
{
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    waitIdle();
    const QJsonObject window = topWindow();
    EXPECT_EQ(window["class"], "dlgWan");
    EXPECT_EQ(window["title"], "WAN");
    EXPECT_EQ(window["geometry"].toArray(), (QJsonArray{0, 0, 800, 480}));
    EXPECT_TRUE(window["active"].toBool());
    const QJsonObject radio = widget("radBtnDHCP");
    EXPECT_EQ(radio["class"], "QRadioButton");
    EXPECT_TRUE(radio["checked"].toBool());
    EXPECT_TRUE(radio["focus"].toBool());
    EXPECT_TRUE(radio["visible"].toBool());
    EXPECT_EQ(ctl({"tree"}).toObject()["windows"].toArray().last().toObject()["class"], "frmDesktop");
}

TEST_F(Control, AFingerCanBeHeldAndDraggedAway)
{
    ctl({"touch", "300", "460", "down"});
    ctl({"touch", "300", "100", "move"});
    ctl({"touch", "300", "100", "up"});
    waitIdle();
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
    ctl({"touch", "336", "270", "down"});
    ctl({"touch", "336", "270", "up"});
    waitPage("dlgIconviewForm");
}

TEST_F(Control, AShotIsTheScreenAsPng)
{
    ctl({"shot", root() + "/screen.png"});
    const QImage image(root() + "/screen.png");
    EXPECT_EQ(image.size(), QSize(800, 480));
    EXPECT_GT(image.pixelColor(400, 20).blue(), image.pixelColor(400, 20).red());
    EXPECT_EQ(ctl({"shot", "/no/such/folder/x.png"}, 1).toObject().contains("error"), true);
    EXPECT_TRUE(isPng(root() + "/screen.png"));
    ctl({"shot", root() + "/screen.ppm"});
    EXPECT_FALSE(isPng(root() + "/screen.ppm"));
    EXPECT_EQ(QImage(root() + "/screen.ppm"), image) << "the same picture in another form";
}

TEST_F(Control, MenusFramesAndStepsAnswer)
{
    ctl({"menu", "media.xml"});
    waitPage("dlgIconviewForm");
    EXPECT_EQ(ctl({"frame", "Nowhere"}).toInt(), 0);
    EXPECT_EQ(ctl({"frame", "Directory"}).toInt(), 1);
    EXPECT_EQ(ctl({"cache", "8"}).toInt(), 0);
    EXPECT_EQ(ctl({"cache", "3"}).toInt(), 1);
    ctl({"refresh", "media.xml"});
}

TEST_F(Control, APageOpensWithIconAndTitle)
{
    ctl({"open-info", "WAN", "/phone/resource/theme/default/bmp/menu/menu_wan.png", "Network"});
    waitPage("dlgWan");
    bool isThere = false;
    for (const QJsonValue& entry : topWindow()["widgets"].toArray())
        isThere =
            isThere || (entry.toObject()["class"] == "qLeftBar" && entry.toObject()["text"] == "Network");
    EXPECT_TRUE(isThere);
}

TEST_F(Control, KeysAreReadAndWritten)
{
    EXPECT_EQ(config("/rundata/config/user/user.ini", "Test", "strKey"), "");
    ctl({"config", "/rundata/config/user/user.ini", "Test", "strKey", "value; with = signs"});
    EXPECT_EQ(config("/rundata/config/user/user.ini", "Test", "strKey"), "value; with = signs");
    EXPECT_TRUE(ctl({"config", "/no/where.ini", "A", "b", "c"}, 1).toObject().contains("error"));
}

TEST_F(Control, APostedMessageReachesThePhone)
{
    ctl({"open", "Account Setting"});
    waitPage("dlgAccount_Setting_Btn");
    ctl({"post", "app_hxPhone", "0xFFFF1001", "7", "2"});
    waitIdle();
    EXPECT_FALSE(logOf("trace").filter("PHONE_PUBLIC_MSG_ACCOUNT_REFRESH(7, 2)").isEmpty());
}

TEST_F(Control, TheClockOfThePhoneIsSet)
{
    ctl({"set", "clock", "2026-11-21 14:05:00"});
    ctl({"menu", "setting.xml"});
    waitPage("dlgIconviewForm");
    const auto shows = [this](const QString& text) {
        for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
            if (entry.toObject()["text"].toString() == text)
                return true;
        }
        return false;
    };
    // The menu's clock looks every three seconds.
    for (int look = 0; look < 60 && !shows("21/11/2026 14:05"); ++look)
        ctl({"wait", "idle", "1000"});
    EXPECT_TRUE(shows("21/11/2026 14:05"));
}

TEST_F(Control, TheIdleTimeIsSetAndToldWithSaverAndLamp)
{
    ctl({"touch", "495", "165"});
    EXPECT_LT(ctl({"screen"}).toObject()["idle"].toInt(), 5000);
    ctl({"set", "idle", "100"});
    const QJsonObject screen = ctl({"screen"}).toObject();
    EXPECT_GE(screen["idle"].toInt(), 100000);
    EXPECT_LT(screen["idle"].toInt(), 110000);
    EXPECT_EQ(screen["saverHeld"], false);
    EXPECT_EQ(screen["lamp"], false);
    ctl({"set", "idle", "soon"}, 2);
    ctl({"set", "idle", "-1"}, 2);
}

// Boxes upon each other hold a picture of the screen each; a page that comes over them stays.
TEST_F(Control, WhatBoxesHeldGoesBackToTheSystem)
{
    const auto keptBesideTheHeap = [this] {
        waitIdle();
        const double heapKiB = ctl({"memory"}).toObject()["heap"].toDouble() / 1024;
        return double(kit::statusKiB(pid(), "RssAnon")) - heapKiB;
    };
    if (ctl({"memory"}).toObject()["heap"].toDouble() == 0)
        GTEST_SKIP() << "a sanitizer has a heap of its own";
    const double before = keptBesideTheHeap();
    for (int i = 0; i < 8; ++i)
        ctl({"open", "Nowhere"});
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    EXPECT_TRUE(kit::waits([&] { return keptBesideTheHeap() < before + 4000; }, 5000)) << keptBesideTheHeap();
}

TEST_F(Control, ADiskComesAndGoes)
{
    QDir(root()).mkpath("disk");
    EXPECT_EQ(ctl({"set", "storage", "plug", "usb", root() + "/disk"}).toString(), "/storage/uDisk1");
    ctl({"set", "storage", "unplug", root() + "/disk"});
    ctl({"set", "storage", "unplug", root() + "/disk"}, 1);
}

TEST_F(Control, AModalBoxDoesNotHoldUpTheControl)
{
    ctl({"open", "Reboot"});
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Reboot device?");
    tap("btnNo");
    waitPage("frmDesktop");
    EXPECT_TRUE(logOf("reboot").isEmpty());
}

TEST_F(Control, AnswersAgainAfterDescriptorsHaveRunOut)
{
    // As a flood of connections would leave the phone: with no descriptor for the next one.
    rlimit before = {}, none = {};
    ASSERT_EQ(prlimit(pid_t(pid()), RLIMIT_NOFILE, nullptr, &before), 0);
    none = before;
    none.rlim_cur =
        rlim_t(QDir(QString("/proc/%1/fd").arg(pid())).entryList(QDir::System | QDir::AllEntries).size());
    ASSERT_EQ(prlimit(pid_t(pid()), RLIMIT_NOFILE, &none, nullptr), 0);
    std::vector<std::unique_ptr<QLocalSocket>> flood;
    do {
        flood.push_back(std::make_unique<QLocalSocket>());
        flood.back()->connectToServer(root() + "/control");
        ASSERT_TRUE(flood.back()->waitForConnected(5000));
        flood.back()->write("[\"tree\"]\n");
    } while (flood.size() < 64 && flood.back()->waitForReadyRead(1000));
    ASSERT_LT(flood.size(), 64u);
    ASSERT_EQ(prlimit(pid_t(pid()), RLIMIT_NOFILE, &before, nullptr), 0);
    EXPECT_TRUE(flood.back()->waitForReadyRead(10000)) << "it is let in when there is room again";
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}

TEST_F(Control, ASecondPhoneOnTheSameRootIsRefused)
{
    QProcess second;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    second.setProcessEnvironment(environment);
    second.start(QString(HX_BUILD_DIR "/bin/hxPhone"), {"--sysroot", root()});
    ASSERT_TRUE(second.waitForFinished(10000));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(second.readAllStandardError().contains("another phone"));
}

TEST_F(Control, AKilledPhoneStartsAgainOnTheSameRoot)
{
    kill();
    QFile::remove(root() + "/control");
    start();
    EXPECT_EQ(topWindow()["class"], "frmDesktop");
}

TEST_F(Control, ATerminateSignalEndsThePhoneCleanly)
{
    ::kill(pid_t(pid()), SIGTERM);
    waitForEnd();
}
