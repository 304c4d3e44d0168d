// What the media manager asks, and what else changes, before a file goes; and whom it tells when it is left.
#include "frame/roomHooks.h"
#include "media/contactImages.h"
#include "support/host/desktop.h"
#include "support/host/dialogs.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/xmlcache.h"
#include "tests/file/failingCalls.h"
#include "tests/media/mediaManagerTest.h"
#include <QComboBox>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <sys/stat.h>

#define USER_FILE "/rundata/config/user/user.ini"

namespace {

QStringList s_resets;       // of the home screen's picture: what is stored and how often it was told by then
QStringList s_ringRemovals; // name and path
std::function<int()> s_broadcasts;

} // namespace

extern "C" void __real__Z20desktop_SetWallPaperPKc(const char* path);
extern "C" void __wrap__Z20desktop_SetWallPaperPKc(const char* path);
extern "C" void __real__ZN11qMyXmlCache18removeRingFileDataEPKcS1_(qMyXmlCache* cache, const char* name,
                                                                   const char* path);
extern "C" void __wrap__ZN11qMyXmlCache18removeRingFileDataEPKcS1_(qMyXmlCache* cache, const char* name,
                                                                   const char* path);

void __wrap__Z20desktop_SetWallPaperPKc(const char* path)
{
    const chString stored = NUX_SubClass::nuxGetRegistryString(USER_FILE, "Theme", "strWallpaper", "");
    s_resets.append(
        QString("%1 %2").arg(path ? path : toQString(stored)).arg(s_broadcasts ? s_broadcasts() : 0));
    __real__Z20desktop_SetWallPaperPKc(path);
}

void __wrap__ZN11qMyXmlCache18removeRingFileDataEPKcS1_(qMyXmlCache* cache, const char* name,
                                                        const char* path)
{
    s_ringRemovals.append(QString(name) + " " + path);
    __real__ZN11qMyXmlCache18removeRingFileDataEPKcS1_(cache, name, path);
}

namespace {

const char* const kContacts = "/rundata/data/contactData.xml";
const char* const kStockWallpaper = "/phone/resource/sysdata/wallpaper/wallpaper.jpg";
const char* const kNoImage = "/phone/resource/contact-image/icon_contact.png";

class MediaDelete : public MediaManagerTest
{
protected:
    // The hand that answers boxes takes its time.
    MediaDelete()
    {
        kit::holdClocks(false);
        s_resets.clear();
        s_ringRemovals.clear();
        s_broadcasts = [this] { return int(logged("broadcast").size()); };
    }
    ~MediaDelete() override { s_broadcasts = nullptr; }
    // The boxes that Delete shows while they are answered so.
    QStringList askedWhenDeleting(const QStringList& answers)
    {
        kit::BoxAnswers boxes(answers);
        softKey(1);
        EXPECT_EQ(boxes.unexpected(), 0);
        EXPECT_EQ(boxes.titles(), QStringList(boxes.texts().size(), "Note"));
        return boxes.texts();
    }
    void putWallpaper(const char* path)
    {
        writeFile(USER_FILE, QByteArray("[Theme]\nstrWallpaper=") + path + "\n");
    }
    QString wallpaper() { return stored(USER_FILE, "Theme", "strWallpaper"); }
    void putContacts(const QByteArray& content) { writeFile(kContacts, content); }
    // A file that cannot be removed: its folder is that of the device image, or a folder is in its place.
    void putFolderInPlaceOf(const char* path)
    {
        QFile::remove(hostPath(path));
        QDir().mkpath(hostPath(path));
    }
    QStringList ringFiles()
    {
        QStringList all;
        for (const tagRingFile& ring : getMyXmlCache()->ringFiles())
            all.append(toQString(ring.strName) + " " + toQString(ring.strPath));
        return all;
    }
};

const char* const kWallpaperQuestion = "It's the Wall Paper! Delete it ?";
const char* const kContactQuestion = "It's Image is use,Delete it ?";
const char* const kReadOnly = "It's read only,can't be deleted!";

TEST_F(MediaDelete, AsksByNameAndRemovesTheFileAndItsRow)
{
    putPhotos({"a.png", "b.png", "c.png"});
    open("Photo Manager");
    tapRow(1);
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({"Delete b.png?"}));
    EXPECT_FALSE(isThere("/rundata/media/image/b.png"));
    EXPECT_EQ(names(), QStringList({"a.png", "c.png"}));
    EXPECT_EQ(playing(), QList<int>({row()})) << "the row that took its place is the current one";
    EXPECT_EQ(softKeyTitle(1), "Delete");
    expectChangesTold({});
}

