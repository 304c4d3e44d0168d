// Files come from a disk into the phone.
#include "support/host/phone.h"
#include "support/host/trace.h"
#include "support/host/xmlcache.h"
#include "tests/kit/heldName.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/smallDisk.h"
#include "tests/media/importPage.h"
#include <QDir>
#include <QFile>
#include <atomic>
#include <malloc.h>
#include <sys/stat.h>

namespace {

using Texts = QStringList;

std::atomic<long long> g_flushed{-1}; // inode of the folder

constexpr int kReserve = 8 << 20; // stays free

class Import : public ImportTest
{
protected:
    ~Import() override { kit::limitDisk(-1); }
    static Texts ringNames()
    {
        Texts names;
        for (const tagRingFile& ring : getMyXmlCache()->ringFiles())
            names.append(toQString(ring.strName) + " " + toQString(ring.strPath));
        return names;
    }
    long long inodeOf(const char* devicePath) const
    {
        struct stat info = {};
        EXPECT_EQ(stat(hostPath(devicePath).toUtf8(), &info), 0);
        return static_cast<long long>(info.st_ino);
    }
    // A file that is larger by a byte than the room of the phone.
    void putTooLarge(const QString& name) const
    {
        put(name);
        kit::limitDisk(kReserve);
    }
};

TEST_F(Import, AFileLandsInTheFolderOfItsTypeAndThePageStaysOpen)
{
    const QByteArray content = picture("PNG", 20, 10);
    put("a b.png", content);
    openImages();
    enter();
    EXPECT_EQ(import("a b.png"), Texts{"Successful loading!"});
    EXPECT_EQ(readFile("/rundata/media/image/a b.png"), content) << "only scaled pictures lose their blanks";
    EXPECT_EQ(kit::windows().value(0), page);
    EXPECT_EQ(view->currentRow(), rowOf("a b.png"));
    EXPECT_EQ(keys().value(1), "Import") << "for the next one";
}

TEST_F(Import, AFilmLandsAmongTheFilms)
{
    put("clips/film.mp4", QByteArray(300000, 'f'));
    open<dlgVideoImport>("video");
    enter("/storage/uDisk1/clips");
    EXPECT_EQ(import("film.mp4"), Texts{"Successful loading!"});
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), QByteArray(300000, 'f'));
}

TEST_F(Import, ARingToneIsEnteredUnderItsBareName)
{
    put("My Tune.wav", "tune");
    open<dlgSoundImport>("sound");
    enter();
    const qsizetype before = ringNames().size();
    EXPECT_EQ(import("My Tune.wav"), Texts{"Successful loading!"});
    EXPECT_EQ(ringNames().size(), before + 1);
    EXPECT_EQ(ringNames().last(), "My Tune.wav /rundata/media/ring/My Tune.wav");
}

TEST_F(Import, AFolderWithAShortNameLeavesTheNameOfTheToneBare)
{
    writeFile("/phone/resource/mediafile.xml",
              "<MediaFile><sound filter=\"*.wav\"><filelist><item path=\"/rundata/media/ring\" "
              "shortname=\"My/\"/></filelist></sound></MediaFile>");
    put("tune.wav", "tune");
    open<dlgSoundImport>("sound");
    enter();
    ASSERT_EQ(ringNames(), Texts());
    EXPECT_EQ(import("tune.wav"), Texts{"Successful loading!"});
    EXPECT_EQ(ringNames(), Texts{"tune.wav /rundata/media/ring/tune.wav"});
}

TEST_F(Import, WhoIsToldOfASuccessFindsItDoneAndHasTimeToRead)
{
    put("tune.wav");
    open<dlgSoundImport>("sound");
    enter();
    bool isRead = false;
    whileTold("Successful loading!", [&] {
        EXPECT_EQ(ringNames().last(), "tune.wav /rundata/media/ring/tune.wav");
        isRead = stays();
    });
    import("tune.wav", {"keep"});
    EXPECT_TRUE(isRead);
}

TEST_F(Import, WhoIsToldOfAFailureFindsNothingLeftAndHasTimeToRead)
{
    put("film.mp4");
    writeFile("/rundata/media/video/film.mp4", "old");
    open<dlgVideoImport>("video");
    enter();
    ASSERT_TRUE(QFile::remove(stick() + "/film.mp4"));
    bool isRead = false;
    whileTold("Loading fail!", [&] {
        EXPECT_FALSE(has("/rundata/media/video/film.mp4"));
        isRead = stays();
    });
    import("film.mp4", {"yes", "keep"});
    EXPECT_TRUE(isRead);
}

