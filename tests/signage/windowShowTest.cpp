// The windows that the show lives in, and what ends it.
#include "signage/nDeckVideoManager.h"
#include "tests/kit/eventCounter.h"
#include "tests/signage/displayFixture.h"
#include <QApplication>
#include <QFocusEvent>
#include <QResizeEvent>

class WindowShow : public DisplayTest
{
protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        addFile("red.png", picture(Qt::red));
        addLayout("a.xml", layout(region(QRect(100, 100, 300, 200), image("red.png", "500", "123"))));
        takeUp();
    }
    static QWidget* newWindow()
    {
        auto* window = new QWidget;
        window->setGeometry(0, 0, 800, 480);
        window->show();
        window->activateWindow();
        kit::settle();
        return window;
    }
    static void showIn(QWidget* parent, const QRect& rect, E_NDECKWINDOW_TYPE type = NDECK_WINDOW_IDLE)
    {
        EXPECT_TRUE(nDeckWindowDisplay(1, type, parent, rect));
        kit::settle();
    }
};

TEST_F(WindowShow, FillsTheScreen)
{
    show();
    EXPECT_EQ(window().objectName(), "nDeckWindow");
    EXPECT_EQ(window().geometry(), QRect(0, 0, 800, 480));
    EXPECT_TRUE(window().windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(frame().objectName(), "frmNdeckFrame");
    EXPECT_EQ(frame().frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame().frameShadow(), QFrame::Raised);
    EXPECT_EQ(frame().parentWidget(), &window());
    EXPECT_EQ(frame().geometry(), QRect(0, 0, 800, 480));
    kit::shot("signage_window");
}

TEST_F(WindowShow, AnyKeyEndsAnIdleShow)
{
    show(NDECK_WINDOW_IDLE);
    kit::key(Qt::Key_5);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(WindowShow, AnyKeyEndsThePageAndFreesTheSaver)
{
    mark();
    show(NDECK_WINDOW_PAGE);
    EXPECT_EQ(logged("saver"), QStringList{"register 5 0"});
    mark();
    kit::key(Qt::Key_Left);
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(logged("saver"), QStringList({"unregister 5 0", "unregister 7 0"}));
}

TEST_F(WindowShow, ReleaseOfTheKeyThatOpenedItDoesNotEndIt)
{
    show(NDECK_WINDOW_PAGE);
    kit::keyRelease(Qt::Key_Return);
    EXPECT_TRUE(window().isVisible());
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(WindowShow, KeysDoNothingDuringACall)
{
    show(NDECK_WINDOW_TALK);
    kit::key(Qt::Key_5);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(WindowShow, PressOutsideAButtonEndsAnIdleShow)
{
    show(NDECK_WINDOW_IDLE);
    kit::press(QPoint(700, 400));
    EXPECT_FALSE(window().isVisible());
    kit::release(QPoint(700, 400));
}

TEST_F(WindowShow, PressThatEndsAnIdleShowGoesNoFurther)
{
    EventCounter counter(QEvent::MouseButtonPress);
    show(NDECK_WINDOW_PAGE);
    panels()[0]->GetContent()->installEventFilter(&counter);
    kit::tap(QPoint(150, 150));
    EXPECT_EQ(counter.count, 1);
    show(NDECK_WINDOW_IDLE);
    kit::press(QPoint(250, 150));
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(counter.count, 1);
    kit::release(QPoint(250, 150));
}

TEST_F(WindowShow, PressOnAButtonDoesNotEndAnIdleShow)
{
    show(NDECK_WINDOW_IDLE);
    kit::press(QPoint(250, 290));
    EXPECT_TRUE(window().isVisible());
    kit::release(QPoint(250, 290));
}

TEST_F(WindowShow, PressDoesNotEndThePage)
{
    show(NDECK_WINDOW_PAGE);
    kit::tap(QPoint(700, 400));
    EXPECT_TRUE(window().isVisible());
}

TEST_F(WindowShow, ScreenSaverEndsAnIdleShowOnly)
{
    show(NDECK_WINDOW_PAGE);
    window().updateScreenSaver();
    EXPECT_TRUE(window().isVisible());
    show(NDECK_WINDOW_IDLE);
    window().updateScreenSaver();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(WindowShow, AnotherWindowEndsIt)
{
    mark();
    show(NDECK_WINDOW_PAGE);
    EXPECT_TRUE(traced("-----nDeckWindow installEventFilter----------"));
    EXPECT_TRUE(traced("-----nDeckFrame installEventFilter----------"));
    EXPECT_TRUE(traced("-----nDeckPanel installEventFilter----------"));
    mark();
    QWidget* other = newWindow();
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(frame().isVisible());
    EXPECT_EQ(display().IsShowLayout(), 0);
    EXPECT_TRUE(traced("-----nDeckWindow removeEventFilter----------"));
    EXPECT_EQ(frame().parentWidget(), nullptr);
    EXPECT_TRUE(logged("saver").contains("unregister 5 0"));
    delete other;
}

TEST_F(WindowShow, FrameThatIsToldOfItsOwnWindowHides)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(0, 0, 800, 480));
    mark();
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&frame(), &activate);
    EXPECT_TRUE(traced("-----nDeckPanel installEventFilter----------"));
    QEvent deactivate(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&frame(), &deactivate);
    EXPECT_FALSE(frame().isVisible());
    EXPECT_EQ(display().IsShowLayout(), 0);
    EXPECT_TRUE(traced("-----nDeckFrame removeEventFilter----------"));
    EXPECT_TRUE(traced("-----nDeckPanel removeEventFilter----------"));
    mark();
    QResizeEvent resize(QSize(150, 100), QSize(300, 200));
    QCoreApplication::sendEvent(panels()[0], &resize);
    EXPECT_TRUE(traced("nDeckPanel::eventFilter fRcRate(1.00)")) << "it still lays out what it holds";
}

TEST_F(WindowShow, HiddenShowIsDrawnAnewWhenItComesBack)
{
    show();
    nDeckWindowDisplay(0, NDECK_WINDOW_PAGE, nullptr, kFull);
    kit::settle();
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(frame().isVisible());
    addFile("blue.png", picture(Qt::blue));
    m_frame.layouts.clear();
    addLayout("b.xml", layout(region(image("blue.png", "500"))));
    takeUp();
    mark();
    show();
    EXPECT_TRUE(traced("bIsRefreshFrame = (1) bIsShowed = (1)"));
    EXPECT_EQ(panels().size(), 1);
    EXPECT_EQ(pixel(300, 240), qRgb(0, 0, 255));
}

TEST_F(WindowShow, ShownAgainWhileItShowsItIsLeftAlone)
{
    show();
    nDeckPanel* const panel = panels().value(0);
    mark();
    show();
    EXPECT_TRUE(traced("bIsRefreshFrame = (0) bIsShowed = (1)"));
    EXPECT_EQ(panels(), QList<nDeckPanel*>{panel});
}

TEST_F(WindowShow, FocusInItsWindowBringsTheFrameBackToIt)
{
    show(NDECK_WINDOW_IDLE);
    frame().SetNDeckType(NDECK_WINDOW_TALK);
    frame().hide();
    m_frame.layouts.clear();
    addFile("blue.png", picture(Qt::blue));
    addLayout("b.xml", layout(region(image("blue.png", "500"))));
    takeUp();
    QFocusEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(&window(), &focus);
    EXPECT_TRUE(frame().isVisible());
    EXPECT_EQ(frame().GetNDeckType(), NDECK_WINDOW_IDLE);
    EXPECT_EQ(frame().geometry(), QRect(0, 0, 800, 480));
    EXPECT_EQ(pixel(300, 240), qRgb(0, 0, 255));
}

TEST_F(WindowShow, FocusInItsWindowTakesTheFrameOutOfAnother)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    show(NDECK_WINDOW_IDLE);
    frame().SetFrameParent(home.get(), QRect());
    QFocusEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(&window(), &focus);
    EXPECT_EQ(frame().parentWidget(), &window());
    EXPECT_TRUE(frame().isVisible());
    EXPECT_EQ(pixel(250, 200), qRgb(255, 0, 0));
}

TEST_F(WindowShow, WindowOfTheHostKeepsItsFirstRectangle)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    EXPECT_EQ(frame().geometry(), QRect(10, 20, 400, 240));
    showIn(home.get(), QRect(50, 60, 200, 120));
    EXPECT_EQ(frame().geometry(), QRect(10, 20, 400, 240));
    EXPECT_EQ(frame().GetnDeckWidgetFromParent(home.get()), QRect(10, 20, 400, 240));
    kit::shot("signage_in_home");
}