TEST_F(MediaDelete, NoKeepsTheFile)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    EXPECT_EQ(askedWhenDeleting({"no"}), QStringList({"Delete a.png?"}));
    EXPECT_TRUE(isThere("/rundata/media/image/a.png"));
    EXPECT_EQ(names(), QStringList({"a.png"}));
}

TEST_F(MediaDelete, TheNextFileIsPreviewedInThePlaceOfTheOneThatWent)
{
    putPicture("/rundata/media/image/a.png", 0xffc04020);
    putPicture("/rundata/media/image/b.png", 0xff20c040);
    open("Photo Manager");
    kit::stepTime(500);
    askedWhenDeleting({"yes"});
    EXPECT_EQ(row(), 0);
    EXPECT_STREQ(manager()->getCurrentMediaFullPath(), "/rundata/media/image/b.png");
    kit::stepTime(500);
    EXPECT_EQ(label()->grab().toImage().pixel(150, 90), 0xff20c040);
}

TEST_F(MediaDelete, TheLastOneTakesTheKeyAlongAndPreviewSaysThatThereIsNothing)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    kit::stepTime(500);
    askedWhenDeleting({"yes"});
    EXPECT_EQ(softKeys(), "Preview||USB|Back");
    EXPECT_TRUE(label()->isHidden());
    kit::BoxAnswers boxes({"ok"});
    softKey(1);
    kit::key(Qt::Key_F2);
    EXPECT_EQ(boxes.texts(), QStringList()) << "the key is not there";
    softKey(0);
    EXPECT_EQ(boxes.texts(), QStringList({"No media found in this phone!"}));
}

TEST_F(MediaDelete, AFileThatCannotBeRemovedLosesItsRowAllTheSame)
{
    putPhotos({"a.png", "b.png"});
    open("Photo Manager");
    putFolderInPlaceOf("/rundata/media/image/a.png");
    askedWhenDeleting({"yes"});
    EXPECT_EQ(names(), QStringList({"b.png"}));
    EXPECT_TRUE(isThere("/rundata/media/image/a.png"));
}

TEST_F(MediaDelete, WhatBelongsToTheFirmwareIsRefused)
{
    open("Sound Manager");
    ASSERT_GT(list()->rowCount(), 0);
    const QStringList before = names();
    EXPECT_TRUE(manager()->getCurrentMediaReadOnly());
    EXPECT_EQ(askedWhenDeleting({"ok"}), QStringList({kReadOnly}));
    EXPECT_EQ(names(), before);
    EXPECT_TRUE(isThere(manager()->getCurrentMediaFullPath()));
}

TEST_F(MediaDelete, AReadOnlyWallpaperIsRefusedBeforeItIsAskedFor)
{
    open("Wallpaper Manager");
    ASSERT_TRUE(manager()->getCurrentMediaReadOnly());
    const chString path = manager()->getCurrentMediaFullPath();
    putWallpaper(path);
    EXPECT_EQ(askedWhenDeleting({"ok"}), QStringList({kReadOnly}));
    EXPECT_EQ(wallpaper(), toQString(path));
    expectChangesTold({});
}

TEST_F(MediaDelete, TheNoteOnAReadOnlyFileStaysUntilItIsClosed)
{
    open("Wallpaper Manager");
    bool isOpen = false;
    whenBoxIsUp([&](QDialog* box) {
        kit::stepTime(3600 * 1000);
        isOpen = box->isVisible();
        box->reject();
    });
    softKey(1);
    EXPECT_TRUE(isOpen);
}

TEST_F(MediaDelete, TheWallpaperGoesAndTheStockOneComes)
{
    const char* const mine = "/rundata/media/image/mine.png";
    writeFile(mine, MediaManagerTest::Pictures::picture("PNG", 800, 480, 0xffff0000));
    putWallpaper(mine);
    frmDesktop* desktop = frmDesktop::GetInstance();
    desktop->SetWallPaper(nullptr);
    screenBringUp(desktop);
    const auto isRed = [] { return kit::screen().pixel(400, 200) == 0xffff0000; };
    EXPECT_TRUE(kit::waitUntil([&] { return isRed(); }, 20000));
    open("Photo Manager");
    mark();
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({kWallpaperQuestion}));
    EXPECT_EQ(wallpaper(), kStockWallpaper);
    EXPECT_FALSE(isThere(mine));
    EXPECT_EQ(list()->rowCount(), 0);
    EXPECT_EQ(softKeyTitle(1), "");
    expectChangesTold({"17 0"});
    softKey(3);
    EXPECT_TRUE(kit::waitUntil([&] { return !isRed(); }, 20000)) << "the home screen shows it on";
}

