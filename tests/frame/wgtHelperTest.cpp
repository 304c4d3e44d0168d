// The look and content that pages give to single widgets.
#include "frame/wgtHelper.h"
#include "frame/configFiles.h"
#include "frame/directoryView.h"
#include "frame/rowHeightDelegate.h"
#include "support/host/combo.h"
#include "support/host/net.h"
#include "tests/frame/frameTest.h"
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTimeEdit>

namespace {

class WidgetHelper : public FrameTest
{
protected:
    static void expectPlainTable(const QTableWidget& table)
    {
        EXPECT_TRUE(table.horizontalHeader()->isHidden());
        EXPECT_TRUE(table.verticalHeader()->isHidden());
        EXPECT_EQ(table.selectionBehavior(), QAbstractItemView::SelectRows);
        EXPECT_FALSE(table.showGrid());
        EXPECT_EQ(table.editTriggers(), QAbstractItemView::NoEditTriggers);
        EXPECT_TRUE(table.hasAutoScroll());
        EXPECT_EQ(table.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        EXPECT_EQ(table.verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    }
    static int pixels(const QWidget& widget) { return widget.font().pixelSize(); }
    static std::string value(QComboBox& box, int index)
    {
        return getFilenameComboBoxFullPath(&box, index).GetText();
    }
};

} // namespace

TEST_F(WidgetHelper, TheHooksChangeNothing)
{
    QLineEdit edit("text");
    QCheckBox check("text");
    setupLineEdit(&edit);
    setupCheckbox(&check);
    EXPECT_EQ(edit.text(), "text");
    EXPECT_EQ(edit.maxLength(), QLineEdit().maxLength());
    EXPECT_EQ(check.text(), "text");
    EXPECT_FALSE(check.isChecked());
}

TEST_F(WidgetHelper, AnIconButtonTakesTheSizeOfItsPicture)
{
    QPushButton button;
    setupIconButton(&button, HX_THEME("menu/menu_wan.png"));
    ASSERT_FALSE(button.icon().isNull());
    EXPECT_EQ(button.iconSize(), QPixmap(hostPath(HX_THEME("menu/menu_wan.png"))).size());
    EXPECT_EQ(button.focusPolicy(), Qt::NoFocus);
}

TEST_F(WidgetHelper, AnIconThatCannotBeLoadedLeavesTheButtonWithoutOne)
{
    QPushButton button;
    const QSize before = button.iconSize();
    setupIconButton(&button, "/phone/no-such-picture.png");
    EXPECT_TRUE(button.icon().isNull());
    EXPECT_EQ(button.iconSize(), before);
    EXPECT_EQ(button.focusPolicy(), Qt::NoFocus);
}

TEST_F(WidgetHelper, ATextButtonShowsItsTextUntranslated)
{
    QPushButton button;
    setupTextButton(&button, "Größe");
    EXPECT_EQ(button.text(), "Größe");
}

TEST_F(WidgetHelper, AComboBoxGetsRowsOf35PixelsAndALargerFont)
{
    QComboBox box;
    setupComboBox(&box);
    ASSERT_NE(qobject_cast<RowHeightDelegate*>(box.itemDelegate()), nullptr);
    EXPECT_EQ(box.itemDelegate()->sizeHint(QStyleOptionViewItem(), QModelIndex()), QSize(1, 35));
    EXPECT_EQ(pixels(box), 18);
    EXPECT_EQ(tracedTimes("==change the row height"), 2);
    setupComboBox(nullptr);
    EXPECT_EQ(tracedTimes("==change the row height"), 2);
}

TEST_F(WidgetHelper, DateAndTimeEditsShowTheLocalTime)
{
    netSetLocalTime(2009, 3, 2, 10, 25, 7);
    QDateEdit date;
    QTimeEdit time;
    setupDataEdit(&date);
    setupTimeEdit(&time);
    EXPECT_EQ(date.date(), QDate(2009, 3, 2));
    EXPECT_EQ(pixels(date), 18);
    EXPECT_EQ(pixels(time), 18);
}

TEST_F(WidgetHelper, TheSecondsOfATimeEditRepeatTheMinute)
{
    netSetLocalTime(2009, 3, 2, 10, 25, 7);
    QTimeEdit time;
    setupTimeEdit(&time);
    EXPECT_EQ(time.time(), QTime(10, 25, 25, 0));
}

TEST_F(WidgetHelper, FontsOfDisabledWidgetsAreGreyInAllStates)
{
    QWidget widget;
    for (const bool enabled : {true, false}) {
        setWgtFontColor(&widget, enabled);
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            const QColor expected = enabled ? QColor(0, 0, 0, 255) : QColor(90, 90, 90, 190);
            EXPECT_EQ(widget.palette().color(group, QPalette::WindowText), expected);
        }
    }
}

TEST_F(WidgetHelper, AFileBoxListsTheFilesOfItsSection)
{
    replaceFirmwareFile(MEDIA_FILE_XML,
                        "<MediaFile><sound filter='*.wav'><filelist>"
                        "<item path='/rundata/one' shortname='A '/><other/><item path='/rundata/none'/>"
                        "<item path='/rundata/two' shortname=''/></filelist></sound><empty/></MediaFile>");
    writeFile("/rundata/one/b.wav", "x");
    writeFile("/rundata/one/a.wav", "x");
    writeFile("/rundata/one/c.txt", "x");
    writeFile("/rundata/two/d.wav", "x");
    QComboBox box;
    box.addItem("old");
    EXPECT_EQ(setupFilenameComboBox(&box, "sound"), 1);
    ASSERT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(0), "A a.wav");
    EXPECT_EQ(value(box, 0), "/rundata/one/a.wav");
    EXPECT_EQ(box.itemText(1), "A b.wav");
    EXPECT_EQ(box.itemText(2), "d.wav");
    EXPECT_EQ(value(box, 2), "/rundata/two/d.wav");
    EXPECT_EQ(value(box, 3), "");
    EXPECT_EQ(setupFilenameComboBox(&box, "empty"), 1);
    EXPECT_EQ(box.count(), 0);
}

