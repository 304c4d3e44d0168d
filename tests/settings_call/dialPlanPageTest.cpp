// The page "Dial Plan".
#include "tests/settings_call/dialPlanPageTest.h"
#include "frame/fingerScroll.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/message.h"
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>

namespace {

TEST_F(DialPlanPage, ShowsItsTextsAndTheRulesOfTheFile)
{
    openPage();
    EXPECT_EQ(page->findChild<qTopBar*>()->title(), "Dial Plan");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "Dial Plan");
    EXPECT_EQ(page->findChild<qLeftBar*>()->icon(),
              "/phone/resource/theme/default/bmp/menu/menu_dialplan.png");
    const QStringList keys = {softKeyTitle(0), softKeyTitle(1), softKeyTitle(2), softKeyTitle(3)};
    EXPECT_EQ(keys, (QStringList{"Add", "", "Delete", "Back"}));
    for (const char* label : {"labTitlePre", "labPrefix1"})
        EXPECT_EQ(child<QLabel>(label)->text(), "Prefix") << label;
    for (const char* label : {"labTextRep", "labPrefix2"})
        EXPECT_EQ(child<QLabel>(label)->text(), "Replace") << label;
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    EXPECT_EQ(list()->currentRow(), 0);
    EXPECT_EQ(edits(), "00=+");
    EXPECT_EQ(focusName(), "tabWgtList");
    EXPECT_EQ(notice(), "");
    expectBackground("general/gen_bg.jpg");
    kit::shot("dial-plan");
}

