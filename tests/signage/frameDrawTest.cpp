// Where panels and buttons stand, what they hold, and what comes back to the pool.
#include "host/services/phone/phoneService.h"
#include "media/videoAssistant.h"
#include "signage/nDeckVideoManager.h"
#include "support/host/button.h"
#include "support/host/webview.h"
#include "tests/signage/displayFixture.h"
#include <QPushButton>

class FrameDraw : public DisplayTest
{
protected:
    void put(const QByteArray& regions)
    {
        addLayout("a.xml", layout(regions));
        takeUp();
    }
    // In a window of the host's.
    void showIn(QWidget& parent, const QRect& rect, E_NDECKWINDOW_TYPE type = NDECK_WINDOW_IDLE)
    {
        EXPECT_TRUE(nDeckWindowDisplay(1, type, &parent, rect));
        kit::settle();
    }
    static nDeckPanel* panel(int index = 0) { return panels().value(index); }
    static int darkPixels(const QRect& rect)
    {
        const QImage part = kit::screen().copy(rect);
        int dark = 0;
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x)
                dark += qGray(part.pixel(x, y)) < 80 ? 1 : 0;
        }
        return dark;
    }
    static videoAssistant* viewer() { return frame().findChild<videoAssistant*>(); }
};

TEST_F(FrameDraw, RateIsTheSmallerOne)
{
    EXPECT_FLOAT_EQ(CaculateRectRate(QRect(10, 10, 400, 240), kFull), 0.5f);
    EXPECT_FLOAT_EQ(CaculateRectRate(QRect(0, 0, 400, 480), kFull), 0.5f);
    EXPECT_FLOAT_EQ(CaculateRectRate(QRect(0, 0, 800, 240), kFull), 0.5f);
    EXPECT_FLOAT_EQ(CaculateRectRate(kFull, kFull), 1.0f);
}

TEST_F(FrameDraw, PanelIsScaledAndCutToWholePixels)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(101, 51, 203, 77), image("red.png", "5")));
    QWidget home;
    home.resize(800, 480);
    home.show();
    mark();
    showIn(home, QRect(20, 30, 400, 240));
    EXPECT_TRUE(traced("nDeckFrame::CreatePanel(L:101,R:304,T:51,B:128)"));
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(panel()->GetPanelRect(), QRect(50, 25, 101, 38));
    EXPECT_EQ(panel()->geometry(), QRect(50, 25, 101, 38));
    EXPECT_EQ(panel()->GetContent()->geometry(), QRect(0, 0, 101, 38));
    EXPECT_EQ(frame().geometry(), QRect(20, 30, 400, 240));
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, DialButtonStandsInTheMiddleOfTheLowerEdge)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(100, 100, 301, 200), image("red.png", "5", "123")));
    show();
    QPushButton* button = panel()->GetDialButton();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), "123");
    EXPECT_EQ(button->geometry(), QRect(QPoint(90, 169), QPoint(209, 199)));
    EXPECT_EQ(button->font().pixelSize(), 18);
    EXPECT_TRUE(button->styleSheet().contains("QPushButton{color:rgb(255,255,255)}"));
    EXPECT_EQ(GetButtonImage(button, 0), HX_THEME("button/btn_normal_ndeck0.png"));
    EXPECT_EQ(GetButtonImage(button, 1), HX_THEME("button/btn_normal_ndeck1.png"));
    EXPECT_EQ(GetButtonImage(button, 2), HX_THEME("button/btn_normal_ndeck2.png"));
    kit::shot("signage_dial");
}

TEST_F(FrameDraw, DialButtonOfASmallPanelIsAsLargeAsThePanel)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(100, 100, 100, 20), image("red.png", "5", "123")) +
        region(QRect(300, 100, 300, 20), image("red.png", "5", "123")));
    show();
    EXPECT_EQ(panel(0)->GetDialButton()->geometry(), QRect(0, 0, 100, 20));
    EXPECT_EQ(panel(1)->GetDialButton()->geometry(), QRect(90, 0, 120, 20));
}

