#include "host/screen/windowStack.h"
#include "support/host/screen.h"
#include "tests/widgets/screenPage.h"
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace {

class Windows : public PhoneTest
{
protected:
    void paint(QWidget& page, QRgb colour)
    {
        QPalette palette = page.palette();
        palette.setColor(QPalette::Window, QColor(colour));
        page.setPalette(palette);
    }
    const QRgb red = 0xffff0000;
    const QRgb green = 0xff00ff00;
    ScreenPage low;
    ScreenPage high;
};

TEST_F(Windows, AreListedTopmostFirst)
{
    low.open();
    high.open();
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&high, &low}));
}

TEST_F(Windows, HiddenOnesAreNotListed)
{
    low.open();
    high.open();
    high.hide();
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&low}));
    high.show();
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&high, &low}));
}

TEST_F(Windows, RaisedWindowComesToTheTop)
{
    low.open();
    high.open();
    low.raise();
    EXPECT_EQ(QWSServer::clientWindows().first(), &low);
}

TEST_F(Windows, DeletedWindowIsForgotten)
{
    low.open();
    ScreenPage* gone = new ScreenPage;
    gone->open();
    delete gone;
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&low}));
}

TEST_F(Windows, ChildWidgetsAreNoWindows)
{
    low.add<QPushButton>(QRect(0, 0, 100, 36));
    low.open();
    EXPECT_EQ(QWSServer::clientWindows().size(), 1);
}

TEST_F(Windows, WindowBelowBecomesActiveWhenTheTopOneGoes)
{
    low.open();
    high.open();
    EXPECT_TRUE(high.isActiveWindow());
    high.reject();
    kit::settle();
    EXPECT_TRUE(low.isActiveWindow());
}

TEST_F(Windows, WindowBelowBecomesActiveWhenTheTopOneIsDeleted)
{
    low.open();
    ScreenPage* gone = new ScreenPage;
    gone->open();
    delete gone;
    kit::settle();
    EXPECT_TRUE(low.isActiveWindow());
}

TEST_F(Windows, PageThatOpensAnotherWhileItClosesDoesNotWakeTheOneBelow)
{
    struct Counter : QObject
    {
        int activations = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            activations += event->type() == QEvent::WindowActivate;
            return false;
        }
    } counter;
    ScreenPage next;
    low.open();
    high.open();
    low.installEventFilter(&counter);
    high.hide();
    next.show();
    kit::settle();
    EXPECT_EQ(counter.activations, 0);
    EXPECT_TRUE(next.isActiveWindow());
}

TEST_F(Windows, ThatTakeNoKeysAreSkippedWhenTheTopOneGoes)
{
    for (Qt::WindowType flag : {Qt::WindowDoesNotAcceptFocus, Qt::WindowTransparentForInput}) {
        QWidget keyless(nullptr, Qt::Tool | Qt::FramelessWindowHint | flag);
        low.open();
        high.open();
        keyless.show();
        kit::settle();
        high.hide();
        kit::settle();
        ASSERT_EQ(QWSServer::clientWindows().value(0), &keyless);
        EXPECT_TRUE(low.isActiveWindow()) << flag;
    }
}

TEST_F(Windows, FocusOfThePageBelowIsKept)
{
    QLineEdit* first = low.add<QLineEdit>(QRect(200, 100, 200, 36));
    QLineEdit* second = low.add<QLineEdit>(QRect(200, 150, 200, 36));
    low.open();
    second->setFocus();
    high.open();
    high.hide();
    kit::settle();
    EXPECT_TRUE(second->hasFocus());
    EXPECT_FALSE(first->hasFocus());
}

TEST_F(Windows, ScreenShowsTheTopmostWindow)
{
    paint(low, red);
    paint(high, green);
    low.open();
    high.open();
    EXPECT_TRUE(isColour(screenGrab(), 400, 240, green));
    high.hide();
    EXPECT_TRUE(isColour(screenGrab(), 400, 240, red));
}

TEST_F(Windows, ScreenShowsSmallWindowsOverThePageBelow)
{
    paint(low, red);
    paint(high, green);
    low.open();
    high.setGeometry(100, 100, 200, 100);
    high.open();
    const QImage screen = screenGrab();
    EXPECT_EQ(screen.size(), QSize(800, 480));
    EXPECT_TRUE(isColour(screen, 150, 150, green));
    EXPECT_TRUE(isColour(screen, 99, 150, red));
    EXPECT_TRUE(isColour(screen, 300, 150, red));
}