TEST_F(WindowShow, HidingInAWindowOfTheHostsHidesTheFrame)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    mark();
    EXPECT_TRUE(nDeckWindowDisplay(0, NDECK_WINDOW_IDLE, home.get(), QRect(10, 20, 400, 240)));
    EXPECT_FALSE(frame().isVisible());
    EXPECT_EQ(display().IsShowLayout(), 0);
    EXPECT_TRUE(traced("bIsRefreshFrame = (0) bIsShowed = (0)"));
    EXPECT_TRUE(traced("PausePlayVideo!"));
}

TEST_F(WindowShow, FrameHidesWhenItsWindowIsCovered)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    home->setFocusPolicy(Qt::StrongFocus);
    std::unique_ptr<QWidget> other(newWindow());
    EXPECT_FALSE(frame().isVisible());
    EXPECT_EQ(frame().parentWidget(), nullptr);
}

TEST_F(WindowShow, FrameMovesToTheNextKnownWindowOnTop)
{
    std::unique_ptr<QWidget> call(newWindow());
    showIn(call.get(), QRect(0, 0, 200, 120));
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    EXPECT_EQ(frame().parentWidget(), home.get());
    call->raise();
    call->activateWindow();
    kit::settle();
    EXPECT_EQ(frame().parentWidget(), call.get());
    EXPECT_EQ(frame().geometry(), QRect(0, 0, 200, 120));
    EXPECT_TRUE(frame().isVisible());
    EXPECT_EQ(display().IsShowLayout(), 1);
    ASSERT_EQ(panels().size(), 1);
    EXPECT_EQ(panels()[0]->geometry(), QRect(25, 25, 75, 50));
    EXPECT_EQ(pixel(40, 40), qRgb(255, 0, 0));
}

