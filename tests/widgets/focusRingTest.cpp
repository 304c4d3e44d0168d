// What has the focus is always plain to see, whatever kind of widget it is.
#include "support/host/button.h"
#include "support/host/volumebar.h"
#include "tests/widgets/screenPage.h"
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QFocusFrame>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableWidget>

namespace {

const QRgb kRingOnPage = 0xffbcd4ed; // the soft ring over the colour of a plain window

class FocusRing : public PhoneTest
{
protected:
    FocusRing() { elsewhere = page.add<QLineEdit>(QRect(600, 400, 150, 36)); }
    // True when the screen around and in the widget changes as it gets the focus.
    int changedPixels(QWidget* widget)
    {
        elsewhere->setFocus();
        kit::settle();
        const QImage before = kit::screen();
        widget->setFocus();
        kit::settle();
        const QImage after = kit::screen();
        const QRect area = widget->geometry().adjusted(-8, -8, 8, 8);
        int changed = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                changed += !isColour(after, x, y, before.pixel(x, y), 12);
        }
        return changed;
    }
    ScreenPage page;
    QLineEdit* elsewhere;
};

TEST_F(FocusRing, FollowsAWidgetWhosePlaceIsMovedToAnotherWindow)
{
    QWidget* place = page.add<QWidget>(QRect(200, 100, 300, 120));
    QWidget* inner = new QWidget(place);
    QPushButton* button = new QPushButton("600", inner);
    inner->setGeometry(10, 10, 200, 80);
    button->setGeometry(20, 20, 120, 36);
    inner->show();
    button->show();
    page.open();
    button->setFocus();
    kit::settle();
    QDialog other;
    other.setGeometry(0, 0, 800, 480);
    other.show();
    place->setParent(&other);
    place->setGeometry(40, 40, 300, 120);
    place->show();
    kit::settle();
    inner->resize(100, 40);
    button->setFocus();
    kit::settle();
    QWidget* ring = button->window()->findChild<QFocusFrame*>("focusRing");
    ASSERT_NE(ring, nullptr);
    EXPECT_TRUE(ring->geometry().contains(button->mapTo(&other, QPoint(2, 2))));
}

TEST_F(FocusRing, EveryKindOfWidgetShowsThatItHasTheFocus)
{
    const QRect place(200, 100, 200, 40);
    QTableWidget* table = page.add<QTableWidget>(QRect(200, 100, 200, 120), 2, 1);
    table->setItem(0, 0, new QTableWidgetItem("a"));
    table->setCurrentCell(0, 0);
    QListWidget* list = page.add<QListWidget>(QRect(200, 100, 200, 120));
    list->addItem("a");
    list->setCurrentRow(0);
    QRadioButton* ticked = page.add<QRadioButton>(place, QString("Static IP"));
    ticked->setChecked(true);
    QListWidget* unselectable = page.add<QListWidget>(QRect(200, 100, 200, 120));
    unselectable->addItem("a");
    unselectable->setSelectionMode(QAbstractItemView::NoSelection);
    unselectable->setCurrentRow(0);
    const QList<QWidget*> widgets = {unselectable,
                                     page.add<QLineEdit>(place),
                                     page.add<QComboBox>(place),
                                     page.add<QSpinBox>(place),
                                     page.add<QDateEdit>(place),
                                     page.add<QPushButton>(place, QString("Choose")),
                                     page.add<QCheckBox>(place, QString("Enable Line")),
                                     page.add<QCheckBox>(place),
                                     page.add<QRadioButton>(place, QString("DHCP")),
                                     ticked,
                                     page.add<QSlider>(place, Qt::Horizontal),
                                     page.add<QVolumeBar>(place),
                                     page.add<QPlainTextEdit>(place),
                                     page.add<QListWidget>(place),
                                     page.add<QTableWidget>(place, 0, 1),
                                     table,
                                     list};
    for (QWidget* widget : widgets)
        widget->hide();
    page.open();
    for (QWidget* widget : widgets) {
        widget->show();
        EXPECT_GT(changedPixels(widget), 100) << widget->metaObject()->className();
        widget->hide();
    }
}

TEST_F(FocusRing, RingLiesThreePixelsAroundAnEdit)
{
    QLineEdit* edit = page.add<QLineEdit>(QRect(200, 100, 200, 36));
    page.open();
    edit->setFocus();
    const QImage screen = kit::screen();
    for (int x : {197, 198, 199, 400, 401, 402})
        EXPECT_TRUE(isColour(screen, x, 118, kRingOnPage, 12)) << x;
    for (int y : {97, 99, 136, 138})
        EXPECT_TRUE(isColour(screen, 300, y, kRingOnPage, 12)) << y;
    EXPECT_TRUE(isColour(screen, 300, 95, screen.pixel(700, 300)));
    EXPECT_TRUE(isColour(screen, 200, 118, look::kBlue));
    EXPECT_TRUE(isColour(screen, 201, 118, look::kBlue));
    EXPECT_TRUE(isColour(screen, 202, 118, look::kField));
}

