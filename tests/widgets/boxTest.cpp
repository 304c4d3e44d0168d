#include "support/host/box.h"
#include "host/screen/windowStack.h"
#include "host/services/system/hostLog.h"
#include "support/host/language.h"
#include "tests/kit/kitTime.h"
#include "tests/widgets/screenPage.h"
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <ctime>

namespace {

class Box : public PhoneTest
{
protected:
    Box()
    {
        kit::holdClocks(true);
        edit = page.add<QLineEdit>(QRect(456, 195, 314, 36));
        page.open();
    }
    // Opens a box, does something while it is open, and gives its answer.
    template <class Action>
    int ask(int type, Action action, int timeoutMs = -1, const char* text = "Reboot system?")
    {
        QTimer::singleShot(0, &page, [&] {
            kit::settle();
            box = QApplication::activeModalWidget();
            if (box)
                action();
        });
        return xMessageBox("Warning", text, type, &page, timeoutMs);
    }
    QPushButton* button(const char* name) { return box->findChild<QPushButton*>(name); }

    ScreenPage page;
    QLineEdit* edit;
    QWidget* box = nullptr;
};

TEST_F(Box, QuestionHasYesAndNoAndTheirAnswers)
{
    EXPECT_EQ(ask(BOX_QUESTION,
                  [&] {
                      EXPECT_EQ(box->objectName(), "dlgMessageBox");
                      EXPECT_EQ(box->findChild<QLabel*>("labTitle")->text(), "Warning");
                      EXPECT_EQ(box->findChild<QLabel*>("labText")->text(), "Reboot system?");
                      EXPECT_EQ(button("btnYes")->text(), qTranslate("Yes"));
                      EXPECT_EQ(button("btnNo")->text(), qTranslate("No"));
                      EXPECT_EQ(button("btnOK"), nullptr);
                      kit::tap(button("btnYes"));
                  }),
              1);
    EXPECT_EQ(ask(BOX_QUESTION, [&] { kit::tap(button("btnNo")); }), 0);
}

TEST_F(Box, NoteHasOneButton)
{
    ask(BOX_NOTE, [&] {
        EXPECT_EQ(box->findChildren<QPushButton*>().size(), 1);
        EXPECT_EQ(button("btnOK")->text(), qTranslate("OK"));
        kit::tap(button("btnOK"));
    });
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Box, YesHasTheFocusAndReturnPressesIt)
{
    EXPECT_EQ(ask(BOX_QUESTION,
                  [&] {
                      EXPECT_TRUE(button("btnYes")->hasFocus());
                      kit::key(Qt::Key_Return);
                  }),
              1);
}

TEST_F(Box, EnterKeyPressesToo)
{
    EXPECT_EQ(ask(BOX_QUESTION, [&] { kit::key(Qt::Key_Enter, Qt::KeypadModifier); }), 1);
}

TEST_F(Box, ArrowsMoveBetweenTheButtons)
{
    EXPECT_EQ(ask(BOX_QUESTION,
                  [&] {
                      kit::key(Qt::Key_Right);
                      EXPECT_TRUE(button("btnNo")->hasFocus());
                      kit::key(Qt::Key_Right);
                      EXPECT_TRUE(button("btnYes")->hasFocus());
                      kit::key(Qt::Key_Left);
                      EXPECT_TRUE(button("btnNo")->hasFocus());
                      kit::key(Qt::Key_Up);
                      EXPECT_TRUE(button("btnYes")->hasFocus());
                      kit::key(Qt::Key_Down);
                      kit::key(Qt::Key_Return);
                  }),
              0);
}

TEST_F(Box, EscapeAndTheKeysOfBackAreNo)
{
    for (Qt::Key key : {Qt::Key_Escape, Qt::Key_Back, Qt::Key_F4}) {
        EXPECT_EQ(ask(BOX_QUESTION,
                      [&] {
                          kit::key(key);
                          EXPECT_FALSE(box->isVisible()) << key;
                          if (box->isVisible())
                              kit::tap(button("btnNo"));
                      }),
                  0);
    }
}

TEST_F(Box, TouchOutsideDoesNothing)
{
    EXPECT_EQ(ask(BOX_QUESTION,
                  [&] {
                      kit::tap(QPoint(600, 213));
                      kit::tap(QPoint(100, 460));
                      EXPECT_TRUE(box->isVisible());
                      EXPECT_TRUE(button("btnYes")->hasFocus());
                      kit::tap(button("btnYes"));
                  }),
              1);
    EXPECT_EQ(edit->text(), "");
}

TEST_F(Box, OtherKeysDoNothing)
{
    ask(BOX_QUESTION, [&] {
        kit::key(Qt::Key_F1);
        kit::padKey('1');
        EXPECT_TRUE(box->isVisible());
        kit::key(Qt::Key_Escape);
    });
    EXPECT_EQ(edit->text(), "");
}

TEST_F(Box, ClosesItselfAsNoWhenItsTimeIsOver)
{
    EXPECT_EQ(ask(
                  BOX_QUESTION,
                  [&] {
                      kit::stepTime(2900);
                      EXPECT_TRUE(box->isVisible());
                      kit::stepTime(200);
                      EXPECT_FALSE(box->isVisible());
                  },
                  3000),
              0);
}

// The same holds for whatever else is timed, or a busy machine would decide how tests end.
TEST_F(Box, TimeOfTheMachineIsNoTimeOfABoxsWhileClocksAreHeld)
{
    EXPECT_EQ(ask(
                  BOX_QUESTION,
                  [&] {
                      const clock_t begin = clock();
                      while (clock() - begin < CLOCKS_PER_SEC / 5)
                          kit::settle();
                      kit::stepTime(2900);
                      EXPECT_TRUE(box->isVisible());
                      kit::tap(button("btnYes"));
                  },
                  3000),
              1);
}

TEST_F(Box, WithNoTimeAtAllItClosesAsNoAtOnce)
{
    bool waits = false;
    EXPECT_EQ(ask(
                  BOX_QUESTION,
                  [&] {
                      waits = true;
                      kit::tap(button("btnYes"));
                  },
                  0),
              0);
    EXPECT_FALSE(waits);
}

TEST_F(Box, WithoutTimeOutItWaits)
{
    EXPECT_EQ(ask(BOX_QUESTION,
                  [&] {
                      kit::stepTime(3600 * 1000);
                      EXPECT_TRUE(box->isVisible());
                      kit::tap(button("btnYes"));
                  }),
              1);
}

TEST_F(Box, IsLoggedWithTitleAndText)
{
    ask(BOX_NOTE, [&] { kit::tap(button("btnOK")); });
    const tagLogEntry last = hostLogFrom(1).last();
    EXPECT_EQ(last.strKind, "box");
    EXPECT_EQ(last.strText, "Warning|Reboot system?");
}

TEST_F(Box, BoxUponABoxAnswersForItself)
{
    int inner = -1;
    const int outer = ask(BOX_QUESTION, [&] {
        QTimer::singleShot(0, box, [] {
            kit::settle();
            kit::tap(QApplication::activeModalWidget()->findChild<QPushButton*>("btnNo"));
        });
        inner = xMessageBox("Note", "Really?", BOX_QUESTION, box, -1);
        kit::settle();
        EXPECT_EQ(QApplication::activeModalWidget(), box);
        kit::tap(button("btnYes"));
    });
    EXPECT_EQ(inner, 0);
    EXPECT_EQ(outer, 1);
}

TEST_F(Box, EndOfTheApplicationClosesItAsNo)
{
    int answer = -1;
    QTimer::singleShot(0, &page, [&] {
        answer = ask(BOX_QUESTION, [] { QCoreApplication::quit(); });
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    EXPECT_EQ(answer, 0);
}

TEST_F(Box, SurvivesTheEndOfItsPage)
{
    ScreenPage* own = new ScreenPage;
    own->open();
    QTimer::singleShot(0, qApp, [&] { delete own; });
    EXPECT_EQ(xMessageBox("Note", "x", BOX_QUESTION, own, -1), 0);
}

TEST_F(Box, NullTitleAndTextAreEmpty)
{
    QTimer::singleShot(0, &page, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_EQ(xMessageBox(nullptr, nullptr, BOX_NOTE, nullptr, -1), 0);
}

TEST_F(Box, FocusReturnsToThePage)
{
    edit->setFocus();
    ask(BOX_NOTE, [&] { kit::tap(button("btnOK")); });
    kit::settle();
    EXPECT_TRUE(page.isActiveWindow());
    EXPECT_TRUE(edit->hasFocus());
    kit::type("a");
    EXPECT_EQ(edit->text(), "a");
}

TEST_F(Box, PageSeesTheBoxComeAndGo)
{
    struct Watcher : QObject
    {
        QList<QEvent::Type> seen;
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
                seen.append(event->type());
            return false;
        }
    } watcher;
    page.installEventFilter(&watcher);
    ask(BOX_NOTE, [&] { kit::tap(button("btnOK")); });
    kit::settle();
    EXPECT_EQ(watcher.seen, QList<QEvent::Type>({QEvent::WindowDeactivate, QEvent::WindowActivate}));
}

// ---- how it looks

TEST_F(Box, IsDrawnInTheMiddleOverTheDimmedPage)
{
    ask(
        BOX_QUESTION,
        [&] {
            const QImage screen = kit::screen();
            EXPECT_TRUE(isColour(screen, 400, 141, look::kBarTop)) << "title strip";
            EXPECT_TRUE(isColour(screen, 600, 182, look::kBarBottom)) << "title strip";
            EXPECT_TRUE(isColour(screen, 400, 184, look::kField, 0)) << "body";
            EXPECT_TRUE(isColour(screen, 400, 339, look::kField, 0)) << "last row";
            EXPECT_TRUE(isColour(screen, 365, 304, look::kBlue)) << "Yes";
            EXPECT_TRUE(isColour(screen, 500, 290, look::kButton)) << "No";
            EXPECT_TRUE(isColour(screen, 358, 304, 0xffcbdffa, 8)) << "ring of Yes";
            EXPECT_FALSE(isColour(screen, 190, 140, look::kBarTop, 40)) << "round corner";
            EXPECT_TRUE(isColour(screen, 10, 470, 0xff828894, 14)) << "dimmed page";
            EXPECT_LT(qGray(screen.pixel(400, 345)), qGray(screen.pixel(400, 430)) - 20) << "shadow";
            kit::tap(button("btnNo"));
        },
        -1, "Network configuration has changed, reboot system?");
}

TEST_F(Box, ABoxUponABoxDimsThePageOnce)
{
    QRgb once = 0;
    ask(BOX_QUESTION, [&] {
        once = kit::screen().pixel(10, 470);
        kit::tap(button("btnNo"));
    });
    ask(
        BOX_QUESTION,
        [&] {
            QWidget* const lower = box;
            ask(BOX_NOTE, [&] {
                const QImage screen = kit::screen();
                EXPECT_EQ(screen.pixel(10, 470), once);
                EXPECT_EQ(screen.pixel(10, 240), once) << "nothing is left of the box below";
                kit::tap(button("btnOK"));
            });
            EXPECT_EQ(QApplication::activeModalWidget(), lower);
            EXPECT_EQ(kit::screen().pixel(10, 470), once);
            kit::tap(lower->findChild<QPushButton*>("btnNo"));
        },
        -1, QByteArray(200, 'W').constData());
}

TEST_F(Box, ThePageBehindItHasItsNewLanguageAtOnce)
{
    QLabel* label = page.add<QLabel>(QRect(456, 20, 314, 36));
    label->setText("old");
    label->show();
    ask(BOX_QUESTION, [&] {
        const QImage before = kit::screen().copy(456, 20, 314, 36);
        QEvent change(QEvent::LanguageChange);
        QApplication::sendEvent(box, &change);
        label->setText("new text");
        kit::settle();
        EXPECT_NE(kit::screen().copy(456, 20, 314, 36), before);
        kit::tap(button("btnNo"));
    });
}

TEST_F(Box, AWindowThatGoesBehindItIsNotSeenThereAnyMore)
{
    QDialog over(nullptr, Qt::FramelessWindowHint);
    over.setGeometry(page.geometry());
    over.setStyleSheet("background: red");
    QRgb withoutIt = 0;
    ask(BOX_QUESTION, [&] {
        withoutIt = kit::screen().pixel(10, 470);
        kit::tap(button("btnNo"));
    });
    over.show();
    kit::settle();
    ask(BOX_QUESTION, [&] {
        EXPECT_NE(kit::screen().pixel(10, 470), withoutIt);
        over.hide();
        kit::settle();
        EXPECT_EQ(kit::screen().pixel(10, 470), withoutIt);
        kit::tap(button("btnNo"));
    });
}

TEST_F(Box, GrowsWithLongTextAndCutsNothing)
{
    const QByteArray sentence = "The phone could not store the file because there is no room left. ";
    int lastHeight = 0;
    for (int times : {2, 5, 30}) {
        ask(
            BOX_NOTE,
            [&] {
                const QImage screen = kit::screen();
                int top = 0;
                int bottom = 479;
                while (!isColour(screen, 400, top, look::kBarTop, 2))
                    ++top;
                while (!isColour(screen, 400, bottom, look::kField, 0))
                    --bottom;
                EXPECT_GT(bottom - top, lastHeight);
                lastHeight = bottom - top;
                EXPECT_GE(top, 4);
                EXPECT_LE(bottom, 476);
                const QLabel* text = box->findChild<QLabel*>("labText");
                const QRect area(text->geometry().left() - 6, text->geometry().bottom() + 1, 340, 20);
                EXPECT_TRUE(inkIn(screen, area, look::kField).isEmpty()) << "text runs out of its room";
                kit::tap(button("btnOK"));
            },
            -1, sentence.repeated(times).constData());
    }
}

TEST_F(Box, WordTooLongForALineIsBroken)
{
    ask(
        BOX_NOTE,
        [&] {
            const QImage screen = kit::screen();
            EXPECT_TRUE(inkIn(screen, QRect(594, 190, 15, 130), look::kField).isEmpty())
                << "runs out of the box";
            kit::tap(button("btnOK"));
        },
        -1, "/storage/uDisk/averylongfilenamewithoutanyblankinitthatcannotbewrappedatwordsatall.mp4");
}

TEST_F(Box, FocusedButtonIsTheBlueOne)
{
    ask(BOX_QUESTION, [&] {
        kit::key(Qt::Key_Right);
        const QImage screen = kit::screen();
        EXPECT_TRUE(isColour(screen, 500, 290, look::kBlue));
        EXPECT_TRUE(isColour(screen, 365, 304, look::kButton));
        kit::key(Qt::Key_Escape);
    });
}

} // namespace