TEST_F(Import, WhoHasNoRoomHasTimeToReadIt)
{
    putTooLarge("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    bool isRead = false;
    whileTold("No enough space !", [&] { isRead = stays(); });
    import("film.mp4", {"keep"});
    EXPECT_TRUE(isRead);
}

TEST_F(Import, TheRoomIsThatOfThePhoneToTheLastByte)
{
    constexpr int mb = 1 << 20;
    put("fits.mp4", QByteArray(mb, 'f'));
    put("larger.mp4", QByteArray(mb + 1, 'f'));
    open<dlgVideoImport>("video");
    enter();
    kit::limitDisk(kReserve + mb); // a stick would keep less
    EXPECT_EQ(import("fits.mp4"), Texts{"Successful loading!"});
    EXPECT_EQ(import("larger.mp4"), Texts{"No enough space !"});
}

TEST_F(Import, OtherTypesAreNoRingTones)
{
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    const Texts before = ringNames();
    import("film.mp4");
    EXPECT_EQ(ringNames(), before);
}

TEST_F(Import, ARingToneThatFailsIsNotEntered)
{
    put("tune.wav");
    QDir().mkpath(hostPath("/rundata/media/ring/tune.wav"));
    open<dlgSoundImport>("sound");
    enter();
    const Texts before = ringNames();
    EXPECT_EQ(import("tune.wav", {"yes", "ok"}), Texts({"Load the same file ?", "Loading fail!"}));
    EXPECT_EQ(ringNames(), before);
}

TEST_F(Import, WithoutRoomNothingIsCopied)
{
    putTooLarge("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), Texts{"No enough space !"});
    EXPECT_FALSE(has("/rundata/media/video/film.mp4"));
}

TEST_F(Import, ASourceThatIsGoneMeanwhileFailsAndNeedsNoRoom)
{
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    ASSERT_TRUE(QFile::remove(stick() + "/film.mp4"));
    EXPECT_EQ(import("film.mp4"), Texts{"Loading fail!"});
    EXPECT_FALSE(has("/rundata/media/video/film.mp4"));
}

TEST_F(Import, TheRoomIsAskedForBeforeTheFileOfTheSameName)
{
    putTooLarge("film.mp4");
    writeFile("/rundata/media/video/film.mp4", "old");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), Texts{"No enough space !"});
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), "old");
}

TEST_F(Import, AFileOfTheSameNameIsReplacedOnlyWhenTheUserWants)
{
    put("film.mp4", "new");
    writeFile("/rundata/media/video/film.mp4", "old");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4", {"no"}), Texts{"Load the same file ?"});
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), "old");
    EXPECT_EQ(import("film.mp4", {"yes", "ok"}), Texts({"Load the same file ?", "Successful loading!"}));
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), "new");
}

TEST_F(Import, WhatCannotBeReplacedIsToldAndTraced)
{
    put("film.mp4");
    QDir().mkpath(hostPath("/rundata/media/video/film.mp4/kept"));
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4", {"yes", "ok"}), Texts({"Load the same file ?", "Loading fail!"}));
    EXPECT_TRUE(isTraced("Import file (/storage/uDisk1/film.mp4) to (/rundata/media/video/film.mp4) fail!"));
    EXPECT_TRUE(has("/rundata/media/video/film.mp4/kept")) << "a folder stays";
}

TEST_F(Import, AFailedImportLeavesNothingUnderTheName)
{
    put("film.mp4");
    writeFile("/rundata/media/video/film.mp4", "old");
    open<dlgVideoImport>("video");
    enter();
    select("film.mp4");
    QFile::remove(stick() + "/film.mp4");
    QFile::link(hostPath("/rundata/config/system.ini"), stick() + "/film.mp4");
    EXPECT_EQ(import("film.mp4", {"yes", "ok"}), Texts({"Load the same file ?", "Loading fail!"}));
    EXPECT_FALSE(has("/rundata/media/video/film.mp4"));
}

TEST_F(Import, ALinkInThePhonesFolderIsReplacedAndNotFollowed)
{
    put("film.mp4", "new");
    QFile::link("/rundata/config/system.ini", hostPath("/rundata/media/video/film.mp4"));
    const QByteArray before = readFile("/rundata/config/system.ini");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4", {"yes", "ok"}), Texts({"Load the same file ?", "Successful loading!"}));
    EXPECT_EQ(readFile("/rundata/config/system.ini"), before);
    EXPECT_FALSE(QFileInfo(hostPath("/rundata/media/video/film.mp4")).isSymLink());
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), "new");
}

TEST_F(Import, APipeInThePhonesFolderHoldsNobodyUp)
{
    put("film.mp4");
    ASSERT_EQ(mkfifo(hostPath("/rundata/media/video/film.mp4").toUtf8(), 0666), 0);
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4", {"yes", "ok"}), Texts({"Load the same file ?", "Loading fail!"}));
}

