// The phone installed into a folder of its own, and what others need to build against it.
#include "places.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

constexpr int kWaitMs = 120000;
constexpr int kStartMs = 30000;

struct Result
{
    int exitCode = -1;
    QByteArray output; // of both streams
};

Result runs(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    Result result;
    if (process.waitForFinished(kWaitMs) && process.exitStatus() == QProcess::NormalExit)
        result.exitCode = process.exitCode();
    result.output = process.readAll();
    return result;
}

class Install : public ::testing::Test
{
protected:
    void SetUp() override { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    QString prefix() const { return m_folder.filePath("prefix"); }
    QString root() const { return m_folder.filePath("root"); }
    QString below(const char* path) const { return prefix() + '/' + path; }
    bool has(const char* path) const { return QFile::exists(below(path)); }

    void install(const QStringList& components)
    {
        for (const QString& component : components) {
            const Result done =
                runs("cmake", {"--install", HX_BUILD_DIR, "--prefix", prefix(), "--component", component});
            ASSERT_EQ(done.exitCode, 0) << done.output.constData();
        }
    }
    // A device root from the installed image, as porting.md has it.
    void makeRoot()
    {
        const QString image = below("share/hxPhone/rootfs");
        ASSERT_TRUE(QDir().mkpath(root() + "/storage"));
        ASSERT_EQ(runs("cp", {"-r", image + "/rundata", root()}).exitCode, 0);
        ASSERT_TRUE(QDir().mkpath(root() + "/rundata/run"));
        for (const char* part : {"/phone", "/mini-boot"})
            ASSERT_TRUE(QFile::link(image + part, root() + part));
    }
    QStringList installedFiles() const
    {
        QStringList files;
        for (QDirIterator it(prefix(), QDir::Files | QDir::System, QDirIterator::Subdirectories);
             it.hasNext();)
            files.append(it.next().mid(prefix().size() + 1));
        files.sort();
        return files;
    }
    // hxctl of the installation.
    int ctl(const QStringList& command) const
    {
        return runs(below("bin/hxctl"), QStringList{"-s", root() + "/control"} + command).exitCode;
    }

private:
    QTemporaryDir m_folder;
};

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST_F(Install, TheInstalledPhoneRunsFromItsOwnFolder)
{
    install({"runtime"});
    makeRoot();
    QProcess phone;
    kit::endWithUs(phone);
    phone.setProcessChannelMode(QProcess::ForwardedChannels);
    phone.start(below("bin/hxPhone"), {"--sysroot", root(), "--control", root() + "/control"});
    ASSERT_TRUE(kit::waits([&] { return ctl({"wait", "page", "frmDesktop", "20000"}) == 0; }, kStartMs));
    const QByteArray map = readFile(QString("/proc/%1/maps").arg(phone.processId()));
    for (const char* library : {"lib/libNUX.so", "lib/libhxSetting.so", "lib/libhxHost.so"})
        EXPECT_TRUE(map.contains(below(library).toUtf8())) << library;
    EXPECT_FALSE(map.contains(HX_BUILD_DIR "/")) << "nothing of the build tree";
    EXPECT_TRUE(kit::waits([&] { return kit::childOf(phone.processId(), "hxMovie") > 0; }, kWaitMs));
    EXPECT_TRUE(kit::waits([&] { return kit::childOf(phone.processId(), "hxMedia") > 0; }, kWaitMs));
    EXPECT_EQ(ctl({"open", "WAN"}), 0);
    EXPECT_EQ(ctl({"wait", "page", "dlgWan", "20000"}), 0);
    EXPECT_EQ(ctl({"quit"}), 0);
    EXPECT_TRUE(phone.waitForFinished(kWaitMs));
    EXPECT_EQ(phone.exitCode(), 0);
}

TEST_F(Install, EachComponentHoldsItsOwn)
{
    install({"runtime"});
    const QStringList runtime = installedFiles();
    EXPECT_TRUE(runtime.filter(QRegularExpression("\\.(h|cmake)$")).isEmpty());
    EXPECT_TRUE(has("lib/libhxSetting.so.1"));
    EXPECT_FALSE(has("lib/libhxSetting.so")) << "the name that one links by is for ports";
    EXPECT_FALSE(has("bin/hxSignServer"));
    install({"devel"});
    EXPECT_TRUE(has("lib/libhxSetting.so"));
    EXPECT_TRUE(has("include/hxSetting/support/host/module.h"));
    EXPECT_EQ(installedFiles().filter(QRegularExpression("^include/.*(?<!\\.h)$")), QStringList());
    install({"signage"});
    EXPECT_TRUE(has("bin/hxSignServer"));
    EXPECT_TRUE(has("share/hxPhone/signage/schedule.xml"));
}

// Of the parts that are not the demonstration server's.
TEST_F(Install, RunBuildsAllThatIsInstalled)
{
    static const QRegularExpression line("^ *build release (.+)$", QRegularExpression::MultilineOption);
    const QString targets = line.match(readFile(HX_SOURCE_DIR "/run")).captured(1);
    ASSERT_FALSE(targets.isEmpty());
    const Result built = runs("ninja", QStringList{"-C", HX_BUILD_DIR, "-t", "inputs"} + targets.split(' '));
    ASSERT_EQ(built.exitCode, 0) << built.output.constData();
    install({"runtime", "devel"});
    for (const QString& file : installedFiles().filter(QRegularExpression("^(bin|lib)/[^/]+$"))) {
        const bool known = built.output.contains(file.section(".so", 0, 0).toUtf8()) ||
                           targets.split(' ').contains(file.section('/', 1));
        EXPECT_TRUE(known) << qPrintable(file);
    }
}

TEST_F(Install, EveryPictureAndFontIsInstalledWithItsNotice)
{
    install({"runtime", "signage"});
    const QString resource = below("share/hxPhone/rootfs/phone/resource/");
    const QByteArray notices = readFile(resource + "notices/NOTICES.txt");
    const QStringList fonts =
        QDir(resource + "fonts").entryList({"*.ttf", "*.ttc", "*.otf"}, QDir::Files, QDir::Name);
    EXPECT_GE(fonts.size(), 3);
    for (const QString& font : fonts)
        EXPECT_TRUE(notices.contains(font.toUtf8())) << qPrintable(font);
    EXPECT_TRUE(readFile(resource + "notices/OFL-1.1.txt").startsWith("SIL OPEN FONT LICENSE"));
    const QByteArray icons = readFile(HX_SOURCE_DIR "/rootfs/theme/glyphs/LICENSE");
    EXPECT_TRUE(icons.startsWith("MIT License"));
    EXPECT_EQ(readFile(resource + "notices/tabler-icons.txt"), icons);
    EXPECT_EQ(readFile(below("share/hxPhone/notices/signage/tabler-icons.txt")), icons);
    EXPECT_TRUE(readFile(below("share/hxPhone/notices/signage/boost.txt"))
                    .contains("Boost Software License - Version 1.0"));
}

TEST_F(Install, ATinyHostIsBuiltAgainstThePackageAndShowsAPage)
{
    install({"runtime", "devel"});
    makeRoot();
    const QString build = root() + "/build";
    QStringList options = {"-S",    HX_SOURCE_DIR "/tests/install/tinyHost", "-B", build, "-G",
                           "Ninja", "-DCMAKE_PREFIX_PATH=" + prefix()};
#if defined(__SANITIZE_ADDRESS__)
    options.append("-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined");
#endif
    const Result configured = runs("cmake", options);
    ASSERT_EQ(configured.exitCode, 0) << configured.output.constData();
    const Result built = runs("cmake", {"--build", build});
    ASSERT_EQ(built.exitCode, 0) << built.output.constData();
    const Result ran = runs(build + "/tinyHost", {root()});
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_TRUE(ran.output.contains("dlgWan\n")) << ran.output.constData();
    EXPECT_TRUE(ran.output.contains((below("share/hxPhone/rootfs") + '\n').toUtf8()))
        << ran.output.constData();
}
