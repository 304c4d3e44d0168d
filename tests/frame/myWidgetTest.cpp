// Keys and touch, as every settings page has them: real input on a page that is the active window.
#include "frame/myWidget.h"
#include "frame/noteBox.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QButtonGroup>
#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTimer>

namespace {

class SettingKeys : public FrameTest
{
protected:
    // Widgets stand below one another in the order in which they are added.
    template <class T>
    T* add(int height = 36)
    {
        T* widget = new T(&m_page);
        widget->setGeometry(200, m_nNext, 300, height);
        m_nNext += height + 4;
        return widget;
    }
    QComboBox* addCombo(int items)
    {
        QComboBox* box = add<QComboBox>();
        for (int i = 0; i < items; ++i)
            box->addItem(QString("item %1").arg(i));
        return box;
    }
    QTableWidget* addTable(int rows)
    {
        QTableWidget* table = add<QTableWidget>(120);
        table->setColumnCount(2);
        table->setRowCount(rows);
        for (int row = 0; row < rows; ++row)
            table->setItem(row, 0, new QTableWidgetItem(QString::number(row)));
        return table;
    }
    void open(QWidget* focus)
    {
        m_page.show();
        kit::settle();
        ASSERT_TRUE(m_page.isActiveWindow());
        focus->setFocus();
        kit::settle();
        ASSERT_EQ(m_page.focusWidget(), focus);
    }
    static bool isOpen(QComboBox* box) { return box->view()->isVisible(); }
    static int openRow(QComboBox* box) { return box->view()->currentIndex().row(); }
    static void openList(QComboBox* box)
    {
        kit::key(Qt::Key_Return);
        ASSERT_TRUE(isOpen(box));
    }
    static QPoint rowPoint(QComboBox* box, int row)
    {
        const QRect rect = box->view()->visualRect(box->model()->index(row, 0));
        return box->view()->viewport()->mapToGlobal(rect.center());
    }

    dlgBarePage m_page{nullptr, nullptr, KEYS_CHOICE};
    int m_nNext = 50;
};

} // namespace

TEST_F(SettingKeys, ATapOnAnotherRowOnlyMovesTheHighlight)
{
    QComboBox* box = addCombo(5);
    open(box);
    openList(box);
    kit::tap(rowPoint(box, 3));
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(openRow(box), 3);
    EXPECT_EQ(box->currentIndex(), 0);
    kit::tap(rowPoint(box, 2));
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(openRow(box), 2);
}

TEST_F(SettingKeys, ATapOnTheHighlightedRowChoosesItAndClosesTheList)
{
    QComboBox* box = addCombo(5);
    open(box);
    openList(box);
    kit::stepTime(1000);
    kit::tap(rowPoint(box, 3));
    kit::stepTime(1000);
    kit::tap(rowPoint(box, 3));
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 3);
}

TEST_F(SettingKeys, TwoQuickTapsOnARowChooseItToo)
{
    QComboBox* box = addCombo(5);
    open(box);
    openList(box);
    kit::stepTime(1000);
    kit::tap(rowPoint(box, 3));
    kit::tap(rowPoint(box, 3));
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 3);
}

TEST_F(SettingKeys, AQuickTapJustBesideTheHighlightedRowOnlyMovesTheHighlight)
{
    QComboBox* box = addCombo(5);
    open(box);
    openList(box);
    kit::stepTime(1000);
    const int rowHeight = box->view()->visualRect(box->model()->index(2, 0)).height();
    const QPoint edge = rowPoint(box, 2) + QPoint(0, rowHeight / 2);
    kit::tap(edge - QPoint(0, 2));
    ASSERT_EQ(openRow(box), 2);
    kit::tap(edge + QPoint(0, 2));
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(openRow(box), 3);
    EXPECT_EQ(box->currentIndex(), 0);
}

