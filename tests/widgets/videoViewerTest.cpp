#include "support/host/video.h"
#include "tests/widgets/screenPage.h"

namespace {

class VideoViewer : public PhoneTest
{
protected:
    VideoViewer()
    {
        viewer = page.add<QVideoViewer>(QRect(100, 50, 400, 300));
        frame = QImage(40, 30, QImage::Format_RGB32);
        frame.fill(Qt::red);
        page.open();
        behind = kit::screen().pixel(700, 200);
    }
    ScreenPage page;
    QVideoViewer* viewer;
    QImage frame;
    QRgb behind;
    const QRgb red = 0xffff0000;
    const QRgb black = 0xff000000;
};

TEST_F(VideoViewer, FrameIsPaintedAtTheVideoRectangle)
{
    viewer->SetVideoRect(QRect(50, 50, 200, 100), 0);
    viewer->SetFrame(frame);
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 150, 100, red));
    EXPECT_TRUE(isColour(screen, 349, 199, red));
    EXPECT_TRUE(isColour(screen, 149, 100, behind));
    EXPECT_TRUE(isColour(screen, 350, 199, behind));
    EXPECT_TRUE(isColour(screen, 150, 200, behind));
}

TEST_F(VideoViewer, WithoutARectangleTheVideoFillsTheViewer)
{
    QRect rect;
    viewer->GetVideoRect(rect);
    EXPECT_EQ(rect, QRect(100, 50, 400, 300)) << "on the screen";
    viewer->SetFrame(frame);
    EXPECT_TRUE(isColour(kit::screen(), 100, 50, red));
    EXPECT_TRUE(isColour(kit::screen(), 499, 349, red));
}

TEST_F(VideoViewer, HideRectangleIsLeftOut)
{
    viewer->SetHideRect(QRect(200, 250, 120, 31), 0, 1);
    viewer->SetFrame(frame);
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 200, 250, behind));
    EXPECT_TRUE(isColour(screen, 319, 280, behind));
    EXPECT_TRUE(isColour(screen, 199, 250, red));
    EXPECT_TRUE(isColour(screen, 320, 280, red));
    EXPECT_TRUE(isColour(screen, 200, 281, red));
    QRect rect;
    viewer->GetHideRect(rect);
    EXPECT_EQ(rect, QRect(200, 250, 120, 31));
}

TEST_F(VideoViewer, RectanglesAreThoseOfTheScreenOrOfTheViewer)
{
    QRect rect;
    viewer->SetVideoRect(QRect(150, 100, 200, 100), 1);
    viewer->GetVideoRect(rect);
    EXPECT_EQ(rect, QRect(150, 100, 200, 100));
    viewer->SetFrame(frame);
    EXPECT_TRUE(isColour(kit::screen(), 150, 100, red));
    EXPECT_TRUE(isColour(kit::screen(), 149, 100, behind));
    viewer->SetVideoRect(QRect(50, 50, 200, 100), 0);
    viewer->GetVideoRect(rect);
    EXPECT_EQ(rect, QRect(150, 100, 200, 100));
    viewer->SetHideRect(QRect(100, 100, 20, 20), 0, 0);
    viewer->GetHideRect(rect);
    EXPECT_EQ(rect, QRect(200, 150, 20, 20));
    EXPECT_TRUE(isColour(kit::screen(), 200, 150, behind));
}

TEST_F(VideoViewer, AnotherSizeOfTheViewerEndsTheRectangle)
{
    QRect rect;
    viewer->SetVideoRect(QRect(150, 100, 200, 100), 1);
    viewer->resize(200, 150);
    viewer->GetVideoRect(rect);
    EXPECT_EQ(rect, QRect(100, 50, 200, 150));
    viewer->SetFrame(frame);
    EXPECT_TRUE(isColour(kit::screen(), 100, 50, red));
    EXPECT_TRUE(isColour(kit::screen(), 299, 199, red));
}

TEST_F(VideoViewer, ShownHideRectangleIsPaintedAgain)
{
    viewer->SetFrame(frame);
    viewer->SetHideRect(QRect(100, 200, 120, 31), 0, 1);
    viewer->SetHideRect(QRect(100, 200, 120, 31), 1, 1);
    EXPECT_TRUE(isColour(kit::screen(), 210, 260, red));
    QRect rect(1, 2, 3, 4);
    viewer->GetHideRect(rect);
    EXPECT_TRUE(rect.isEmpty());
}

TEST_F(VideoViewer, BackgroundIsBlackUntilAFrameComes)
{
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, black));
    viewer->SetFrame(frame);
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, red));
    viewer->ShowBackground(1);
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, black));
    viewer->ShowBackground(0);
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, red)) << "the last frame is still there";
}

TEST_F(VideoViewer, HiddenVideoShowsTheLabel)
{
    QPixmap picture(400, 300);
    picture.fill(Qt::green);
    viewer->setPixmap(picture);
    viewer->SetFrame(frame);
    viewer->ShowVideoViewer(0);
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, 0xff00ff00));
    viewer->ShowVideoViewer(1);
    EXPECT_TRUE(isColour(kit::screen(), 300, 200, red));
}

TEST_F(VideoViewer, ViewerWithModeAndFlagsIsAWindowOfItsOwn)
{
    QVideoViewer own(2, nullptr, Qt::FramelessWindowHint);
    own.setGeometry(0, 0, 800, 480);
    own.SetFrameStatus(1);
    own.SetFrame(frame);
    own.show();
    kit::settle();
    EXPECT_TRUE(isColour(kit::screen(), 790, 470, red));
}

} // namespace