TEST_F(MediaDelete, TheHomeScreenGetsTheStockPictureAtOnce)
{
    putPhotos({"a.png"});
    putWallpaper("/rundata/media/image/a.png");
    open("Photo Manager");
    s_resets.clear();
    mark();
    askedWhenDeleting({"yes"});
    EXPECT_EQ(s_resets.value(0), QString(kStockWallpaper) + " 0") << "stored, and told to nobody yet";
}

TEST_F(MediaDelete, TheWallpaperIsStoredBeforeAnybodyIsTold)
{
    static MediaDelete* test;
    static QStringList before;
    test = this;
    before = {"not stored"};
    putPhotos({"a.png"});
    putWallpaper("/rundata/media/image/a.png");
    open("Photo Manager");
    {
        const FailingCalls calls; // none does
        fileGetSystemCalls().rename = [](const char* from, const char* to) {
            before = test->logged("broadcast");
            return fileDefaultSystemCalls().rename(from, to);
        };
        askedWhenDeleting({"yes"});
    }
    EXPECT_EQ(before, QStringList());
    expectChangesTold({"17 0"});
}

TEST_F(MediaDelete, TheWallpaperThatIsKeptStaysTheWallpaper)
{
    putPhotos({"a.png"});
    putWallpaper("/rundata/media/image/a.png");
    open("Photo Manager");
    EXPECT_EQ(askedWhenDeleting({"no"}), QStringList({kWallpaperQuestion}));
    EXPECT_EQ(wallpaper(), "/rundata/media/image/a.png");
    EXPECT_EQ(names(), QStringList({"a.png"}));
    expectChangesTold({});
}

TEST_F(MediaDelete, AWallpaperThatAContactHasIsAskedForAsTheWallpaper)
{
    const char* const mine = "/rundata/media/contact-image/a.png";
    putTable("contact-image", "*.png", "<item path=\"/rundata/media/contact-image\" shortname=\"\"/>");
    putPicture(mine);
    putWallpaper(mine);
    putContacts(QByteArray("<contactData><group><contact sImagePath=\"") + mine +
                "\"/></group></contactData>");
    open("Contact Picture Manage");
    EXPECT_EQ(askedWhenDeleting({"no"}), QStringList({kWallpaperQuestion}));
}

TEST_F(MediaDelete, AWallpaperThatCannotBeStoredIsTold)
{
    putPhotos({"a.png"});
    putWallpaper("/rundata/media/image/a.png");
    open("Photo Manager");
    kit::BoxAnswers boxes({"yes", "ok"});
    FailingCalls disk;
    disk.setSpace(0);
    softKey(1);
    EXPECT_EQ(boxes.texts(), QStringList({kWallpaperQuestion, "The settings cannot be saved!"}));
    EXPECT_EQ(list()->rowCount(), 0);
}

class ContactImage : public MediaDelete
{
protected:
    ContactImage()
    {
        putTable("contact-image", "*.png", "<item path=\"/rundata/media/contact-image\" shortname=\"\"/>");
        putPicture("/rundata/media/contact-image/a.png");
        putPicture("/rundata/media/contact-image/b.png");
    }
    const QByteArray contacts =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<contactData><group name=\"A\">"
        "<contact name=\"Anna\" sImagePath=\"/rundata/media/contact-image/a.png\"/>"
        "<contact name=\"Bert\" sImagePath=\"/elsewhere.png\"/></group>"
        "<other><contact sImagePath=\"/rundata/media/contact-image/b.png\"/></other><group name=\"B\">"
        "<entry name=\"Cleo\" sImagePath=\"/rundata/media/contact-image/a.png\"/></group></contactData>";
};

