// ./run where folders cannot be written: of the sources, and of the phone's files.
#include "places.h"
#include "tests/kit/plain/controlLink.h"
#include "tests/run/runScript.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t kStranger = 65534;

class RunFolders : public testing::Test
{
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only the superuser can play a user who may write nothing";
        ASSERT_EQ(chmod(m_source.path().toUtf8(), 0755), 0);
        QDir(m_source.path()).mkpath("tools");
        copy("run", 0755);
        copy("tools/packages.sh", 0644);
        ASSERT_EQ(chown(m_phone.root().toUtf8(), kStranger, kStranger), 0);
    }
    void copy(const QString& name, mode_t mode) const
    {
        const QString target = m_source.path() + '/' + name;
        ASSERT_TRUE(QFile::copy(HX_SOURCE_DIR "/" + name, target));
        ASSERT_EQ(chmod(target.toUtf8(), mode), 0);
    }
    // Programs and image of this build, of which nothing can be written.
    void putBuild() const
    {
        const QString build = m_source.path() + "/build/release";
        QDir(build).mkpath("rootfs");
        ASSERT_TRUE(QFile::link(HX_BUILD_DIR "/bin", build + "/bin"));
        ASSERT_TRUE(QFile::link(HX_BUILD_DIR "/rootfs/phone", build + "/rootfs/phone"));
        const QString files = build + "/rootfs/rundata", owner = QString::number(kStranger);
        ASSERT_EQ(QProcess::execute("cp", {"-r", HX_BUILD_DIR "/rootfs/rundata", files}), 0);
        ASSERT_EQ(QProcess::execute("chown", {"-R", owner, files}), 0);
        ASSERT_EQ(QProcess::execute("chmod", {"-R", "a-w", files}), 0);
    }
    void launch(const QStringList& options = {})
    {
        m_phone.launch(QStringList{"--root", m_phone.root(), "--port", "0", "--control", control()} + options,
                       m_source.path(), kStranger);
    }
    QString control() const { return m_folder.path() + "/control"; }
    bool isHome()
    {
        ControlLink link;
        return link.open(control(), 20000) && link.ask({"wait", "page", "frmDesktop", "20000"}).toBool(true);
    }
    // What it says of itself, without the shell's own words.
    void expectNoErrorOfATool()
    {
        for (const char* word : {"touch:", "ln:", "mkdir:", "cp:", "rm:", "chmod:", "line "})
            EXPECT_FALSE(m_phone.output().contains(word)) << m_phone.output().constData();
    }
    bool openFolder() const { return chmod(m_folder.path().toUtf8(), 0777) == 0; }

    QTemporaryDir m_source;
    QTemporaryDir m_folder;
    RunScript m_phone;
};

} // namespace

TEST_F(RunFolders, SourcesThatCannotBeWrittenServeWhatWasBuilt)
{
    putBuild();
    ASSERT_TRUE(openFolder());
    launch();
    EXPECT_TRUE(isHome()) << m_phone.output().constData();
    EXPECT_TRUE(m_phone.output().contains("starting what was built there before"))
        << m_phone.output().constData();
    expectNoErrorOfATool();
    // The image cannot be written either, but the phone's own copy can.
    EXPECT_TRUE(QFileInfo(m_phone.root() + "/rundata/config").permissions() & QFile::WriteOwner);
}

TEST_F(RunFolders, SourcesThatCannotBeWrittenAndHoldNoBuildAreToldOf)
{
    launch();
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 1);
    EXPECT_TRUE(m_phone.output().contains("cannot be written and holds no built phone"))
        << m_phone.output().constData();
    EXPECT_EQ(m_phone.output().count('\n'), 1);
}

TEST_F(RunFolders, FilesOfThePhoneThatCannotBeWrittenAreToldOfAndShown)
{
    putBuild();
    ASSERT_TRUE(openFolder());
    launch();
    ASSERT_TRUE(isHome());
    m_phone.signal(SIGTERM);
    ASSERT_TRUE(m_phone.waitEnd());
    for (const char* name : {"", "/rundata"}) {
        ASSERT_EQ(chown((m_phone.root() + name).toUtf8(), 0, 0), 0);
        ASSERT_EQ(chmod((m_phone.root() + name).toUtf8(), 0755), 0);
    }
    const qsizetype before = m_phone.output().size();
    QFile::remove(control());
    launch();
    EXPECT_TRUE(isHome());
    EXPECT_TRUE(m_phone.output().mid(before).contains("keeps what you set in memory until it ends"));
    expectNoErrorOfATool();
}

TEST_F(RunFolders, AFolderThatCannotBeFilledIsToldOf)
{
    putBuild();
    ASSERT_EQ(chown(m_phone.root().toUtf8(), 0, 0), 0);
    ASSERT_EQ(chmod(m_phone.root().toUtf8(), 0755), 0);
    launch();
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 1);
    EXPECT_TRUE(m_phone.output().contains("cannot write to " + m_phone.root().toUtf8()));
    expectNoErrorOfATool();
}
