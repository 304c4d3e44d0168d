// The file of the page "Dial Plan": what is not the page's, damaged, missing, or cannot be saved.
#include "tests/file/failingCalls.h"
#include "tests/settings_call/dialPlanPageTest.h"

namespace {

TEST_F(DialPlanPage, WhatElseTheFileSaysStays)
{
    openPage("<!--mine--><DialRule more=\"1\"><Data Prefix=\"1\" Replace=\"2\" note=\"x\"><a/></Data>"
             "<Other Prefix=\"9\"/></DialRule>");
    EXPECT_EQ(rows(), QStringList{"1=2"});
    choose(0);
    enter("editReplace", "3");
    ok();
    back();
    const QByteArray file = readFile(PLAN_FILE);
    for (const char* kept : {"<!--mine-->", "more=\"1\"", "note=\"x\"", "<a/>", "<Other Prefix=\"9\"/>"})
        EXPECT_TRUE(file.contains(kept)) << kept << " in " << file.constData();
}

class UnreadableDialPlan : public DialPlanPage, public testing::WithParamInterface<const char*>
{
};

// The table keeps what it had, and none of its rows has an element any more.
TEST_P(UnreadableDialPlan, IsToldAndNothingIsTouched)
{
    openPage();
    back();
    if (*GetParam())
        writeFile(PLAN_FILE, GetParam());
    else
        QFile::remove(hostPath(PLAN_FILE));
    openPage();
    EXPECT_EQ(notice(), "The dial plan cannot be read!");
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    EXPECT_EQ(edits(), "=");
    kit::BoxAnswers boxes;
    choose(1);
    EXPECT_EQ(edits(), "9=");
    enter("editReplace", "1");
    ok();
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(areEnabled()); // it stopped at once
    list()->setFocus();
    erase();
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    back();
    EXPECT_FALSE(page->isVisible());
    expectChangesTold({});
    EXPECT_EQ(QFile::exists(hostPath(PLAN_FILE)), *GetParam() != 0);
    EXPECT_EQ(readFile(PLAN_FILE), GetParam());
}

INSTANTIATE_TEST_SUITE_P(, UnreadableDialPlan, testing::Values("", "<DialRule><Data", "<Other/>"));

TEST_F(DialPlanPage, AMissingFileIsNotMade)
{
    QFile::remove(hostPath(PLAN_FILE));
    openPage();
    EXPECT_EQ(m_pPage->LoadData(), 0);
    add();
    fill("5", "1");
    ok();
    EXPECT_EQ(rows(), QStringList());
    back();
    EXPECT_FALSE(QFile::exists(hostPath(PLAN_FILE)));
}

TEST_F(DialPlanPage, AFileThatGoesMeanwhileIsNotMadeAnew)
{
    openPage();
    QFile::remove(hostPath(PLAN_FILE));
    kit::BoxAnswers boxes({"yes", "ok"});
    erase();
    EXPECT_EQ(boxes.texts(), (QStringList{"Delete the record?", "The settings cannot be saved!"}));
    EXPECT_FALSE(QFile::exists(hostPath(PLAN_FILE)));
}

TEST_F(DialPlanPage, AFullDiskIsToldAndTheRulesStayUntilTheUserLeavesAnyway)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    FailingCalls disk;
    disk.setSpace(0);
    {
        kit::BoxAnswers boxes({"ok"});
        back();
        EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    }
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(rows(), (QStringList{"00=011", "9="}));
    expectChangesTold({});
    kit::BoxAnswers boxes;
    back();
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(readFile(PLAN_FILE), kTwoRules);
    expectChangesTold({});
}

TEST_F(DialPlanPage, ARuleChangedAfterAFailedSaveIsAskedForAgain)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    {
        FailingCalls disk;
        disk.setSpace(0);
        kit::BoxAnswers boxes({"ok"});
        back();
    }
    back(); // there is room again
    EXPECT_EQ(inFile(), (QStringList{"00=011", "9="}));
    expectChangesTold({"4 0"});
}

} // namespace

TEST_F(DialPlanPage, AFileThatBreaksMeanwhileIsToldAndNeverReplaced)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    writeFile(PLAN_FILE, "<DialRule><Data");
    kit::BoxAnswers boxes({"ok"});
    back();
    EXPECT_EQ(boxes.texts(), QStringList{"The settings cannot be saved!"});
    EXPECT_EQ(readFile(PLAN_FILE), "<DialRule><Data");
    EXPECT_EQ(rows(), (QStringList{"00=011", "9="}));
}

// Two that edit one list at the same time: what the page shows holds, and the other's is not thrown away.
TEST_F(DialPlanPage, RulesThatSomebodyElseStoresMeanwhileAreKeptAside)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    writeFile(PLAN_FILE, rules(3));
    back();
    EXPECT_EQ(inFile(), (QStringList{"00=011", "9="}));
    EXPECT_EQ(readFile(PLAN_FILE ".bad"), rules(3));
}
