#include "host/services/pictures/pictureService.h"
#include "host/services/players/speaker.h"
#include "media/imagePreview.h"
#include "media/mediaShows.h"
#include "media/soundPreview.h"
#include "media/videoPreview.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/media/mediaTest.h"
#include <QLabel>
#include <memory>

namespace {

// Counts what a preview is told to do.
class CountedPreview : public basePreview
{
public:
    explicit CountedPreview(int delay) : basePreview(nullptr, delay, PREVIEW_VIDEO) {}
    void on_start_preview(bool bStill) override { starts.append(bStill); }
    void on_stop_preview() override { ++stops; }
    QList<bool> starts;
    int stops = 0;
};

class Preview : public MediaTest
{
protected:
    Preview() { kit::holdClocks(true); }
};

TEST_F(Preview, WithoutADelayItStartsAtOnceAndByItself)
{
    CountedPreview preview(0);
    EXPECT_EQ(preview.startPreview("/rundata/a.mp4"), 1);
    EXPECT_EQ(preview.starts, QList<bool>({true}));
    EXPECT_TRUE(preview.IsActive());
}

TEST_F(Preview, WithADelayItStartsWhenTheTimeIsOver)
{
    CountedPreview preview(500);
    EXPECT_EQ(preview.startPreview("/rundata/a.jpg"), 1);
    kit::stepTime(499);
    EXPECT_TRUE(preview.starts.isEmpty());
    EXPECT_FALSE(preview.IsActive());
    kit::stepTime(1);
    EXPECT_EQ(preview.starts, QList<bool>({true}));
    EXPECT_TRUE(preview.IsActive());
    kit::stepTime(2000);
    EXPECT_EQ(preview.starts.size(), 1) << "once";
}

TEST_F(Preview, TheSameFileTwiceWhileItIsActiveDoesNothing)
{
    CountedPreview preview(0);
    preview.startPreview("/rundata/a.jpg");
    EXPECT_EQ(preview.startPreview("/rundata/a.jpg"), 1);
    EXPECT_EQ(preview.starts.size(), 1);
    EXPECT_EQ(preview.stops, 0);
    preview.startPreview("/rundata/b.jpg");
    EXPECT_EQ(preview.starts.size(), 2);
}

TEST_F(Preview, TheSameFileTwiceAfterItsDelayGoesOnUndisturbed)
{
    for (const int delay : {500, 1000}) {
        CountedPreview preview(delay);
        preview.startPreview("/rundata/a.jpg");
        kit::stepTime(delay);
        ASSERT_EQ(preview.starts.size(), 1);
        EXPECT_EQ(preview.startPreview("/rundata/a.jpg"), 1);
        EXPECT_TRUE(preview.IsActive());
        kit::stepTime(2 * delay);
        EXPECT_EQ(preview.starts.size(), 1) << delay;
        EXPECT_EQ(preview.stops, 0) << delay;
    }
}

TEST_F(Preview, TheSameFileAfterAStopStartsAgain)
{
    CountedPreview preview(0);
    preview.startPreview("/rundata/a.jpg");
    preview.stopPreview();
    preview.startPreview("/rundata/a.jpg");
    EXPECT_EQ(preview.starts.size(), 2);
}

TEST_F(Preview, WhoRunsThroughAListStartsOnlyTheLast)
{
    CountedPreview preview(500);
    for (const char* file : {"/rundata/a.jpg", "/rundata/b.jpg", "/rundata/c.jpg"}) {
        preview.startPreview(file);
        kit::stepTime(400);
    }
    EXPECT_TRUE(preview.starts.isEmpty());
    kit::stepTime(100);
    EXPECT_EQ(preview.starts.size(), 1);
    EXPECT_STREQ(preview.GetFile().GetText(), "/rundata/c.jpg");
}

TEST_F(Preview, TheNextFileStopsTheOneBeforeAtOnce)
{
    CountedPreview preview(500);
    preview.startPreview("/rundata/a.jpg");
    kit::stepTime(500);
    preview.startPreview("/rundata/b.jpg");
    EXPECT_EQ(preview.stops, 1);
    EXPECT_FALSE(preview.IsActive());
}

TEST_F(Preview, AStopBeforeTheTimeIsOverStartsNothing)
{
    CountedPreview preview(500);
    preview.startPreview("/rundata/a.jpg");
    preview.stopPreview();
    EXPECT_EQ(preview.stops, 0) << "nothing was active";
    kit::stepTime(1000);
    EXPECT_TRUE(preview.starts.isEmpty());
}

class PicturePreview : public MediaTest
{
protected:
    PicturePreview() : label(&page)
    {
        kit::holdClocks(true);
        page.resize(800, 480);
        page.show();
        label.setGeometry(QRect(QPoint(495, 150), QPoint(794, 329)));
        label.hide();
        preview = std::make_unique<imagePreview>(nullptr, &label, 500, PREVIEW_IMAGE);
    }
    ~PicturePreview() override { Stop_ImageView(); }
    void makeSmall() { label.setGeometry(QRect(QPoint(585, 150), QPoint(710, 275))); }
    void start(const char* file)
    {
        preview->startPreview(file);
        kit::stepTime(500);
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    }
    static QWidget* fullScreen()
    {
        QWidget* top = kit::windows().value(0);
        return top && top->objectName() == "dlgImagePreview" ? top : nullptr;
    }
    void askForFullScreen()
    {
        preview->on_start_preview(false);
        EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    }