TEST_F(FrameDraw, DialButtonOfASmallPanelIsScaledToo)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(100, 100, 220, 100), image("red.png", "5", "123")));
    QWidget home;
    home.resize(800, 480);
    home.show();
    showIn(home, QRect(0, 0, 400, 240));
    // 110 by 50: a button of 55 by 15.
    EXPECT_EQ(panel()->GetDialButton()->geometry(), QRect(28, 35, 55, 15));
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, PressOnTheButtonDialsInTheFullWindowOnly)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(100, 100, 300, 200), image("red.png", "500", "123")));
    show();
    mark();
    kit::tap(panel()->GetDialButton());
    EXPECT_EQ(logged("dial").size(), 1);
    EXPECT_TRUE(logged("dial").value(0).contains("123"));
    nDeckWindowDisplay(0, NDECK_WINDOW_PAGE, nullptr, kFull);
    kit::settle();
    QWidget home;
    home.resize(800, 480);
    home.show();
    showIn(home, QRect(0, 0, 800, 480));
    mark();
    ASSERT_NE(panel(), nullptr);
    kit::tap(panel()->GetDialButton());
    EXPECT_TRUE(logged("dial").isEmpty());
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, ButtonGoesWithItsMedia)
{
    addFile("red.png", picture(Qt::red));
    addFile("blue.png", picture(Qt::blue));
    put(region(image("red.png", "2", "123") + image("blue.png", "2")));
    mark();
    show();
    EXPECT_TRUE(traced(" getphoneNumber(123)"));
    EXPECT_EQ(frame().findChildren<QPushButton*>().size(), 1);
    kit::stepTime(2100);
    EXPECT_TRUE(traced(" getphoneNumber()"));
    EXPECT_TRUE(frame().findChildren<QPushButton*>().isEmpty());
    EXPECT_EQ(panel()->GetDialButton(), nullptr);
    kit::stepTime(2000);
    EXPECT_EQ(frame().findChildren<QPushButton*>().size(), 1);
}

TEST_F(FrameDraw, DamagedOrMissingPictureShowsNothing)
{
    addFile("bad.jpg", "no picture");
    addFile("wide.jpg", picture(Qt::red, "JPG", QSize(1921, 100)));
    put(region(QRect(0, 0, 400, 240), image("bad.jpg", "5")) +
        region(QRect(0, 240, 400, 240), image("wide.jpg", "5")) +
        region(QRect(400, 0, 400, 480), image("none.png", "5")));
    show();
    ASSERT_EQ(panels().size(), 3);
    for (nDeckPanel* each : panels())
        EXPECT_TRUE(qobject_cast<QLabel*>(each->GetContent())->pixmap().isNull());
    const QImage general(hostPath("/phone/resource/theme/default/bmp/general/gen_bg.jpg"));
    EXPECT_EQ(pixel(300, 240), general.pixel(300, 240));
}

TEST_F(FrameDraw, RichTextIsTransparentAndWhole)
{
    addLayout("a.xml",
              layout(region(QRect(100, 50, 600, 300), text("<h1>Welcome</h1><p>to the house</p>", "50")),
                     "bgcolor=\"#ffe0a0\""));
    takeUp();
    show();
    auto* view = frame().findChild<QWebView*>();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->html(), "<h1>Welcome</h1><p>to the house</p>");
    EXPECT_EQ(view->geometry(), QRect(0, 0, 600, 300));
    EXPECT_EQ(view->styleSheet(),
              "background-color: rgba(255, 255, 255, 0%);selection-color: rgba(255, 255, 255, "
              "255);selection-background-color: rgba(255, 255, 255,255);");
    EXPECT_TRUE(kit::waitUntil([] { return frame().findChildren<nDeckCover*>().isEmpty(); }, 20000));
    EXPECT_TRUE(kit::waitUntil([] { return darkPixels(QRect(100, 50, 600, 150)) > 500; }, 20000));
    kit::shot("signage_text");
    EXPECT_EQ(pixel(650, 330), qRgb(0xff, 0xe0, 0xa0));
}

TEST_F(FrameDraw, WidgetsComeBackToThePoolAndAreTakenAgain)
{
    addFile("red.png", picture(Qt::red));
    addFile("blue.png", picture(Qt::blue));
    NdeckWidgetPoolManager& pool = GetNdeckWidgetPoolManager();
    mark();
    addLayout("a.xml",
              layout(region(image("red.png", "2")) + region(QRect(0, 0, 9, 9), video("v.mp4", "2"))));
    addLayout("b.xml", layout(region(image("blue.png", "2"))));
    takeUp();
    show();
    EXPECT_EQ(pool.GetCount(), 4);
    EXPECT_EQ(pool.GetInUseCount(), 4);
    EXPECT_EQ(logged("trace").filter("!!!push_back( WidegtInfo:").size(), 4);
    EXPECT_TRUE(logged("trace").filter("!!!push_back(").last().endsWith("list-size(4)"));
    QWidget* const label = panel()->GetContent();
    kit::stepTime(2100);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(pool.GetCount(), 4);
    EXPECT_EQ(pool.GetInUseCount(), 2);
    EXPECT_EQ(panel()->GetContent(), label);
    EXPECT_EQ(pool.Find(label)->nReleases, 1);
    kit::stepTime(20000);
    EXPECT_EQ(pool.GetCount(), 4);
}