TEST_F(SettingKeys, AListOpenedByFingerTakesTwoTapsAsWell)
{
    QComboBox* box = addCombo(5);
    open(box);
    kit::tap(box);
    ASSERT_TRUE(isOpen(box));
    kit::stepTime(1000);
    kit::tap(rowPoint(box, 4));
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(openRow(box), 4);
    kit::tap(rowPoint(box, 4));
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 4);
}

TEST_F(SettingKeys, ADraggingFingerNeitherSelectsNorClosesTheList)
{
    QComboBox* box = addCombo(5);
    open(box);
    openList(box);
    kit::press(rowPoint(box, 1));
    kit::moveTo(rowPoint(box, 2));
    kit::moveTo(rowPoint(box, 4));
    EXPECT_EQ(openRow(box), 0);
    EXPECT_TRUE(isOpen(box));
    kit::release(rowPoint(box, 4));
    EXPECT_EQ(openRow(box), 4);
    EXPECT_TRUE(isOpen(box));
}

TEST_F(SettingKeys, AReleaseOutsideTheListIsLetThrough)
{
    QComboBox* box = addCombo(3);
    open(box);
    openList(box);
    kit::stepTime(1000);
    kit::tap(QPoint(790, 430));
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 0);
}

TEST_F(SettingKeys, TheScrollBarOfAnOpenListIsLeftAlone)
{
    QComboBox* box = addCombo(60);
    open(box);
    openList(box);
    QScrollBar* bar = box->view()->verticalScrollBar();
    ASSERT_TRUE(bar->isVisible());
    kit::tap(bar->mapToGlobal(QPoint(bar->width() / 2, bar->height() * 3 / 4)));
    EXPECT_GT(bar->value(), 0);
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(openRow(box), 0);
}

TEST_F(SettingKeys, AFingerThatLeavesTheScrollBarForTheListStillBelongsToTheScrollBar)
{
    QComboBox* box = addCombo(60);
    open(box);
    openList(box);
    QScrollBar* bar = box->view()->verticalScrollBar();
    const QPoint inList = rowPoint(box, 1);
    kit::press(bar->mapToGlobal(QPoint(bar->width() / 2, 20)));
    EXPECT_TRUE(bar->isSliderDown());
    kit::moveTo(inList);
    kit::release(inList);
    EXPECT_FALSE(bar->isSliderDown());
    EXPECT_EQ(openRow(box), 0);
}

TEST_F(SettingKeys, WithoutAnOpenListTouchIsNotFiltered)
{
    QCheckBox* check = add<QCheckBox>();
    open(check);
    kit::tap(check->mapToGlobal(QPoint(12, 18)));
    EXPECT_TRUE(check->isChecked());
}

TEST_F(SettingKeys, OkOpensAClosedList)
{
    QComboBox* box = addCombo(3);
    open(box);
    EXPECT_FALSE(isOpen(box));
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(isOpen(box));
}

TEST_F(SettingKeys, OkInAnOpenListChoosesTheRow)
{
    QComboBox* box = addCombo(3);
    open(box);
    openList(box);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 1);
}

TEST_F(SettingKeys, OkFlipsACheckBox)
{
    QCheckBox* check = add<QCheckBox>();
    open(check);
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(check->isChecked());
    kit::key(Qt::Key_Return);
    EXPECT_FALSE(check->isChecked());
}

TEST_F(SettingKeys, OkTogglesARadioButton)
{
    QButtonGroup group;
    QRadioButton* first = add<QRadioButton>();
    QRadioButton* second = add<QRadioButton>();
    group.addButton(first);
    group.addButton(second);
    first->setChecked(true);
    open(first);
    second->setFocus();
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(second->isChecked());
    EXPECT_FALSE(first->isChecked());
    kit::key(Qt::Key_Return);
    EXPECT_TRUE(second->isChecked());
}

