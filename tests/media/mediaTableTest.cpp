// The media table, and what else lies in the folders that it names: nothing of it stops a list.
#include "media/mediaTable.h"
#include "frame/moduleEntries.h"
#include "support/file/findFile.h"
#include "support/host/picture.h"
#include "tests/media/mediaManagerTest.h"
#include <QDir>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class MediaTable : public MediaManagerTest
{
protected:
    MediaTable() { QDir().mkpath(hostPath(kFolder)); }
    static constexpr const char* kFolder = "/rundata/media/image";
    QByteArray inFolder(const QByteArray& name) const { return hostPath(kFolder).toUtf8() + "/" + name; }
    static QStringList shown(const char* type)
    {
        std::vector<tagMediaFile> files;
        if (!mediaFilesRead(type, files))
            return {"(no type)"};
        QStringList all;
        for (const tagMediaFile& file : files)
            all.append(toQString(file.strName));
        return all;
    }
    static constexpr int kText = 18; // where the text of a row begins
    static constexpr int kPale = 120;
    static constexpr int kDark = 100;
    // Of so many columns of the first row.
    int darkest(int left, int width)
    {
        const QPoint row =
            list()->viewport()->mapToGlobal(list()->visualItemRect(list()->item(0, 0)).topLeft());
        const QImage screen = kit::screen();
        int grey = 255;
        for (int y = row.y(); y < row.y() + 38; ++y) {
            for (int x = row.x() + left; x < row.x() + left + width; ++x)
                grey = qMin(grey, qGray(screen.pixel(x, y)));
        }
        return grey;
    }
    // Waits for what the page still adds.
    bool hasRows(int count)
    {
        return kit::waitUntil([&] { return list()->rowCount() == count; }, 20000);
    }
};

TEST_F(MediaTable, NamesTheFolderInFrontOfItsFiles)
{
    putTable("ephoto", "*.png",
             "<item path=\"/rundata/media/image\" shortname=\"Größe/\" bReadOnly=\"1\"/>"
             "<item path=\"/none\" shortname=\"\"/><item/>");
    putPhotos({"a.png"});
    std::vector<tagMediaFile> files;
    ASSERT_TRUE(mediaFilesRead("ephoto", files));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_STREQ(files[0].strName, "Größe/a.png");
    EXPECT_EQ(files[0].nShortName, int(strlen("Größe/")));
    EXPECT_TRUE(files[0].bReadOnly);
}

TEST_F(MediaTable, OnlyOneMeansReadOnly)
{
    putTable("ephoto", "*.png",
             "<item path=\"/rundata/1\" bReadOnly=\"true\"/><item path=\"/rundata/2\" bReadOnly=\"\"/>"
             "<item path=\"/rundata/3\"/><item path=\"/rundata/4\" bReadOnly=\"1\"/>");
    for (const char* file : {"/rundata/1/a.png", "/rundata/2/a.png", "/rundata/3/a.png", "/rundata/4/a.png"})
        putPicture(file);
    std::vector<tagMediaFile> files;
    ASSERT_TRUE(mediaFilesRead("ephoto", files));
    QList<bool> readOnly;
    for (const tagMediaFile& file : files)
        readOnly.append(file.bReadOnly);
    EXPECT_EQ(readOnly, QList<bool>({false, false, false, true}));
}

TEST_F(MediaTable, ATypeWithoutFoldersIsOneWithoutFiles)
{
    writeFile("/phone/resource/mediafile.xml", "<MediaFile><a filter=\"*\"/><b><filelist/></b></MediaFile>");
    EXPECT_EQ(shown("a"), QStringList());
    EXPECT_EQ(shown("b"), QStringList());
    EXPECT_EQ(shown("c"), QStringList({"(no type)"}));
    EXPECT_EQ(shown(""), QStringList({"(no type)"}));
    EXPECT_EQ(shown(nullptr), QStringList({"(no type)"}));
}

TEST_F(MediaTable, TakesSoManyFoldersAndNoMore)
{
    QByteArray items;
    for (int i = 0; i <= MEDIA_FOLDER_LIMIT; ++i)
        items += "<item path=\"/rundata/media/image\"/>";
    putTable("ephoto", "*.png", items);
    putPhotos({"a.png"});
    EXPECT_EQ(shown("ephoto").size(), MEDIA_FOLDER_LIMIT);
}

TEST_F(MediaTable, TakesSoManyFilesAndNoMore)
{
    putPhotos({"a.png", "b.png", "c.png"});
    std::vector<tagMediaFile> files(MEDIA_FILE_LIMIT - 2);
    ASSERT_TRUE(mediaFilesRead("ephoto", files));
    EXPECT_EQ(files.size(), size_t(MEDIA_FILE_LIMIT));
    EXPECT_STREQ(files.back().strName, "b.png");
}

