// The import pages while they are browsed: what is shown, and what the soft keys offer.
#include "host/services/players/speaker.h"
#include "media/basePreview.h"
#include "media/mediaListLook.h"
#include "media/soundPreview.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "support/host/registry.h"
#include "tests/kit/heldName.h"
#include "tests/media/fakePlayer.h"
#include "tests/media/importPage.h"
#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <sys/stat.h>

namespace {

class ImportBrowse : public ImportTest
{
protected:
    basePreview* preview() const { return page->findChild<basePreview*>(); }
    void fillStick()
    {
        put("photos/deep.png", picture("PNG", 20, 10));
        put("good.png", picture("PNG", 20, 10, 0xffc04020));
        put("large.jpg", picture("JPG", 1921, 100));
        put("damaged.jpg", "no picture");
        put("film.mp4");
        put("tune.wav");
        put("notes.txt");
    }
};

TEST_F(ImportBrowse, BeginsAtTheListOfDisks)
{
    openImages();
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage");
    EXPECT_EQ(rows(), QStringList{"STICK"});
    EXPECT_EQ(keys(), QStringList({"Enter", "", "", "Exit"}));
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "File Manager");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(),
              "/phone/resource/theme/default/bmp/menu/menu_filemanage.png");
    EXPECT_EQ(page->geometry(), QRect(0, 0, 800, 480));
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(ImportBrowse, AFolderIsEnteredByItsKeyAndTheWayUpLeavesIt)
{
    fillStick();
    openImages();
    softKey(0);
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1");
    EXPECT_EQ(rows(), QStringList({"..", "photos", "damaged.jpg", "good.png", "large.jpg"}));
    EXPECT_EQ(keys(), QStringList({"Enter", "", "", "Exit"})) << "the way up";
    select("good.png");
    view->setCurrentRow(1);
    EXPECT_EQ(keys(), QStringList({"Enter", "", "Delete", "Exit"})) << "a folder, after a picture too";
    for (QWidget* widget : {static_cast<QWidget*>(view), static_cast<QWidget*>(page)}) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(widget, &held);
        EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1") << "a held key opens one folder";
    }
    kit::key(Qt::Key_Return);
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1/photos");
    EXPECT_EQ(keys(), QStringList({"Enter", "", "", "Exit"})) << "the way up of a folder";
    kit::key(Qt::Key_Return);
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1");
    EXPECT_EQ(view->currentRow(), 1);
}

TEST_F(ImportBrowse, APictureThatThePhoneShowsIsPreviewedImportedAndDeleted)
{
    fillStick();
    openImages();
    enter();
    select("good.png");
    EXPECT_EQ(keys(), QStringList({"Preview", "Import", "Delete", "Exit"}));
    EXPECT_EQ(bar()->GetButton(0)->name(), "Enter") << "the key keeps its name";
}

TEST_F(ImportBrowse, AnOversizedOrDamagedPictureIsOnlyDeletedAndSaysWhy)
{
    fillStick();
    openImages();
    enter();
    for (const auto& [name, words] :
         {std::pair("large.jpg", "Image is oversized!"), std::pair("damaged.jpg", "Image is error!")}) {
        select("good.png");
        view->setCurrentRow(rowOf(name));
        EXPECT_TRUE(kit::waitUntil([this] { return label()->isVisible(); }));
        EXPECT_EQ(keys(), QStringList({"", "", "Delete", "Exit"})) << name;
        EXPECT_EQ(label()->text(), words);
    }
}

TEST_F(ImportBrowse, APictureIsPreviewedHalfASecondAfterItWasChosen)
{
    fillStick();
    openImages();
    enter();
    EXPECT_EQ(preview()->GetDelay(), 500);
    EXPECT_EQ(preview()->GetType(), PREVIEW_IMAGE);
    select("good.png");
    EXPECT_TRUE(label()->isHidden());
    EXPECT_TRUE(kit::waitUntil([this] { return label()->isVisible(); }));
    EXPECT_EQ(label()->grab().toImage().pixel(20, 20), 0xffc04020);
    view->setCurrentRow(0);
    EXPECT_TRUE(label()->isHidden()) << "the row before has gone";
}

