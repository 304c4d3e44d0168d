// The list of stocks: added and deleted on the page, kept in a file that others write too.
#include "frame/modSetting.h"
#include "tests/applets_stock/stockTest.h"
#include "tests/file/failingCalls.h"
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

class StockList : public StockTest
{
protected:
    void openWith(const QStringList& codes)
    {
        openStock(codes);
        ASSERT_EQ(page->metaObject()->className(), std::string("dlgStock"));
    }
    void pressAdd() { softKey(0); }
    void pressDelete() { softKey(1); }
    void add(const QString& code)
    {
        enter("editSearch", code);
        pressAdd();
        ASSERT_TRUE(quiet());
    }
    static QStringList ten()
    {
        QStringList codes;
        for (int i = 0; i < 10; ++i)
            codes.append(QString("C%1").arg(i));
        return codes;
    }
};

QStringList padded(QStringList codes, int count = 10)
{
    while (codes.size() < count)
        codes.append("");
    return codes;
}

} // namespace

TEST_F(StockList, AStockIsAddedAtTheEndSelectedStoredAndAskedFor)
{
    openWith({"HBR"});
    kit::BoxAnswers boxes({"yes"});
    add("NEW");
    EXPECT_EQ(boxes.titles(), QStringList{"Add Stock"});
    EXPECT_EQ(boxes.texts(), QStringList{"Add NEW ?"});
    EXPECT_EQ(shownCodes(), (QStringList{"HBR", "NEW"}));
    EXPECT_EQ(text("labDenominator"), "2/2");
    EXPECT_EQ(text("labStockName"), "NEW");
    EXPECT_EQ(storedCodes(), padded({"HBR", "NEW"}));
    EXPECT_EQ(asked(), (QStringList{"HBR", "NEW"}));
}

TEST_F(StockList, TheFirstStockOfAnEmptyListIsAskedForOnce)
{
    openWith({});
    EXPECT_EQ(text("labDenominator"), "0/0");
    EXPECT_TRUE(asked().isEmpty());
    kit::BoxAnswers boxes({"yes"});
    add("NEW");
    EXPECT_EQ(asked(), QStringList{"NEW"});
    EXPECT_EQ(text("labDenominator"), "1/1");
}

TEST_F(StockList, NoLeavesEverythingAsItWas)
{
    openWith({"HBR"});
    const QByteArray before = readFile(STOCK_DATA_XML);
    kit::BoxAnswers boxes({"no", "no"});
    add("NEW");
    pressDelete();
    EXPECT_EQ(boxes.texts(), (QStringList{"Add NEW ?", "Delete HBR ?"}));
    EXPECT_EQ(shownCodes(), QStringList{"HBR"});
    EXPECT_EQ(readFile(STOCK_DATA_XML), before);
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "NEW");
}

TEST_F(StockList, WhatCannotBeAddedIsToldInOrder)
{
    openWith(ten());
    kit::BoxAnswers boxes({"ok", "ok", "ok"});
    pressAdd();
    add("C3");
    add("NEW");
    EXPECT_EQ(boxes.texts(), (QStringList{"Input is empty!", "The stock is existed!", "Stock is full!"}));
    EXPECT_EQ(boxes.titles(), (QStringList{"Note", "Note", "Note"}));
    EXPECT_EQ(storedCodes(), ten());
}

TEST_F(StockList, TheTenthIsAddedLikeAnyOther)
{
    openWith(ten().mid(0, 9));
    kit::BoxAnswers boxes({"yes"});
    add("C9");
    EXPECT_EQ(boxes.texts(), QStringList{"Add C9 ?"});
    EXPECT_EQ(shownCodes(), ten());
    EXPECT_EQ(text("labDenominator"), "10/10");
    EXPECT_EQ(storedCodes(), ten());
}

TEST_F(StockList, TheNotesCloseByThemselves)
{
    openWith({});
    kit::BoxAnswers boxes({"keep"});
    QTimer::singleShot(0, [this] { pressAdd(); });
    EXPECT_TRUE(boxClosesByItself(boxes));
    EXPECT_EQ(boxes.texts(), QStringList{"Input is empty!"});
}