TEST_F(FrameDraw, PoolEndsWithItsFreeWidgets)
{
    NdeckWidgetPoolManager pool;
    QPointer<QWidget> inUse = new QWidget;
    QPointer<QWidget> free = new QWidget;
    pool.Add(inUse);
    pool.Add(free);
    pool.DestroyWidget(free);
    EXPECT_EQ(pool.GetInUseCount(), 1);
    pool.ClearWidget();
    kit::settle();
    EXPECT_FALSE(free);
    ASSERT_TRUE(inUse);
    EXPECT_EQ(pool.GetCount(), 0);
    delete inUse;
}

TEST_F(FrameDraw, BackgroundThatIsNoPictureIsReplacedByTheGeneralOne)
{
    show();
    writeFile(NDECK_FOLDER "bad.jpg", "no picture");
    mark();
    frame().SetBackgroundImage("bad.jpg", true);
    EXPECT_TRUE(traced("picture (/rundata/nDeck/bad.jpg) is invalid"));
    const QImage general(hostPath("/phone/resource/theme/default/bmp/general/gen_bg.jpg"));
    EXPECT_EQ(pixel(300, 240), general.pixel(300, 240));
    EXPECT_EQ(background(), "bad.jpg");
}

TEST_F(FrameDraw, BackgroundWithASlashIsAPath)
{
    show();
    frame().SetBackgroundImage(HX_THEME("misc/nDeck_Loading.jpg"), false);
    const QImage loading(hostPath("/phone/resource/theme/default/bmp/misc/nDeck_Loading.jpg"));
    EXPECT_EQ(pixel(20, 20), loading.pixel(20, 20));
}

TEST_F(FrameDraw, BackgroundOfAnotherShapeFillsTheFrame)
{
    show();
    QImage two(200, 200, QImage::Format_RGB32);
    two.fill(Qt::red);
    QPainter(&two).fillRect(100, 0, 100, 200, Qt::blue);
    two.save(hostPath(NDECK_FOLDER "two.png"));
    writeFile(NDECK_FOLDER "empty", "");
    two.save(hostPath(NDECK_FOLDER "two.png"));
    frame().SetBackgroundImage("two.png", true);
    EXPECT_EQ(pixel(100, 440), qRgb(255, 0, 0));
    EXPECT_EQ(pixel(500, 20), qRgb(0, 0, 255));
}

TEST_F(FrameDraw, BackgroundIsScaledToTheNewSize)
{
    QWidget home;
    home.resize(800, 480);
    home.show();
    addFile("red.png", picture(Qt::red, "PNG", QSize(800, 480)));
    addLayout("a.xml", layout(region(QRect(0, 0, 1, 1), image("red.png", "50")), "background=\"red.png\""));
    takeUp();
    showIn(home, QRect(0, 0, 400, 240));
    frame().resize(200, 120);
    picturesCome();
    EXPECT_EQ(frame().palette().brush(QPalette::Window).texture().size(), QSize(200, 120));
    frame().SetBackgroundColor("#112233");
    frame().resize(100, 60);
    kit::settle();
    EXPECT_EQ(frame().palette().color(QPalette::Window), QColor(0x11, 0x22, 0x33));
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, VideoStandsAtTheAlignedPlaceOnTheScreen)
{
    mark();
    put(region(QRect(100, 50, 300, 200), video("film.mp4", "50")));
    show();
    ASSERT_NE(viewer(), nullptr);
    EXPECT_TRUE(traced("nDeckPanel::UpdateVideo (film.mp4) is not in filelist"));
    EXPECT_EQ(GetNDeckVideoManager().GetPlayRegion(), chRect(112, 50, 400, 250));
    QRect place;
    viewer()->GetVideoRect(place);
    EXPECT_EQ(place, QRect(112, 50, 288, 200));
    EXPECT_EQ(pixel(250, 150), qRgb(0, 0, 0));
    EXPECT_EQ(pixel(105, 150), qRgb(0, 0, 0)) << "the part of the panel that the video does not reach";
}

TEST_F(FrameDraw, VideoThatGivesWayToAPictureStops)
{
    show();
    kit::stepTime(600);
    addFile("film.mp4", "film");
    addFile("red.png", picture(Qt::red));
    put(region(video("film.mp4", "1") + image("red.png", "5")));
    mark();
    kit::stepTime(600);
    EXPECT_TRUE(traced("StartPlayVideo!"));
    put(region(video("film.mp4", "0") + image("red.png", "5")));
    ASSERT_NE(viewer(), nullptr);
    mark();
    kit::stepTime(600);
    EXPECT_EQ(viewer(), nullptr);
    EXPECT_FALSE(traced("StartPlayVideo!"));
}

TEST_F(FrameDraw, VideoOfAHiddenFrameIsNotStarted)
{
    put(region(video("one.mp4", "2") + video("two.mp4", "2")));
    show();
    kit::stepTime(600);
    nDeckWindowDisplay(0, NDECK_WINDOW_PAGE, nullptr, kFull);
    mark();
    kit::stepTime(3000);
    EXPECT_TRUE(traced("nDeckPanel::UpdateVideo (two.mp4) is not in filelist"));
    EXPECT_FALSE(traced("StartPlayVideo!"));
}

