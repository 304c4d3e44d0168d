// The page "DSS Key".
#include "settings/call/dlgDssKeyList.h"
#include "settings/call/dlgDssKeySetting.h"
#include "support/host/ui.h"
#include "tests/kit/eventCounter.h"
#include "tests/settings_call/keyPageTest.h"
#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>

namespace {

const char* const kTable = "tabKeys";

class KeyList : public KeyPageTest
{
protected:
    KeyList()
    {
        writeKeys(item("Line", "Line=\"-1\"") +
                  item("BLF", "Line=\"1\" Label=\"123456789\" Extension=\"8001\" Value=\"*8001\"") +
                  item("Speed Dial", "Line=\"3\" Label=\"1234567890\" Value=\"4711\""));
    }
    void openPage() { open("DSS Key"); }
    std::string row(int number) const { return cells(kTable, number); }
    int current() const { return table(kTable)->currentRow(); }
    void pageKey(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(page, &event);
    }
    dlgDssKeySetting* editor() const { return getDssKeySettingDlg(); }
    void changeKey(const QByteArray& old, const QByteArray& fresh)
    {
        writeFile(KEY_FILE, readFile(KEY_FILE).replace(old, fresh));
    }
};

} // namespace

TEST_F(KeyList, ShowsAllKeysInTheWordsOfTheFile)
{
    openPage();
    EXPECT_EQ(title(), "DSS Key List");
    EXPECT_EQ(softKeys(), (QStringList{"Edit", "", "", "Back"}));
    for (const char* caption : {"Key", "Type", "Label", "Line", "Value", "Extension"})
        EXPECT_EQ(child<QLabel>(qPrintable(QString("lab") + caption))->text(), caption);
    EXPECT_EQ(row(0), "01|Line||Auto||");
    EXPECT_EQ(row(1), "02|BLF|123456789|Line 2|*8001|8001");
    EXPECT_EQ(row(2), "03|Speed Dial|123456789...|Line 4|4711|");
    EXPECT_EQ(row(3), "04|N/A||Auto||");
    EXPECT_EQ(row(19), "20|N/A||Auto||");
    EXPECT_EQ(current(), 0);
    kit::shot("key-list");
}

