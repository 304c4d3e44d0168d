// The list of a combo box: where it opens, and what it shows.
#include "tests/widgets/screenPage.h"
#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QScreen>

namespace {

class ComboList : public PhoneTest
{
protected:
    // A box at that height of the page, with that many rows and that one chosen.
    void openAt(int top, int rows, int current)
    {
        box.clear();
        for (int row = 0; row < rows; ++row)
            box.addItem(QString("row %1").arg(row));
        box.setGeometry(190, top, 300, 36);
        box.setCurrentIndex(current);
        box.show();
        page.open();
        box.showPopup();
        kit::settle();
    }
    void close()
    {
        box.hidePopup();
        kit::settle();
    }
    QWidget* list() const { return box.view()->window(); }
    // On the screen.
    QRect rowRect(int row) const
    {
        const QRect rect = box.view()->visualRect(box.model()->index(row, 0));
        return rect.translated(box.view()->viewport()->mapToGlobal(QPoint()));
    }
    QRect rowRoom() const
    {
        return box.view()->viewport()->rect().translated(box.view()->viewport()->mapToGlobal(QPoint()));
    }
    int wholeRows() const
    {
        int count = 0;
        for (int row = 0; row < box.count(); ++row) {
            const QRect shown = rowRect(row) & rowRoom();
            EXPECT_TRUE(shown.isEmpty() || shown.height() == rowRect(row).height()) << "cut: " << row;
            count += shown.isEmpty() ? 0 : 1;
        }
        return count;
    }
    void expectInPlace()
    {
        const QRect place = list()->geometry();
        EXPECT_TRUE(kPage.contains(place)) << place.top() << " to " << place.bottom();
        EXPECT_FALSE(place.intersects(box.geometry())) << "the box itself is seen";
        EXPECT_TRUE(place.top() == box.geometry().bottom() + 1 || place.bottom() == box.y() - 1);
        EXPECT_EQ(rowRoom().height() % rowRect(0).height(), 0);
    }

    const QRect kPage{0, 40, 800, 400}; // between the bars
    ScreenPage page;
    QComboBox box{&page};
};

TEST_F(ComboList, OfManyRowsStaysBetweenTheBarsAndShowsWholeRowsOnly)
{
    ASSERT_GT(page.screen()->geometry().height(), 480) << "a display that is higher than the page";
    for (int top = 44; top <= 400; top += 17) {
        SCOPED_TRACE(top);
        for (const int current : {0, 7, 30}) {
            openAt(top, 31, current);
            expectInPlace();
            EXPECT_GE(wholeRows(), 4);
            EXPECT_TRUE(rowRoom().contains(rowRect(current))) << current;
            close();
        }
    }
}

TEST_F(ComboList, TakesTheSideWithMoreRowsWhenNoneHasRoomForAll)
{
    openAt(100, 31, 0);
    EXPECT_EQ(list()->y(), 136);
    EXPECT_EQ(wholeRows(), (440 - 136) / 36);
    close();
    openAt(340, 31, 0);
    EXPECT_EQ(list()->geometry().bottom(), 339);
    EXPECT_EQ(wholeRows(), (340 - 40) / 36);
}

TEST_F(ComboList, OfAFewRowsIsAsHighAsTheyAre)
{
    openAt(100, 3, 1);
    expectInPlace();
    EXPECT_EQ(wholeRows(), 3);
    EXPECT_EQ(rowRoom().height(), 3 * rowRect(0).height());
    EXPECT_EQ(list()->y(), 136);
    close();
    openAt(395, 3, 1);
    expectInPlace();
    EXPECT_EQ(wholeRows(), 3);
    EXPECT_EQ(list()->geometry().bottom(), 394) << "above the box when there is no room below";
}

TEST_F(ComboList, KeepsTheRowInSightThatTheKeysGoTo)
{
    openAt(340, 31, 0);
    for (int row = 1; row < 31; ++row) {
        kit::key(Qt::Key_Down);
        EXPECT_TRUE(rowRoom().contains(rowRect(row))) << row;
        wholeRows();
    }
    kit::key(Qt::Key_Home);
    EXPECT_TRUE(rowRoom().contains(rowRect(0)));
    wholeRows();
}

TEST_F(ComboList, IsScrolledByAFinger)
{
    openAt(340, 31, 0);
    const QRect room = rowRoom();
    kit::press(QPoint(list()->geometry().right() - 5, room.top() + 5));
    kit::moveTo(QPoint(list()->geometry().right() - 5, room.bottom() - 2));
    EXPECT_TRUE(rowRoom().contains(rowRect(30)));
    wholeRows();
    kit::release(QPoint(list()->geometry().right() - 5, room.bottom() - 2));
    EXPECT_TRUE(list()->isVisible());
    kit::tap(rowRect(30).center());
    EXPECT_EQ(box.currentIndex(), 30);
}

TEST_F(ComboList, OpensAsWellWithTheRowsThatCameSince)
{
    openAt(200, 2, 0);
    close();
    openAt(200, 25, 24);
    expectInPlace();
    EXPECT_TRUE(rowRoom().contains(rowRect(24)));
    kit::shot("comboList");
}

} // namespace