TEST_F(WindowShow, ClosedWindowIsForgotten)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    home->close();
    kit::settle();
    EXPECT_FALSE(frame().FindnDeckWidgetFromParent(home.get()));
    EXPECT_EQ(frame().parentWidget(), nullptr);
    EXPECT_FALSE(frame().isVisible());
}

TEST_F(WindowShow, DeletedWindowLeavesTheFrameWhole)
{
    QWidget* home = newWindow();
    showIn(home, QRect(10, 20, 400, 240));
    delete home;
    kit::settle();
    EXPECT_EQ(frame().parentWidget(), nullptr);
    show();
    EXPECT_EQ(pixel(250, 200), qRgb(255, 0, 0));
}

TEST_F(WindowShow, FrameWithoutAParentIsHidden)
{
    show();
    frame().SetFrameParent(nullptr, QRect(0, 0, 800, 480));
    EXPECT_EQ(frame().parentWidget(), nullptr);
    EXPECT_TRUE(frame().size().isEmpty());
    EXPECT_FALSE(frame().isVisible());
}

TEST_F(WindowShow, VideoStartsWithTheFrameAndPausesWithIt)
{
    show();
    mark();
    kit::stepTime(600);
    nDeckWindowDisplay(0, NDECK_WINDOW_PAGE, nullptr, kFull);
    EXPECT_TRUE(traced("PausePlayVideo!"));
    show();
    mark();
    kit::stepTime(600);
    EXPECT_TRUE(logged("trace").filter("Play Region(").size() == 1) << qPrintable(logged("trace").join("\n"));
}

TEST_F(WindowShow, FullWindowBringsTheRateBackToOne)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(0, 0, 400, 240));
    EXPECT_FLOAT_EQ(frame().GetRectRate(), 0.5f);
    show();
    EXPECT_FLOAT_EQ(frame().GetRectRate(), 1.0f);
    EXPECT_EQ(panels()[0]->geometry(), QRect(100, 100, 300, 200));
}

TEST_F(WindowShow, FrameThatMovesWhileItIsHiddenIsDrawnAnew)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    frame().hide();
    m_frame.layouts.clear();
    addFile("blue.png", picture(Qt::blue));
    addLayout("b.xml", layout(region(image("blue.png", "500"))));
    takeUp();
    frame().SetFocusnDeckWidgetParent();
    EXPECT_TRUE(frame().isVisible());
    EXPECT_EQ(panels().size(), 1);
    EXPECT_EQ(pixel(200, 120), qRgb(0, 0, 255));
}

TEST_F(WindowShow, FrameOfAnUnknownDisplayThatMovesShowsTheDefaultPicture)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    frame().hide();
    GetNDeckRegister().SetRegisterStatus(0);
    frame().SetFocusnDeckWidgetParent();
    EXPECT_TRUE(frame().isVisible());
    EXPECT_TRUE(panels().isEmpty());
    EXPECT_EQ(background(), NDECK_DEFAULT_PICTURE);
}

TEST_F(WindowShow, ShownAgainInACallItsVideoStartsAgainWhereTheCallIsOnTop)
{
    std::unique_ptr<QWidget> call(newWindow());
    const QRect place(10, 20, 400, 240);
    showIn(call.get(), place, NDECK_WINDOW_TALK);
    kit::stepTime(600);
    const auto starts = [&](QWidget* parent, E_NDECKWINDOW_TYPE type) {
        mark();
        showIn(parent, place, type);
        kit::stepTime(600);
        return int(logged("trace").filter("Play Region(").size());
    };
    EXPECT_EQ(starts(call.get(), NDECK_WINDOW_TALK), 1);
    EXPECT_EQ(starts(call.get(), NDECK_WINDOW_IDLE), 0);
}

TEST_F(WindowShow, WindowThatGoesTakesOnlyItsOwnFrameAlong)
{
    std::unique_ptr<QWidget> home(newWindow());
    showIn(home.get(), QRect(10, 20, 400, 240));
    show(NDECK_WINDOW_IDLE);
    window().hide();
    EXPECT_TRUE(frame().isHidden());
    show(NDECK_WINDOW_IDLE);
    frame().SetFrameParent(home.get(), QRect());
    frame().show();
    window().hide();
    EXPECT_FALSE(frame().isHidden());
    EXPECT_EQ(frame().parentWidget(), home.get());
}