TEST_F(WidgetHelper, AFileBoxWithoutSectionStaysEmpty)
{
    QComboBox box;
    box.addItem("old");
    EXPECT_EQ(setupFilenameComboBox(&box, "no-such-section"), 0);
    EXPECT_EQ(box.count(), 0);
    replaceFirmwareFile(MEDIA_FILE_XML, "<broken");
    EXPECT_EQ(setupFilenameComboBox(&box, "sound"), 0);
}

TEST_F(WidgetHelper, TheFirmwaresRingTonesFillAFileBox)
{
    QComboBox box;
    EXPECT_EQ(setupFilenameComboBox(&box, "sound"), 1);
    EXPECT_GT(box.count(), 0);
}

TEST_F(WidgetHelper, AFileItemMayHaveEmptyTexts)
{
    QComboBox box;
    addFilenameComboBoxItem(&box, "shown", "/path");
    addFilenameComboBoxItem(&box, nullptr, nullptr);
    addFilenameComboBoxItem(&box, "", "");
    addFilenameComboBoxItem(nullptr, "shown", "/path");
    ASSERT_EQ(box.count(), 3);
    EXPECT_EQ(value(box, 0), "/path");
    EXPECT_EQ(box.itemText(1), "");
    EXPECT_EQ(value(box, 1), "");
    EXPECT_EQ(value(box, 2), "");
}

TEST_F(WidgetHelper, TablesShareOneLook)
{
    void (*const setups[])(QTableWidget*) = {setupDialPlanList, setupPicDiaSettingList, setupSpeedDialList,
                                             setupVersionDetail};
    for (const auto setup : setups) {
        QTableWidget table(2, 3);
        setup(&table);
        expectPlainTable(table);
        EXPECT_EQ(table.selectionMode(), QAbstractItemView::SingleSelection);
    }
}

TEST_F(WidgetHelper, TablesDifferInTheirColumns)
{
    QTableWidget dialPlan(2, 3), picture(2, 3), speed(2, 3), version(2, 3), weather(2, 3);
    setupDialPlanList(&dialPlan);
    setupPicDiaSettingList(&picture);
    setupSpeedDialList(&speed);
    setupVersionDetail(&version);
    setupWeatherWidget(&weather);
    EXPECT_EQ(dialPlan.columnCount(), 2);
    EXPECT_EQ(dialPlan.horizontalHeader()->sectionResizeMode(0), QHeaderView::Stretch);
    EXPECT_EQ(picture.columnCount(), 3);
    EXPECT_EQ(picture.horizontalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
    EXPECT_EQ(speed.columnCount(), 3);
    EXPECT_EQ(speed.horizontalHeader()->sectionResizeMode(2), QHeaderView::Stretch);
    EXPECT_EQ(version.columnCount(), 2);
    EXPECT_EQ(version.columnWidth(0), 325);
    EXPECT_EQ(version.columnWidth(1), 325);
    EXPECT_EQ(pixels(version), 20);
    EXPECT_EQ(weather.columnCount(), 3);
    EXPECT_EQ(weather.horizontalHeader()->sectionResizeMode(0), QHeaderView::Interactive);
    EXPECT_EQ(pixels(weather), 20);
    expectPlainTable(weather);
    EXPECT_EQ(weather.selectionMode(), QAbstractItemView::NoSelection);
}

TEST_F(WidgetHelper, ADirectoryHasThreeColumns)
{
    qDirectoryView view;
    EXPECT_EQ(view.columnCount(), 3);
    EXPECT_EQ(view.columnWidth(0), 250);
    EXPECT_EQ(view.columnWidth(1), 250);
    EXPECT_EQ(view.columnWidth(2), 66);
    EXPECT_EQ(pixels(view), 18);
    EXPECT_GE(view.font().weight(), QFont::DemiBold);
}