TEST_F(FrameDraw, ButtonOverAVideoHasAHole)
{
    addFile("film.mp4", "film");
    put(region(QRect(96, 50, 304, 200), video("film.mp4", "50", "123")));
    show();
    QRect hole;
    viewer()->GetHideRect(hole);
    EXPECT_EQ(hole, QRect(96 + 92, 50 + 169, 120, 31));
    kit::shot("signage_video_dial");
}

TEST_F(FrameDraw, VideoPausesInACall)
{
    addFile("film.mp4", "film");
    put(region(QRect(0, 0, 800, 480), video("film.mp4", "50")));
    show(NDECK_WINDOW_TALK);
    ASSERT_NE(viewer(), nullptr);
    EXPECT_FALSE(viewer()->pixmap().isNull());
    const QImage pause(hostPath("/phone/resource/theme/default/bmp/misc/video_pause.jpg"));
    EXPECT_EQ(pixel(20, 20), pause.pixel(20, 20));
    EXPECT_TRUE(viewer()->hasScaledContents());
    kit::shot("signage_pause");
}

TEST_F(FrameDraw, VideoGoesOnInACallWhereItMay)
{
    set("bPlayVideoInTalk", 1);
    addFile("film.mp4", "film");
    put(region(QRect(0, 0, 800, 480), video("film.mp4", "50")));
    show(NDECK_WINDOW_TALK);
    EXPECT_TRUE(viewer()->pixmap().isNull());
    EXPECT_EQ(pixel(20, 20), qRgb(0, 0, 0));
}

TEST_F(FrameDraw, ResizeMovesWhatThePanelsHold)
{
    addFile("red.png", picture(Qt::red));
    put(region(QRect(100, 100, 400, 200), image("red.png", "50", "123")));
    QWidget home;
    home.resize(800, 480);
    home.show();
    showIn(home, QRect(0, 0, 800, 480));
    frame().SetRectRate(0.5f);
    mark();
    frame().resize(400, 240);
    kit::settle();
    EXPECT_TRUE(traced("nDeckPanel::eventFilter fRcRate(0.50)"));
    EXPECT_EQ(panel()->geometry(), QRect(50, 50, 200, 100));
    EXPECT_EQ(panel()->GetContent()->geometry(), QRect(0, 0, 200, 100));
    EXPECT_EQ(panel()->GetDialButton()->geometry(), QRect(QPoint(40, 69), QPoint(159, 99)));
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, ResizeInACallStopsTheVideoAndShowsThePausePicture)
{
    addFile("film.mp4", "film");
    put(region(QRect(0, 0, 800, 480), video("film.mp4", "50")));
    QWidget home;
    home.resize(800, 480);
    home.show();
    showIn(home, QRect(0, 0, 800, 480));
    EXPECT_TRUE(viewer()->pixmap().isNull());
    frame().SetNDeckType(NDECK_WINDOW_TALK);
    frame().SetRectRate(0.5f);
    frame().resize(400, 240);
    kit::settle();
    EXPECT_FALSE(viewer()->pixmap().isNull());
    frame().SetNDeckType(NDECK_WINDOW_IDLE);
    frame().SetRectRate(1.0f);
    frame().resize(800, 480);
    kit::settle();
    EXPECT_TRUE(viewer()->pixmap().isNull());
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, TextIsScaledWithItsPanel)
{
    put(region(text("hello", "50")));
    QWidget home;
    home.resize(800, 480);
    home.show();
    showIn(home, QRect(0, 0, 800, 480));
    auto* view = frame().findChild<QWebView*>();
    ASSERT_NE(view, nullptr);
    EXPECT_DOUBLE_EQ(view->zoomFactor(), 1.0);
    frame().SetRectRate(0.5f);
    frame().resize(400, 240);
    kit::settle();
    EXPECT_EQ(view->geometry(), QRect(0, 0, 400, 240));
    EXPECT_DOUBLE_EQ(view->zoomFactor(), 0.5);
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(FrameDraw, PictureThatComesBackToThePoolIsEmpty)
{
    addFile("red.png", picture(Qt::red));
    put(region(image("red.png", "5")));
    show();
    auto* label = qobject_cast<QLabel*>(panel()->GetContent());
    ASSERT_NE(label, nullptr);
    EXPECT_FALSE(label->pixmap().isNull());
    frame().ClearPannels();
    EXPECT_TRUE(label->pixmap().isNull());
    EXPECT_FALSE(label->isVisible());
    EXPECT_EQ(label->parentWidget(), nullptr);
}
