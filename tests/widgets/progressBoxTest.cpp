#include "host/look/look.h"
#include "support/host/box.h"
#include "support/host/language.h"
#include "support/host/screen.h"
#include "tests/kit/kitTime.h"
#include "tests/widgets/screenPage.h"
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <memory>

namespace {

class Progress : public PhoneTest
{
protected:
    Progress()
    {
        kit::holdClocks(true);
        page.open();
        made = std::make_unique<xProgressBox>("Note", "Importing...", &page, [this] { return percent; });
    }
    // Shows the box, does something while it is open, and gives its answer.
    template <class Action>
    int exec(Action action)
    {
        QTimer::singleShot(0, &page, [&] {
            kit::settle();
            box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            action();
        });
        return made->Exec();
    }
    // Columns of the bar that are filled.
    int filled() const
    {
        const QImage screen = kit::screen();
        const QRect frame = box->findChild<QLabel*>("labText")->geometry();
        const int y = frame.bottom() + 1 + 14 + 6;
        int count = 0;
        for (int x = frame.left(); x <= frame.right(); ++x)
            count += screen.pixel(x, y) == look::kBlue;
        return count;
    }

    ScreenPage page;
    QWidget* box = nullptr;
    int percent = 0;
    std::unique_ptr<xProgressBox> made;
};

TEST_F(Progress, ShowsTitleTextAndABarThatFills)
{
    EXPECT_EQ(exec([&] {
                  EXPECT_EQ(box->objectName(), "dlgProgressBox");
                  EXPECT_EQ(box->findChild<QLabel*>("labTitle")->text(), "Note");
                  EXPECT_EQ(box->findChild<QLabel*>("labText")->text(), "Importing...");
                  EXPECT_EQ(box->findChildren<QPushButton*>().size(), 1);
                  const int width = box->findChild<QLabel*>("labText")->width();
                  EXPECT_EQ(filled(), 0);
                  for (const int now : {50, 100, 250}) {
                      percent = now;
                      kit::stepTime(60);
                      EXPECT_NEAR(filled(), width * std::min(now, 100) / 100, 8) << now;
                  }
                  made->Finish();
              }),
              1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Progress, IsCancelledByItsButtonOkAndTheBackKeysAlone)
{
    for (const Qt::Key key : {Qt::Key_unknown, Qt::Key_Return, Qt::Key_F4, Qt::Key_Escape, Qt::Key_Back}) {
        EXPECT_EQ(exec([&] {
                      kit::key(Qt::Key_5);
                      kit::key(Qt::Key_F1);
                      kit::key(Qt::Key_Left);
                      EXPECT_TRUE(box->isVisible());
                      if (key == Qt::Key_unknown)
                          kit::tap(box->findChild<QPushButton*>("btnCancel"));
                      else
                          kit::key(key);
                  }),
                  0)
            << key;
        made = std::make_unique<xProgressBox>("Note", "Importing...", &page, [] { return 0; });
    }
}

TEST_F(Progress, WorkThatIsOverAlreadyShowsNothing)
{
    made->Finish();
    EXPECT_EQ(made->Exec(), 1);
}

TEST_F(Progress, GoesAwayWhenAnotherWindowComesUpAndComesBackWithItsPage)
{
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    EXPECT_EQ(exec([&] {
                  screenBringUp(&call);
                  kit::settle();
                  EXPECT_EQ(kit::windows().value(0), &call);
                  EXPECT_FALSE(box->isVisible());
                  call.hide();
                  kit::settle();
                  EXPECT_EQ(kit::windows().value(0), box);
                  kit::tap(box->findChild<QPushButton*>("btnCancel"));
              }),
              0);
}

TEST_F(Progress, WorkThatEndsUnderAnotherWindowIsToldWithThePage)
{
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    bool wasUp = false;
    EXPECT_EQ(exec([&] {
                  screenBringUp(&call);
                  kit::settle();
                  made->Finish();
                  kit::settle();
                  wasUp = kit::windows().value(0) == &call;
                  call.hide();
              }),
              1);
    EXPECT_TRUE(wasUp);
    EXPECT_FALSE(call.isVisible());
}

// A window that came up over the box is not shown once more when a later box is answered.
TEST_F(Progress, AWindowThatCameUpOverItIsNotShownTwice)
{
    QWidget call;
    call.setGeometry(0, 0, 800, 480);
    exec([&] {
        screenBringUp(&call);
        kit::settle();
        call.hide();
        kit::settle();
        made->Finish();
    });
    QTimer::singleShot(100, &page, [] { QApplication::activeModalWidget()->close(); });
    QTimer::singleShot(0, &page, [] { kit::stepTime(200); });
    xMessageBox("Note", "Done", BOX_NOTE, &page, -1);
    kit::settle();
    EXPECT_FALSE(call.isVisible());
}

TEST_F(Progress, GoesWithItsPage)
{
    auto other = std::make_unique<ScreenPage>();
    other->open();
    made = std::make_unique<xProgressBox>("Note", "Importing...", other.get(), [] { return 0; });
    EXPECT_EQ(exec([&] { other.reset(); }), 0);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Progress, FollowsTheLanguageNoMoreThanAnyBox)
{
    EXPECT_EQ(exec([&] {
                  GetLanguageHelper()->SetLanguage("German");
                  kit::settle();
                  EXPECT_EQ(box->findChild<QLabel*>("labText")->text(), "Importing...");
                  GetLanguageHelper()->SetLanguage("English");
                  kit::settle();
                  made->Finish();
              }),
              1);
}

} // namespace