TEST_F(ContactImage, APictureOfAContactIsAskedForAndTakenFromAllWhoHaveIt)
{
    putContacts(contacts);
    open("Contact Picture Manage");
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({kContactQuestion}));
    EXPECT_FALSE(isThere("/rundata/media/contact-image/a.png"));
    EXPECT_EQ(names(), QStringList({"b.png"}));
    QByteArray expected = contacts;
    expected.replace("/rundata/media/contact-image/a.png", kNoImage);
    EXPECT_EQ(readFile(kContacts).simplified().replace("> <", "><"),
              expected.simplified().replace("> <", "><"));
}

TEST_F(ContactImage, ThePictureAndItsRowGoBeforeTheContactsLoseIt)
{
    putContacts(contacts);
    open("Contact Picture Manage");
    bool isPictureThere = true;
    QByteArray before;
    QObject::connect(list()->model(), &QAbstractItemModel::rowsRemoved, list(), [&] {
        isPictureThere = isThere("/rundata/media/contact-image/a.png");
        before = readFile(kContacts);
    });
    askedWhenDeleting({"yes"});
    EXPECT_FALSE(isPictureThere);
    EXPECT_EQ(before, contacts);
    EXPECT_NE(readFile(kContacts), contacts);
}

TEST_F(ContactImage, APictureThatIsKeptStaysWithItsContacts)
{
    putContacts(contacts);
    open("Contact Picture Manage");
    EXPECT_EQ(askedWhenDeleting({"no"}), QStringList({kContactQuestion}));
    EXPECT_EQ(readFile(kContacts), contacts);
    EXPECT_TRUE(isThere("/rundata/media/contact-image/a.png"));
}

TEST_F(ContactImage, OneThatNoGroupHasIsAnOrdinaryFile)
{
    putContacts(contacts);
    open("Contact Picture Manage");
    tapRow(1);
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({"Delete b.png?"}));
    EXPECT_EQ(readFile(kContacts), contacts);
}

TEST_F(ContactImage, OfAPhotoNobodyAsksTheContacts)
{
    putPhotos({"p.png"});
    putTable("ephoto", "*.png", "<item path=\"/rundata/media/image\" shortname=\"\"/>");
    putContacts("<contactData><group><c sImagePath=\"/rundata/media/image/p.png\"/></group></contactData>");
    open("Photo Manager");
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({"Delete p.png?"}));
}

TEST_F(ContactImage, AFileOfContactsThatCannotBeReadSaysThatThePictureIsNotUsed)
{
    for (const char* content : {"", "<contactData><group", "\xff\xfe\x00"}) {
        SCOPED_TRACE(content);
        mark();
        putContacts(content);
        EXPECT_FALSE(IsContactImageUse("/rundata/media/contact-image/a.png"));
        EXPECT_TRUE(traces().contains("Fail to load xml file [/rundata/data/contactData.xml]"));
        EXPECT_EQ(ClearUseImage("/rundata/media/contact-image/a.png"), 0);
        EXPECT_EQ(readFile(kContacts), content) << "what could not be read stays";
    }
    QFile::remove(hostPath(kContacts));
    mark();
    EXPECT_FALSE(IsContactImageUse("/rundata/media/contact-image/a.png"));
    EXPECT_TRUE(traces().contains("Fail to load xml file [/rundata/data/contactData.xml]"));
    EXPECT_FALSE(isThere(kContacts));
}

TEST_F(ContactImage, TheFileIsSavedAlsoWhenNobodyHasThePicture)
{
    putContacts("<contactData>  <group/></contactData>");
    const QDateTime before = QFileInfo(hostPath(kContacts)).lastModified();
    struct stat first = {};
    struct stat second = {};
    ASSERT_EQ(stat(hostPath(kContacts).toUtf8(), &first), 0);
    EXPECT_EQ(ClearUseImage("/none.png"), 1);
    ASSERT_EQ(stat(hostPath(kContacts).toUtf8(), &second), 0);
    EXPECT_NE(first.st_ino, second.st_ino) << before.toString().toStdString();
}

TEST_F(ContactImage, AFileOfContactsThatCannotBeSavedIsTold)
{
    putContacts(contacts);
    open("Contact Picture Manage");
    kit::BoxAnswers boxes({"yes", "ok"});
    FailingCalls disk;
    disk.setSpace(0);
    softKey(1);
    EXPECT_EQ(boxes.texts(), QStringList({kContactQuestion, "The contact cannot be saved!"}));
    EXPECT_EQ(readFile(kContacts), contacts);
}