TEST_F(DialPlanPage, TheListHasTwoEqualColumnsAndNoHeaders)
{
    openPage();
    EXPECT_FALSE(list()->horizontalHeader()->isVisible());
    EXPECT_FALSE(list()->verticalHeader()->isVisible());
    EXPECT_EQ(list()->selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(list()->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_FALSE(list()->showGrid());
    EXPECT_EQ(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_TRUE(list()->hasAutoScroll());
    EXPECT_EQ(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list()->columnCount(), 2);
    EXPECT_NEAR(list()->columnWidth(0), list()->columnWidth(1), 1);
    EXPECT_NEAR(list()->columnWidth(0) + list()->columnWidth(1), list()->viewport()->width(), 1);
    EXPECT_EQ(list()->rowHeight(0), 42);
    EXPECT_EQ(list()->rowHeight(1), 42);
}

TEST_F(DialPlanPage, BothCellsOfARowHoldItsElement)
{
    openPage();
    for (int column = 0; column < 2; ++column) {
        auto* rule = list()->item(1, column)->data(XmlTable::ELEMENT_ROLE).value<xmlElement*>();
        ASSERT_NE(rule, nullptr) << column;
        EXPECT_STREQ(rule->GetAttributeValue("Prefix").GetText(), "9");
    }
}

TEST_F(DialPlanPage, TwentyRowsAreMovedByFingerAndTheLastIsTouched)
{
    openPage(rules(20));
    const QPoint middle = list()->viewport()->mapToGlobal(list()->viewport()->rect().center());
    kit::press(middle);
    for (int step = 1; step <= 30; ++step)
        kit::moveTo(middle - QPoint(0, 20 * step));
    kit::release(middle - QPoint(0, 600));
    EXPECT_EQ(list()->verticalScrollBar()->value(), list()->verticalScrollBar()->maximum());
    EXPECT_EQ(edits(), "70=5"); // nothing was chosen on the way
    choose(19);
    EXPECT_EQ(edits(), "719=5");
}

TEST_F(DialPlanPage, BothEditsTakeThirtyTwoCharactersInFourMethodsAndBeginWithDigits)
{
    openPage();
    add();
    for (QLineEdit* edit : {prefix(), replace()}) {
        EXPECT_EQ(qGetCurrentIME(edit), "123");
        kit::tap(edit);
        for (const char* method : {"123", "2aB", "ABC", "abc", "123"}) {
            EXPECT_EQ(softKeyTitle(1), method);
            pressIme();
        }
        kit::type(QString(33, '4'));
        EXPECT_EQ(edit->text(), QString(32, '4'));
    }
    // Methods that were left there are gone with the next show.
    back();
    openPage();
    EXPECT_EQ(qGetCurrentIME(prefix()), "123");
    EXPECT_EQ(qGetCurrentIME(replace()), "123");
}

TEST_F(DialPlanPage, TheImeKeyIsBlankButOverAnEdit)
{
    openPage();
    EXPECT_EQ(softKeyTitle(1), "");
    kit::tap(prefix());
    EXPECT_EQ(softKeyTitle(1), "123");
    list()->setFocus();
    EXPECT_EQ(softKeyTitle(1), "");
}

// The edit that gets the focus back with the page begins with the second method.
TEST_F(DialPlanPage, AShowWithTheFocusInAnEditStepsItsMethod)
{
    openPage("<DialRule/>");
    kit::tap(prefix());
    EXPECT_EQ(softKeyTitle(1), "123");
    back();
    openPage();
    EXPECT_EQ(focusName(), "editPrefix");
    EXPECT_EQ(softKeyTitle(1), "2aB");
    EXPECT_EQ(qGetCurrentIME(prefix()), "2aB");
    EXPECT_EQ(qGetCurrentIME(replace()), "123");
}

TEST_F(DialPlanPage, ATouchedRowGoesIntoTheEditsAndIsTheOneThatOkChanges)
{
    openPage();
    add();
    choose(1);
    EXPECT_EQ(edits(), "9=");
    EXPECT_TRUE(areEnabled());
    fill("8", "0");
    ok();
    EXPECT_EQ(rows(), (QStringList{"00=+", "8=0"}));
    EXPECT_TRUE(areDisabled());
    EXPECT_TRUE(isGrey(prefix()) && isGrey(replace()));
    EXPECT_EQ(focusName(), "tabWgtList");
    choose(0);
    EXPECT_TRUE(areEnabled());
    EXPECT_FALSE(isGrey(prefix()) || isGrey(replace()));
}

TEST_F(DialPlanPage, ARowChosenByKeysEnablesTheEditsAndGoesRound)
{
    openPage();
    choose(1);
    fill("8", "0");
    ok();
    ASSERT_TRUE(areDisabled());
    kit::keyPress(Qt::Key_Down);
    EXPECT_TRUE(areDisabled()); // until the key is let go
    kit::keyRelease(Qt::Key_Down);
    EXPECT_TRUE(areEnabled());
    EXPECT_EQ(edits(), "00=+");
    kit::key(Qt::Key_Up);
    EXPECT_EQ(edits(), "8=0");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Right}) {
        list()->setFocus();
        kit::key(key);
        EXPECT_EQ(focusName(), "editPrefix") << key;
    }
}

// A row that keys choose leaves the page adding: what it holds is in use then.
TEST_F(DialPlanPage, KeysDoNotEndAdding)
{
    openPage();
    add();
    list()->setFocus();
    kit::key(Qt::Key_Down);
    EXPECT_EQ(edits(), "9=");
    enter("editReplace", "1");
    ok();
    EXPECT_EQ(notice(), "Dial number exist.");
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
}

TEST_F(DialPlanPage, AChangedRuleHasItsNewPrefixInTheFile)
{
    openPage();
    choose(1);
    fill("8", "0");
    ok();
    back();
    EXPECT_EQ(inFile(), (QStringList{"00=+", "8=0"}));
    openPage();
    EXPECT_EQ(rows(), inFile());
}

TEST_F(DialPlanPage, ANewRuleIsOnTopOfTheListAndAtTheEndOfTheFile)
{
    openPage();
    list()->setCurrentCell(1, 0);
    add();
    EXPECT_EQ(edits(), "=");
    EXPECT_EQ(focusName(), "editPrefix");
    fill("5", "0044");
    ok();
    EXPECT_EQ(rows(), (QStringList{"5=0044", "00=+", "9="}));
    EXPECT_EQ(list()->currentRow(), 0);
    EXPECT_EQ(list()->rowHeight(0), 42);
    EXPECT_TRUE(areDisabled());
    EXPECT_EQ(focusName(), "tabWgtList");
    // Nothing is stored before Back.
    EXPECT_EQ(inFile(), (QStringList{"00=+", "9="}));
    back();
    EXPECT_EQ(inFile(), (QStringList{"00=+", "9=", "5=0044"}));
    openPage();
    EXPECT_EQ(rows(), inFile());
}

TEST_F(DialPlanPage, ASecondOkAfterAddingChangesTheNewRule)
{
    openPage();
    add();
    fill("5", "1");
    ok();
    kit::key(Qt::Key_Up);
    kit::key(Qt::Key_Down);
    fill("5", "2");
    ok();
    EXPECT_EQ(rows(), (QStringList{"5=2", "00=+", "9="}));
}

TEST_F(DialPlanPage, BlanksAroundAreNotStored)
{
    openPage();
    add();
    fill("  5 ", " 1 2  ");
    ok();
    back();
    EXPECT_EQ(inFile(), (QStringList{"00=+", "9=", "5=1 2"}));
}

TEST_F(DialPlanPage, WhatBreaksALineIsNotStored)
{
    openPage();
    add();
    prefix()->setText(QString("5\r\n") + QChar(0x85));
    replace()->setText(QString("1") + QChar(7) + "\t2");
    ok();
    back();
    EXPECT_EQ(inFile(), (QStringList{"00=+", "9=", "5=12"}));
}

TEST_F(DialPlanPage, AMissingHalfIsNamedBelowTheEdits)
{
    openPage();
    add();
    fill("   ", "1");
    kit::tap(replace());
    ok();
    EXPECT_EQ(notice(), "Prefix is empty.");
    EXPECT_EQ(focusName(), "editPrefix");
    fill("5", "  ");
    kit::tap(prefix());
    ok();
    EXPECT_EQ(notice(), "Replace is empty.");
    EXPECT_EQ(focusName(), "editReplace");
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    enter("editReplace", "1");
    ok();
    EXPECT_EQ(notice(), "");
    kit::shot("dial-plan-added");
}

TEST_F(DialPlanPage, ThePrefixIsCheckedBeforeTheReplacement)
{
    openPage();
    add();
    ok();
    EXPECT_EQ(notice(), "Prefix is empty.");
}

TEST_F(DialPlanPage, ARuleMayKeepItsPrefix)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(rows(), (QStringList{"00=011", "9="}));
}

