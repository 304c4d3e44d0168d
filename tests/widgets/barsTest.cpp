#include "support/host/bars.h"
#include "tests/widgets/screenPage.h"
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

// Counts the calls of its slot trigger().
struct Receiver : public QAction
{
    Receiver()
    {
        connect(this, &QAction::triggered, this, [this] { ++calls; });
    }
    int calls = 0;
};

class Bars : public PhoneTest
{
protected:
    Bars()
    {
        edit = page.add<QLineEdit>(QRect(200, 100, 200, 36));
        keys = page.add<qSoftKeyBar>(QRect(0, 440, 800, 40));
    }
    void press(int index) { kit::tap(QPoint(200 * index + 100, 460)); }

    Receiver first;
    Receiver second;
    ScreenPage page;
    QLineEdit* edit;
    qSoftKeyBar* keys;
};

TEST_F(Bars, FourSoftKeysOfTwoHundredPixelsLieSideBySide)
{
    page.open();
    for (int i = 0; i < SOFT_KEY_COUNT; ++i)
        EXPECT_EQ(keys->GetButton(i)->geometry(), QRect(200 * i, 0, 200, 40));
    EXPECT_EQ(keys->GetButton(4), nullptr);
    EXPECT_EQ(keys->GetButton(-1), nullptr);
}

TEST_F(Bars, FingerPressesASoftKey)
{
    keys->SetButton(3, "Back", "Back", &first, SLOT(trigger()));
    page.open();
    press(3);
    EXPECT_EQ(first.calls, 1);
    press(0);
    EXPECT_EQ(first.calls, 1);
}

TEST_F(Bars, SoftKeyIsPressedWhileTheFingerIsOnIt)
{
    keys->SetButton(0, "Save", "Save", &first, SLOT(trigger()));
    page.open();
    kit::press(QPoint(100, 460));
    EXPECT_TRUE(keys->GetButton(0)->isPressed());
    EXPECT_TRUE(isColour(kit::screen(), 20, 450, look::kSoftKeyPressed));
    EXPECT_EQ(first.calls, 0);
    kit::release(QPoint(100, 460));
    EXPECT_FALSE(keys->GetButton(0)->isPressed());
    EXPECT_EQ(first.calls, 1);
}

TEST_F(Bars, FingerThatSlipsOffASoftKeyDoesNotPressIt)
{
    keys->SetButton(0, "Save", "Save", &first, SLOT(trigger()));
    page.open();
    kit::press(QPoint(100, 460));
    kit::moveTo(QPoint(100, 300));
    EXPECT_FALSE(keys->GetButton(0)->isPressed());
    kit::release(QPoint(100, 300));
    EXPECT_EQ(first.calls, 0);
}

TEST_F(Bars, FunctionKeysPressTheSoftKeysOfTheActiveWindow)
{
    for (int i = 0; i < SOFT_KEY_COUNT; ++i)
        keys->SetButton(i, "Key", "Key", i == 2 ? &first : &second, SLOT(trigger()));
    page.open();
    edit->setFocus();
    kit::key(Qt::Key_F3);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0);
    kit::key(Qt::Key_F1);
    kit::key(Qt::Key_F4);
    EXPECT_EQ(second.calls, 2);
}

TEST_F(Bars, FunctionKeyDoesNotReachTheWindowBelow)
{
    keys->SetButton(0, "Save", "Save", &first, SLOT(trigger()));
    page.open();
    ScreenPage above;
    above.open();
    kit::key(Qt::Key_F1);
    EXPECT_EQ(first.calls, 0);
}

TEST_F(Bars, SetButtonAgainDisconnectsTheFormerSlot)
{
    keys->SetButton(0, "Enter", "Enter", &first, SLOT(trigger()));
    keys->SetButton(0, "Enter", "Preview", &second, SLOT(trigger()));
    page.open();
    press(0);
    EXPECT_EQ(first.calls, 0);
    EXPECT_EQ(second.calls, 1);
    EXPECT_EQ(keys->GetButtonTitle(0), "Preview");
    EXPECT_EQ(keys->FindButton("Enter"), 0);
}

