#include "media/ScreenViewFile.h"
#include "host/services/storage/storageWorld.h"
#include "support/xml/xmlFile.h"
#include "tests/media/mediaTest.h"
#include <QDir>
#include <QFile>

namespace {

const char kTable[] = "/phone/resource/screenview.xml";

class ScreenView : public MediaTest
{
protected:
    // The table is a second name of the device image's file, which stays.
    void writeTable(const QByteArray& content)
    {
        QFile::remove(hostPath(kTable));
        writeFile(kTable, content);
    }
    QString disk(STORAGE_TYPE type, const char* name, const QStringList& files)
    {
        for (const QString& file : files) {
            const QString path = m_disks.filePath(QString(name) + '/' + file);
            QDir().mkpath(QFileInfo(path).path());
            QFile made(path);
            EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        }
        return storageWorldPlug(type, m_disks.filePath(name));
    }
    QStringList images()
    {
        FileList list;
        EXPECT_TRUE(view.GetImageFileList(list));
        return texts(list);
    }
    static QByteArray table(const QByteArray& devices, const QByteArray& name = "ImageView")
    {
        return "<" + name + "><time><timeout interval=\"7\"/></time><storage>" + devices + "</storage></" +
               name + ">";
    }
    static QByteArray device(const QByteArray& type, const QByteArray& rules)
    {
        return "<device type=\"" + type + "\"><file>" + rules + "</file></device>";
    }
    static QByteArray rule(const QByteArray& path, const QByteArray& filter, const QByteArray& sub = "0")
    {
        return "<item path=\"" + path + "\" filter=\"" + filter + "\" bSubDir=\"" + sub + "\"/>";
    }