TEST_F(StockList, TheQuestionsWaitForTheirAnswer)
{
    openWith({"HBR"});
    enter("editSearch", "NEW");
    for (int key : {0, 1}) {
        kit::BoxAnswers boxes({"keep"});
        int stayed = 0;
        QTimer clock;
        clock.callOnTimeout(&clock, [&] {
            if (boxes.texts().isEmpty() || stayed++)
                return;
            kit::stepTime(60000);
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_TRUE(box && box != page) << "the question is still there";
            ++stayed;
            kit::tap(box->findChild<QPushButton*>("btnNo"));
        });
        clock.start(1);
        softKey(key);
        EXPECT_TRUE(kit::waitUntil([&] { return stayed >= 2; }, kWaitMs)) << key;
    }
    EXPECT_EQ(storedCodes(), padded({"HBR"}));
}

TEST_F(StockList, CodesAreTakenAsTheyAreTyped)
{
    openWith({"ABC"});
    kit::BoxAnswers boxes({"yes", "yes"});
    add("abc");
    add(" a <b>");
    EXPECT_EQ(storedCodes(), padded({"ABC", "abc", " a <b>"}));
    EXPECT_EQ(boxes.texts().last(), "Add  a <b> ?");
    EXPECT_EQ(asked().mid(0, 2), (QStringList{"ABC", "abc"}));
}

TEST_F(StockList, TheEleventhIsRefusedThoughThePageKnowsOfNone)
{
    openWith({});
    writeList(ten());
    kit::BoxAnswers boxes({"ok"});
    add("NEW");
    EXPECT_EQ(boxes.texts(), QStringList{"Stock is full!"});
    EXPECT_EQ(shownCodes(), ten()) << "the page has caught up";
    EXPECT_EQ(storedCodes(), ten());
}

TEST_F(StockList, AFullListThatChangedKeepsTheSelectedStock)
{
    openWith({"A", "B", "C"});
    select(1);
    const auto before = asked().size();
    writeList({"Z", "C", "B", "Y", "1", "2", "3", "4", "5", "6"});
    kit::BoxAnswers boxes({"ok"});
    add("NEW");
    EXPECT_EQ(list()->currentText(), "B");
    EXPECT_EQ(asked().size(), before) << "a reload asks for nothing";
    EXPECT_EQ(text("labDenominator"), "3/10");
}

TEST_F(StockList, AStockAddedAfterAChangeByTheHostLandsBehindIt)
{
    openWith({"A", "B"});
    writeList({"X", "Y", "A"});
    kit::BoxAnswers boxes({"yes"});
    add("NEW");
    EXPECT_EQ(shownCodes(), (QStringList{"X", "Y", "A", "NEW"}));
    EXPECT_EQ(storedCodes(), padded({"X", "Y", "A", "NEW"}));
    EXPECT_EQ(list()->currentIndex(), 3);
}

TEST_F(StockList, AStockThatTheHostAddsWhileThePageAsksIsNotAddedTwice)
{
    openWith({"A"});
    enter("editSearch", "NEW");
    QTimer::singleShot(0, [this] { writeList({"A", "NEW"}); });
    kit::BoxAnswers boxes({"yes", "ok"});
    pressAdd();
    EXPECT_EQ(boxes.texts().last(), "The stock is existed!");
    EXPECT_EQ(storedCodes(), padded({"A", "NEW"}));
}

TEST_F(StockList, DeletingSelectsTheNextAndBehindTheLastTheLast)
{
    openWith({"A", "B", "C"});
    kit::BoxAnswers boxes({"yes", "yes"});
    select(1);
    pressDelete();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(boxes.titles(), QStringList{"Delete Stock"});
    EXPECT_EQ(boxes.texts(), QStringList{"Delete B ?"});
    EXPECT_EQ(list()->currentText(), "C");
    EXPECT_EQ(text("labStockName"), "C");
    EXPECT_EQ(text("labDenominator"), "2/2");
    EXPECT_EQ(storedCodes(), padded({"A", "C"}));
    pressDelete();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(list()->currentText(), "A");
    EXPECT_EQ(text("labDenominator"), "1/1");
    EXPECT_EQ(storedCodes(), padded({"A"}));
}

TEST_F(StockList, DeletingTheLastOneShowsNothing)
{
    openWith({"A"});
    kit::BoxAnswers boxes({"yes"});
    pressDelete();
    EXPECT_EQ(shownQuote(), nothingKnown());
    EXPECT_EQ(text("labDenominator"), "0/0");
    EXPECT_EQ(storedCodes(), padded({}));
    kit::stepTime(4000);
    EXPECT_EQ(boxes.texts().size(), 1) << "nothing is waited for";
    pressDelete();
    EXPECT_EQ(boxes.texts().size(), 1) << "an empty list has nothing to delete";
}