TEST_F(Bars, EmptyNameLabelAndNullClearTheKey)
{
    keys->SetButton(1, "IME", "abc", &first, SLOT(trigger()));
    keys->SetButton(1, "", "", nullptr, nullptr);
    page.open();
    press(1);
    kit::key(Qt::Key_F2);
    EXPECT_EQ(first.calls, 0);
    EXPECT_EQ(keys->FindButton("IME"), -1);
    EXPECT_EQ(keys->GetButtonTitle(1), "");
}

TEST_F(Bars, KeyWithoutALabelDoesNothing)
{
    keys->SetButton(1, "IME", "", &first, SLOT(trigger()));
    page.open();
    press(1);
    kit::key(Qt::Key_F2);
    keys->GetButton(1)->press();
    EXPECT_EQ(first.calls, 0);
    keys->SetButtonTitle(1, "123");
    press(1);
    EXPECT_EQ(first.calls, 1);
}

TEST_F(Bars, IndexesOutOfRangeAreHarmless)
{
    keys->SetButton(4, "Save", "Save", &first, SLOT(trigger()));
    keys->SetButtonTitle(-1, "x");
    EXPECT_EQ(keys->GetButtonTitle(7), "");
    EXPECT_EQ(keys->FindButton("Save"), -1);
    EXPECT_EQ(keys->FindButton(""), -1);
    EXPECT_EQ(keys->FindButton(nullptr), -1);
}

TEST_F(Bars, LabelsAreUtf8)
{
    keys->SetButton(0, "Save", "\xE4\xBF\x9D\xE5\xAD\x98", &first, SLOT(trigger()));
    EXPECT_EQ(keys->GetButtonTitle(0), QString::fromUtf8("\xE4\xBF\x9D\xE5\xAD\x98"));
}

TEST_F(Bars, SoftKeysNeverTakeTheFocus)
{
    keys->SetButton(0, "Save", "Save", &first, SLOT(trigger()));
    page.open();
    edit->setFocus();
    press(0);
    EXPECT_TRUE(edit->hasFocus());
}

TEST_F(Bars, BarsTakeThePlaceOfTheFormsPlaceholders)
{
    QLabel* topPlace = page.add<QLabel>(QRect(0, 0, 800, 40));
    QLabel* leftPlace = page.add<QLabel>(QRect(0, 40, 152, 400));
    QLabel* keyPlace = page.add<QLabel>(QRect(0, 440, 800, 40));
    topPlace->setObjectName("labTopBar");
    qTopBar* top = qReplaceTopBar(topPlace, "WAN");
    qLeftBar* left = qReplaceLeftBar(leftPlace, "Network", HX_THEME("menu/menu_wan.png"));
    qSoftKeyBar* soft = qReplaceSoftKeyBar(keyPlace);
    EXPECT_EQ(top->geometry(), QRect(0, 0, 800, 40));
    EXPECT_EQ(top->parentWidget(), &page);
    EXPECT_EQ(top->title(), "WAN");
    EXPECT_EQ(top->objectName(), "labTopBar");
    EXPECT_EQ(left->title(), "Network");
    EXPECT_EQ(left->icon(), HX_THEME("menu/menu_wan.png"));
    EXPECT_EQ(soft->geometry(), QRect(0, 440, 800, 40));
    page.open();
    EXPECT_TRUE(top->isVisible());
    EXPECT_TRUE(page.findChildren<QLabel*>().isEmpty()) << "the placeholders are deleted";
}

TEST_F(Bars, ReplacingWithNullTitleAndIconLeavesThemEmpty)
{
    qLeftBar* left = qReplaceLeftBar(page.add<QLabel>(QRect(0, 40, 152, 400)), nullptr, nullptr);
    EXPECT_EQ(left->title(), "");
    EXPECT_EQ(left->icon(), "");
    EXPECT_EQ(qReplaceTopBar(nullptr, "x"), nullptr);
}

