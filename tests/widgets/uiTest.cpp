#include "support/host/ui.h"
#include "tests/widgets/screenPage.h"
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTableWidget>

namespace {

class UiHelpers : public PhoneTest
{
protected:
    ScreenPage page;
};

TEST_F(UiHelpers, ResetTableRemovesAllRows)
{
    QTableWidget table(3, 2);
    table.setItem(0, 0, new QTableWidgetItem("a"));
    qResetTableWidgetContent(&table);
    EXPECT_EQ(table.rowCount(), 0);
    EXPECT_EQ(table.columnCount(), 2);
    qResetTableWidgetContent(nullptr);
}

TEST_F(UiHelpers, NormalTableSelectsOneWholeRowAndHasNoGridHeadersOrEditing)
{
    QTableWidget table(3, 2);
    SetTabWgtNormalProperty(&table, false);
    EXPECT_EQ(table.selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_FALSE(table.showGrid());
    EXPECT_TRUE(table.hasAutoScroll());
    EXPECT_TRUE(table.horizontalHeader()->isHidden());
    EXPECT_TRUE(table.verticalHeader()->isHidden());
    SetTabWgtNormalProperty(&table, true);
    EXPECT_FALSE(table.horizontalHeader()->isHidden());
    EXPECT_TRUE(table.verticalHeader()->isHidden());
    SetTabWgtNormalProperty(nullptr, true);
}

TEST_F(UiHelpers, ScrollStyleNeverScrollsSideways)
{
    QTableWidget table(3, 2);
    SetTabWgtScrollStyle(&table);
    EXPECT_EQ(table.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    SetTabWgtScrollStyle(nullptr);
}

TEST_F(UiHelpers, TransparentListShowsThePageBehindIt)
{
    QListWidget* list = page.add<QListWidget>(QRect(200, 100, 300, 200));
    SetQListWidgetTransparent(list);
    list->setFocusPolicy(Qt::NoFocus);
    page.open();
    const QImage screen = kit::screen();
    EXPECT_EQ(screen.pixel(210, 250), screen.pixel(600, 250));
    EXPECT_EQ(screen.pixel(200, 100), screen.pixel(600, 100));
    SetQListWidgetTransparent(nullptr);
}

TEST_F(UiHelpers, FrameShowsItsPictureBehindItsChildren)
{
    QImage picture(800, 480, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(hostPath("/rundata/back.png")));
    QFrame* frame = page.add<QFrame>(QRect(0, 0, 800, 480));
    QLineEdit* edit = new QLineEdit(frame);
    edit->setGeometry(200, 100, 200, 36);
    frame->setFrameShape(QFrame::Box);
    SetBackgroundToFrame(frame, "/rundata/back.png");
    page.open();
    EXPECT_TRUE(isColour(kit::screen(), 10, 10, 0xffff0000));
    EXPECT_TRUE(isColour(kit::screen(), 0, 479, 0xffff0000)) << "no line around it";
    EXPECT_TRUE(isColour(kit::screen(), 300, 118, look::kField));
    SetBackgroundToFrame(nullptr, "/rundata/back.png");
}

TEST_F(UiHelpers, FontStyleSetsPixelsAndWeight)
{
    QLabel label;
    setFontStyle(22, 75, &label, true);
    EXPECT_EQ(label.font().pixelSize(), 22);
    EXPECT_TRUE(label.font().bold());
    setFontStyle(18, -1, &label, false);
    EXPECT_EQ(label.font().pixelSize(), 18);
    EXPECT_TRUE(label.font().bold()) << "-1 keeps the weight";
    setFontStyle(18, 50, &label, false);
    EXPECT_FALSE(label.font().bold());
    setFontStyle(18, 87, &label, false);
    EXPECT_TRUE(label.font().bold());
    setFontStyle(18, 50, nullptr, false);
}

TEST_F(UiHelpers, LabelIsTransparentWithoutLine)
{
    QLabel label;
    label.setFrameShape(QFrame::Box);
    label.setAutoFillBackground(true);
    SetLabel(&label);
    EXPECT_EQ(label.frameShape(), QFrame::NoFrame);
    EXPECT_FALSE(label.autoFillBackground());
    EXPECT_EQ(label.font().pixelSize(), 16);
    SetLabel(nullptr);
}

TEST_F(UiHelpers, LabelInABarKeepsItsTextOffTheEndOfTheBar)
{
    QLabel* clock = page.add<QLabel>(QRect(600, 0, 200, 40), QString("21/11/2026 14:05"));
    clock->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    SetLabel(clock);
    page.open();
    const QImage screen = kit::screen();
    EXPECT_NEAR(inkIn(screen, QRect(600, 0, 200, 40), screen.pixel(790, 20)).right(), 787, 1);
}

TEST_F(UiHelpers, LineTextIsShownFromItsPosition)
{
    QLineEdit edit;
    SetQLineTextEx(&edit, "A long text that starts at its first letter", 0);
    EXPECT_EQ(edit.text(), "A long text that starts at its first letter");
    EXPECT_EQ(edit.cursorPosition(), 0);
    SetQLineTextEx(&edit, "abc", 99);
    EXPECT_EQ(edit.cursorPosition(), 3);
    SetQLineTextEx(&edit, "abc", -5);
    EXPECT_EQ(edit.cursorPosition(), 0);
    SetQLineTextEx(nullptr, "abc", 0);
}

TEST_F(UiHelpers, RectanglesAreMappedToTheScreen)
{
    page.setGeometry(100, 50, 400, 300);
    QLabel* label = page.add<QLabel>(QRect(10, 20, 100, 30));
    page.open();
    EXPECT_EQ(qMapRectToGlobal(label, QRect(1, 2, 30, 40)), QRect(111, 72, 30, 40));
    EXPECT_EQ(qMapRectToGlobal(nullptr, QRect(1, 2, 3, 4)), QRect(1, 2, 3, 4));
}

TEST_F(UiHelpers, ChildOfIsToldThroughAllGenerations)
{
    QObject parent;
    QObject* child = new QObject(&parent);
    QObject* grandchild = new QObject(child);
    QObject stranger;
    EXPECT_TRUE(isChildOf(&parent, &parent));
    EXPECT_TRUE(isChildOf(grandchild, &parent));
    EXPECT_FALSE(isChildOf(&parent, child));
    EXPECT_FALSE(isChildOf(&stranger, &parent));
    EXPECT_FALSE(isChildOf(nullptr, &parent));
    EXPECT_FALSE(isChildOf(child, nullptr));
}

} // namespace
