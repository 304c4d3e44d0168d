#include "support/host/mediaview.h"
#include "support/file/chFileStdio.h"
#include "tests/kit/heldName.h"
#include "tests/kit/kitTime.h"
#include "tests/widgets/screenPage.h"
#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QThread>
#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char kTable[] = "/rundata/mediafile.xml";

class MediaView : public PhoneTest
{
protected:
    MediaView()
    {
        writeFile(kTable, "<MediaFile>"
                          "<sound filter=\"*.wav;*.mp3\"><filelist>"
                          "<item path=\"/phone/resource/sysdata/ring\" shortname=\"\" bReadOnly=\"1\"/>"
                          "<item path=\"/rundata/media/ring\" shortname=\"\" bReadOnly=\"0\"/>"
                          "<item path=\"/rundata/media/more\" shortname=\"\" bReadOnly=\"0\"/>"
                          "</filelist></sound>"
                          "<locked filter=\"*\"><filelist>"
                          "<item path=\"/phone/resource/x\" bReadOnly=\"1\"/></filelist></locked>"
                          "</MediaFile>");
        for (const char* file : {"tune.wav", "Alarm.MP3", "notes.txt", ".hidden.wav", "Music/deep/song.wav"})
            writeFile((QByteArray("/storage/uDisk1/") + file).constData(), "x");
        view = page.add<qMediaImportView>(QRect(200, 60, 400, 360));
    }
    QString path(int row) const { return QString::fromUtf8(view->itemFullPath(row).GetText()); }
    QString current() const { return QString::fromUtf8(view->GetCurPath().GetText()); }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < view->count(); ++row)
            names.append(view->item(row)->text());
        return names;
    }
    int load() { return view->LoadMediaType(kTable, "sound"); }
    // Enters the folder and waits for its rows; what the view answered.
    int enter(const char* folder)
    {
        const int answer = view->EnterDirectory(folder);
        EXPECT_TRUE(kit::waitUntil([this] { return !view->isReading(); }));
        return answer;
    }
    // That many files of the type.
    void fill(const char* folder, int files) const
    {
        const QString path = hostPath(folder);
        QDir().mkpath(path);
        for (int i = 0; i < files; ++i) {
            QFile file(QString("%1/%2.wav").arg(path).arg(i, 6, 10, QChar('0')));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }

    ScreenPage page;
    qMediaImportView* view;
};

TEST_F(MediaView, StartsAtTheListOfStorages)
{
    writeFile("/storage/uDisk2/x.txt", "x");
    ASSERT_EQ(load(), 1);
    EXPECT_EQ(current(), "/storage");
    ASSERT_EQ(view->count(), 2);
    EXPECT_EQ(path(0), "/storage/uDisk1");
    EXPECT_TRUE(view->itemIsDirectory(0));
    EXPECT_EQ(path(1), "/storage/uDisk2");
}

TEST_F(MediaView, UnknownTypeOrTableIsRefused)
{
    EXPECT_EQ(view->LoadMediaType(kTable, "pictures"), 0);
    EXPECT_EQ(view->LoadMediaType("/rundata/none.xml", "sound"), 0);
    EXPECT_EQ(view->LoadMediaType(kTable, nullptr), 0);
    EXPECT_EQ(view->count(), 0);
}

TEST_F(MediaView, ImportFolderIsTheFirstThatMayBeWritten)
{
    load();
    EXPECT_STREQ(view->getImportPath().GetText(), "/rundata/media/ring");
    view->LoadMediaType(kTable, "locked");
    EXPECT_STREQ(view->getImportPath().GetText(), "");
}

TEST_F(MediaView, FolderShowsTheWayUpThenFoldersThenFilesOfTheType)
{
    load();
    ASSERT_EQ(enter("/storage/uDisk1"), 1);
    EXPECT_EQ(names(), QStringList({"..", "Music", "Alarm.MP3", "tune.wav"}));
    EXPECT_EQ(path(0), "/storage");
    EXPECT_EQ(path(1), "/storage/uDisk1/Music");
    EXPECT_EQ(path(3), "/storage/uDisk1/tune.wav");
    EXPECT_TRUE(view->itemIsDirectory(0));
    EXPECT_TRUE(view->itemIsDirectory(1));
    EXPECT_FALSE(view->itemIsDirectory(2));
}

