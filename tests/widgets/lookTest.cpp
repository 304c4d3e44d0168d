// The look of whole pages: colours, places and sizes that a designer would measure on the screen.
#include "support/host/bars.h"
#include "support/host/ui.h"
#include "tests/widgets/screenPage.h"
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFontInfo>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QToolTip>

namespace {

class Look : public PhoneTest
{
protected:
    // A form as the phone has them: bars, radio buttons, labels and edits.
    void buildForm()
    {
        QFrame* back = page.add<QFrame>(QRect(0, 0, 800, 480));
        SetBackgroundToFrame(back, HX_THEME("general/gen_setting_bg.jpg"));
        page.add<qTopBar>(QRect(0, 0, 800, 40))->setTitle("WAN");
        qLeftBar* left = page.add<qLeftBar>(QRect(0, 40, 152, 400));
        left->setTitle("WAN");
        left->setIcon(HX_THEME("menu/menu_wan.png"));
        qSoftKeyBar* keys = page.add<qSoftKeyBar>(QRect(0, 440, 800, 40));
        const char* labels[] = {"Save", "123_IP", "Delete", "Back"};
        for (int i = 0; i < SOFT_KEY_COUNT; ++i)
            keys->SetButton(i, labels[i], labels[i], &page, SLOT(reject()));
        page.add<QRadioButton>(QRect(176, 54, 160, 36), QString("DHCP"));
        page.add<QRadioButton>(QRect(176, 195, 160, 36), QString("Static IP"))->setChecked(true);
        for (int row = 0; row < 7; ++row) {
            QLabel* label = page.add<QLabel>(QRect(300, 101 + 47 * row, 140, 36), QString("Gateway"));
            label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            edits.append(page.add<QLineEdit>(QRect(456, 101 + 47 * row, 314, 36), QString("192.168.1.1")));
        }
        page.open();
        edits[2]->setFocus();
        kit::settle();
    }
    ScreenPage page;
    QList<QLineEdit*> edits;
};

TEST_F(Look, TextIsThePhonesFontAtEighteenPixels)
{
    EXPECT_EQ(QFontInfo(QApplication::font()).family(), "Noto Sans");
    EXPECT_EQ(QApplication::font().pixelSize(), 18);
    EXPECT_EQ(QApplication::palette().color(QPalette::Text), QColor(51, 59, 62));
    EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), QColor(201, 222, 241));
}

TEST_F(Look, BarsHaveTheirColours)
{
    buildForm();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 10, 0, 0xff1d3b5c));
    EXPECT_TRUE(isColour(screen, 10, 20, 0xff183554));
    EXPECT_TRUE(isColour(screen, 10, 39, 0xff14304d));
    EXPECT_TRUE(isColour(screen, 5, 40, 0xff24496f));
    EXPECT_TRUE(isColour(screen, 5, 439, 0xff1a3655));
    EXPECT_TRUE(isColour(screen, 300, 41, 0xfff6f9fc));
    EXPECT_TRUE(isColour(screen, 300, 439, 0xffe9eff6));
    EXPECT_TRUE(isColour(screen, 10, 445, 0xff14304d));
}

TEST_F(Look, LinesBetweenTheSoftKeysStandWhereTheyShould)
{
    buildForm();
    const QImage screen = kit::screen();
    QList<int> lines;
    for (int x = 0; x < 800; ++x) {
        if (isColour(screen, x, 442, 0xff0e2338, 4))
            lines.append(x);
    }
    EXPECT_EQ(lines, QList<int>({199, 400, 600}));
}

TEST_F(Look, TitlesAndLabelsHaveTheirPlacesAndSizes)
{
    buildForm();
    const QImage screen = kit::screen();
    const auto bright = [&](const QRect& area) {
        QRect ink;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (qGray(screen.pixel(x, y)) > 140)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    };
    const QRect title = bright(QRect(300, 2, 200, 36));
    EXPECT_NEAR(title.left(), 377, 2);
    EXPECT_NEAR(title.right(), 421, 2);
    EXPECT_NEAR(title.top(), 13, 1);
    EXPECT_NEAR(title.bottom(), 26, 1);
    const QRect save = bright(QRect(3, 442, 190, 36));
    EXPECT_NEAR(save.left(), 79, 2);
    EXPECT_NEAR(save.right(), 119, 2);
    EXPECT_NEAR(save.top(), 454, 1);
}

