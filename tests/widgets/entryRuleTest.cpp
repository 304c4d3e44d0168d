// What comes onto the screen by itself is usable, whatever waits for an answer there.
#include "host/screen/windowStack.h"
#include "support/host/box.h"
#include "support/host/screen.h"
#include "tests/widgets/screenPage.h"
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <functional>

namespace {

class Entry : public PhoneTest
{
protected:
    Entry()
    {
        button = page.add<QPushButton>(QRect(200, 100, 100, 36));
        edit = page.add<QLineEdit>(QRect(200, 200, 100, 36));
        QObject::connect(button, &QPushButton::clicked, button, [this] { ++clicks; });
        low.open();
    }
    // Puts a question up, does something while it is there, and gives the answer; -1 while there is none.
    template <class Action>
    int ask(Action action)
    {
        QTimer::singleShot(0, &low, [&] {
            kit::settle();
            action();
        });
        return xMessageBox("Note", "Reset to factory?", BOX_QUESTION, &low, -1);
    }
    // An open list of a combo box on the lower window.
    QComboBox* openList()
    {
        QComboBox* box = low.add<QComboBox>(QRect(200, 60, 200, 36));
        box->addItems({"One", "Two"});
        box->show();
        box->showPopup();
        kit::settle();
        return box;
    }
    void expectUsable()
    {
        kit::settle();
        ASSERT_EQ(kit::windows().value(0), &page);
        EXPECT_EQ(QWSServer::clientWindows().value(0), &page);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(page.isActiveWindow());
        const int before = clicks;
        kit::tap(button);
        EXPECT_EQ(clicks, before + 1) << "touch";
        edit->setFocus();
        kit::type("a");
        EXPECT_EQ(edit->text(), "a") << "keys";
    }

    ScreenPage low;
    ScreenPage page;
    QPushButton* button;
    QLineEdit* edit;
    int clicks = 0;
};

// Lets itself be closed by nobody.
class StubbornBox : public QDialog
{
public:
    using QDialog::QDialog;
    void reject() override {}
};

class ShowCounter : public QObject
{
public:
    int shows = 0;
    bool eventFilter(QObject*, QEvent* event) override
    {
        shows += event->type() == QEvent::Show;
        return false;
    }
};

} // namespace

TEST_F(Entry, AWindowOverABoxIsUsableAndTheBoxIsAnsweredAsCancelled)
{
    EXPECT_EQ(ask([&] { screenBringUp(&page); }), 0);
    expectUsable();
}

TEST_F(Entry, TheWindowIsUsableBeforeTheCallerOfTheBoxIsDone)
{
    ask([&] {
        screenBringUp(&page);
        expectUsable();
    });
}

TEST_F(Entry, AWindowThatIsOnlyShownFollowsTheSameRule)
{
    EXPECT_EQ(ask([&] { page.show(); }), 0);
    expectUsable();
}

TEST_F(Entry, AWindowThatIsCoveredByThePageOfTheBoxFollowsTheSameRule)
{
    page.open();
    low.raise();
    EXPECT_EQ(ask([&] { screenBringUp(&page); }), 0);
    expectUsable();
}

TEST_F(Entry, BoxesUponEachOtherAreAllCancelled)
{
    int inner = -1;
    EXPECT_EQ(ask([&] { inner = ask([&] { screenBringUp(&page); }); }), 0);
    EXPECT_EQ(inner, 0);
    expectUsable();
}

TEST_F(Entry, ABoxLeavesTheBoxBelowItToBeAnswered)
{
    int inner = -1;
    const int outer = ask([&] {
        QWidget* below = QApplication::activeModalWidget();
        inner = ask([&] { kit::key(Qt::Key_Escape); });
        EXPECT_TRUE(below->isVisible());
        kit::settle();
        kit::key(Qt::Key_Return);
    });
    EXPECT_EQ(inner, 0);
    EXPECT_EQ(outer, 1);
}

TEST_F(Entry, AWindowOfTheBoxItselfDoesNotCancelIt)
{
    ScreenPage* own = nullptr;
    EXPECT_EQ(ask([&] {
                  own = new ScreenPage(QApplication::activeModalWidget());
                  own->open();
                  own->hide();
                  kit::settle();
                  kit::key(Qt::Key_Return);
              }),
              1);
}

TEST_F(Entry, ABoxThatDoesNotLetItselfBeCancelledDoesNotKeepThePhone)
{
    StubbornBox box(&low);
    box.open();
    kit::settle();
    ASSERT_EQ(QApplication::activeModalWidget(), &box);
    screenBringUp(&page);
    expectUsable();
    EXPECT_FALSE(box.isVisible());
}

TEST_F(Entry, APageThatClosesWhenItsBoxIsAnsweredIsThereWhenItWasOpenedMeanwhile)
{
    page.open();
    QTimer::singleShot(0, &page, [&] { screenBringUp(&page); });
    xMessageBox("Warning", "Reboot system?", BOX_QUESTION, &page, -1);
    page.accept();
    expectUsable();
}