TEST_F(KeyList, TheTableHasItsPlaceAndItsMeasures)
{
    openPage();
    QTableWidget* keys = table(kTable);
    EXPECT_EQ(keys->geometry(), QRect(25, 100, 750, 315));
    EXPECT_EQ(keys->rowCount(), 20);
    EXPECT_EQ(keys->rowHeight(0), 50);
    const int widths[] = {125, 125, 125, 125, 125, 92};
    for (int column = 0; column < 6; ++column)
        EXPECT_EQ(keys->columnWidth(column), widths[column]) << column;
    EXPECT_EQ(keys->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    expectPlain(keys);
    expectBackground("general/gen_bg_has_topbar_and_softkey.jpg");
}

TEST_F(KeyList, TheLabelIsCutByCharactersBeyondNineBytes)
{
    writeKeys(item("BLF", "Label=\"\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA4\xC3\xB6\" Value=\"1\"") +
              item("BLF", "Label=\"\xE7\xBA\xBF\xE8\xB7\xAF\xE7\xBA\xBF\" Value=\"1\"") +
              item("BLF", "Label=\"12345678\xF0\x9F\x98\x80"
                          "90\" Value=\"1\""));
    openPage();
    EXPECT_EQ(table(kTable)->item(0, 2)->text(), QString::fromUtf8("äöüäö..."));
    EXPECT_EQ(table(kTable)->item(1, 2)->text(), QString::fromUtf8("线路线"));
    EXPECT_EQ(table(kTable)->item(2, 2)->text(), QString::fromUtf8("12345678😀..."));
}

// A page that is on the screen has only the cells with text; the rest comes in later turns.
TEST_F(KeyList, EmptyCellsAreMadeAfterThePageIsOnTheScreen)
{
    dlgDssKeyList list(nullptr, nullptr);
    page = &list;
    list.show();
    EXPECT_EQ(row(0), "01|Line|(none)|Auto|(none)|(none)");
    kit::settle();
    EXPECT_EQ(row(0), "01|Line||Auto||");
}

TEST_F(KeyList, ALaterFillTouchesOnlyRowsThatChanged)
{
    openPage();
    int changed = 0;
    QObject::connect(table(kTable), &QTableWidget::itemChanged, page, [&](QTableWidgetItem*) { ++changed; });
    static_cast<dlgDssKeyList*>(page)->RefreshData();
    EXPECT_EQ(changed, 0);
    changeKey("8001\" Value", "8002\" Value");
    static_cast<dlgDssKeyList*>(page)->RefreshData();
    EXPECT_EQ(row(1), "02|BLF|123456789|Line 2|*8001|8002");
    EXPECT_EQ(changed, 1); // setText tells of real changes only
}

TEST_F(KeyList, ALaterFillAddsNoRow)
{
    writeKeys(item("Line", "Line=\"0\""), 2);
    openPage();
    EXPECT_EQ(row(2), "(none)|(none)|(none)|(none)|(none)|(none)");
    writeKeys(item("Line", "Line=\"1\""), 5);
    static_cast<dlgDssKeyList*>(page)->RefreshData();
    kit::settle();
    EXPECT_EQ(row(0), "01|Line||Line 2||");
    EXPECT_EQ(row(2), "(none)|(none)|(none)|(none)|(none)|(none)");
}

TEST_F(KeyList, AFileThatCannotBeLoadedIsReportedAndLeavesTheList)
{
    openPage();
    for (const QByteArray& broken : {QByteArray("<DssKey><Item"), QByteArray()}) {
        mark();
        if (broken.isEmpty())
            QFile::remove(hostPath(KEY_FILE));
        else
            writeFile(KEY_FILE, broken);
        kit::BoxAnswers boxes;
        static_cast<dlgDssKeyList*>(page)->RefreshData();
        EXPECT_EQ(reports("Fail to load xml file [/rundata/data/dsskey.xml]"), 1);
        EXPECT_EQ(row(1), "02|BLF|123456789|Line 2|*8001|8001");
        EXPECT_TRUE(boxes.texts().isEmpty());
    }
    writeFile(KEY_FILE, "<Other/>");
    static_cast<dlgDssKeyList*>(page)->RefreshData();
    EXPECT_EQ(reports("pNodeRoot != NULL"), 1);
    EXPECT_EQ(row(1), "02|BLF|123456789|Line 2|*8001|8001");
}

TEST_F(KeyList, AFileThatIsGoodAgainFillsAListThatNeverWas)
{
    writeFile(KEY_FILE, "<DssKey><Item");
    openPage();
    EXPECT_EQ(row(0), "(none)|(none)|(none)|(none)|(none)|(none)");
    back();
    writeKeys(item("Line", "Line=\"2\""));
    openPage();
    EXPECT_EQ(row(0), "01|Line||Line 3||");
}

TEST_F(KeyList, AFileWithoutMeasureIsNotRead)
{
    QByteArray keys;
    for (int i = 0; i < 200000; ++i)
        keys += "<Item/>";
    writeFile(KEY_FILE, "<DssKey>" + keys + "</DssKey>");
    openPage();
    EXPECT_EQ(reports("Fail to load xml file"), 1);
}

TEST_F(KeyList, LoadingIsTraced)
{
    openPage();
    EXPECT_EQ(traces().count("void dlgDssKeyList::LoadDataByXml() begin"), 1);
    EXPECT_EQ(traces().count("void dlgDssKeyList::LoadDataByXml() end"), 1);
}

TEST_F(KeyList, EachShowBeginsAtTheFirstKey)
{
    openPage();
    table(kTable)->setCurrentCell(15, 0);
    back();
    openPage();
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(table(kTable)->verticalScrollBar()->value(), 0);
}

TEST_F(KeyList, AListThatAFingerHasMovedIsAtItsTopAgain)
{
    openPage();
    const QPoint at = table(kTable)->viewport()->mapToGlobal(QPoint(60, 25));
    kit::press(at);
    for (int step = 1; step <= 10; ++step)
        kit::moveTo(at - QPoint(0, 10 * step));
    kit::release(at - QPoint(0, 100));
    ASSERT_EQ(table(kTable)->verticalScrollBar()->value(), 100);
    ASSERT_EQ(current(), 0) << "the finger came down there";
    back();
    openPage();
    EXPECT_EQ(table(kTable)->verticalScrollBar()->value(), 0);
}

TEST_F(KeyList, ArrowsGoThroughTheKeysAndRound)
{
    openPage();
    kit::key(Qt::Key_Down);
    EXPECT_EQ(current(), 1);
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Up);
    EXPECT_EQ(current(), 19);
    kit::key(Qt::Key_Down);
    EXPECT_EQ(current(), 0);
}