TEST_F(Import, NamesOfAllKindsArriveAsTheyAre)
{
    const Texts names = {"$(reboot).mp4", "`reboot`.mp4",     "a\"b'c.mp4",
                         "new\nline.mp4", "\xE9\x9F\xB3.mp4", QString(251, 'n') + ".mp4",
                         "-rf.mp4",       "%s%n.mp4"};
    for (const QString& name : names)
        put(name, name.toUtf8());
    open<dlgVideoImport>("video");
    enter();
    for (const QString& name : names) {
        EXPECT_EQ(import(name), Texts{"Successful loading!"}) << qPrintable(name);
        EXPECT_EQ(readFile(("/rundata/media/video/" + name).toUtf8()), name.toUtf8());
    }
    EXPECT_EQ(filesIn("/rundata/media/video").size(), names.size());
}

TEST_F(Import, NamesThatAreNoTextArriveByteForByte)
{
    const QByteArray name = "\xff\xfe\x80.mp4";
    QFile file(stick() + "/x");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    ASSERT_EQ(rename((stick() + "/x").toUtf8(), stick().toUtf8() + '/' + name), 0);
    open<dlgVideoImport>("video");
    enter();
    ASSERT_EQ(view->count(), 2);
    view->setCurrentRow(1);
    const kit::BoxAnswers boxes({"ok"});
    softKey(1);
    EXPECT_EQ(boxes.texts(), Texts{"Successful loading!"});
    struct stat info;
    EXPECT_EQ(stat(hostPath("/rundata/media/video/").toUtf8() + name, &info), 0);
}

TEST_F(Import, AFolderOrNoRowIsNotImported)
{
    put("clips/film.mp4");
    open<dlgVideoImport>("video");
    enter();
    const kit::BoxAnswers boxes;
    view->setCurrentRow(1);
    QMetaObject::invokeMethod(page, "on_click_Import");
    view->setCurrentRow(-1);
    QMetaObject::invokeMethod(page, "on_click_Import");
    QMetaObject::invokeMethod(page, "on_click_Delete");
    QMetaObject::invokeMethod(page, "on_click_Preview");
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(filesIn("/rundata/media/video"), Texts());
}

TEST_F(Import, ATypeThatMayBeWrittenNowhereHasNoRoom)
{
    writeFile("/phone/resource/mediafile.xml",
              "<MediaFile><video filter=\"*\"><filelist>"
              "<item path=\"/phone/resource/x\" bReadOnly=\"1\"/></filelist></video></MediaFile>");
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), Texts{"No enough space !"});
}

// A person may take the phone's power away as soon as he is told.
TEST_F(Import, WhatHasArrivedIsMadeSafeFromALossOfPower)
{
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    g_flushed = -1;
    import("film.mp4");
    EXPECT_TRUE(kit::waitUntil([this] { return g_flushed == inodeOf("/rundata/media/video"); }));
}

TEST_F(Import, AFolderThatIsMissingIsMade)
{
    put("film.mp4", "new");
    QDir(hostPath("/rundata/media/video")).removeRecursively();
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), Texts{"Successful loading!"});
    EXPECT_EQ(readFile("/rundata/media/video/film.mp4"), "new");
}

TEST_F(Import, HalfAFileThatALossOfPowerLeftGoesWithTheNextImport)
{
    writeFile("/rundata/media/video/.big.mp4.save0", "half of it");
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(import("film.mp4"), Texts{"Successful loading!"});
    EXPECT_EQ(filesIn("/rundata/media/video"), Texts{"film.mp4"});
}

TEST_F(Import, APageThatIsOpenedManyTimesLeavesNothingBehind)
{
    put("a.png", picture("PNG", 20, 10));
    const auto visit = [this](int times) {
        for (int i = 0; i < times; ++i) {
            openImages();
            enter();
            view->setCurrentRow(1);
            EXPECT_TRUE(kit::waitUntil([this] { return keys().value(1) == "Import"; }));
            page->close();
            kit::settle();
        }
    };
    const auto files = [] { return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size(); };
    for (int i = 0; i < 2000; ++i)
        nuxTrace(TRACE_DETAIL, "a full log grows no more: PhotoFile::IsOk info()");
    visit(250);
    const auto filesBefore = files();
    const double heapBefore = double(mallinfo2().uordblks);
    visit(200);
    // The threads of the last visits may be about to end still.
    EXPECT_TRUE(kit::waitUntil([&] { return files() <= filesBefore; }, 20000)) << files() - filesBefore;
    const auto tasks = [] { return QDir("/proc/self/task").entryList().size(); };
    EXPECT_TRUE(kit::waitUntil([&] { return tasks() <= 40; }, 20000));
    EXPECT_TRUE(kit::waitUntil([&] { return double(mallinfo2().uordblks) <= heapBefore * 1.01; }, 20000));
}