    QWidget page;
    QLabel label;
    std::unique_ptr<imagePreview> preview;
};

TEST_F(PicturePreview, TheLabelStretchesThePictureAndWritesLarge)
{
    EXPECT_TRUE(label.hasScaledContents());
    EXPECT_EQ(label.font().pixelSize(), 18);
    EXPECT_EQ(label.font().weight(), QFont::DemiBold);
}

TEST_F(PicturePreview, ShowsThePictureAfterTheDelay)
{
    writeFile("/rundata/a.png", picture("PNG", 20, 10, 0xffc04020));
    preview->startPreview("/rundata/a.png");
    kit::stepTime(499);
    EXPECT_TRUE(label.isHidden());
    kit::stepTime(1);
    EXPECT_TRUE(label.isVisible());
    EXPECT_EQ(label.grab().toImage().pixel(150, 90), 0xffc04020);
    EXPECT_EQ(label.geometry(), QRect(495, 150, 300, 180));
    preview->stopPreview();
    EXPECT_TRUE(label.isHidden());
}

TEST_F(PicturePreview, AnOversizedOneSaysSoInTheLabel)
{
    writeFile("/rundata/a.jpg", picture("JPG", 1921, 100));
    start("/rundata/a.jpg");
    EXPECT_EQ(label.text(), "Image is oversized!");
    EXPECT_TRUE(label.isVisible());
}

TEST_F(PicturePreview, OneThatTakesTooLongSaysThatItIsOversized)
{
    writeFile("/rundata/a.png", kit::pngOfOneColour({6000, 4000}));
    tagPictureLimits limits;
    limits.nCpuMs = 5;
    PictureService::instance().setLimits(limits);
    start("/rundata/a.png");
    PictureService::instance().setLimits(tagPictureLimits());
    EXPECT_EQ(label.text(), "Image is oversized!");
}

TEST_F(PicturePreview, ADamagedOneSaysSoInTheLabel)
{
    writeFile("/rundata/a.jpg", "no picture");
    start("/rundata/a.jpg");
    EXPECT_EQ(label.text(), "Image is error!");
}

TEST_F(PicturePreview, OneThatIsDamagedBehindItsHeaderSaysSo)
{
    writeFile("/rundata/a.png", picture("PNG", 300, 300).left(200));
    start("/rundata/a.png");
    EXPECT_EQ(label.text(), "Image is error!");
}

TEST_F(PicturePreview, ASmallLabelGetsWiderForTheWordsAndGoesBackForAPicture)
{
    makeSmall();
    writeFile("/rundata/bad.jpg", "no picture");
    writeFile("/rundata/good.png", picture("PNG", 20, 10));
    start("/rundata/bad.jpg");
    EXPECT_EQ(label.geometry(), QRect(QPoint(555, 150), QPoint(754, 275)));
    start("/rundata/good.png");
    EXPECT_EQ(label.geometry(), QRect(QPoint(585, 150), QPoint(710, 275)));
    EXPECT_TRUE(label.text().isEmpty());
}

TEST_F(PicturePreview, APictureThatIsLeftBeforeItIsReadIsNotShown)
{
    writeFile("/rundata/large.png", kit::pngOfOneColour({4000, 3000}));
    preview->startPreview("/rundata/large.png");
    kit::stepTime(500);
    preview->stopPreview();
    EXPECT_TRUE(kit::waitUntil([] { return picturePending() == 0; }, 60000));
    EXPECT_TRUE(label.isHidden());
}

TEST_F(PicturePreview, TheOneOnDemandFillsTheScreenAndLeavesTheLabelAsItIs)
{
    writeFile("/rundata/a.png", picture("PNG", 20, 10, 0xffc04020));
    start("/rundata/a.png");
    label.setText("as it was");
    askForFullScreen();
    ASSERT_NE(fullScreen(), nullptr);
    EXPECT_EQ(label.text(), "as it was");
    EXPECT_EQ(kit::screen().pixel(10, 470), 0xffc04020);
    EXPECT_EQ(kit::screen().pixel(790, 10), 0xffc04020);
}

TEST_F(PicturePreview, TheOneOnDemandOpensWithItsPicture)
{
    writeFile("/rundata/large.png", kit::pngOfOneColour({4000, 3000}));
    preview->startPreview("/rundata/large.png");
    preview->on_start_preview(false);
    // The one for the label is read later.
    EXPECT_TRUE(kit::waitUntilHeld([] { return fullScreen() != nullptr; }, 60000));
    ASSERT_NE(fullScreen(), nullptr);
    EXPECT_EQ(fullScreen()->findChild<QLabel*>()->pixmap(Qt::ReturnByValue).width(), 800);
    EXPECT_EQ(picturePending(), 0) << "it is not read again";
}

TEST_F(PicturePreview, TheWholeScreenEndsWithOkAtOnceAndWithOtherKeysWhenTheyComeUp)
{
    writeFile("/rundata/a.png", picture("PNG", 20, 10));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F4, Qt::Key_5}) {
        PreviewImageFile("/rundata/a.png");
        kit::settle();
        kit::keyRelease(key);
        kit::key(Qt::Key_F12);
        ASSERT_NE(fullScreen(), nullptr);
        kit::keyPress(key);
        EXPECT_EQ(fullScreen() == nullptr, key == Qt::Key_Return) << key;
        kit::keyRelease(key);
        EXPECT_EQ(fullScreen(), nullptr) << key;
    }
}

