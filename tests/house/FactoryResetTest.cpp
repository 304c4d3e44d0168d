// The script that puts a phone back to how it left the factory.
#include "tests/house/sourceTree.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class FactoryReset : public ::testing::Test
{
protected:
    void SetUp() override
    {
        write("/phone/factory/rundata/config/user/user.ini", "[Volume]\nnRing=20\n");
        write("/phone/factory/rundata/data/dsskey.xml", "<DssKey/>");
        QDir().mkpath(path("/phone/factory/rundata/media/ring"));
        write("/rundata/config/user/user.ini", "[Volume]\nnRing=90\n");
        write("/rundata/data/mine.xml", "<Mine/>");
        write("/rundata/.hidden", "x");
    }
    QString path(const QString& devicePath) const { return m_root.path() + devicePath; }
    void write(const QString& devicePath, const QByteArray& content)
    {
        QDir().mkpath(QFileInfo(path(devicePath)).path());
        QFile file(path(devicePath));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    int run(const QStringList& arguments = {}) const
    {
        QProcess script;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HX_SYSROOT", m_root.path());
        // What a test puts there is run in the place of the system's.
        environment.insert("PATH", path("/bin") + ":" + environment.value("PATH"));
        script.setProcessEnvironment(environment);
        script.start("/bin/sh", QStringList{sourcePath("rootfs/scripts/factory.sh")} + arguments);
        script.waitForFinished();
        return script.exitCode();
    }
    bool isLink(const QString& devicePath) const { return QFileInfo(path(devicePath)).isSymLink(); }
    std::string read(const QString& devicePath) const { return readText(path(devicePath)).toStdString(); }

    QTemporaryDir m_root;
};

} // namespace

TEST_F(FactoryReset, SettingsAndDataComeBackAndNothingOfTheUserStays)
{
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=20\n");
    EXPECT_EQ(read("/rundata/data/dsskey.xml"), "<DssKey/>");
    EXPECT_TRUE(QFileInfo(path("/rundata/media/ring")).isDir());
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/data/mine.xml")));
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.hidden")));
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory")));
}

TEST_F(FactoryReset, TheRunFolderOfARunningPhoneStaysAndAsksItToStartAnew)
{
    write("/rundata/run/app_hxPhone.lock", "");
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(QFileInfo::exists(path("/rundata/run/app_hxPhone.lock")));
    EXPECT_TRUE(QFileInfo::exists(path("/rundata/run/restart")));
    ASSERT_TRUE(QDir(path("/rundata/run")).removeRecursively());
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/run")));
}

TEST_F(FactoryReset, WhatIsWrittenMeanwhileDoesNotStopIt)
{
    // A phone that goes on storing its settings as quickly as it can.
    QProcess writer;
    writer.start("/bin/sh",
                 {"-c", "while :; do mkdir -p \"$1/config/user\"; echo x >\"$1/config/user/x.ini\"; done",
                  "sh", path("/rundata")});
    ASSERT_TRUE(writer.waitForStarted());
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=20\n");
    }
    writer.kill();
    writer.waitForFinished();
}

TEST_F(FactoryReset, APhoneWithoutAPristineCopyKeepsItsData)
{
    ASSERT_TRUE(QDir(path("/phone/factory")).removeRecursively());
    EXPECT_NE(run(), 0);
    EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=90\n");
    EXPECT_EQ(read("/rundata/data/mine.xml"), "<Mine/>");
}

TEST_F(FactoryReset, ARunThatWasCutShortIsMadeGoodByTheNext)
{
    write("/rundata/.factory/data/dsskey.xml", "<Torn");
    write("/rundata/.factory/stale.xml", "<Stale/>");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(read("/rundata/data/dsskey.xml"), "<DssKey/>");
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/stale.xml")));
}

