#include "media/storageTools.h"
#include "host/services/storage/storageWorld.h"
#include "media/videoAssistant.h"
#include "tests/media/mediaTest.h"
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QPointer>

namespace {

class StorageTools : public MediaTest
{
protected:
    QString plug(STORAGE_TYPE type, const char* name)
    {
        QDir(m_disks.path()).mkpath(name);
        return storageWorldPlug(type, m_disks.filePath(name));
    }
    QTemporaryDir m_disks;
};

TEST_F(StorageTools, MountPathsAreAppended)
{
    plug(STORAGE_USB, "A");
    plug(STORAGE_SD, "B");
    chStringArray paths;
    paths.Append("/first");
    GetFileArrayInStorage(paths);
    ASSERT_EQ(paths.GetSize(), 3);
    EXPECT_STREQ(paths[0], "/first");
    EXPECT_STREQ(paths[1], "/storage/sdCard1");
    EXPECT_STREQ(paths[2], "/storage/uDisk1");
}

TEST_F(StorageTools, APathOnADiskThatIsThereIsKnown)
{
    EXPECT_FALSE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
    plug(STORAGE_USB, "A");
    EXPECT_TRUE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
    EXPECT_TRUE(IsExistCurrentStorage("/storage/uDisk1"));
    EXPECT_FALSE(IsExistCurrentStorage("/storage"));
    EXPECT_FALSE(IsExistCurrentStorage("/rundata/storage/uDisk1"));
    storageWorldUnplug(m_disks.filePath("A"));
    EXPECT_FALSE(IsExistCurrentStorage("/storage/uDisk1/a.jpg"));
}

TEST_F(StorageTools, AnEntryThatStartsThePathIncludesIt)
{
    chStringArray paths;
    EXPECT_FALSE(IsDirInclude("/storage/uDisk1/x", paths));
    paths.Append("/storage/sdCard1");
    paths.Append("/storage/uDisk1");
    EXPECT_TRUE(IsDirInclude("/storage/uDisk1/x", paths));
    EXPECT_TRUE(IsDirInclude("/storage/uDisk10", paths));
    EXPECT_FALSE(IsDirInclude("/storage/uDisk", paths));
    EXPECT_FALSE(IsDirInclude(nullptr, paths));
}

TEST_F(StorageTools, APartIsNoLongerThanTheWholeAndStartsIt)
{
    EXPECT_TRUE(IsPartOfAll("/a", "/a/b"));
    EXPECT_TRUE(IsPartOfAll("/a/b", "/a/b"));
    EXPECT_TRUE(IsPartOfAll("", "/a"));
    EXPECT_FALSE(IsPartOfAll("/a/b", "/a"));
    EXPECT_FALSE(IsPartOfAll("/A", "/a/b"));
    EXPECT_FALSE(IsPartOfAll("a", "/a"));
    EXPECT_TRUE(IsPartOfAll(nullptr, "/a"));
    EXPECT_FALSE(IsPartOfAll("/a", nullptr));
}

TEST_F(StorageTools, AnArrayHoldsANameOnlyExactly)
{
    chStringArray names;
    names.Append("a.jpg");
    EXPECT_TRUE(IsFileInArray("a.jpg", names));
    EXPECT_FALSE(IsFileInArray("a.JPG", names));
    EXPECT_FALSE(IsFileInArray("a.jp", names));
    EXPECT_FALSE(IsFileInArray(nullptr, names));
}

TEST_F(StorageTools, ALabelTakesAPictureThatIsThereAndKeepsItOtherwise)
{
    QLabel label;
    writeFile("/rundata/a.jpg", picture("JPG", 40, 30));
    writeFile("/rundata/broken.jpg", "no picture");
    EXPECT_TRUE(SetLabelImage(&label, "/rundata/a.jpg"));
    EXPECT_EQ(label.pixmap(Qt::ReturnByValue).size(), QSize(40, 30));
    EXPECT_FALSE(SetLabelImage(&label, "/rundata/none.jpg"));
    EXPECT_FALSE(SetLabelImage(&label, "/rundata/broken.jpg"));
    EXPECT_FALSE(SetLabelImage(&label, nullptr));
    EXPECT_FALSE(SetLabelImage(nullptr, "/rundata/a.jpg"));
    EXPECT_EQ(label.pixmap(Qt::ReturnByValue).size(), QSize(40, 30));
}

TEST_F(StorageTools, TheVideoSurfaceTakesTheRoomOfThePlaceholderWhichGoes)
{
    QWidget page;
    QPointer<QWidget> placeholder = new QWidget(&page);
    placeholder->setGeometry(10, 20, 300, 200);
    page.show();
    videoAssistant* surface = qReplaceVideoAssistant(placeholder, 1);
    EXPECT_EQ(surface->parentWidget(), &page);
    EXPECT_EQ(surface->geometry(), QRect(10, 20, 300, 200));
    ASSERT_TRUE(placeholder);
    EXPECT_FALSE(placeholder->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    kit::settle();
    EXPECT_FALSE(placeholder);
}

} // namespace