TEST_F(PicturePreview, TheOneOnDemandOfADamagedPictureStaysInTheLabel)
{
    writeFile("/rundata/a.jpg", "no picture");
    start("/rundata/a.jpg");
    askForFullScreen();
    EXPECT_EQ(fullScreen(), nullptr);
    EXPECT_EQ(label.text(), "Image is error!");
}

class SoundPreview : public MediaTest
{
protected:
    SoundPreview()
    {
        kit::holdClocks(true);
        writeFile("/rundata/config/user/user.ini", "[Volume]\nnRing=35\n");
    }
    void make(int delay = 1000)
    {
        preview = std::make_unique<soundPreview>(nullptr, soundPreview::StoredVolume(), delay, PREVIEW_SOUND);
    }
    QStringList rings() const { return logged("ring"); }

    std::unique_ptr<soundPreview> preview;
};

TEST_F(SoundPreview, PlaysRoundAndRoundAsLoudAsThePhoneRingsAndStops)
{
    make();
    EXPECT_EQ(preview->GetVolume(), 35);
    preview->startPreview("/phone/a.wav");
    kit::stepTime(999);
    EXPECT_FALSE(rings().contains("/phone/a.wav 1")) << rings().join("; ").toStdString();
    mark();
    kit::stepTime(1);
    EXPECT_EQ(rings(), QStringList({"/phone/a.wav 1"}));
    mark();
    preview->stopPreview();
    EXPECT_EQ(rings(), QStringList({"stop"}));
}

TEST_F(SoundPreview, ThePhoneIsAsLoudAsItsRingWhileItPlays)
{
    dev_set_output_volume(60);
    make(0);
    preview->startPreview("/phone/a.wav");
    EXPECT_EQ(dev_get_output_volume(), 35);
    preview->stopPreview();
    EXPECT_EQ(dev_get_output_volume(), 60);
}

TEST_F(SoundPreview, AToneIsNeverHeardAtAnotherVolume)
{
    dev_set_output_volume(60);
    make(0);
    mark();
    preview->startPreview("/phone/a.wav");
    preview->stopPreview();
    EXPECT_EQ(loggedInOrder({"volume", "ring"}),
              QStringList({"volume 35", "ring /phone/a.wav 1", "ring stop", "volume 60"}));
}

TEST_F(SoundPreview, WithoutAStoredVolumeItIsTwenty)
{
    writeFile("/rundata/config/user/user.ini", "[Volume]\n");
    EXPECT_EQ(soundPreview::StoredVolume(), 20);
}

TEST_F(SoundPreview, FollowsTheStoredVolume)
{
    make();
    EXPECT_EQ(nuxSetRegistryInt("/rundata/config/user/user.ini", "Volume", "nRing", 70), 1);
    EXPECT_TRUE(kit::waitUntil([&] { return preview->GetVolume() == 70; }));
}

TEST_F(SoundPreview, OneThatGoesIsSilent)
{
    make(0);
    preview->startPreview("/phone/a.wav");
    mark();
    preview.reset();
    EXPECT_EQ(rings(), QStringList({"stop"}));
}

class FilmPreview : public MediaTest
{
protected:
    FilmPreview() : preview(nullptr, 0, PREVIEW_VIDEO) {}
    ~FilmPreview() override
    {
        Stop_VideoView();
        kit::settle();
    }
    videoPreview preview;
};

TEST_F(FilmPreview, NeverStartsByItself)
{
    preview.startPreview("/rundata/a.mp4");
    EXPECT_TRUE(kit::windows().isEmpty());
}

TEST_F(FilmPreview, TheOneOnDemandOpensThePlayer)
{
    preview.startPreview("/rundata/a.mp4");
    preview.on_start_preview(false);
    ASSERT_FALSE(kit::windows().isEmpty());
    EXPECT_EQ(kit::windows().first()->objectName(), "dlgVideoPreview");
    EXPECT_TRUE(isTraced("----[/rundata/a.mp4]---"));
}

} // namespace