// Deleting.

int g_syncs = 0;

class ImportDelete : public Import
{
protected:
    ImportDelete() { g_syncs = 0; }
    Texts erase(const QString& name, const QStringList& answers)
    {
        view->setCurrentRow(rowOf(name));
        kit::waitUntil([this] { return keys().value(2) == "Delete"; });
        const kit::BoxAnswers boxes(answers);
        softKey(2);
        EXPECT_EQ(boxes.unexpected(), 0);
        return boxes.texts();
    }
};

TEST_F(ImportDelete, AsksAndRemovesFileAndRowAndFlushesTheDisks)
{
    put("film.mp4");
    put("other.mp4");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(erase("film.mp4", {"no"}), Texts{"Delete film.mp4?"});
    EXPECT_EQ(view->count(), 3);
    EXPECT_TRUE(QFile::exists(stick() + "/film.mp4"));
    EXPECT_EQ(g_syncs, 0);
    EXPECT_EQ(erase("film.mp4", {"yes"}), Texts{"Delete film.mp4?"});
    EXPECT_EQ(rows(), Texts({"..", "other.mp4"}));
    EXPECT_EQ(view->currentRow(), 1) << "the next one";
    EXPECT_EQ(keys(), Texts({"Preview", "Import", "Delete", "Exit"}));
    EXPECT_FALSE(QFile::exists(stick() + "/film.mp4"));
    EXPECT_TRUE(kit::waitUntil([] { return g_syncs == 1; }));
}

TEST_F(ImportDelete, AnEmptyFolderGoesAndAFullOneStays)
{
    put("full/film.mp4");
    QDir(stick()).mkdir("empty");
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(erase("empty", {"yes"}), Texts{"Delete empty?"});
    EXPECT_FALSE(QFile::exists(stick() + "/empty"));
    EXPECT_EQ(erase("full", {"yes", "no"}), Texts({"Delete full?", "Delete failed!"}));
    EXPECT_TRUE(QFile::exists(stick() + "/full/film.mp4"));
    EXPECT_EQ(rows(), Texts({"..", "full"}));
    EXPECT_TRUE(kit::waitUntil([] { return g_syncs == 2; })) << "then too";
}

TEST_F(ImportDelete, AFailureIsToldForThreeSeconds)
{
    put("full/film.mp4");
    open<dlgVideoImport>("video");
    enter();
    view->setCurrentRow(1);
    const kit::BoxAnswers boxes({"yes", "keep"});
    bool isThere = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (boxes.texts().size() < 2)
            return;
        look.stop();
        kit::holdClocks(true);
        kit::stepTime(2900);
        isThere = kit::windows().value(0)->objectName() == "dlgMessageBox";
        kit::stepTime(200);
        kit::holdClocks(false);
    });
    look.start(1);
    softKey(2);
    EXPECT_TRUE(isThere);
    EXPECT_EQ(kit::windows().value(0), page);
}

TEST_F(ImportDelete, OneThatTakesLongTakesNoOtherRowAlong)
{
    put("film.mp4");
    QDir().mkpath(secondStick());
    storageWorldPlug(STORAGE_USB, secondStick());
    open<dlgVideoImport>("video");
    enter();
    kit::HeldName disk("film.mp4");
    whenUp("dlgProgressBox", [&] {
        pull();
        kit::settle();
        EXPECT_EQ(rows(), Texts{"SECOND"});
        disk.release();
    });
    EXPECT_EQ(erase("film.mp4", {"yes"}), Texts{"Delete film.mp4?"});
    EXPECT_FALSE(QFile::exists(stick() + "/film.mp4"));
    EXPECT_EQ(rows(), Texts{"SECOND"});
}

TEST_F(ImportDelete, ALinkInThePlaceOfTheFileGoesAndNotWhatItLeadsTo)
{
    put("film.mp4");
    open<dlgVideoImport>("video");
    enter();
    select("film.mp4");
    QFile::remove(stick() + "/film.mp4");
    QFile::link(hostPath("/rundata/config/system.ini"), stick() + "/film.mp4");
    erase("film.mp4", {"yes"});
    EXPECT_TRUE(has("/rundata/config/system.ini"));
    EXPECT_FALSE(QFileInfo(stick() + "/film.mp4").isSymLink());
}

} // namespace

// Takes the place of the system's for the library too: what it would flush is of no use to a test.
extern "C" __attribute__((visibility("default"))) void sync() noexcept
{
    ++g_syncs;
}

extern "C" __attribute__((visibility("default"))) int syncfs(int fd) noexcept
{
    struct stat info = {};
    const int result = fstat(fd, &info);
    g_flushed = static_cast<long long>(info.st_ino);
    return result;
}