TEST_F(SettingKeys, OkIsNotEaten)
{
    QCheckBox* check = add<QCheckBox>();
    open(check);
    QKeyEvent ok(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    EXPECT_FALSE(m_page.eventFilter(check, &ok));
}

TEST_F(SettingKeys, LeftAndRightStepAClosedListRoundItsEnds)
{
    QComboBox* box = addCombo(3);
    open(box);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(box->currentIndex(), 2);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(box->currentIndex(), 1);
    kit::key(Qt::Key_Right);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(box->currentIndex(), 0);
    EXPECT_FALSE(isOpen(box));
}

TEST_F(SettingKeys, AnEmptyListStandsSideSteps)
{
    QComboBox* box = addCombo(0);
    open(box);
    kit::key(Qt::Key_Left);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(box->currentIndex(), -1);
}

TEST_F(SettingKeys, SideStepsInAnOpenListAreTheLists)
{
    QComboBox* box = addCombo(3);
    open(box);
    openList(box);
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    EXPECT_FALSE(m_page.eventFilter(box->view(), &left));
    EXPECT_EQ(box->currentIndex(), 0);
}

TEST_F(SettingKeys, ACheckBoxEatsSideSteps)
{
    QCheckBox* check = add<QCheckBox>();
    open(check);
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    EXPECT_TRUE(m_page.eventFilter(check, &left));
    EXPECT_TRUE(m_page.eventFilter(check, &right));
}

TEST_F(SettingKeys, SideStepsWithoutFocusOrInAnEditAreLetThrough)
{
    QLineEdit* edit = add<QLineEdit>();
    edit->setText("abc");
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    EXPECT_FALSE(m_page.eventFilter(edit, &left));
    open(edit);
    edit->setCursorPosition(3);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(edit->cursorPosition(), 2);
}

TEST_F(SettingKeys, UpOnTheFirstRowOfAnOpenListGoesToTheLastAndDownOnTheLastToTheFirst)
{
    QComboBox* box = addCombo(4);
    open(box);
    openList(box);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(openRow(box), 3);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(openRow(box), 2);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(openRow(box), 3);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(openRow(box), 0);
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 0);
}

TEST_F(SettingKeys, UpAndDownOnAClosedListMoveTheFocus)
{
    QLineEdit* above = add<QLineEdit>();
    QComboBox* box = addCombo(4);
    QLineEdit* below = add<QLineEdit>();
    open(box);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(m_page.focusWidget(), below);
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(m_page.focusWidget(), above);
    EXPECT_EQ(box->currentIndex(), 0);
}