TEST_F(ImportBrowse, AFilmOffersAllKeysAndNeverStartsByItself)
{
    fillStick();
    open<dlgVideoImport>("video");
    enter();
    EXPECT_EQ(rows(), QStringList({"..", "photos", "film.mp4"}));
    EXPECT_EQ(preview()->GetDelay(), 0);
    EXPECT_EQ(preview()->GetType(), PREVIEW_VIDEO);
    select("film.mp4");
    EXPECT_EQ(keys(), QStringList({"Preview", "Import", "Delete", "Exit"}));
    EXPECT_EQ(kit::windows().value(0), page);
    EXPECT_TRUE(label()->isHidden());
    softKey(0);
    EXPECT_EQ(kit::windows().value(0)->objectName(), "dlgVideoPreview");
    kit::key(Qt::Key_F4);
    kit::settle();
    EXPECT_EQ(kit::windows().value(0), page);
}

TEST_F(ImportBrowse, ARingToneIsPlayedAfterASecondAsLoudAsThePhoneRings)
{
    fillStick();
    writeFile("/rundata/config/user/user.ini", "[Volume]\nnRing=35\n");
    open<dlgSoundImport>("sound");
    enter();
    EXPECT_EQ(preview()->GetDelay(), 1000);
    EXPECT_EQ(static_cast<soundPreview*>(preview())->GetVolume(), 35);
    EXPECT_GE(page->findChild<QWidget*>("frmList")->geometry().right(), label()->geometry().right())
        << "the list has the preview's room";
    select("tune.wav");
    EXPECT_EQ(keys(), QStringList({"Preview", "Import", "Delete", "Exit"}));
    mark();
    EXPECT_TRUE(kit::waitUntil([this] { return logged("ring").contains("/storage/uDisk1/tune.wav 1"); }));
    mark();
    view->setCurrentRow(0);
    EXPECT_EQ(logged("ring"), QStringList{"stop"});
}

TEST_F(ImportBrowse, WithoutAStoredVolumeARingToneIsPlayedAtTwenty)
{
    writeFile("/rundata/config/user/user.ini", "[Volume]\n");
    open<dlgSoundImport>("sound");
    EXPECT_EQ(static_cast<soundPreview*>(preview())->GetVolume(), 20);
}

TEST_F(ImportBrowse, APageThatClosesIsSilentAndTellsThatItWasLeft)
{
    fillStick();
    open<dlgSoundImport>("sound");
    enter();
    select("tune.wav");
    EXPECT_TRUE(kit::waitUntil([this] { return logged("ring").contains("/storage/uDisk1/tune.wav 1"); }));
    QStringList told;
    QObject::connect(page, &QDialog::finished,
                     [&](int result) { told.append(QString("finished %1").arg(result)); });
    QObject::connect(page, &QDialog::rejected, [&] { told.append("rejected"); });
    mark();
    softKey(3);
    kit::settle();
    EXPECT_EQ(told.size(), 2);
    EXPECT_TRUE(told.contains("finished 0"));
    EXPECT_TRUE(told.contains("rejected"));
    EXPECT_EQ(page, nullptr);
    EXPECT_TRUE(logged("ring").contains("stop"));
}

TEST_F(ImportBrowse, OkShowsAPictureOverTheWholeScreen)
{
    fillStick();
    openImages();
    enter();
    select("good.png");
    for (const Qt::Key ok : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Select}) {
        kit::key(ok);
        EXPECT_TRUE(kit::waitUntil([] { return kit::windows().value(0)->objectName() == "dlgImagePreview"; }))
            << ok;
        EXPECT_EQ(kit::screen().pixel(10, 470), 0xffc04020);
        kit::key(Qt::Key_F3);
        EXPECT_TRUE(kit::waitUntil([this] { return kit::windows().value(0) == page; }));
    }
}