TEST_F(MediaTable, WhatIsNoFileIsNoRow)
{
    putPhotos({"a.png"});
    ASSERT_EQ(mkfifo(inFolder("pipe.png"), 0600), 0);
    ASSERT_EQ(mkdir(inFolder("folder.png"), 0700), 0);
    ASSERT_EQ(symlink("nowhere", inFolder("gone.png")), 0);
    ASSERT_EQ(symlink("round.png", inFolder("round.png")), 0);
    ASSERT_EQ(symlink("/proc/version", inFolder("machine.png")), 0) << "out of the phone";
    ASSERT_EQ(symlink("pipe.png", inFolder("toPipe.png")), 0);
    open("Photo Manager");
    EXPECT_EQ(names(), QStringList({"a.png"}));
}

TEST_F(MediaTable, ALinkIsRemovedAndNotWhatItLeadsTo)
{
    writeFile("/rundata/data/other.png", Pictures::picture("PNG", 8, 8));
    ASSERT_EQ(symlink("/rundata/data/other.png", inFolder("link.png")), 0);
    open("Photo Manager");
    ASSERT_EQ(names(), QStringList({"link.png"}));
    kit::holdClocks(false);
    kit::BoxAnswers boxes({"yes"});
    softKey(1);
    EXPECT_EQ(list()->rowCount(), 0);
    EXPECT_TRUE(isThere("/rundata/data/other.png"));
    EXPECT_FALSE(QFileInfo(inFolder("link.png")).isSymLink());
}

TEST_F(MediaTable, AFileThatIsReplacedByAPipeDoesNotHangThePage)
{
    putPhotos({"a.png", "b.png"});
    open("Photo Manager");
    ASSERT_EQ(unlink(inFolder("b.png")), 0);
    ASSERT_EQ(mkfifo(inFolder("b.png"), 0600), 0);
    tapRow(1);
    kit::stepTime(500);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    EXPECT_EQ(label()->text(), "Image is error!");
    softKey(0);
    EXPECT_TRUE(page->isVisible());
}

TEST_F(MediaTable, AFileWithoutRightsIsARowAndSaysThatItCannotBeShown)
{
    putPhotos({"a.png"});
    ASSERT_EQ(chmod(inFolder("a.png"), 0), 0);
    open("Photo Manager");
    EXPECT_EQ(names(), QStringList({"a.png"}));
    kit::stepTime(500);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }));
    if (access(inFolder("a.png"), R_OK) != 0) {
        EXPECT_EQ(label()->text(), "Image is error!");
    }
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(MediaTable, AFolderWithoutRightsIsAnEmptyOne)
{
    putPhotos({"a.png"});
    ASSERT_EQ(chmod(hostPath(kFolder).toUtf8(), 0), 0);
    const bool isClosed = access(hostPath(kFolder).toUtf8(), R_OK) != 0;
    open("Photo Manager");
    EXPECT_EQ(list()->rowCount(), isClosed ? 0 : 1);
    chmod(hostPath(kFolder).toUtf8(), 0700);
}