    ScreenViewFile view;
    QTemporaryDir m_disks;
};

TEST_F(ScreenView, AMissingTableOrSectionGivesFalseAndNoFiles)
{
    FileList list = listOf({"/kept"});
    QFile::remove(hostPath(kTable));
    EXPECT_FALSE(view.GetImageFileList(list));
    writeTable(table(""));
    EXPECT_FALSE(view.GetVideoFileList(list));
    EXPECT_TRUE(view.GetImageFileList(list));
    writeTable("<ImageView><broken");
    EXPECT_FALSE(view.GetImageFileList(list));
    EXPECT_EQ(texts(list), QStringList{"/kept"});
}

TEST_F(ScreenView, ATableThatIsFarTooLargeIsNotRead)
{
    mark();
    writeTable(table(device("phone", rule("/rundata/i", "*.jpg"))) + QByteArray(XML_TABLE_LIMIT, ' '));
    FileList list;
    EXPECT_FALSE(view.GetImageFileList(list));
    EXPECT_EQ(traces().filter("is larger than").size(), 1);
}

TEST_F(ScreenView, TheSectionsStandAtDocumentLevel)
{
    writeTable("<?xml version=\"1.0\"?>\n" + table(device("phone", rule("/rundata/i", "*.jpg"))) +
               table(device("phone", rule("/rundata/v", "*.mp4")), "VideoView"));
    writeFile("/rundata/i/a.jpg", "");
    writeFile("/rundata/v/b.mp4", "");
    FileList list;
    EXPECT_TRUE(view.GetVideoFileList(list));
    EXPECT_EQ(texts(list), QStringList{"/rundata/v/b.mp4"});
    EXPECT_EQ(images(), QStringList{"/rundata/i/a.jpg"});
}

TEST_F(ScreenView, TheIntervalIsKept)
{
    writeTable(table(device("phone", rule("/rundata/i", "*.jpg", "1") + rule("/rundata/j", "*"))));
    ASSERT_TRUE(view.parseFileToStruct(kTable, "ImageView"));
    EXPECT_EQ(view.GetViewFile().nInterval, 7);
    ASSERT_EQ(view.GetViewFile().listStorage.size(), 1);
    const tagStorage& storage = *view.GetViewFile().listStorage.begin();
    EXPECT_STREQ(storage.strType, "phone");
    ASSERT_EQ(storage.listFile.size(), 2);
    EXPECT_EQ(storage.listFile.front().bSubDir, 1);
    EXPECT_STREQ(storage.listFile.front().strPath, "/rundata/i");
    EXPECT_STREQ(storage.listFile.front().strFilter, "*.jpg");
    EXPECT_EQ(storage.listFile.back().bSubDir, 0);
}

TEST_F(ScreenView, DevicesOfTheTableComeInTheirOrderThenStoragesThenRules)
{
    writeTable(table(device("uDisk", rule("/p", "*.jpg") + rule("", "*.png")) +
                     device("phone", rule("/rundata/i", "*.jpg")) + device("sdCard", rule("/", "*.jpg"))));
    disk(STORAGE_USB, "A", {"p/b.jpg", "p/a.jpg", "c.png", "d.jpg"});
    disk(STORAGE_USB, "B", {"p/e.jpg", "f.png"});
    disk(STORAGE_SD, "C", {"g.jpg", "p/h.jpg"});
    writeFile("/rundata/i/x.jpg", "");
    EXPECT_EQ(images(), QStringList({"/storage/uDisk1/p/a.jpg", "/storage/uDisk1/p/b.jpg",
                                     "/storage/uDisk1/c.png", "/storage/uDisk2/p/e.jpg",
                                     "/storage/uDisk2/f.png", "/rundata/i/x.jpg", "/storage/sdCard1/g.jpg"}));
}

TEST_F(ScreenView, SubfoldersAreSearchedOnlyWhenTheRuleSaysSo)
{
    writeFile("/rundata/i/deep/x.jpg", "");
    writeTable(table(device("phone", rule("/rundata/i", "*.jpg", "0"))));
    EXPECT_EQ(images(), QStringList());
    writeTable(table(device("phone", rule("/rundata/i", "*.jpg", "2"))));
    EXPECT_EQ(images(), QStringList{"/rundata/i/deep/x.jpg"});
}

TEST_F(ScreenView, ADeviceTypeThatIsNotKnownAddsNothingAndIsNoError)
{
    writeTable(
        table(device("tape", rule("/rundata/i", "*.jpg")) + device("phone", rule("/rundata/i", "*.jpg"))));
    writeFile("/rundata/i/x.jpg", "");
    EXPECT_EQ(images(), QStringList{"/rundata/i/x.jpg"});
}

TEST_F(ScreenView, SiblingsCountWhateverTheirNamesAre)
{
    writeTable(table(device("tape", "") + "<other type=\"phone\"><file>" + rule("/rundata/i", "*.jpg") +
                     "<rule path=\"/rundata/i\" filter=\"*.png\"/></file></other>"));
    writeFile("/rundata/i/x.jpg", "");
    writeFile("/rundata/i/y.png", "");
    EXPECT_EQ(images(), QStringList({"/rundata/i/x.jpg", "/rundata/i/y.png"}));
}

TEST_F(ScreenView, WhatStandsBeforeTheFirstDeviceOrRuleDoesNotCount)
{
    writeTable(table("<other type=\"phone\"><file>" + rule("/rundata/i", "*.jpg") + "</file></other>"));
    writeFile("/rundata/i/x.jpg", "");
    EXPECT_EQ(images(), QStringList());
}

TEST_F(ScreenView, AFolderThatIsNotThereIsNoError)
{
    writeTable(table(device("phone", rule("/rundata/none", "*.jpg")) + "<device/>"));
    EXPECT_EQ(images(), QStringList());
}

TEST_F(ScreenView, EachReadStartsAnew)
{
    writeTable(table(device("phone", rule("/rundata/i", "*.jpg"))));
    writeFile("/rundata/i/x.jpg", "");
    EXPECT_EQ(images(), QStringList{"/rundata/i/x.jpg"});
    EXPECT_EQ(images(), QStringList{"/rundata/i/x.jpg"});
    FileList list = listOf({"/first"});
    EXPECT_TRUE(view.GetImageFileList(list));
    EXPECT_EQ(texts(list), QStringList({"/first", "/rundata/i/x.jpg"}));
}

TEST_F(ScreenView, TheFactoryTableFindsTheFilesOfThePhoneAndOfItsStorages)
{
    writeFile("/rundata/media/image/a.jpg", "");
    writeFile("/rundata/media/video/b.mp4", "");
    disk(STORAGE_USB, "A", {"deep/c.png", "d.mp4"});
    disk(STORAGE_SD, "B", {"e.jpeg", "f.3gp"});
    QStringList photos{"/rundata/media/image/a.jpg"};
    for (const char* stock : {"Dunes", "Forest", "Harbour", "Lake", "Roofs", "Winter"})
        photos.append(QString("/phone/resource/sysdata/ephoto/%1.jpg").arg(stock));
    photos += QStringList{"/storage/sdCard1/e.jpeg", "/storage/uDisk1/deep/c.png"};
    EXPECT_EQ(images(), photos);
    FileList list;
    EXPECT_TRUE(view.GetVideoFileList(list));
    EXPECT_EQ(texts(list),
              QStringList({"/rundata/media/video/b.mp4", "/phone/resource/sysdata/video/Morning.mp4",
                           "/storage/sdCard1/f.3gp", "/storage/uDisk1/d.mp4"}));
}

} // namespace