TEST_F(StockList, AnAnswerForTheLastOneThatWasDeletedIsNotShown)
{
    openWith({"A"});
    silent = true;
    kit::tap(page->findChild<QWidget*>("btnRefresh"));
    ASSERT_TRUE(kit::waitUntil([this] { return held() == 1; }, kWaitMs));
    replies["A"] = quote("late");
    kit::BoxAnswers boxes({"yes"});
    pressDelete();
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(shownQuote(), nothingKnown());
    EXPECT_TRUE(answerFiles().isEmpty());
}

TEST_F(StockList, AStockThatTheHostHasDeletedMeanwhileTakesNoOtherAlong)
{
    openWith({"A", "B"});
    writeList({"B", "C"});
    kit::BoxAnswers boxes({"yes"});
    pressDelete();
    EXPECT_EQ(boxes.texts(), QStringList{"Delete A ?"});
    EXPECT_EQ(storedCodes(), padded({"B", "C"}));
    EXPECT_EQ(text("labDenominator"), "1/2");
}

TEST_F(StockList, WhatElseTheFileHoldsStays)
{
    writeFile(STOCK_DATA_XML, "<Stock version=\"7\"><!-- mine --><slot name=\"A\" note=\"n\"/>"
                              "<other name=\"\" since=\"1\"/><slot name=\"\"/></Stock>");
    openPage();
    kit::BoxAnswers boxes({"yes"});
    add("B");
    const QByteArray file = readFile(STOCK_DATA_XML);
    for (const char* kept :
         {"version=\"7\"", "<!-- mine -->", "name=\"A\" note=\"n\"", "<other name=\"B\" since=\"1\"/>"})
        EXPECT_TRUE(file.contains(kept)) << file.data();
}

TEST_F(StockList, NoSlotIsAddedAndWhatHasNoneIsTold)
{
    writeList({"A", "B"}, 2);
    openPage();
    kit::BoxAnswers boxes({"yes", "ok"});
    add("C");
    EXPECT_EQ(boxes.texts(), (QStringList{"Add C ?", "Stock is full!"}));
    EXPECT_EQ(storedCodes(), (QStringList{"A", "B"}));
    EXPECT_EQ(shownCodes(), (QStringList{"A", "B"}));
    EXPECT_EQ(list()->currentText(), "A");
    EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "C");
}

TEST_F(StockList, MoreThanTenInALargerFileAreNotRefused)
{
    QStringList codes = ten() + QStringList{"C10"};
    writeList(codes, 20);
    openPage();
    kit::BoxAnswers boxes({"yes"});
    add("NEW");
    EXPECT_EQ(storedCodes(), padded(codes + QStringList{"NEW"}, 20));
}

TEST_F(StockList, WithoutItsFileTheListCountsAsFull)
{
    openWith({"A"});
    for (const char* content : {"", "<Stock><item"}) {
        writeFile(STOCK_DATA_XML, content);
        EXPECT_EQ(stock()->GetStockCount(), 10);
        mark();
        kit::BoxAnswers boxes({"ok"});
        add("NEW");
        EXPECT_EQ(boxes.texts(), QStringList{"Stock is full!"});
        EXPECT_TRUE(traces().contains("Fail to load xml file [" STOCK_DATA_XML "]"));
        EXPECT_EQ(shownCodes(), QStringList{"A"});
        EXPECT_EQ(readFile(STOCK_DATA_XML), content);
    }
    writeList({"A"});
    EXPECT_EQ(stock()->GetStockCount(), 1);
}

TEST_F(StockList, AHugeFileIsNotRead)
{
    QByteArray huge = "<Stock>";
    for (int i = 0; i < 100000; ++i)
        huge += "<i name=\"A\"/>";
    writeFile(STOCK_DATA_XML, huge + "</Stock>");
    kit::BoxAnswers boxes({"ok"});
    settingOpenPage(chString("Stock"), nullptr);
    EXPECT_EQ(boxes.texts(), QStringList{"Fail to load xml file [/rundata/data/stockData.xml]"});
    openWith({"A"});
    writeFile(STOCK_DATA_XML, huge + "</Stock>");
    EXPECT_EQ(UpdataStockData(), 1);
    EXPECT_EQ(shownCodes(), QStringList{"A"});
}

