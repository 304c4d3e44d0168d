// A phone whose file system cannot be written.
#include "places.h"
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const uid_t Stranger = 65534;

class ReadOnlyPhone : public LivePhone
{
protected:
    // Everything is the superuser's, and all may read it.
    void openToReaders() const
    {
        ASSERT_EQ(chmod(root().toUtf8(), 0777), 0);
        ASSERT_EQ(chmod((root() + "/rundata").toUtf8(), 0755), 0);
        QDirIterator all(root() + "/rundata", QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
        while (all.hasNext()) {
            all.next();
            ASSERT_EQ(chmod(all.filePath().toUtf8(), all.fileInfo().isDir() ? 0755 : 0644), 0);
        }
    }
    bool isPlayerThere() { return exitOf({"post", "app_hxMovie", "1", "0", "0"}) == 0; }
    QByteArray settings() const
    {
        QFile file(root() + "/rundata/config/user/user.ini");
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

} // namespace

TEST_F(ReadOnlyPhone, StartsSaysSoAndKeepsSettingsInMemory)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play a user who may write nothing";
    quit();
    openToReaders();
    const QByteArray before = settings();
    launch(Stranger);
    waitPage("dlgMessageBox");
    ctl({"shot", root() + "/readOnly.png"});
    QFile::copy(root() + "/readOnly.png", HX_BUILD_DIR "/shots/readOnly.png");
    EXPECT_EQ(logOf("trace").filter("settings are kept in memory").size(), 1);
    key("Return");
    waitPage("frmDesktop");
    ctl({"config", "/rundata/config/user/user.ini", "DateTime", "eTimeFormat", "1"});
    EXPECT_EQ(config("/rundata/config/user/user.ini", "DateTime", "eTimeFormat"), "1");
    EXPECT_EQ(settings(), before);
    // Messages go to the players and back as ever.
    EXPECT_TRUE(kit::waits([this] { return isPlayerThere(); }, 8000));
    quit();
    EXPECT_EQ(settings(), before);
}