TEST_F(MediaView, WayUpSortsBeforeTheFolderOnView)
{
    load();
    enter("/storage/uDisk1/Music/deep");
    EXPECT_EQ(path(0), "/storage/uDisk1/Music");
    EXPECT_GT(current(), path(0));
    EXPECT_LT(current(), path(1));
}

TEST_F(MediaView, RowsOutOfRangeAreNothing)
{
    load();
    EXPECT_EQ(path(-1), "");
    EXPECT_EQ(path(99), "");
    EXPECT_FALSE(view->itemIsDirectory(-1));
    EXPECT_FALSE(view->itemIsDirectory(99));
}

TEST_F(MediaView, FoldersOutsideTheStoragesAreRefused)
{
    load();
    enter("/storage/uDisk1");
    for (const char* folder : {"/rundata", "/storage/uDisk9", "/storage/uDisk1/../../rundata",
                               "/storage/uDisk1/none", "/storage/uDisk1/tune.wav", "/storage/uDisk1x", ""}) {
        // On a busy machine the disk may answer too late to be asked at once.
        EXPECT_TRUE(kit::waitUntil([&] {
            enter("/storage/uDisk1");
            return view->EnterDirectory(folder) == 0;
        })) << folder;
        EXPECT_EQ(current(), "/storage/uDisk1");
        EXPECT_EQ(view->count(), 4);
    }
    EXPECT_EQ(view->EnterDirectory(nullptr), 0);
}

TEST_F(MediaView, ClickedFolderIsEnteredAndAFileIsNot)
{
    load();
    const auto click = [this](int row) {
        view->itemClicked(view->item(row));
        EXPECT_TRUE(kit::waitUntil([this] { return !view->isReading(); }));
    };
    click(0);
    EXPECT_EQ(current(), "/storage/uDisk1");
    click(3);
    EXPECT_EQ(current(), "/storage/uDisk1");
    click(1);
    EXPECT_EQ(current(), "/storage/uDisk1/Music");
    click(0);
    EXPECT_EQ(current(), "/storage/uDisk1");
    view->itemClicked(nullptr);
    EXPECT_EQ(current(), "/storage/uDisk1");
}

TEST_F(MediaView, FirstTapSelectsAFolderAndTheSecondEntersIt)
{
    load();
    enter("/storage/uDisk1");
    page.open();
    view->setCurrentRow(3);
    const QPoint music = view->viewport()->mapToGlobal(view->visualItemRect(view->item(1)).center());
    kit::tap(music);
    EXPECT_EQ(view->currentRow(), 1);
    EXPECT_EQ(current(), "/storage/uDisk1");
    kit::tap(music);
    EXPECT_EQ(current(), "/storage/uDisk1/Music");
}

TEST_F(MediaView, FirstRowIsCurrentInANewFolderAndTheLeftFolderOnTheWayBack)
{
    load();
    EXPECT_EQ(view->currentRow(), 0);
    enter("/storage/uDisk1");
    EXPECT_EQ(view->currentRow(), 0);
    enter("/storage/uDisk1/Music");
    enter("/storage/uDisk1");
    EXPECT_EQ(view->currentRow(), 1);
}

TEST_F(MediaView, EachNewFolderTellsItsCurrentRowOnceWithTheNewFolderInPlace)
{
    load();
    QStringList told;
    QObject::connect(view, &QListWidget::currentItemChanged, [&](QListWidgetItem* item) {
        told.append(current() + "|" + (item ? item->text() : QString("none")));
    });
    enter("/storage/uDisk1");
    EXPECT_EQ(told, QStringList({"/storage/uDisk1|.."}));
}

TEST_F(MediaView, ListWithoutStoragesTellsThatNothingIsCurrent)
{
    load();
    QDir(hostPath("/storage/uDisk1")).removeRecursively();
    int told = 0;
    QObject::connect(view, &QListWidget::currentItemChanged,
                     [&](QListWidgetItem* item) { told += item == nullptr; });
    kit::waitUntil([&] { return view->EnterDirectory("/storage") && view->count() == 0; });
    EXPECT_EQ(view->count(), 0);
    EXPECT_GE(told, 1);
}

TEST_F(MediaView, RemovedSelectionTakesItsRowOnly)
{
    load();
    enter("/storage/uDisk1");
    view->setCurrentRow(2);
    view->removeCurrentSelect();
    EXPECT_EQ(names(), QStringList({"..", "Music", "tune.wav"}));
    EXPECT_GE(view->currentRow(), 0);
    view->setCurrentRow(-1);
    view->removeCurrentSelect();
    EXPECT_EQ(view->count(), 3);
}

