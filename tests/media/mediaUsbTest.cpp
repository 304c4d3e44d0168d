// The way from the media manager to the disks, and back with what was imported.
#include "frame/moduleEntries.h"
#include "host/services/storage/storageWorld.h"
#include "tests/media/mediaManagerTest.h"
#include <QDir>
#include <QPointer>
#include <QTemporaryDir>

namespace {

class MediaUsb : public MediaManagerTest
{
protected:
    void plug(STORAGE_TYPE type = STORAGE_USB)
    {
        QDir(m_disks.path()).mkpath("stick");
        EXPECT_FALSE(storageWorldPlug(type, m_disks.filePath("stick")).isEmpty());
        kit::settle();
    }
    QDialog* openUsb(const char* name)
    {
        open(name);
        softKey(2);
        kit::settle();
        return qobject_cast<QDialog*>(kit::windows().value(0));
    }
    static void leave(QDialog* import)
    {
        const QPointer<QDialog> gone = import;
        import->close();
        kit::settle();
        EXPECT_TRUE(gone.isNull()) << "it was made for one visit";
    }

private:
    QTemporaryDir m_disks;
};

TEST_F(MediaUsb, WithoutADiskANoteSaysSo)
{
    open("Photo Manager");
    QString text;
    bool isOpen = false;
    whenBoxIsUp([&](QDialog* box) {
        text = box->findChild<QLabel*>("labText")->text();
        kit::stepTime(3600 * 1000);
        isOpen = box->isVisible();
        box->reject();
    });
    softKey(2);
    EXPECT_EQ(text, "The USB device is not connected!");
    EXPECT_TRUE(isOpen) << "it stays until it is closed";
    EXPECT_EQ(kit::windows().first(), page);
}

TEST_F(MediaUsb, EachKindOfMediaHasItsOwnPage)
{
    plug();
    const QPair<const char*, const char*> pages[] = {{"Photo Manager", "dlgImageImport"},
                                                     {"Wallpaper Manager", "dlgImageImport"},
                                                     {"Contact Picture Manage", "dlgImageImport"},
                                                     {"Video Manager", "dlgVideoImport"},
                                                     {"Sound Manager", "dlgSoundImport"}};
    for (const auto& [name, import] : pages) {
        SCOPED_TRACE(name);
        QDialog* shown = openUsb(name);
        ASSERT_NE(shown, nullptr);
        EXPECT_STREQ(shown->metaObject()->className(), import);
        EXPECT_EQ(shown->parent(), page);
        leave(shown);
        EXPECT_EQ(kit::windows().first(), page);
    }
}

TEST_F(MediaUsb, ACardAloneIsADiskToo)
{
    kit::holdClocks(false);
    plug(STORAGE_SD);
    const kit::BoxAnswers boxes;
    QDialog* shown = openUsb("Photo Manager");
    EXPECT_EQ(boxes.texts(), QStringList());
    ASSERT_NE(shown, page);
    EXPECT_STREQ(shown->metaObject()->className(), "dlgImageImport");
    leave(shown);
}

TEST_F(MediaUsb, ARingToneIsSilentBeforeTheDiskIsBrowsed)
{
    plug();
    open("Sound Manager");
    kit::stepTime(1000);
    mark();
    softKey(2);
    EXPECT_EQ(rings().value(0), "stop");
    leave(qobject_cast<QDialog*>(kit::windows().value(0)));
}

TEST_F(MediaUsb, WhatWasImportedComesToTheEndAndWhatWentStays)
{
    plug();
    putPhotos({"b.png", "c.png"});
    QDialog* import = openUsb("Photo Manager");
    putPhotos({"a.png", "d.png"});
    QFile::remove(hostPath("/rundata/media/image/b.png"));
    leave(import);
    EXPECT_EQ(names(), QStringList({"b.png", "c.png", "a.png", "d.png"}));
    EXPECT_EQ(row(), 0) << "the current row stays";
    leave(openUsb("Photo Manager"));
    EXPECT_EQ(names(), QStringList({"a.png", "c.png", "d.png"})) << "a new load sorts them";
}

TEST_F(MediaUsb, AFileThatWasDeletedAndIsImportedAgainComesBack)
{
    plug();
    kit::holdClocks(false);
    putPhotos({"a.png", "b.png"});
    open("Photo Manager");
    kit::BoxAnswers boxes({"yes"});
    softKey(1);
    softKey(2);
    kit::settle();
    putPhotos({"a.png"});
    leave(qobject_cast<QDialog*>(kit::windows().value(0)));
    EXPECT_EQ(names(), QStringList({"b.png", "a.png"}));
}

TEST_F(MediaUsb, TheFirstImportIntoAnEmptyListBringsItsRowAndTheKeyDelete)
{
    plug();
    QDialog* import = openUsb("Photo Manager");
    EXPECT_EQ(softKeyTitle(1), "");
    putPhotos({"a.png"});
    leave(import);
    EXPECT_EQ(row(), 0);
    EXPECT_TRUE(list()->item(0, 0)->isSelected());
    EXPECT_EQ(playing(), QList<int>({0}));
    EXPECT_EQ(softKeyTitle(1), "Delete");
    kit::stepTime(500);
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(MediaUsb, WhatIsStillToComeIsNotAddedTwice)
{
    plug();
    for (int i = 0; i < 1000; ++i)
        writeFile(QString("/rundata/media/image/%1.png").arg(i).toUtf8(), "x");
    settingOpenPage("Photo Manager", nullptr);
    page = kit::windows().value(0);
    ASSERT_LT(list()->rowCount(), 1000);
    QMetaObject::invokeMethod(manager(), "on_reload_FileList");
    EXPECT_TRUE(kit::waitUntil([&] { return list()->rowCount() >= 1000; }));
    kit::stepTime(1000);
    EXPECT_EQ(list()->rowCount(), 1000);
}

} // namespace