TEST_F(DialPlanPage, APrefixOfAnotherRuleIsRefusedAndBothEditsAreEmptied)
{
    openPage();
    choose(1);
    fill("00", "1");
    kit::BoxAnswers boxes;
    ok();
    EXPECT_EQ(notice(), "Dial number exist.");
    EXPECT_TRUE(boxes.texts().isEmpty());
    EXPECT_EQ(edits(), "=");
    EXPECT_EQ(focusName(), "editPrefix");
    EXPECT_TRUE(areEnabled());
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    kit::shot("dial-plan-exists");
    back();
    EXPECT_EQ(readFile(PLAN_FILE), kTwoRules);
}

TEST_F(DialPlanPage, PrefixesAreComparedWithTheirCase)
{
    openPage("<DialRule><Data Prefix=\"a\" Replace=\"1\"/></DialRule>");
    add();
    fill("A", "2");
    ok();
    EXPECT_EQ(rows(), (QStringList{"A=2", "a=1"}));
}

TEST_F(DialPlanPage, TheTwentyFirstRuleIsRefusedAndThePanelIsEmptyAndDisabled)
{
    openPage(rules(20));
    kit::BoxAnswers boxes({"ok"});
    add();
    EXPECT_EQ(boxes.titles(), QStringList{"Note"});
    EXPECT_EQ(boxes.texts(), QStringList{"The max number should <= 20!"});
    EXPECT_EQ(edits(), "=");
    EXPECT_TRUE(areDisabled());
    EXPECT_FALSE(isGrey(prefix()) || isGrey(replace()));
    // It does not add: OK has nothing to store.
    ok();
    EXPECT_EQ(notice(), "Prefix is empty.");
    EXPECT_EQ(rows().size(), 20);
}