TEST_F(ImportBrowse, TheListWritesLargeInTheColoursOfTheMediaLists)
{
    openImages();
    EXPECT_EQ(view->font().pixelSize(), 18);
    EXPECT_EQ(view->font().weight(), QFont::DemiBold);
    EXPECT_EQ(view->iconSize(), QSize(32, 32));
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_EQ(view->palette().color(group, QPalette::Text), QColor(51, 59, 62));
        EXPECT_EQ(view->palette().color(group, QPalette::Highlight), QColor(201, 222, 241));
        EXPECT_EQ(view->palette().color(group, QPalette::Base).alpha(), 0);
    }
}

TEST_F(ImportBrowse, ATypeThatTheTableLacksShowsNoDisks)
{
    open<dlgImageImport>("none");
    EXPECT_EQ(view->count(), 0);
    softKey(0);
    softKey(1);
    EXPECT_EQ(kit::windows().value(0), page);
}

TEST_F(ImportBrowse, KeysAndTitlesFollowTheLanguage)
{
    fillStick();
    openImages();
    enter();
    select("good.png");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("French"), 1);
    kit::settle();
    EXPECT_EQ(keys(), QStringList({qTranslate("Preview"), qTranslate("Import"), qTranslate("Delete"),
                                   qTranslate("Exit")}));
    EXPECT_NE(keys().value(1), "Import");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), qTranslate("File Manager"));
    GetLanguageHelper()->SetLanguage("English");
    kit::settle();
}

TEST_F(ImportBrowse, WhatIsNeitherFileNorFolderIsNotShown)
{
    fillStick();
    ASSERT_EQ(mkfifo((stick() + "/pipe.png").toUtf8(), 0666), 0);
    QFile::link(hostPath("/rundata/config/system.ini"), stick() + "/link.png");
    QFile::link("/etc", stick() + "/etc");
    QFile::link("nowhere", stick() + "/dangling.png");
    openImages();
    enter();
    EXPECT_EQ(rows(), QStringList({"..", "photos", "damaged.jpg", "good.png", "large.jpg"}));
    // On a busy machine the disk may answer too late to be asked at once.
    EXPECT_TRUE(kit::waitUntil([this] {
        enter();
        return view->EnterDirectory("/storage/uDisk1/etc") == 0;
    }));
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1");
}

// A stick that hangs.

class ImportLook : public ImportBrowse
{
protected:
    ImportLook()
    {
        for (const char* name : {"a.jpg", "b.jpg"})
            put(name, picture("JPG", 20, 10));
        put("damaged.jpg", "no picture");
    }
    static QStringList onlyDelete() { return {"", "", "Delete", "Exit"}; }
};

TEST_F(ImportLook, HoldsNobodyUpAndGivesItsKeysLater)
{
    kit::HeldName disk("a.jpg");
    EXPECT_TRUE(kit::isQuick([this] { view->setCurrentRow(rowOf("a.jpg")); },
                             [this] {
                                 delete page;
                                 openImages();
                                 enter();
                             }));
    EXPECT_EQ(keys(), onlyDelete());
    disk.release();
    EXPECT_TRUE(kit::waitUntil([this] { return keys().value(1) == "Import"; }));
    EXPECT_EQ(keys(), QStringList({"Preview", "Import", "Delete", "Exit"}));
}

TEST_F(ImportLook, OneAtATimeHangsAndTheVerdictIsThatOnItsOwnPicture)
{
    openImages();
    enter();
    kit::holdClocks(true); // no preview looks too
    kit::HeldName disk(".jpg");
    for (const char* name : {"a.jpg", "b.jpg", "damaged.jpg"})
        view->setCurrentRow(rowOf(name));
    EXPECT_LE(disk.waiting(), 1);
    disk.release();
    kit::holdClocks(false);
    EXPECT_TRUE(kit::waitUntil([this] { return isTraced("PhotoFile::IsOk info(Image is error!)"); }));
    kit::settle();
    EXPECT_EQ(keys(), onlyDelete());
}

// What the disks tell.

