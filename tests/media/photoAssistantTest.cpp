#include "media/photoAssistant.h"
#include "support/host/picture.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/media/mediaTest.h"
#include <QLabel>

namespace {

class SlideShow : public MediaTest
{
protected:
    SlideShow() : dialog(), show(&dialog)
    {
        writeFile("/rundata/1.png", picture("PNG", 10, 10));
        writeFile("/rundata/2.png", picture("PNG", 20, 20));
        writeFile("/rundata/3.png", picture("PNG", 30, 30));
    }
    // The width of the picture that shows, 0 for none.
    int shown() const { return show.GetLabel()->pixmap(Qt::ReturnByValue).width(); }
    void load(const QStringList& files) { EXPECT_TRUE(show.LoadFileList(listOf(files))); }

    QWidget dialog;
    photoAssistant show;
};

TEST_F(SlideShow, TheLabelIsAChildOfTheDialogOverTheWholeScreen)
{
    EXPECT_EQ(show.GetLabel()->parentWidget(), &dialog);
    EXPECT_EQ(show.GetLabel()->geometry(), QRect(QPoint(0, 0), QPoint(799, 479)));
    EXPECT_TRUE(show.GetLabel()->hasScaledContents());
}

TEST_F(SlideShow, WithoutFilesNothingShowsAndNothingMoves)
{
    EXPECT_FALSE(show.LoadFileList(FileList()));
    show.Show();
    show.PlayNext();
    show.PlayLast();
    EXPECT_EQ(shown(), 0);
    EXPECT_EQ(show.GetFileSize(), 0);
}

TEST_F(SlideShow, LoadingShowsTheFirstPicture)
{
    load({"/rundata/1.png", "/rundata/2.png"});
    EXPECT_EQ(shown(), 10);
    EXPECT_EQ(show.GetFileSize(), 2);
}

TEST_F(SlideShow, NextAndLastGoRound)
{
    load({"/rundata/1.png", "/rundata/2.png", "/rundata/3.png"});
    show.PlayNext();
    EXPECT_EQ(shown(), 20);
    show.PlayNext();
    show.PlayNext();
    EXPECT_EQ(shown(), 10) << "from the last to the first";
    show.PlayLast();
    EXPECT_EQ(shown(), 30) << "from the first to the last";
    show.PlayLast();
    EXPECT_EQ(shown(), 20);
    show.ShowFirstImage();
    EXPECT_EQ(shown(), 10);
}

TEST_F(SlideShow, OneFileShowsAgain)
{
    load({"/rundata/1.png"});
    show.GetLabel()->clear();
    show.PlayNext();
    EXPECT_EQ(shown(), 10);
    show.GetLabel()->clear();
    show.PlayLast();
    EXPECT_EQ(shown(), 10);
}

TEST_F(SlideShow, AnotherListTakesThePlaceOfTheOldOne)
{
    FileList list = listOf({"/rundata/1.png", "/rundata/2.png"});
    EXPECT_TRUE(show.LoadFileList(list));
    EXPECT_EQ(list.size(), 2) << "the paths are copied";
    load({"/rundata/3.png"});
    EXPECT_EQ(shown(), 30);
    EXPECT_EQ(show.GetFileSize(), 1);
    EXPECT_FALSE(show.LoadFileList(FileList()));
    EXPECT_EQ(show.GetFileSize(), 1);
}

TEST_F(SlideShow, PicturesOfACameraComeInTheSizeOfTheScreenAndTheNextIsReadAhead)
{
    for (const char* path : {"/rundata/a.png", "/rundata/b.png"})
        writeFile(path, kit::pngOfOneColour({6000, 4000}));
    load({"/rundata/a.png", "/rundata/b.png", "/rundata/1.png"});
    EXPECT_EQ(shown(), 0);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(shown(), 800);
    show.GetLabel()->clear();
    show.PlayNext();
    EXPECT_EQ(shown(), 800) << "at once";
}

TEST_F(SlideShow, APictureThatComesLateDoesNotTakeThePlaceOfAnother)
{
    writeFile("/rundata/a.png", kit::pngOfOneColour({6000, 4000}));
    load({"/rundata/a.png", "/rundata/1.png"});
    show.PlayNext();
    EXPECT_EQ(shown(), 10);
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_EQ(shown(), 10);
}

TEST_F(SlideShow, AFileThatVanishedIsPassedOver)
{
    load({"/rundata/1.png", "/rundata/none.png", "/rundata/3.png"});
    show.PlayNext();
    EXPECT_EQ(shown(), 10);
    show.PlayNext();
    EXPECT_EQ(shown(), 30);
}

// Made once: packing them takes longer than all that is looked at.
TEST_F(SlideShow, OfPicturesOfTwentyFourMegapixelsTheNextIsThereBeforeItsTurn)
{
    const QByteArray photo = kit::jpegPhoto({6000, 4000});
    for (const char* file : {"/rundata/a.jpg", "/rundata/b.jpg", "/rundata/c.jpg"})
        writeFile(file, photo);
    load({"/rundata/a.jpg", "/rundata/b.jpg", "/rundata/c.jpg"});
    ASSERT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 30000));
    for (int turn = 0; turn < 6; ++turn) {
        const qint64 before = show.GetLabel()->pixmap(Qt::ReturnByValue).cacheKey();
        show.PlayNext();
        EXPECT_NE(show.GetLabel()->pixmap(Qt::ReturnByValue).cacheKey(), before)
            << "in the call itself, " << turn;
        EXPECT_GE(shown(), 720);
        ASSERT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 30000));
    }
}

} // namespace