// What reaches the page goes round whichever arrow it is.
TEST_F(KeyList, OnTheLastKeyUpGoesRoundAsDownDoes)
{
    openPage();
    table(kTable)->setCurrentCell(19, 0);
    pageKey(Qt::Key_Up);
    EXPECT_EQ(current(), 0);
    pageKey(Qt::Key_Down);
    EXPECT_EQ(current(), 19);
    table(kTable)->setCurrentCell(7, 0);
    pageKey(Qt::Key_Down);
    EXPECT_EQ(current(), 7);
    pageKey(Qt::Key_Left);
    EXPECT_EQ(current(), 7);
}

TEST_F(KeyList, OkATouchAndEditOpenTheEditorOnTheRow)
{
    openPage();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    EXPECT_EQ(kit::windows().value(0), editor());
    EXPECT_EQ(editor()->findChild<QLabel*>("labKeyName")->text(), "DSS Key 02");
    editor()->reject();
    softKey(0);
    EXPECT_EQ(kit::windows().value(0), editor());
    editor()->reject();
    kit::tap(table(kTable)->viewport()->mapToGlobal(QPoint(60, 125)));
    EXPECT_EQ(editor()->findChild<QLabel*>("labKeyName")->text(), "DSS Key 03");
    editor()->reject();
}

TEST_F(KeyList, ARowWithoutAKeyOpensAnEmptyEditor)
{
    writeKeys("", 3);
    openPage();
    table(kTable)->setCurrentCell(5, 0);
    softKey(0);
    EXPECT_EQ(editor()->findChild<QLabel*>("labKeyName")->text(), "DSS Key ");
    EXPECT_EQ(editor()->findChild<QComboBox*>("cmbType")->currentIndex(), 0);
    editor()->reject();
}

TEST_F(KeyList, AFingerThatDragsScrollsAndOpensNothing)
{
    openPage();
    const QPoint at = table(kTable)->viewport()->mapToGlobal(QPoint(60, 275));
    kit::press(at);
    for (int step = 1; step <= 20; ++step)
        kit::moveTo(at - QPoint(0, 10 * step));
    kit::release(at - QPoint(0, 200));
    EXPECT_EQ(table(kTable)->verticalScrollBar()->value(), 200);
    EXPECT_EQ(kit::windows().value(0), page);
    kit::tap(table(kTable)->viewport()->mapToGlobal(QPoint(60, 25)));
    EXPECT_EQ(editor()->findChild<QLabel*>("labKeyName")->text(), "DSS Key 05");
    editor()->reject();
}

TEST_F(KeyList, ASaveInTheEditorShowsAndConnectionsPileUpWithoutHarm)
{
    openPage();
    for (int opening = 0; opening < 3; ++opening) {
        softKey(0);
        editor()->reject();
    }
    softKey(0);
    QWidget* list = page;
    page = editor();
    choose("cmbLine", "2");
    mark();
    save();
    page = list;
    EXPECT_EQ(row(0), "01|Line||Line 3||");
    EXPECT_EQ(traces().count("void dlgDssKeyList::LoadDataByXml() begin"), 4);
}

TEST_F(KeyList, TheEditorEndsWithTheListThatFetchedIt)
{
    auto* list = new dlgDssKeyList(nullptr, nullptr);
    list->ShowDlgDssKeySetting();
    const QPointer<dlgDssKeySetting> first = editor();
    EXPECT_EQ(GetDssKeySetting(), first);
    delete list;
    EXPECT_TRUE(first.isNull());
    EXPECT_NE(GetDssKeySetting(), nullptr);
    delete GetDssKeySetting();
}