class ImportDisks : public ImportBrowse
{
protected:
    void plugSecond()
    {
        QDir().mkpath(secondStick());
        EXPECT_EQ(storageWorldPlug(STORAGE_USB, secondStick()), "/storage/uDisk2");
        kit::settle();
    }
};

TEST_F(ImportDisks, ANewOneComesIntoTheList)
{
    openImages();
    plugSecond();
    EXPECT_EQ(rows(), QStringList({"STICK", "SECOND"}));
}

TEST_F(ImportDisks, ANewOneLeavesWhoBrowsesAnotherWhereHeIs)
{
    fillStick();
    openImages();
    enter();
    select("good.png");
    plugSecond();
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1");
    EXPECT_EQ(view->currentRow(), rowOf("good.png"));
}

TEST_F(ImportDisks, PullingTheOneOnViewLeadsBackToTheList)
{
    fillStick();
    openImages();
    plugSecond();
    enter("/storage/uDisk1/photos");
    pull();
    kit::settle();
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage");
    EXPECT_EQ(rows(), QStringList{"SECOND"});
    EXPECT_EQ(kit::windows().value(0), page);
}

TEST_F(ImportDisks, AnSdCardIsADiskLikeAnother)
{
    QDir().mkpath(secondStick());
    EXPECT_EQ(storageWorldPlug(STORAGE_SD, secondStick()), "/storage/sdCard1");
    fillStick();
    openImages();
    enter("/storage/uDisk1/photos");
    pull();
    kit::settle();
    ASSERT_NE(page, nullptr);
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage");
    EXPECT_EQ(rows(), QStringList{"SECOND"});
    EXPECT_EQ(storageWorldUnplug(secondStick()), 1);
    kit::settle();
    EXPECT_EQ(page, nullptr);
}

// A host may tell those who asked for a disk and not those who asked for all.
TEST_F(ImportDisks, OneThatComesMeanwhileIsAskedForByItself)
{
    openImages();
    plugSecond();
    device_UnRegisterNotify(page, "/storage");
    enter("/storage/uDisk2");
    EXPECT_EQ(storageWorldUnplug(secondStick()), 1);
    kit::settle();
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage");
}

TEST_F(ImportDisks, PullingAnotherOneLeavesTheBrowserWhereItIs)
{
    fillStick();
    openImages();
    plugSecond();
    enter("/storage/uDisk1/photos");
    EXPECT_EQ(storageWorldUnplug(secondStick()), 1);
    kit::settle();
    EXPECT_STREQ(view->GetCurPath().GetText(), "/storage/uDisk1/photos");
}

TEST_F(ImportDisks, PullingTheLastOneClosesThePage)
{
    fillStick();
    open<dlgSoundImport>("sound");
    enter();
    select("tune.wav");
    EXPECT_TRUE(kit::waitUntil([this] { return logged("ring").contains("/storage/uDisk1/tune.wav 1"); }));
    mark();
    pull();
    kit::settle();
    EXPECT_EQ(page, nullptr);
    EXPECT_TRUE(logged("ring").contains("stop"));
}

TEST_F(ImportDisks, PullingTheLastOneTakesAQuestionAboutItAlong)
{
    fillStick();
    openImages();
    enter();
    select("good.png");
    whenUp("dlgMessageBox", [this] { pull(); });
    softKey(2);
    kit::settle();
    EXPECT_EQ(page, nullptr);
    EXPECT_EQ(kit::windows().size(), 0);
    EXPECT_TRUE(QFile::exists(stick() + "/good.png"));
}

TEST_F(ImportDisks, WhatTheyTellIsTakenAndOtherMessagesAreLeft)
{
    openImages();
    for (const unsigned event :
         {unsigned(DEVICE_EVENT_REFRESH), unsigned(DEVICE_EVENT_REMOVE), 0xFFFF2009u}) {
        msgObject told(DEVICE_MSG_EVENT, event, 1);
        EXPECT_EQ(page->TryThreadMessage(told), 1);
    }
    msgObject other(CONFIG_MSG_BCAST_CHANGED, 0x11, 0);
    EXPECT_EQ(page->TryThreadMessage(other), 0);
}

} // namespace