TEST_F(Entry, OfTwoPagesOpenedMeanwhileTheLastIsTheOneThatComesBack)
{
    ScreenPage first;
    page.open();
    QTimer::singleShot(0, &page, [&] {
        screenBringUp(&first);
        screenBringUp(&page);
    });
    xMessageBox("Warning", "Reboot system?", BOX_QUESTION, &page, -1);
    page.accept();
    expectUsable();
}

// A caller may go on by an event loop of its own.
TEST_F(Entry, APageComesBackWhenTheCallersOfAllBoxesAreDone)
{
    page.open();
    QTimer::singleShot(0, &page, [&] {
        ask([&] { screenBringUp(&page); });
        kit::settle();
    });
    xMessageBox("Warning", "Reboot system?", BOX_QUESTION, &page, -1);
    page.accept();
    expectUsable();
}

TEST_F(Entry, APageThatAPersonClosesBeforeTheCallerIsDoneStaysClosed)
{
    QObject::connect(button, &QPushButton::clicked, &page, &QDialog::reject);
    const std::function<void()> ways[] = {[] { kit::key(Qt::Key_Escape); }, [this] { kit::tap(button); }};
    for (const std::function<void()>& close : ways) {
        ask([&] {
            screenBringUp(&page);
            kit::settle();
            close();
            EXPECT_FALSE(page.isVisible());
        });
        kit::settle();
        EXPECT_FALSE(page.isVisible());
    }
}

TEST_F(Entry, APageThatAPersonClosesAfterwardsStaysClosed)
{
    ask([&] { screenBringUp(&page); });
    kit::settle();
    kit::key(Qt::Key_Escape);
    kit::settle();
    EXPECT_FALSE(page.isVisible());
    ask([&] { kit::key(Qt::Key_Escape); });
    kit::settle();
    EXPECT_FALSE(page.isVisible());
}

TEST_F(Entry, AnOpenListIsClosed)
{
    openList();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    screenBringUp(&page);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    expectUsable();
}

// The toolkit closes lists itself under what is newly shown, and only there.
TEST_F(Entry, AnOpenListIsClosedByAWindowThatWasOnlyCovered)
{
    page.open();
    low.raise();
    kit::settle();
    openList();
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    screenBringUp(&page);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    expectUsable();
}

TEST_F(Entry, AnOpenListStaysUnderAWindowOfItsOwn)
{
    QComboBox* box = openList();
    QWidget* list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    QWidget own(list, Qt::Tool | Qt::FramelessWindowHint);
    own.show();
    kit::settle();
    EXPECT_EQ(QApplication::activePopupWidget(), list);
    EXPECT_TRUE(own.isVisible());
    box->hidePopup();
}

TEST_F(Entry, AnOpenListIsClosedByABoxToo)
{
    QComboBox* box = low.add<QComboBox>(QRect(200, 60, 200, 36));
    box->addItems({"One", "Two"});
    box->showPopup();
    kit::settle();
    EXPECT_EQ(ask([&] { kit::key(Qt::Key_Return); }), 1);
}

TEST_F(Entry, ACoveredWindowIsRaisedAndShownNoSecondTime)
{
    ShowCounter counter;
    page.open();
    low.raise();
    kit::settle();
    page.installEventFilter(&counter);
    screenBringUp(&page);
    expectUsable();
    EXPECT_EQ(counter.shows, 0);
}

TEST_F(Entry, AHiddenWindowIsShownOverTheOthersAgain)
{
    page.open();
    page.hide();
    ScreenPage last;
    last.open();
    screenBringUp(&page);
    expectUsable();
}

TEST_F(Entry, AWindowThatComesUnderTheOthersTakesNothingFromThem)
{
    ScreenPage home;
    EXPECT_EQ(ask([&] {
                  windowStack::instance().showUnder(&home);
                  kit::settle();
                  EXPECT_TRUE(home.isVisible());
                  EXPECT_EQ(QWSServer::clientWindows().last(), &home);
                  kit::key(Qt::Key_Return);
              }),
              1);
    kit::settle();
    EXPECT_TRUE(low.isActiveWindow());
    EXPECT_FALSE(home.isActiveWindow());
}

TEST_F(Entry, TheKeysStayWithTheWindowThatIsSeen)
{
    page.open();
    low.activateWindow();
    expectUsable();
}

TEST_F(Entry, BoxesUponEachOtherEndAtEight)
{
    int asked = 0;
    int shown = 0;
    std::function<void()> more = [&] {
        if (asked == 20) {
            shown = int(QWSServer::clientWindows().size()) - 1;
            for (int i = 0; i < shown; ++i) {
                kit::settle();
                kit::key(Qt::Key_Escape);
            }
            return;
        }
        ++asked;
        QTimer::singleShot(0, &low, more);
        EXPECT_EQ(xMessageBox("Note", "Reboot device?", BOX_QUESTION, &low, -1), 0);
    };
    more();
    kit::settle();
    EXPECT_EQ(shown, 8);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}