TEST_F(Look, EditHasItsLineCornersAndText)
{
    buildForm();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 600, 242, look::kFieldLine));
    EXPECT_TRUE(isColour(screen, 600, 277, look::kFieldLine));
    EXPECT_TRUE(isColour(screen, 456, 260, look::kFieldLine));
    EXPECT_TRUE(isColour(screen, 769, 260, look::kFieldLine));
    EXPECT_TRUE(isColour(screen, 456, 242, 0xfff0f4f9, 6)) << "round corner";
    EXPECT_TRUE(isColour(screen, 600, 243, look::kField, 0));
    const QRect text = inkIn(screen, QRect(458, 244, 300, 32), look::kField, 120);
    EXPECT_NEAR(text.left(), 468, 2);
    EXPECT_NEAR(text.top(), 254, 1);
    EXPECT_NEAR(text.bottom(), 266, 1);
}

TEST_F(Look, FocusedEditHasABlueLineAndItsRing)
{
    buildForm();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 600, 195, 0xff2f80ed));
    EXPECT_TRUE(isColour(screen, 600, 196, 0xff2f80ed));
    EXPECT_TRUE(isColour(screen, 600, 197, 0xffffffff));
    for (int y : {192, 193, 194, 231, 232, 233})
        EXPECT_TRUE(isColour(screen, 600, y, 0xffc6dbf7, 4)) << y;
    EXPECT_TRUE(isColour(screen, 600, 191, 0xfff1f5fa, 3));
    EXPECT_TRUE(isColour(screen, 772, 212, 0xffc6dbf7, 4));
}

TEST_F(Look, RadioButtonsAreDrawnAsDiscs)
{
    buildForm();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 177, 72, 0xff7f93a6, 16));
    EXPECT_TRUE(isColour(screen, 187, 72, 0xffffffff));
    EXPECT_TRUE(isColour(screen, 177, 213, 0xff2f80ed, 16));
    EXPECT_TRUE(isColour(screen, 187, 213, 0xff2f80ed));
    EXPECT_TRUE(isColour(screen, 180, 213, 0xffffffff, 6));
    EXPECT_TRUE(isColour(screen, 177, 61, 0xfff5f8fb, 4)) << "no square";
    const QRect text = inkIn(screen, QRect(202, 55, 90, 36), 0xfff5f8fb, 120);
    EXPECT_NEAR(text.left(), 210, 1);
}

TEST_F(Look, CheckBoxIsBlueWithAWhiteTickWhenItIsOn)
{
    QCheckBox* box = page.add<QCheckBox>(QRect(200, 100, 300, 36), QString("Enable Line"));
    QLineEdit* other = page.add<QLineEdit>(QRect(200, 300, 200, 36));
    page.open();
    other->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 211, 112, look::kField));
    kit::tap(box);
    EXPECT_TRUE(box->isChecked());
    EXPECT_TRUE(isColour(kit::screen(), 205, 110, look::kBlue));
    EXPECT_TRUE(isColour(kit::screen(), 209, 121, look::kField, 60));
}

TEST_F(Look, ListHasAPanelRowLinesAndARoundSelection)
{
    QTableWidget* table = page.add<QTableWidget>(QRect(25, 90, 750, 330), 6, 6);
    SetTabWgtNormalProperty(table, false);
    SetTabWgtScrollStyle(table);
    for (int row = 0; row < 6; ++row) {
        table->setRowHeight(row, 53);
        for (int column = 0; column < 6; ++column)
            table->setItem(row, column, new QTableWidgetItem("01"));
    }
    for (int column = 0; column < 6; ++column)
        table->setColumnWidth(column, column < 5 ? 125 : 123);
    table->setCurrentCell(1, 0);
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 400, 90, 0xffcbd8e4)) << "line of the panel";
    EXPECT_TRUE(isColour(screen, 25, 250, 0xffcbd8e4));
    EXPECT_TRUE(isColour(screen, 774, 250, 0xffcbd8e4));
    EXPECT_TRUE(isColour(screen, 400, 95, 0xfffdfefe));
    EXPECT_FALSE(isColour(screen, 26, 91, 0xfffdfefe)) << "round corner";
    EXPECT_TRUE(isColour(screen, 28, 170, 0xfffdfefe)) << "left of the selection";
    EXPECT_TRUE(isColour(screen, 29, 170, 0xffc9def1));
    EXPECT_TRUE(isColour(screen, 400, 170, 0xffc9def1)) << "through all columns";
    EXPECT_TRUE(isColour(screen, 770, 170, 0xffc9def1));
    EXPECT_TRUE(isColour(screen, 772, 170, 0xfffdfefe));
    EXPECT_TRUE(isColour(screen, 29, 145, 0xfffdfefe)) << "round end";
    EXPECT_TRUE(isColour(screen, 100, 249, 0xffdfe7ef)) << "line between rows";
    EXPECT_TRUE(isColour(screen, 40, 249, 0xffdfe7ef));
    EXPECT_TRUE(isColour(screen, 38, 249, 0xfffdfefe));
    EXPECT_TRUE(isColour(screen, 100, 196, 0xfffdfefe, 3)) << "no line below the selected row";
    const QRect first = inkIn(screen, QRect(30, 96, 70, 40), 0xfffdfefe, 120);
    EXPECT_NEAR(first.left(), 46, 1);
    const QRect second = inkIn(screen, QRect(140, 96, 70, 40), 0xfffdfefe, 120);
    EXPECT_NEAR(second.left(), 151, 1);
}