TEST_F(DialPlanPage, TheTwentiethRuleIsTaken)
{
    openPage(rules(19));
    kit::BoxAnswers boxes;
    add();
    fill("8", "1");
    ok();
    EXPECT_EQ(rows().size(), 20);
    EXPECT_EQ(rows().first(), "8=1");
}

TEST_F(DialPlanPage, TheOlderAddHasALimitOfFiveWithTheSameWords)
{
    openPage(rules(4));
    m_pPage->AddRow();
    EXPECT_EQ(edits(), "=");
    fill("8", "1");
    ok();
    EXPECT_EQ(rows().size(), 5);
    kit::BoxAnswers boxes({"ok"});
    m_pPage->AddRow();
    EXPECT_EQ(boxes.texts(), QStringList{"The max number should <= 20!"});
    EXPECT_TRUE(areDisabled());
}

TEST_F(DialPlanPage, AFileWithoutRulesOpensForTheFirstOne)
{
    openPage("<DialRule/>");
    EXPECT_EQ(rows(), QStringList());
    fill("5", "1");
    ok();
    EXPECT_EQ(rows(), QStringList{"5=1"});
    back();
    EXPECT_EQ(inFile(), QStringList{"5=1"});
}

TEST_F(DialPlanPage, WithTheLastRuleDeletedTheNextOpeningTakesTheFirstOneAgain)
{
    openPage("<DialRule><Data Prefix=\"1\" Replace=\"2\"/></DialRule>");
    choose(0);
    enter("editReplace", "3");
    ok();
    kit::BoxAnswers boxes({"yes"});
    erase();
    EXPECT_EQ(edits(), "=");
    EXPECT_TRUE(areDisabled());
    back();
    openPage();
    EXPECT_TRUE(areEnabled());
    EXPECT_FALSE(isGrey(prefix()));
    fill("5", "1");
    ok();
    EXPECT_EQ(rows(), QStringList{"5=1"});
}

TEST_F(DialPlanPage, OkWithoutARowWritesNothing)
{
    openPage("<DialRule/>");
    cancel(); // it adds no longer
    fill("5", "1");
    ok();
    EXPECT_EQ(rows(), QStringList());
    EXPECT_TRUE(areDisabled());
    mark();
    back();
    expectChangesTold({});
    EXPECT_EQ(inFile(), QStringList());
}

TEST_F(DialPlanPage, CancelShowsTheCurrentRuleAgain)
{
    openPage();
    add();
    fill("5", "");
    ok();
    ASSERT_EQ(notice(), "Replace is empty.");
    cancel();
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(edits(), "00=+");
    enter("editReplace", "7");
    ok();
    EXPECT_EQ(rows(), (QStringList{"00=7", "9="}));
}

TEST_F(DialPlanPage, DeleteAsksAndStoresAtOnceButTellsOnlyAtBack)
{
    openPage();
    list()->setCurrentCell(1, 0);
    kit::BoxAnswers boxes({"no", "yes"});
    erase();
    EXPECT_EQ(rows().size(), 2);
    erase();
    EXPECT_EQ(boxes.titles(), (QStringList{"Note", "Note"}));
    EXPECT_EQ(boxes.texts(), (QStringList{"Delete the record?", "Delete the record?"}));
    EXPECT_EQ(rows(), QStringList{"00=+"});
    EXPECT_EQ(edits(), "00=+");
    EXPECT_EQ(inFile(), QStringList{"00=+"});
    expectChangesTold({});
    back();
    expectChangesTold({"4 0"});
    EXPECT_FALSE(page->isVisible());
}