TEST_F(MediaDelete, ARingToneLeavesTheListOfThePhoneUnderItsVisibleName)
{
    putTable("sound", "*.wav", "<item path=\"/rundata/media/ring\" shortname=\"My/\"/>");
    putRings({"a.wav", "b.wav"});
    getMyXmlCache()->addRingFileData("a.wav", "/rundata/media/ring/a.wav");
    open("Sound Manager");
    EXPECT_EQ(askedWhenDeleting({"yes"}), QStringList({"Delete My/a.wav?"}));
    EXPECT_EQ(s_ringRemovals, QStringList({"My/a.wav /rundata/media/ring/a.wav"}));
    EXPECT_EQ(ringFiles(), QStringList({"My/b.wav /rundata/media/ring/b.wav"}));
}

TEST_F(MediaDelete, ASoundOfAnotherTypeStaysInTheListOfThePhone)
{
    getMyXmlCache()->addRingFileData("a.png", "/rundata/media/image/a.png");
    const QStringList before = ringFiles();
    putPhotos({"a.png"});
    open("Photo Manager");
    askedWhenDeleting({"yes"});
    EXPECT_EQ(ringFiles(), before);
}

TEST_F(MediaDelete, ThePlayingToneStopsBeforeItsFileGoes)
{
    putTable("sound", "*.wav", "<item path=\"/rundata/media/ring\" shortname=\"\"/>");
    putRings({"a.wav"});
    open("Sound Manager");
    kit::stepTime(1000);
    mark();
    askedWhenDeleting({"yes"});
    kit::stepTime(3000);
    EXPECT_EQ(rings().last(), "stop");
}

class MediaBack : public MediaDelete
{
protected:
    MediaBack() : m_hooks(roomHooks())
    {
        told().clear();
        roomHooks().reloadWallPaper = [] { told().append("wallpaper"); };
        roomHooks().reloadSound = [] { told().append("sound"); };
    }
    ~MediaBack() override { roomHooks() = m_hooks; }
    static QStringList& told()
    {
        static QStringList pages;
        return pages;
    }
    QStringList toldWhenLeaving(const char* name)
    {
        told().clear();
        open(name);
        softKey(3);
        EXPECT_FALSE(page->isVisible());
        return told();
    }

private:
    tagRoomHooks m_hooks;
};

TEST_F(MediaBack, ThePageThatShowsTheFilesAsAChoiceIsTold)
{
    EXPECT_EQ(toldWhenLeaving("Wallpaper Manager"), QStringList({"wallpaper"}));
    EXPECT_EQ(toldWhenLeaving("Sound Manager"), QStringList({"sound"}));
    for (const char* name : {"Photo Manager", "Video Manager", "Contact Picture Manage"})
        EXPECT_EQ(toldWhenLeaving(name), QStringList()) << name;
}

TEST_F(MediaBack, ItIsToldBeforeThisPageGoes)
{
    static bool isVisible;
    static QWidget* manager;
    isVisible = false;
    manager = open("Sound Manager");
    roomHooks().reloadSound = [] { isVisible = manager->isVisible(); };
    softKey(3);
    EXPECT_TRUE(isVisible);
}

TEST_F(MediaBack, TheKeyThatClosesADialogIsAWayBackToo)
{
    open("Sound Manager");
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(told(), QStringList({"sound"}));
}

TEST_F(MediaBack, WithoutThatRoomThePageJustGoes)
{
    roomHooks().reloadWallPaper = nullptr;
    roomHooks().reloadSound = nullptr;
    EXPECT_EQ(toldWhenLeaving("Wallpaper Manager"), QStringList());
    EXPECT_EQ(toldWhenLeaving("Sound Manager"), QStringList());
}

TEST_F(MediaBack, TheContactEditorOffersWhatIsThereNow)
{
    dlgContactEditor editor(nullptr, nullptr);
    editor.EditContact(-1);
    QComboBox* pictures = editor.findChild<QComboBox*>("cmbPicture");
    ASSERT_NE(pictures, nullptr);
    open("Contact Picture Manage");
    putPicture("/rundata/media/contact-image/aunt.png");
    EXPECT_EQ(pictures->findText("aunt.png"), -1);
    softKey(3);
    EXPECT_GE(pictures->findText("aunt.png"), 0);
    open("Photo Manager");
    putPicture("/rundata/media/contact-image/uncle.png");
    softKey(3);
    EXPECT_EQ(pictures->findText("uncle.png"), -1) << "other pages do not concern it";
}

} // namespace