TEST_F(Look, HeadingsStandOnThePageAboveThePanel)
{
    QTableWidget* table = page.add<QTableWidget>(QRect(25, 50, 750, 330), 2, 2);
    SetTabWgtNormalProperty(table, true);
    table->setHorizontalHeaderLabels({"Key", "Type"});
    table->horizontalHeader()->setFixedHeight(40);
    table->setItem(0, 0, new QTableWidgetItem("01"));
    page.setPalette(QPalette(Qt::gray, QColor(look::kSelection)));
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 400, 60, look::kSelection)) << "the page shows";
    EXPECT_TRUE(isColour(screen, 400, 90, look::kPanelLine)) << "the panel starts below the headings";
    EXPECT_TRUE(isColour(screen, 400, 200, look::kPanel));
    EXPECT_FALSE(inkIn(screen, QRect(30, 52, 120, 36), look::kSelection, 90).isEmpty());
}

TEST_F(Look, ComboBoxListHasHighRowsAndARoundSelection)
{
    QComboBox* box = page.add<QComboBox>(QRect(200, 100, 200, 36));
    box->addItems({"One", "Two", "Three"});
    page.open();
    box->showPopup();
    kit::settle();
    QWidget* list = kit::windows().first();
    EXPECT_GE(box->view()->sizeHintForRow(0), 35);
    const QImage screen = kit::screen();
    const QRect frame = list->geometry();
    EXPECT_EQ(frame.width(), 200);
    const int middle = frame.top() + 1 + 18;
    EXPECT_TRUE(isColour(screen, frame.left() + 60, middle - 14, look::kSelection));
    EXPECT_TRUE(isColour(screen, frame.left() + 2, middle, look::kField));
    EXPECT_TRUE(isColour(screen, 300, frame.bottom(), look::kFieldLine));
    box->hidePopup();
}

TEST_F(Look, ComboBoxShowsItsChevron)
{
    QComboBox* box = page.add<QComboBox>(QRect(200, 100, 200, 36));
    box->addItems({"A very long choice that does not fit into the box"});
    page.open();
    box->clearFocus();
    const QImage screen = kit::screen();
    const QRect chevron = inkIn(screen, QRect(366, 104, 30, 28), look::kField, 100);
    EXPECT_NEAR(chevron.width(), 13, 3);
    EXPECT_NEAR(chevron.center().y(), 118, 2);
    EXPECT_LE(inkIn(screen, QRect(203, 104, 161, 28), look::kField, 100).right(), 363);
}

TEST_F(Look, DisabledFieldsAreGrey)
{
    QLineEdit* edit = page.add<QLineEdit>(QRect(200, 100, 200, 36), QString("fixed"));
    edit->setEnabled(false);
    page.open();
    EXPECT_TRUE(isColour(kit::screen(), 380, 118, look::kFieldDisabled));
    EXPECT_EQ(edit->palette().color(QPalette::Disabled, QPalette::Text), QColor(90, 90, 90, 190));
}

TEST_F(Look, EditsButtonsAndBoxesAreThirtySixPixelsHighByThemselves)
{
    EXPECT_EQ(QLineEdit().sizeHint().height(), 36);
    EXPECT_EQ(QComboBox().sizeHint().height(), 36);
    EXPECT_EQ(QPushButton("Choose").sizeHint().height(), 36);
}