class LeftBar : public PhoneTest
{
protected:
    LeftBar() { bar = page.add<qLeftBar>(QRect(0, 40, 152, 400)); }
    QRect inkOfTitle(const QImage& screen) const
    {
        QRect ink;
        for (int y = 176; y < 440; ++y) {
            for (int x = 0; x < 152; ++x) {
                if (qGray(screen.pixel(x, y)) > 150)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    }

    ScreenPage page;
    qLeftBar* bar;
};

TEST_F(LeftBar, IconTileStandsAtItsPlaceWithTheTitleBelow)
{
    bar->setTitle("WAN");
    bar->setIcon(HX_THEME("menu/menu_wan.png"));
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 28, 120, 0xff378ef0, 6)) << "the tile's left edge";
    EXPECT_TRUE(isColour(screen, 123, 120, 0xff378ef0, 6)) << "the tile's right edge";
    EXPECT_TRUE(isColour(screen, 76, 171, 0xff2277e0, 6)) << "the tile's lower edge";
    const QRect title = inkOfTitle(screen);
    EXPECT_NEAR(title.center().x(), 75, 2);
    EXPECT_NEAR(title.top(), 191, 2);
    EXPECT_NEAR(title.bottom(), 203, 2);
}

TEST_F(LeftBar, LongTitlesWrapAndAreNeverCut)
{
    bar->setIcon(HX_THEME("menu/menu_wan.png"));
    page.open();
    for (const char* title :
         {"Call Feature", "Verbindungseinstellungen", "Configuration du serveur de presence",
          "Donaudampfschifffahrtsgesellschaftskapitaen",
          "\xE8\x87\xAA\xE5\x8A\xA8\xE9\x85\x8D\xE7\xBD\xAE\xE6\x9C\x8D\xE5\x8A\xA1\xE5\x99\xA8"}) {
        bar->setTitle(QString::fromUtf8(title));
        const QRect ink = inkOfTitle(kit::screen());
        EXPECT_GE(ink.left(), 4) << title;
        EXPECT_LE(ink.right(), 147) << title;
        EXPECT_LE(ink.bottom(), 264) << title << " has more than three lines";
    }
}

TEST_F(LeftBar, RectanglesAsLargeAsTheBarLeaveTheBarItsOwnOrder)
{
    bar->setTitle("WAN");
    bar->setIcon(HX_THEME("menu/menu_wan.png"));
    page.open();
    const QImage before = kit::screen();
    bar->setIconGeometry(QRect(0, 40, 152, 400));
    bar->setTextGeometry(QRect(0, 40, 152, 400));
    EXPECT_EQ(kit::screen(), before);
}

TEST_F(LeftBar, TitleGoesWhereItsRectangleIs)
{
    bar->setTitle("WAN");
    bar->setTextGeometry(QRect(0, 300, 152, 40));
    page.open();
    EXPECT_NEAR(inkOfTitle(kit::screen()).center().y(), 40 + 320, 4);
}

TEST_F(LeftBar, MissingPictureShowsTheTitleAlone)
{
    bar->setTitle("WAN");
    bar->setIcon("/phone/resource/theme/default/bmp/menu/no_such_picture.png");
    page.open();
    EXPECT_TRUE(isColour(kit::screen(), 76, 150, 0xff224467, 4));
}

TEST_F(LeftBar, FlowFromLeftToRightPutsTheTitleBesideTheIcon)
{
    bar->setGeometry(0, 40, 400, 110);
    bar->setTitle("WAN");
    bar->setIcon(HX_THEME("menu/menu_wan.png"));
    bar->setFlow(qLeftBar::LeftToRight);
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 8, 95, 0xff378ef0, 20));
    int white = 0;
    for (int x = 110; x < 200; ++x) {
        for (int y = 80; y < 110; ++y)
            white += qGray(screen.pixel(x, y)) > 200;
    }
    EXPECT_GT(white, 50);
}

TEST_F(Bars, LongTopBarTitleIsMadeSmallerRatherThanCut)
{
    qTopBar* top = page.add<qTopBar>(QRect(0, 0, 800, 40));
    top->setTitle(QString("A very long title ").repeated(6));
    page.open();
    const QImage screen = kit::screen();
    QRect ink;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 800; ++x) {
            if (qGray(screen.pixel(x, y)) > 150)
                ink |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_GE(ink.left(), 4);
    EXPECT_LE(ink.right(), 795);
}

} // namespace