TEST_F(StockList, ASaveThatFailsKeepsTheSelectedStock)
{
    openWith({"A", "B"});
    silent = true;
    list()->setCurrentIndex(1);
    const kit::BoxAnswers boxes({"yes", "ok"});
    FailingCalls disk;
    disk.setSpace(0);
    enter("editSearch", "NEW");
    pressAdd();
    EXPECT_EQ(list()->currentText(), "B");
}

TEST_F(StockList, ASaveThatFailsIsToldAndThePageIsAsBefore)
{
    openWith({"A", "B"});
    silent = true;
    {
        const kit::BoxAnswers boxes({"yes", "ok", "yes", "ok"});
        FailingCalls disk;
        disk.setSpace(0);
        enter("editSearch", "NEW");
        pressAdd();
        EXPECT_EQ(boxes.texts(), (QStringList{"Add NEW ?", "The settings cannot be saved!"}));
        EXPECT_EQ(shownCodes(), (QStringList{"A", "B"}));
        EXPECT_EQ(child<QLineEdit>("editSearch")->text(), "NEW");
        pressDelete();
        EXPECT_EQ(boxes.texts().mid(2), (QStringList{"Delete A ?", "The settings cannot be saved!"}));
        EXPECT_EQ(shownCodes(), (QStringList{"A", "B"}));
        EXPECT_EQ(list()->currentText(), "A");
    }
    EXPECT_EQ(storedCodes(), padded({"A", "B"}));
    kit::BoxAnswers again({"yes"});
    pressAdd();
    release();
    ASSERT_TRUE(quiet());
    EXPECT_EQ(storedCodes(), padded({"A", "B", "NEW"})) << "a second try finds nothing in its way";
}

// Written in lines it would be larger than any reader takes.
TEST_F(StockList, AListThatWouldGrowTooLargeIsToldAndStays)
{
    openWith({"A"});
    QByteArray list = "<Stock><s name=\"A\"/>";
    for (int slot = 0; slot < 4000; ++slot)
        list += "<s name=\"\"/>";
    list += "</Stock>";
    ASSERT_LT(list.size(), int(STOCK_DATA_LIMIT));
    writeFile(STOCK_DATA_XML, list);
    const kit::BoxAnswers boxes({"yes", "ok"});
    enter("editSearch", "NEW");
    pressAdd();
    EXPECT_EQ(boxes.texts(), (QStringList{"Add NEW ?", "The settings cannot be saved!"}));
    EXPECT_EQ(readFile(STOCK_DATA_XML), list);
    EXPECT_EQ(shownCodes(), QStringList{"A"});
}

TEST_F(StockList, AChangeByTheHostShowsItsFirstStockAndAsksForNothing)
{
    EXPECT_EQ(UpdataStockData(), 0) << "no page yet";
    openWith({"A", "B"});
    select(1);
    const auto before = asked().size();
    EXPECT_EQ(UpdataStockData(), 1);
    EXPECT_EQ(list()->currentText(), "B") << "nothing has changed";
    writeList({"X", "Y", "Z"});
    EXPECT_EQ(UpdataStockData(), 1);
    kit::settle();
    EXPECT_EQ(shownCodes(), (QStringList{"X", "Y", "Z"}));
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_EQ(text("labDenominator"), "1/3");
    writeFile(STOCK_DATA_XML, "<Stock>");
    EXPECT_EQ(UpdataStockData(), 1);
    EXPECT_EQ(shownCodes(), (QStringList{"X", "Y", "Z"})) << "a broken file leaves the list";
    EXPECT_TRUE(quiet());
    EXPECT_EQ(asked().size(), before);
    writeList({"X", "Y", "Z"});
    select(2);
    EXPECT_EQ(asked().last(), "Z") << "the selection is followed again";
}

TEST_F(StockList, IsAddedToAndDeletedFromByKeysAlone)
{
    openWith({"B"});
    kit::BoxAnswers boxes({"yes", "yes"});
    kit::padKey('2');
    kit::stepTime(2000);
    kit::key(Qt::Key_F1);
    ASSERT_TRUE(quiet());
    ASSERT_EQ(shownCodes().size(), 2);
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Left);
    ASSERT_TRUE(quiet());
    EXPECT_EQ(list()->currentIndex(), 0);
    kit::key(Qt::Key_F2);
    EXPECT_EQ(shownCodes().size(), 1);
    kit::key(Qt::Key_F4);
    EXPECT_FALSE(page->isVisible());
}
