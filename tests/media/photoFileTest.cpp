#include "media/PhotoFile.h"
#include "tests/media/mediaTest.h"
#include <fstream>
#include <unistd.h>

namespace {

const char kEnd[] = "\xff\xd9";

class PhotoCheck : public MediaTest
{
protected:
    int check(const QByteArray& content, const char* path)
    {
        writeFile(path, content);
        return PhotoFile::GetImageType(path, IMAGE_SIZE_LIMIT);
    }
    // A picture of that format, with what makes the file that many bytes behind it.
    static QByteArray ofSize(const char* format, qsizetype size)
    {
        QByteArray bytes = picture(format, 8, 8);
        bytes.append(QByteArray(size - bytes.size(), '\0'));
        return bytes;
    }
};

TEST_F(PhotoCheck, AJpegIsMeasuredByItsPicture)
{
    EXPECT_EQ(check(picture("JPG", 1920, 1024), "/rundata/a.jpg"), IMAGE_FINE);
    EXPECT_EQ(check(picture("JPG", 1921, 100), "/rundata/a.jpg"), IMAGE_TOO_LARGE);
    EXPECT_EQ(check(picture("JPG", 100, 1025), "/rundata/a.jpg"), IMAGE_TOO_LARGE);
}

TEST_F(PhotoCheck, TheFileSizeOfAJpegPlaysNoPart)
{
    const QByteArray jpeg = picture("JPG", 8, 8);
    EXPECT_EQ(check(jpeg + QByteArray(3 << 20, '\0'), "/rundata/a.jpg"), IMAGE_FINE);
    writeFile("/rundata/a.jpg", jpeg);
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/a.jpg", 1), IMAGE_FINE);
}

TEST_F(PhotoCheck, EveryJpegExtensionIsKnownInAnyCase)
{
    for (const char* path : {"/rundata/a.jpg", "/rundata/a.JPEG", "/rundata/a.Jpe", "/rundata/a.b.jFIF"})
        EXPECT_EQ(check("no picture", path), IMAGE_DAMAGED) << path;
}

TEST_F(PhotoCheck, OtherPicturesAreMeasuredByTheirFile)
{
    const QByteArray limit = ofSize("PNG", IMAGE_SIZE_LIMIT);
    for (const char* path : {"/rundata/a.png", "/rundata/a.BMP", "/rundata/a.tif", "/rundata/a.Tiff"}) {
        EXPECT_EQ(check(limit, path), IMAGE_FINE) << path;
        EXPECT_EQ(check(limit + 'x', path), IMAGE_TOO_LARGE) << path;
        EXPECT_EQ(check("no picture", path), IMAGE_FINE) << path;
    }
}

TEST_F(PhotoCheck, APngOfTwoMegabytesIsOversizedAndAGifPasses)
{
    EXPECT_EQ(check(ofSize("PNG", 2 << 20), "/rundata/a.png"), IMAGE_TOO_LARGE);
    EXPECT_EQ(check(QByteArray(2 << 20, 'g'), "/rundata/a.gif"), IMAGE_FINE);
}

TEST_F(PhotoCheck, TheCallersLimitCountsUpToTheLargestOne)
{
    writeFile("/rundata/a.png", QByteArray(1000, 'p'));
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/a.png", 1000), IMAGE_FINE);
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/a.png", 999), IMAGE_TOO_LARGE);
    writeFile("/rundata/a.png", QByteArray(IMAGE_SIZE_LIMIT + 1, 'p'));
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/a.png", 0xffffffffu), IMAGE_TOO_LARGE);
}

TEST_F(PhotoCheck, ANameWithoutAPointOrOfAnotherKindIsTooLarge)
{
    for (const char* path :
         {"/rundata/picture", "/rundata/my.folder/picture", "/rundata/a.txt", "/rundata/a."})
        EXPECT_EQ(check(picture("JPG", 8, 8), path), IMAGE_TOO_LARGE) << path;
    EXPECT_EQ(PhotoFile::GetImageType(nullptr, IMAGE_SIZE_LIMIT), IMAGE_TOO_LARGE);
}

TEST_F(PhotoCheck, AFileThatCannotBeReadIsDamaged)
{
    for (const char* path :
         {"/rundata/none.jpg", "/rundata/none.png", "/rundata/none.bmp", "/rundata/none.tif"})
        EXPECT_EQ(PhotoFile::GetImageType(path, IMAGE_SIZE_LIMIT), IMAGE_DAMAGED) << path;
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/none.gif", IMAGE_SIZE_LIMIT), IMAGE_FINE);
}

TEST_F(PhotoCheck, AJpegWithoutItsStartOrItsEndIsDamaged)
{
    QByteArray jpeg = picture("JPG", 64, 64);
    EXPECT_EQ(check(jpeg.mid(1), "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check(jpeg.mid(2), "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check(jpeg.left(jpeg.lastIndexOf(kEnd)), "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check(jpeg.left(jpeg.lastIndexOf(kEnd) + 1), "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check("", "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check("\xff\xd8", "/rundata/a.jpg"), IMAGE_DAMAGED);
}

// The marker is looked for in pairs from the end of the file.
TEST_F(PhotoCheck, TheEndMarkIsFoundAtEvenAndOddPlaces)
{
    const QByteArray jpeg = picture("JPG", 64, 64);
    ASSERT_TRUE(jpeg.endsWith(kEnd));
    for (const int behind : {1, 2, 3, 65535, 65536, 65537, 200000})
        EXPECT_EQ(check(jpeg + QByteArray(behind, 'c'), "/rundata/a.jpg"), IMAGE_FINE) << behind;
}

TEST_F(PhotoCheck, ABrokenHeaderBetweenGoodMarksIsDamaged)
{
    EXPECT_EQ(check("\xff\xd8\xff\xd9", "/rundata/a.jpg"), IMAGE_DAMAGED);
    EXPECT_EQ(check(QByteArray("\xff\xd8") + QByteArray(500, 'x') + kEnd, "/rundata/a.jpg"), IMAGE_DAMAGED);
    QByteArray jpeg = picture("JPG", 64, 64);
    const qsizetype frame = jpeg.indexOf("\xff\xc0");
    ASSERT_GT(frame, 0);
    jpeg[frame + 5] = 0; // a picture without height and width
    jpeg[frame + 6] = 0;
    jpeg[frame + 7] = 0;
    jpeg[frame + 8] = 0;
    EXPECT_EQ(check(jpeg, "/rundata/a.jpg"), IMAGE_DAMAGED);
}

TEST_F(PhotoCheck, AFolderIsNoPicture)
{
    writeFile("/rundata/folder.jpg/x", "");
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/folder.jpg", IMAGE_SIZE_LIMIT), IMAGE_DAMAGED);
}

TEST_F(PhotoCheck, TheWordsTellWhatIsWrong)
{
    PhotoFile photo;
    writeFile("/rundata/good.jpg", picture("JPG", 8, 8));
    writeFile("/rundata/wide.jpg", picture("JPG", 1921, 8));
    EXPECT_TRUE(photo.IsOk("/rundata/good.jpg", IMAGE_SIZE_LIMIT));
    EXPECT_STREQ(photo.GetErrorInfo(), "");
    EXPECT_FALSE(photo.IsOk("/rundata/wide.jpg", IMAGE_SIZE_LIMIT));
    EXPECT_STREQ(photo.GetErrorInfo(), "Image is oversized!");
    EXPECT_FALSE(photo.IsOk("/rundata/none.jpg", IMAGE_SIZE_LIMIT));
    EXPECT_STREQ(photo.GetErrorInfo(), "Image is error!");
    EXPECT_FALSE(photo.IsOk("/rundata/nothing", IMAGE_SIZE_LIMIT));
    EXPECT_STREQ(photo.GetErrorInfo(), "Image is oversized!");
    EXPECT_TRUE(isTraced("PhotoFile::IsOk info()"));
    EXPECT_TRUE(isTraced("PhotoFile::IsOk info(Image is oversized!)"));
    EXPECT_TRUE(isTraced("PhotoFile::IsOk info(Image is error!)"));
}

long peakKilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes)
            return kilobytes;
    }
    return 0;
}

TEST_F(PhotoCheck, TheCheckTakesTheSameMemoryForAFileOfAnySize)
{
    writeFile("/rundata/huge.jpg", picture("JPG", 64, 64));
    ASSERT_EQ(PhotoFile::GetImageType("/rundata/huge.jpg", IMAGE_SIZE_LIMIT), IMAGE_FINE);
    ASSERT_EQ(truncate(hostPath("/rundata/huge.jpg").toUtf8(), 256 << 20), 0); // a hole of zeros
    const long before = peakKilobytes();
    ASSERT_GT(before, 0);
    EXPECT_EQ(PhotoFile::GetImageType("/rundata/huge.jpg", IMAGE_SIZE_LIMIT), IMAGE_FINE);
    EXPECT_LT(peakKilobytes() - before, 4096);
}

} // namespace