TEST_F(MediaTable, NamesOfAnyScriptAndLengthCanBeShownAndDeleted)
{
    const QByteArray longest = QByteArray(251, 'x') + ".png";
    const QByteArrayList names = {"夏の湖.png", "лето.png",    "ﺎﻠﺼﻴﻓ.png", "a\nb.png",
                                  "%s%n.png",   "<b>x<i>.png", "a&b.png",   "\xff\xfe.png",
                                  "$(x).png",   longest,       " .png"};
    for (const QByteArray& name : names) {
        const int file = ::open(inFolder(name), O_CREAT | O_WRONLY, 0600);
        ASSERT_GE(file, 0) << name.constData();
        close(file);
    }
    open("Photo Manager");
    ASSERT_EQ(list()->rowCount(), names.size());
    kit::shot("mediaManager-names");
    for (int row = 0; row < list()->rowCount(); ++row) {
        const chString path = list()->item(row, 0)->data(Qt::UserRole).value<chString>();
        EXPECT_EQ(manager()->findItemValue(path), row) << path.GetText();
        EXPECT_EQ(list()->visualItemRect(list()->item(row, 0)).height(), 40);
    }
    kit::holdClocks(false);
    for (qsizetype left = names.size(); left > 0; --left) {
        kit::BoxAnswers boxes({"yes"});
        softKey(1);
        EXPECT_EQ(boxes.texts().size(), 1);
        EXPECT_EQ(list()->rowCount(), left - 1);
    }
    EXPECT_EQ(QDir(hostPath(kFolder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 0);
}

TEST_F(MediaTable, ALineOfTheListStaysALineWhateverTheNameHolds)
{
    putPhotos({"a.png"});
    const int file = ::open(inFolder("b\u2028bbbbbbbb.png"), O_CREAT | O_WRONLY, 0600);
    close(file);
    open("Photo Manager");
    const QImage screen = kit::screen();
    const QRect rowOfB =
        QRect(list()->viewport()->mapToGlobal(list()->visualItemRect(list()->item(1, 0)).topLeft()),
              QSize(120, 38));
    int lines = 0;
    int rightmost = 0;
    bool wasInk = false;
    for (int y = rowOfB.top(); y <= rowOfB.bottom(); ++y) {
        bool isInk = false;
        for (int x = rowOfB.left(); x <= rowOfB.right(); ++x) {
            if (qGray(screen.pixel(x, y)) >= 128)
                continue;
            isInk = true;
            rightmost = qMax(rightmost, x - rowOfB.left());
        }
        lines += isInk && !wasInk;
        wasInk = isInk;
    }
    EXPECT_GT(rightmost, 80) << "what follows is lost";
    EXPECT_EQ(lines, 1);
}

TEST_F(MediaTable, TheShortNameOfTheFolderIsPaler)
{
    putTable("ephoto", "*.png", "<item path=\"/rundata/media/image\" shortname=\"WWWW\"/>");
    putPhotos({"a.png", "MMMM.png"});
    open("Photo Manager");
    const int width = list()->fontMetrics().horizontalAdvance("WWWW");
    EXPECT_GT(darkest(kText, width - 4), kPale);
    EXPECT_LT(darkest(kText + width + 2, width / 2), kDark);
    kit::shot("mediaManager-shortName");
}

TEST_F(MediaTable, OfANameThatIsTooLongTheShortNameIsPalerUpToWhatIsLeftOut)
{
    putTable("ephoto", "*.png", "<item path=\"/rundata/media/image\" shortname=\"WWWW\"/>");
    putPicture(("/rundata/media/image/" + QByteArray(40, 'M') + ".png").constData());
    open("Photo Manager");
    const int width = list()->fontMetrics().horizontalAdvance("WWWW");
    EXPECT_GT(darkest(kText, width - 4), kPale);
    EXPECT_LT(darkest(kText + width + 2, width / 2), kDark);
    kit::shot("mediaManager-shortNameOfLong");
    putTable("ephoto", "*.png",
             "<item path=\"/rundata/media/image\" shortname=\"" + QByteArray(60, 'W') + "\"/>");
    open("Photo Manager");
    EXPECT_GT(darkest(kText, width - 4), kPale);
    EXPECT_LT(darkest(list()->columnWidth(0) - width, width / 2), kDark) << "the end of the file's own name";
}

TEST_F(MediaTable, ThousandsOfFilesComeWhileThePageIsUsed)
{
    const int count = 20000;
    for (int i = 0; i < count; ++i) {
        const int file = ::open(inFolder(QByteArray::number(100000 + i) + ".png"), O_CREAT | O_WRONLY, 0600);
        ASSERT_GE(file, 0);
        close(file);
    }
    open("Photo Manager");
    EXPECT_GT(list()->rowCount(), 9) << "what the list has room for is there at once";
    kit::key(Qt::Key_Down);
    EXPECT_EQ(row(), 1);
    EXPECT_TRUE(hasRows(count));
    EXPECT_EQ(row(), 1);
    EXPECT_EQ(list()->item(count - 1, 0)->text(), "119999.png");
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(row(), count - 1);
    EXPECT_EQ(playing(), QList<int>({count - 1}));
}

TEST_F(MediaTable, RowsThatAreStillToComeAreNoneOfTheNextType)
{
    for (int i = 0; i < 1000; ++i)
        close(::open(inFolder(QByteArray::number(i) + ".png"), O_CREAT | O_WRONLY, 0600));
    settingOpenPage("Photo Manager", nullptr);
    settingOpenPage("Video Manager", nullptr);
    page = open("Video Manager");
    kit::stepTime(1000);
    EXPECT_EQ(list()->rowCount(), 0);
    open("Photo Manager");
    EXPECT_TRUE(hasRows(1000));
    kit::stepTime(1000);
    EXPECT_EQ(list()->rowCount(), 1000) << "none comes twice";
}

} // namespace