TEST_F(DialPlanPage, DeleteElsewhereTakesACharacter)
{
    openPage();
    kit::BoxAnswers boxes;
    add();
    enter("editPrefix", "45");
    erase();
    EXPECT_EQ(prefix()->text(), "4");
    EXPECT_EQ(rows().size(), 2);
    // It has ended the adding as well.
    fill("8", "1");
    ok();
    EXPECT_EQ(rows(), (QStringList{"8=1", "9="}));
}

TEST_F(DialPlanPage, DeleteInAnEmptyListAsksNothing)
{
    openPage("<DialRule/>");
    list()->setFocus();
    kit::BoxAnswers boxes;
    erase();
    EXPECT_TRUE(boxes.texts().isEmpty());
}

TEST_F(DialPlanPage, BackTellsAndStoresOnlyWhatWasChanged)
{
    openPage();
    const QByteArray before = readFile(PLAN_FILE);
    back();
    expectChangesTold({});
    EXPECT_EQ(readFile(PLAN_FILE), before);
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    back();
    expectChangesTold({"4 0"});
    EXPECT_EQ(inFile(), (QStringList{"00=011", "9="}));
    openPage();
    back();
    expectChangesTold({});
}

// Whatever put the page away, a call or the home key: the next show begins with what is stored.
TEST_F(DialPlanPage, AChangeThatWasLeftUnstoredIsForgottenByTheNextShow)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    page->hide();
    openPage();
    EXPECT_EQ(rows(), (QStringList{"00=+", "9="}));
    back();
    expectChangesTold({});
    EXPECT_EQ(readFile(PLAN_FILE), kTwoRules);
}

TEST_F(DialPlanPage, TheKeyThatLeavesThePageStoresToo)
{
    openPage();
    choose(0);
    enter("editReplace", "011");
    ok();
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(inFile(), (QStringList{"00=011", "9="}));
}

TEST_F(DialPlanPage, ItFiltersAsLongAsItIsShown)
{
    mark();
    openPage();
    EXPECT_TRUE(traces().contains("-----dlgDialPlan installEventFilter----------"));
    back();
    EXPECT_TRUE(traces().contains("-----dlgDialPlan removeEventFilter----------"));
}

TEST_F(DialPlanPage, FollowsTheLanguage)
{
    openPage("<DialRule/>");
    ok();
    ASSERT_EQ(notice(), "Prefix is empty.");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    kit::settle();
    EXPECT_EQ(notice(), "Die Vorwahl fehlt.");
    EXPECT_EQ(child<QLabel>("labPrefix2")->text(), "Ersatz");
    GetLanguageHelper()->SetLanguage("English");
}

TEST_F(DialPlanPage, AKeyThatDoesNothingStaysBlankInAnotherLanguage)
{
    openPage();
    ASSERT_EQ(focusName(), "tabWgtList");
    ASSERT_EQ(softKeyTitle(1), "");
    GetLanguageHelper()->SetLanguage("German");
    kit::settle();
    const QStringList keys = {softKeyTitle(0), softKeyTitle(1), softKeyTitle(2), softKeyTitle(3)};
    EXPECT_EQ(keys, (QStringList{"Hinzuf\u00fcgen", "", "L\u00f6schen", "Zur\u00fcck"}));
    choose(0);
    kit::tap(prefix());
    EXPECT_EQ(softKeyTitle(1), "123") << "the input method, where there is one";
    GetLanguageHelper()->SetLanguage("French");
    kit::settle();
    EXPECT_EQ(softKeyTitle(1), "123");
    GetLanguageHelper()->SetLanguage("English");
}

} // namespace