TEST_F(Windows, ScreenWithoutWindowsIsBlack)
{
    const QImage screen = screenGrab();
    EXPECT_EQ(screen.size(), QSize(800, 480));
    EXPECT_TRUE(isColour(screen, 400, 240, 0xff000000));
}

TEST_F(Windows, ScreenLeavesOutWhatAMaskCutsAway)
{
    paint(low, red);
    paint(high, green);
    low.open();
    high.setMask(QRegion(0, 0, 400, 480));
    high.open();
    EXPECT_TRUE(isColour(screenGrab(), 200, 240, green));
    EXPECT_TRUE(isColour(screenGrab(), 600, 240, red));
}

TEST_F(Windows, ScreenShowsThePageBelowATranslucentOne)
{
    paint(low, red);
    low.open();
    high.setAttribute(Qt::WA_TranslucentBackground);
    high.setAutoFillBackground(false);
    high.open();
    EXPECT_TRUE(isColour(screenGrab(), 400, 240, red));
}

TEST_F(Windows, TheOneThatIsSeenHasTheKeys)
{
    low.open();
    high.open();
    low.activateWindow();
    kit::settle();
    EXPECT_TRUE(high.isActiveWindow());
}

TEST_F(Windows, BoxThatDoesNotLetItselfBeCancelledMakesRoomForAPage)
{
    class StubbornBox : public QDialog
    {
        void reject() override {}
    } box;
    low.open();
    box.setModal(true);
    box.show();
    high.open();
    EXPECT_FALSE(box.isVisible());
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&high, &low}));
}

TEST_F(Windows, PageThatIsBroughtUpCancelsTheBoxUponIt)
{
    QDialog box;
    low.open();
    box.setModal(true);
    box.show();
    screenBringUp(&low);
    EXPECT_FALSE(box.isVisible());
    EXPECT_EQ(QWSServer::clientWindows(), QList<QWidget*>({&low}));
}

TEST_F(Windows, WindowOfABoxLeavesItUp)
{
    QDialog box;
    low.open();
    box.setModal(true);
    box.show();
    QDialog itsWindow(&box);
    itsWindow.show();
    EXPECT_TRUE(box.isVisible());
}

TEST_F(Windows, WindowOfAnOpenListLeavesItOpenAndAnyOtherClosesIt)
{
    low.open();
    QWidget list(&low, Qt::Popup);
    list.show();
    ASSERT_EQ(QApplication::activePopupWidget(), &list);
    QWidget itsWindow(&list, Qt::Tool); // the toolkit closes lists under others by itself
    itsWindow.show();
    EXPECT_TRUE(list.isVisible());
    QWidget another(&low, Qt::Tool);
    another.show();
    EXPECT_FALSE(list.isVisible());
}

TEST_F(Windows, PageThatAPersonClosedDoesNotComeAgainWhenTheBoxEnds)
{
    for (const bool byPerson : {false, true}) {
        QDialog box;
        low.open();
        box.setModal(true);
        box.show();
        high.open();
        if (byPerson)
            kit::key(Qt::Key_Down);
        high.hide();
        windowStack::instance().boxesEnded();
        kit::settle();
        EXPECT_EQ(high.isVisible(), !byPerson);
        high.hide();
    }
}

TEST_F(Windows, OpenListOfAComboBoxIsOnTheScreen)
{
    QComboBox* box = low.add<QComboBox>(QRect(200, 60, 200, 36));
    box->addItems({"One", "Two"});
    low.open();
    box->showPopup();
    kit::settle();
    EXPECT_TRUE(isColour(screenGrab(), 390, 115, look::kSelection));
    EXPECT_EQ(QWSServer::clientWindows().size(), 2);
    box->hidePopup();
    kit::settle();
    EXPECT_TRUE(low.isActiveWindow());
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(Windows, ClosedTouchInputDropsTouchesAndOpensAgain)
{
    QPushButton* button = low.add<QPushButton>(QRect(200, 100, 100, 36));
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
    low.open();
    QWSServer::closeMouse();
    EXPECT_FALSE(QWSServer::isMouseOpen());
    kit::tap(button);
    EXPECT_EQ(clicks, 0);
    kit::key(Qt::Key_Space);
    EXPECT_EQ(clicks, 1) << "keys still work";
    QWSServer::openMouse();
    EXPECT_TRUE(QWSServer::isMouseOpen());
    kit::tap(button);
    EXPECT_EQ(clicks, 2);
}

TEST_F(Windows, CursorIsHiddenAndShownOnce)
{
    QWSServer::setCursorVisible(false);
    QWSServer::setCursorVisible(false);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BlankCursor);
    QWSServer::setCursorVisible(true);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QWSServer::setCursorVisible(true);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