TEST_F(SettingKeys, ATableStepsByRowsRoundItsEnds)
{
    QTableWidget* table = addTable(3);
    open(table);
    table->setCurrentCell(0, 1);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(table->currentRow(), 2);
    EXPECT_EQ(table->currentColumn(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(table->currentRow(), 0);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(table->currentRow(), 1);
    EXPECT_EQ(m_page.focusWidget(), table);
}

TEST_F(SettingKeys, ATableWithOneRowEatsUpAndDownAndStays)
{
    add<QLineEdit>();
    QTableWidget* table = addTable(1);
    add<QLineEdit>();
    open(table);
    table->setCurrentCell(0, 1);
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    EXPECT_TRUE(m_page.eventFilter(table, &up));
    EXPECT_TRUE(m_page.eventFilter(table, &down));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(m_page.focusWidget(), table);
    EXPECT_EQ(table->currentRow(), 0);
    EXPECT_EQ(table->currentColumn(), 1);
}

TEST_F(SettingKeys, StepsOfTheFocusPassOverATable)
{
    QLineEdit* above = add<QLineEdit>();
    addTable(3);
    QLineEdit* below = add<QLineEdit>();
    open(below);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(m_page.focusWidget(), above);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(m_page.focusWidget(), below);
}

TEST_F(SettingKeys, UpAndDownWithoutFocusGiveOne)
{
    QLineEdit* edit = add<QLineEdit>();
    open(edit);
    edit->clearFocus();
    ASSERT_EQ(m_page.focusWidget(), nullptr);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    EXPECT_TRUE(m_page.eventFilter(&m_page, &down));
    EXPECT_EQ(m_page.focusWidget(), edit);
}

TEST_F(SettingKeys, AnUncheckedRadioButtonIsReachedByUpAndDown)
{
    QButtonGroup group;
    QRadioButton* radios[3];
    for (QRadioButton*& radio : radios) {
        radio = add<QRadioButton>();
        group.addButton(radio);
    }
    radios[1]->setChecked(true);
    open(radios[1]);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(m_page.focusWidget(), radios[2]);
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(m_page.focusWidget(), radios[0]);
    EXPECT_TRUE(radios[1]->isChecked());
}

TEST_F(SettingKeys, FocusInOfARadioButtonIsEatenAlsoWithoutAGroup)
{
    QRadioButton* alone = add<QRadioButton>();
    QLineEdit* edit = add<QLineEdit>();
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    EXPECT_TRUE(m_page.eventFilter(alone, &in));
    EXPECT_FALSE(m_page.eventFilter(edit, &in));
}

namespace {

class CountingRadio : public QRadioButton
{
public:
    using QRadioButton::QRadioButton;
    void focusInEvent(QFocusEvent* event) override
    {
        ++m_nFocusIns;
        QRadioButton::focusInEvent(event);
    }
    int m_nFocusIns = 0;
};

} // namespace

TEST_F(SettingKeys, ARadioButtonHandlesItsFocusOnceAllTheSame)
{
    QLineEdit* edit = add<QLineEdit>();
    CountingRadio* radio = add<CountingRadio>();
    open(edit);
    radio->setFocus();
    EXPECT_EQ(radio->m_nFocusIns, 1);
}

TEST_F(SettingKeys, FocusGivesTabFocusToTheCheckableButtonsOfTheGroupOnly)
{
    QButtonGroup group;
    QRadioButton* radio = add<QRadioButton>();
    QRadioButton* other = add<QRadioButton>();
    QPushButton* plain = add<QPushButton>();
    for (QAbstractButton* button :
         {static_cast<QAbstractButton*>(radio), static_cast<QAbstractButton*>(other),
          static_cast<QAbstractButton*>(plain)}) {
        group.addButton(button);
        button->setFocusPolicy(Qt::ClickFocus);
    }
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    m_page.eventFilter(radio, &in);
    EXPECT_EQ(radio->focusPolicy(), Qt::ClickFocus | Qt::TabFocus);
    EXPECT_EQ(other->focusPolicy(), Qt::ClickFocus | Qt::TabFocus);
    EXPECT_EQ(plain->focusPolicy(), Qt::ClickFocus);
}

TEST_F(SettingKeys, AnEditWithTheFocusHasTheArrowCursor)
{
    QLineEdit* edit = add<QLineEdit>();
    ASSERT_EQ(edit->cursor().shape(), Qt::IBeamCursor);
    open(edit);
    EXPECT_EQ(edit->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(SettingKeys, AShowGivesTheFocusToTheFirstChildThatCanTakeIt)
{
    add<QFrame>();
    QLineEdit* disabled = add<QLineEdit>();
    disabled->setEnabled(false);
    QLineEdit* hidden = add<QLineEdit>();
    hidden->hide();
    QLineEdit* first = add<QLineEdit>();
    QLineEdit* second = add<QLineEdit>();
    open(second);
    QShowEvent show;
    EXPECT_FALSE(m_page.eventFilter(second, &show));
    EXPECT_EQ(m_page.focusWidget(), second);
    EXPECT_FALSE(m_page.eventFilter(&m_page, &show));
    EXPECT_EQ(m_page.focusWidget(), first);
}

TEST_F(SettingKeys, KeysOfOtherWindowsAreNotTouched)
{
    QLineEdit* edit = add<QLineEdit>();
    open(edit);
    QComboBox other;
    other.addItems({"a", "b"});
    QKeyEvent ok(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    EXPECT_FALSE(m_page.eventFilter(&other, &ok));
    EXPECT_FALSE(m_page.eventFilter(&other, &down));
    EXPECT_FALSE(isOpen(&other));
    EXPECT_EQ(m_page.focusWidget(), edit);
}

TEST_F(SettingKeys, OtherKeysReachTheirWidget)
{
    QLineEdit* edit = add<QLineEdit>();
    open(edit);
    kit::type("abc");
    EXPECT_EQ(edit->text(), "abc");
}

TEST_F(SettingKeys, OkInAnEditPressesNoButtonOfThePage)
{
    QPushButton* button = add<QPushButton>();
    QLineEdit* edit = add<QLineEdit>();
    int pressed = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++pressed; });
    open(edit);
    kit::key(Qt::Key_Return);
    kit::key(Qt::Key_Enter);
    EXPECT_EQ(pressed, 0);
    button->setFocus();
    kit::key(Qt::Key_Return);
    EXPECT_EQ(pressed, 1) << "the button that has the focus";
}

TEST_F(SettingKeys, EscapeStillClosesThePage)
{
    open(add<QLineEdit>());
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(m_page.isVisible());
}

TEST_F(SettingKeys, APageIsAFramelessDialog)
{
    EXPECT_EQ(int(Qt::FramelessWindowHint), 0x800);
    EXPECT_TRUE(m_page.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(m_page.windowType(), Qt::Dialog);
}

namespace {
int g_warnings = 0;
}

TEST_F(SettingKeys, TheTimerOfTheLeftBarDoesNothingAndWritesNoWarning)
{
    g_warnings = 0;
    QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++g_warnings; });
    tagLeftBarInfo info{HX_THEME("menu/menu_wan.png"), "WAN"};
    MyWidget page(nullptr, &info);
    page.m_pLeftBar = new qLeftBar(&page);
    kit::stepTime(1500);
    qInstallMessageHandler(before);
    EXPECT_EQ(page.m_pLeftBar->title(), "");
    EXPECT_EQ(g_warnings, 0);
}

TEST_F(SettingKeys, EnterOfTheNumericBlockIsOk)
{
    const auto enter = [] { kit::key(Qt::Key_Enter, Qt::KeypadModifier); };
    QComboBox* box = addCombo(3);
    QCheckBox* check = add<QCheckBox>();
    QButtonGroup group;
    QRadioButton* first = add<QRadioButton>();
    QRadioButton* second = add<QRadioButton>();
    QPushButton* button = add<QPushButton>();
    group.addButton(first);
    group.addButton(second);
    first->setChecked(true);
    int pressed = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++pressed; });
    open(box);
    enter();
    ASSERT_TRUE(isOpen(box));
    kit::key(Qt::Key_Down);
    enter();
    EXPECT_FALSE(isOpen(box));
    EXPECT_EQ(box->currentIndex(), 1);
    check->setFocus();
    enter();
    EXPECT_TRUE(check->isChecked());
    enter();
    EXPECT_FALSE(check->isChecked());
    second->setFocus();
    enter();
    EXPECT_TRUE(second->isChecked());
    button->setFocus();
    enter();
    EXPECT_EQ(pressed, 1);
    EXPECT_TRUE(m_page.isVisible());
}

TEST_F(SettingKeys, EnterOfTheNumericBlockOpensARowAndAnswersABox)
{
    QTableWidget* table = add<QTableWidget>();
    table->setRowCount(2);
    table->setColumnCount(1);
    table->setItem(1, 0, new QTableWidgetItem("b"));
    table->setCurrentCell(1, 0);
    QList<int> opened;
    QObject::connect(table, &QTableWidget::activated,
                     [&](const QModelIndex& row) { opened.append(row.row()); });
    open(table);
    kit::key(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(opened, QList<int>{1});
    QTimer enter;
    QObject::connect(&enter, &QTimer::timeout, [] {
        QWidget* box = QApplication::activeModalWidget();
        if (box && box->isActiveWindow())
            kit::key(Qt::Key_Enter, Qt::KeypadModifier);
    });
    enter.start(1);
    EXPECT_EQ(questionBox("Reboot device?", &m_page), 1);
}