TEST_F(FactoryReset, OfACopyForWhichThereIsNoRoomNothingStays)
{
    write("/bin/cp", "#!/bin/sh\nfor to in \"$@\"; do :; done\necho half >\"$to/half\"\nexit 1\n");
    ASSERT_EQ(chmod(path("/bin/cp").toUtf8().constData(), 0755), 0);
    EXPECT_NE(run(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory")));
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory.old")));
    EXPECT_EQ(read("/rundata/data/mine.xml"), "<Mine/>");
}

TEST_F(FactoryReset, FinishRemovesACopyThatNothingHadMadeRoomFor)
{
    write("/rundata/.factory/config/half.ini", "[Volume]\n");
    QDir().mkpath(path("/rundata/.factory.old"));
    EXPECT_EQ(run({"finish"}), 0);
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory")));
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory.old")));
    EXPECT_EQ(read("/rundata/data/mine.xml"), "<Mine/>") << "the user's";
}

TEST_F(FactoryReset, FinishCompletesWhatHadBegunToTakeThingsAway)
{
    QDir().mkpath(path("/rundata/.factory/data"));
    QDir().mkpath(path("/rundata/.factory.old"));
    ASSERT_TRUE(QFile::rename(path("/rundata/config"), path("/rundata/.factory.old/1")));
    EXPECT_EQ(run({"finish"}), 0);
    EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=20\n");
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/data/mine.xml")));
    EXPECT_FALSE(QFileInfo::exists(path("/rundata/.factory.old")));
}

TEST_F(FactoryReset, APhoneThatLostAllItsDataIsFilled)
{
    ASSERT_TRUE(QDir(path("/rundata")).removeRecursively());
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=20\n");
}

TEST_F(FactoryReset, NobodyElseMayReadTheSettings)
{
    const QString factory = path("/phone/factory/rundata/config/user/user.ini");
    ASSERT_EQ(chmod(factory.toUtf8().constData(), 0644), 0);
    const mode_t usual = umask(022);
    EXPECT_EQ(run(), 0);
    umask(usual);
    for (const char* name : {"/rundata/config", "/rundata/config/user", "/rundata/config/user/user.ini"}) {
        struct stat info = {};
        ASSERT_EQ(stat(path(name).toUtf8().constData(), &info), 0) << name;
        EXPECT_EQ(info.st_mode & 077, 0u) << name;
    }
}

TEST_F(FactoryReset, HiddenFilesOfTheFactoryComeToo)
{
    write("/phone/factory/rundata/.version", "1");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(read("/rundata/.version"), "1");
}

TEST_F(FactoryReset, LinksOfTheUserThatLeadNowhereGo)
{
    for (const char* name : {"/rundata/mine", "/rundata/.mine", "/rundata/media"})
        ASSERT_EQ(symlink("/nowhere/at/all", path(name).toUtf8().constData()), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(isLink("/rundata/mine"));
    EXPECT_FALSE(isLink("/rundata/.mine"));
    EXPECT_FALSE(isLink("/rundata/media"));
    EXPECT_TRUE(QFileInfo(path("/rundata/media/ring")).isDir());
}

TEST_F(FactoryReset, WhatAlwaysComesBackIsOverlaidWithTheFactorys)
{
    // A phone that makes its settings again as soon as they are away.
    write("/bin/mv", "#!/bin/sh\nPATH=/bin:/usr/bin\nmv \"$@\" 2>/dev/null || exit\n"
                     "case $2 in */.factory.old/*)\n"
                     "    mkdir -p \"$HX_SYSROOT/rundata/config/user\"\n"
                     "    echo x >\"$HX_SYSROOT/rundata/config/user/x.ini\" ;;\nesac\n");
    ASSERT_EQ(chmod(path("/bin/mv").toUtf8().constData(), 0755), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(read("/rundata/config/user/x.ini"), "x\n") << "it came back";
    EXPECT_EQ(read("/rundata/config/user/user.ini"), "[Volume]\nnRing=20\n");
    EXPECT_EQ(read("/rundata/data/dsskey.xml"), "<DssKey/>");
}