TEST_F(FocusRing, GoesWithTheFocus)
{
    QLineEdit* edit = page.add<QLineEdit>(QRect(200, 100, 200, 36));
    page.open();
    const QRgb plain = kit::screen().pixel(700, 300);
    edit->setFocus();
    elsewhere->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 198, 118, plain));
    EXPECT_TRUE(isColour(kit::screen(), 598, 418, kRingOnPage, 12));
    elsewhere->clearFocus();
    EXPECT_TRUE(isColour(kit::screen(), 598, 418, plain));
}

TEST_F(FocusRing, MovesWithItsWidget)
{
    page.open();
    elsewhere->setFocus();
    elsewhere->move(300, 200);
    kit::settle();
    EXPECT_TRUE(isColour(kit::screen(), 298, 218, kRingOnPage, 12));
    EXPECT_TRUE(isColour(kit::screen(), 598, 418, kit::screen().pixel(100, 300)));
}

TEST_F(FocusRing, GoesWhenItsWidgetIsHiddenOrDeleted)
{
    QLineEdit* edit = page.add<QLineEdit>(QRect(200, 100, 200, 36));
    page.open();
    elsewhere->setFocusPolicy(Qt::NoFocus);
    edit->setFocus();
    const QRgb plain = kit::screen().pixel(700, 300);
    edit->hide();
    kit::settle();
    EXPECT_TRUE(isColour(kit::screen(), 198, 118, plain));
    edit->show();
    edit->setFocus();
    delete edit;
    kit::settle();
    EXPECT_TRUE(isColour(kit::screen(), 198, 118, plain));
}

TEST_F(FocusRing, FollowsFromWindowToWindowAndBack)
{
    page.open();
    elsewhere->setFocus();
    {
        ScreenPage other;
        QLineEdit* edit = other.add<QLineEdit>(QRect(200, 100, 200, 36));
        other.open();
        edit->setFocus();
        EXPECT_TRUE(isColour(kit::screen(), 198, 118, kRingOnPage, 12));
    }
    kit::settle();
    EXPECT_TRUE(elsewhere->hasFocus());
    EXPECT_TRUE(isColour(kit::screen(), 598, 418, kRingOnPage, 12)) << "also when its other page was deleted";
}

TEST_F(FocusRing, StaysAtTheComboBoxWhileItsListIsOpen)
{
    QComboBox* box = page.add<QComboBox>(QRect(200, 100, 200, 36));
    box->addItems({"One", "Two"});
    page.open();
    box->setFocus();
    box->showPopup();
    kit::settle();
    EXPECT_TRUE(isColour(kit::screen(), 300, 98, kRingOnPage, 12));
    EXPECT_TRUE(isColour(kit::screen(), 300, 100, look::kBlue));
    box->hidePopup();
}

TEST_F(FocusRing, ButtonThatDrawsItselfShowsItsFocusItself)
{
    struct Tile : QAbstractButton
    {
        explicit Tile(QWidget* parent) : QAbstractButton(parent) {}
        void paintEvent(QPaintEvent*) override {}
    };
    Tile* tile = page.add<Tile>(QRect(200, 100, 100, 100));
    page.open();
    EXPECT_EQ(changedPixels(tile), 0);
}

TEST_F(FocusRing, TakesNeitherFocusNorTouches)
{
    QPushButton* button = page.add<QPushButton>(QRect(200, 100, 100, 36), QString("Choose"));
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++clicks; });
    page.open();
    button->setFocus();
    kit::tap(QPoint(202, 102));
    EXPECT_EQ(clicks, 1);
    const QFocusFrame* ring = page.findChild<QFocusFrame*>("focusRing");
    ASSERT_NE(ring, nullptr);
    EXPECT_EQ(ring->focusPolicy(), Qt::NoFocus);
}

TEST_F(FocusRing, RingAroundATickGoesAroundItsLabelToo)
{
    QCheckBox* box = page.add<QCheckBox>(QRect(200, 100, 300, 36), QString("Enable Line"));
    page.open();
    elsewhere->setFocus();
    const QImage before = kit::screen();
    box->setFocus();
    const QImage after = kit::screen();
    QRect ring;
    for (int y = 90; y < 150; ++y) {
        for (int x = 180; x < 520; ++x) {
            if (!isColour(after, x, y, before.pixel(x, y), 10))
                ring |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_NEAR(ring.left(), 193, 1);
    EXPECT_GT(ring.right(), 325);
    EXPECT_LT(ring.right(), 345);
}

TEST_F(FocusRing, ListWithoutTheFocusShowsItsRowPaler)
{
    QListWidget* list = page.add<QListWidget>(QRect(200, 100, 200, 120));
    list->addItems({"a", "b"});
    list->setCurrentRow(0);
    page.open();
    list->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 350, 118, look::kSelection));
    elsewhere->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 350, 118, look::kSelectionPale));
    list->setFocusPolicy(Qt::NoFocus);
    list->viewport()->update();
    EXPECT_TRUE(isColour(kit::screen(), 350, 118, look::kSelection)) << "its keys are taken elsewhere";
}

} // namespace