TEST_F(MediaView, AFolderOfTwentyThousandFilesHoldsNothingUp)
{
    fill("/storage/uDisk1/many", 20000);
    writeFile("/storage/uDisk1/many/Zoo/x.wav", "x");
    load();
    enter("/storage/uDisk1");
    page.open();
    double longest = 0;
    timespec before = {};
    const auto lap = [&] {
        timespec now = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        if (before.tv_sec || before.tv_nsec)
            longest = std::max(longest, double(now.tv_sec - before.tv_sec) * 1e3 +
                                            double(now.tv_nsec - before.tv_nsec) / 1e6);
        before = now;
    };
    lap();
    ASSERT_EQ(view->EnterDirectory("/storage/uDisk1/many"), 1);
    lap();
    EXPECT_EQ(current(), "/storage/uDisk1/many");
    EXPECT_EQ(names().value(0), "..") << "the way up is there at once";
    EXPECT_EQ(view->currentRow(), 0);
    EXPECT_TRUE(kit::waitUntil(
        [&] {
            lap();
            return !view->isReading();
        },
        60000));
    ASSERT_EQ(view->count(), 20002);
    EXPECT_EQ(names().mid(0, 3), QStringList({"..", "Zoo", "000000.wav"}));
    EXPECT_EQ(path(20001), "/storage/uDisk1/many/019999.wav");
    EXPECT_LT(longest, 200) << "each of its turns does a small part of the work";
}

// Each row takes a millisecond here.
TEST_F(MediaView, NoTurnOfTheEventLoopIsLongerThanAPartOfAFrame)
{
    fill("/storage/uDisk1/many", 60);
    load();
    enter("/storage/uDisk1");
    kit::holdClocks(true);
    int rows = 0;
    int most = 0;
    QObject::connect(view->model(), &QAbstractItemModel::rowsInserted, [&] {
        kit::moveClocks(1);
        most = std::max(most, ++rows);
    });
    view->EnterDirectory("/storage/uDisk1/many");
    for (int i = 0; i < 1000000 && view->isReading(); ++i) {
        QCoreApplication::processEvents();
        rows = 0;
        QThread::yieldCurrentThread();
    }
    kit::holdClocks(false);
    EXPECT_EQ(view->count(), 61);
    EXPECT_GE(most, 2);
    EXPECT_LE(most, 16) << "a frame";
}

TEST_F(MediaView, AFolderThatHangsHoldsNobodyUpAndShowsItsRowsLater)
{
    load();
    kit::HeldName disk("Music");
    EXPECT_TRUE(kit::isQuick([this] { EXPECT_EQ(view->EnterDirectory("/storage/uDisk1/Music"), 1); },
                             [this] { enter("/storage/uDisk1"); }));
    EXPECT_EQ(names(), QStringList{".."});
    EXPECT_TRUE(view->isReading());
    disk.release();
    EXPECT_TRUE(kit::waitUntil([this] { return !view->isReading(); }));
    EXPECT_EQ(names(), QStringList({"..", "deep"}));
}

TEST_F(MediaView, AFolderThatIsLeftIsReadNoFurther)
{
    fill("/storage/uDisk1/many", 100);
    load();
    enter("/storage/uDisk1");
    kit::HeldName disk("many");
    view->EnterDirectory("/storage/uDisk1/many");
    ASSERT_TRUE(kit::waitUntil([&] { return disk.waiting() == 1; }));
    enter("/storage/uDisk1/Music");
    const int entries = kit::entriesRead();
    const int folders = kit::foldersClosed();
    disk.release();
    ASSERT_TRUE(kit::waitUntil([&] { return kit::foldersClosed() > folders; }));
    EXPECT_EQ(kit::entriesRead(), entries + 1);
}

TEST_F(MediaView, WhoLeavesAFolderBeforeItIsReadSeesNoneOfItsRows)
{
    fill("/storage/uDisk1/many", 5000);
    load();
    enter("/storage/uDisk1");
    view->EnterDirectory("/storage/uDisk1/many");
    enter("/storage/uDisk1/Music");
    kit::settle();
    EXPECT_EQ(names(), QStringList({"..", "deep"}));
}