TEST_F(Look, ScrollBarIsThin)
{
    QListWidget* list = page.add<QListWidget>(QRect(200, 60, 200, 300));
    for (int row = 0; row < 50; ++row)
        list->addItem(QString::number(row));
    page.open();
    EXPECT_EQ(list->verticalScrollBar()->width(), 10);
    EXPECT_TRUE(isColour(kit::screen(), 394, 80, look::kFieldLine)) << "the thumb at the top";
    EXPECT_FALSE(isColour(kit::screen(), 394, 340, look::kFieldLine));
}

TEST_F(Look, ScrollBarThumbGoesFromEndToEndUnderTheFinger)
{
    QListWidget* list = page.add<QListWidget>(QRect(200, 60, 200, 300));
    for (int row = 0; row < 50; ++row)
        list->addItem(QString::number(row));
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    page.open();
    QScrollBar* bar = list->verticalScrollBar();
    const QPoint top = bar->mapToGlobal(QPoint(5, 2));
    const int free =
        bar->height() - qMax(24, bar->height() * bar->pageStep() / (bar->maximum() + bar->pageStep()));
    kit::press(top);
    kit::moveTo(top + QPoint(0, free));
    EXPECT_EQ(bar->value(), bar->maximum());
    kit::moveTo(top + QPoint(0, free / 2));
    EXPECT_NEAR(bar->value(), bar->maximum() / 2, bar->maximum() / 50 + 1);
    kit::moveTo(top);
    kit::release(top);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(Look, ToolTipsStayAway)
{
    QPushButton* button = page.add<QPushButton>(QRect(200, 100, 120, 36), QString("Choose"));
    button->setToolTip("a tip");
    page.open();
    QHelpEvent help(QEvent::ToolTip, QPoint(10, 10), QPoint(210, 110));
    QApplication::sendEvent(button, &help);
    kit::settle();
    EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(Look, FittedTextShrinksBeforeItIsCutAndNeverBelowItsSmallest)
{
    const QFont font = look::font(18);
    const look::FittedText small = look::fitText("Save", font, QSize(188, 40), 1);
    EXPECT_EQ(small.font.pixelSize(), 18);
    EXPECT_EQ(small.lines, QStringList({"Save"}));
    const look::FittedText large = look::fitText("Hintergrundbild einstellen", font, QSize(188, 40), 1);
    EXPECT_LT(large.font.pixelSize(), 18);
    EXPECT_EQ(large.lines.size(), 1);
    const look::FittedText huge = look::fitText(QString("word ").repeated(500), font, QSize(100, 40), 2, 9);
    EXPECT_EQ(huge.font.pixelSize(), 9);
}

TEST_F(Look, FittedTextKeepsLineEndsAndWrapsAtWords)
{
    const look::FittedText text = look::fitText("one\n\ntwo three", look::font(18), QSize(60, 200), 8);
    EXPECT_EQ(text.lines, QStringList({"one", "", "two", "three"}));
    EXPECT_EQ(text.height(), 4 * 24);
}

TEST_F(Look, FullPageIsPaintedWellWithinAFrame)
{
    buildForm();
    QPixmap target(800, 480);
    page.render(&target);
    QElapsedTimer timer;
    timer.start();
    constexpr int kTimes = 20;
    for (int i = 0; i < kTimes; ++i)
        page.render(&target);
    EXPECT_LT(timer.nsecsElapsed() / 1e6 / kTimes, 16) << "milliseconds a page, also without optimisation";
}

} // namespace

TEST_F(Look, ATextWithoutRoomEndsInDotsAndStaysInItsPlace)
{
    const QFont font = look::font(look::kTextSize);
    EXPECT_LE(look::fitText(QString(100000, 'W'), font, QSize(200, 40), 2).lines.join("").size(), 1000)
        << "nobody could read more";
    look::FittedText text = look::fitText(QString(400, 'W'), font, QSize(200, 40), 2);
    look::cutToRoom(text, QSize(200, 40), 2);
    EXPECT_EQ(text.lines.size(), 2);
    EXPECT_TRUE(text.lines.last().endsWith(QChar(0x2026)));
    QImage image(240, 120, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    look::paintFitted(painter, QRect(20, 40, 200, 40), Qt::AlignLeft | Qt::AlignVCenter, QString(400, 'W'),
                      font, 2);
    painter.end();
    EXPECT_TRUE(QRect(20, 40, 200, 40).contains(inkIn(image, image.rect(), qRgb(255, 255, 255))));
    look::FittedText fits = look::fitText("Anna", font, QSize(200, 40), 2);
    look::cutToRoom(fits, QSize(200, 40), 2);
    EXPECT_EQ(fits.lines, QStringList{"Anna"});
}