TEST_F(MediaView, WhoComesBackIntoALargeFolderStandsOnTheOneHeLeftUnlessHeHasGoneOn)
{
    fill("/storage/uDisk1/many", 5000);
    for (int i = 0; i < 300; ++i)
        QDir().mkpath(hostPath("/storage/uDisk1/many/") + QString("f%1").arg(i, 3, 10, QChar('0')));
    load();
    enter("/storage/uDisk1/many/f250");
    enter("/storage/uDisk1/many");
    EXPECT_EQ(path(view->currentRow()), "/storage/uDisk1/many/f250");
    enter("/storage/uDisk1/many/f250");
    view->EnterDirectory("/storage/uDisk1/many");
    if (view->isReading() && view->count() > 1) // else the machine was quick
        view->setCurrentRow(1);
    const int row = view->currentRow();
    EXPECT_TRUE(kit::waitUntil([this] { return !view->isReading(); }));
    if (row == 1) {
        EXPECT_EQ(view->currentRow(), 1);
    }
}

TEST_F(MediaView, LinksPipesAndHiddenFilesAreNotShown)
{
    writeFile("/storage/uDisk1/.secret/x.wav", "x");
    QFile::link(hostPath("/rundata"), hostPath("/storage/uDisk1/rundata"));
    QFile::link(hostPath("/storage/uDisk1/tune.wav"), hostPath("/storage/uDisk1/again.wav"));
    QFile::link("/dev/zero", hostPath("/storage/uDisk1/zero.wav"));
    ASSERT_EQ(mkfifo(hostPath("/storage/uDisk1/pipe.wav").toUtf8(), 0666), 0);
    load();
    EXPECT_EQ(enter("/storage/uDisk1"), 1);
    EXPECT_EQ(names(), QStringList({"..", "Music", "Alarm.MP3", "tune.wav"}));
    // On a busy machine the disk may answer too late to be asked at once.
    EXPECT_TRUE(kit::waitUntil([this] {
        enter("/storage/uDisk1");
        return view->EnterDirectory("/storage/uDisk1/rundata") == 0;
    }));
    EXPECT_EQ(current(), "/storage/uDisk1");
}

TEST_F(MediaView, NamesThatAreNoTextKeepTheirBytes)
{
    const QByteArray odd = QByteArray("/storage/uDisk1/\xff\xfe.wav");
    const int fd = creat((root().toUtf8() + odd).constData(), 0644);
    ASSERT_GE(fd, 0);
    close(fd);
    load();
    enter("/storage/uDisk1");
    EXPECT_STREQ(view->itemFullPath(view->count() - 1).GetText(), odd.constData());
}

// "Caf\xe9" would be asked for, and deleted, as "Caf".
TEST_F(MediaView, ANameThatEndsInHalfALetterIsNotTakenForAnother)
{
    writeFile("/storage/uDisk1/Caf/x.wav", "x");
    ASSERT_EQ(mkdir((root().toUtf8() + "/storage/uDisk1/Caf\xe9").constData(), 0755), 0);
    load();
    enter("/storage/uDisk1");
    EXPECT_EQ(names(), QStringList({"..", "Caf", "Music", "Alarm.MP3", "tune.wav"}));
}

TEST_F(MediaView, LineEndsAndTurnsOfTheWritingAreBlanksInANameOnTheScreen)
{
    writeFile("/storage/uDisk1/a\nb\tc\xE2\x80\xAE.wav", "x");
    load();
    enter("/storage/uDisk1");
    EXPECT_EQ(names().value(2), "a b c .wav");
    EXPECT_EQ(path(2), QString::fromUtf8("/storage/uDisk1/a\nb\tc\xE2\x80\xAE.wav"));
}

TEST_F(MediaView, NamesInOtherScriptsAreShown)
{
    writeFile("/storage/uDisk1/\xE9\x9F\xB3.wav", "x");
    load();
    enter("/storage/uDisk1");
    EXPECT_TRUE(names().contains(QString::fromUtf8("\xE9\x9F\xB3.wav")));
    EXPECT_STREQ(view->itemFullPath(view->count() - 1).GetText(), "/storage/uDisk1/\xE9\x9F\xB3.wav");
}

TEST_F(MediaView, TakesThePlaceholdersPlace)
{
    QLabel* place = page.add<QLabel>(QRect(10, 20, 300, 200));
    place->setObjectName("lstWgtMediaList");
    qMediaImportView* made = qReplaceMediaImportView(place);
    EXPECT_EQ(made->geometry(), QRect(10, 20, 300, 200));
    EXPECT_EQ(made->objectName(), "lstWgtMediaList");
    EXPECT_EQ(qReplaceMediaImportView(nullptr), nullptr);
}

} // namespace
