// The page "Forward".
#include "host/services/phone/phoneSimulation.h"
#include "settings/call/dlgForward_Setting.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "tests/settings_call/callSettingTest.h"
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace {

class ForwardPage : public CallSettingTest
{
protected:
    ForwardPage()
    {
        writeFile(USER_FILE,
                  "[AlwaysForward]\nbEnable=1\nstrTarget=100\n[BusyForward]\nbEnable=0\nstrTarget=200\n"
                  "[NoAnswerForward]\nbEnable=1\nstrTarget=300\nnTimeout=30\n");
    }
    void openPage()
    {
        open("Forward");
        ASSERT_STREQ(page->metaObject()->className(), "dlgForward_Setting");
    }
    dlgForward_Setting* forwards() { return qobject_cast<dlgForward_Setting*>(page); }
    QString text(const char* edit) const { return child<QLineEdit>(edit)->text(); }
    static void setAccount(int line, LINE_STATE state, const char* user)
    {
        phone_GetCallTotal();
        tagLineSetting setting;
        setting.state = int(state);
        setting.user = user;
        ASSERT_TRUE(phoneSimulation::instance()->setLine(line, setting));
    }
};

TEST_F(ForwardPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Forward Setting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "Delete", "Back"}));
    EXPECT_EQ(child<QCheckBox>("chkAlways")->text(), "Always Forward");
    EXPECT_EQ(child<QCheckBox>("chkBusy")->text(), "Busy Forward");
    EXPECT_EQ(child<QCheckBox>("chkNoAnswer")->text(), "No Answer Forward");
    EXPECT_EQ(child<QLabel>("labTime")->text(), "Time");
    EXPECT_EQ(child<QLabel>("labSeconds")->text(), "(1-100s)");
    EXPECT_TRUE(child<QCheckBox>("chkAlways")->isChecked());
    EXPECT_FALSE(child<QCheckBox>("chkBusy")->isChecked());
    EXPECT_TRUE(child<QCheckBox>("chkNoAnswer")->isChecked());
    EXPECT_EQ(text("editAlways") + text("editBusy") + text("editNoAnswer") + text("editBlank"),
              "10020030030");
    EXPECT_EQ(focusName(), "chkAlways");
}

TEST_F(ForwardPage, WithNothingStoredNothingIsShown)
{
    writeFile(USER_FILE, "");
    openPage();
    for (const char* box : {"chkAlways", "chkBusy", "chkNoAnswer"})
        EXPECT_FALSE(child<QCheckBox>(box)->isChecked()) << box;
    for (const char* edit : {"editAlways", "editBusy", "editNoAnswer", "editBlank"})
        EXPECT_EQ(text(edit), "") << edit;
    expectSaved();
    EXPECT_EQ(readFile(USER_FILE), "");
}

TEST_F(ForwardPage, EditsTakeWhatTheyMay)
{
    openPage();
    for (const char* edit : {"editAlways", "editBusy", "editNoAnswer"})
        EXPECT_EQ(child<QLineEdit>(edit)->maxLength(), 99) << edit;
    EXPECT_EQ(child<QLineEdit>("editBlank")->maxLength(), 3);
    for (const char* edit : {"editAlways", "editBusy", "editNoAnswer", "editBlank"}) {
        QLineEdit* field = child<QLineEdit>(edit);
        EXPECT_EQ(qGetCurrentIME(field), "123") << edit;
        kit::tap(field);
        EXPECT_EQ(softKeyTitle(1), "123") << edit;
        for (const char* next : {"2aB", "ABC", "abc", "123"}) {
            softKey(1);
            EXPECT_EQ(softKeyTitle(1), next) << edit;
        }
    }
    QLineEdit* time = child<QLineEdit>("editBlank");
    kit::tap(time);
    time->selectAll();
    kit::type("1a2 -3");
    EXPECT_EQ(time->text(), "123");
    softKey(2);
    EXPECT_EQ(time->text(), "12");
    kit::tap(child<QCheckBox>("chkBusy"));
    EXPECT_EQ(softKeyTitle(1), "") << "a box has no input method";
}

TEST_F(ForwardPage, EachShowBeginsWithDigitsAndWhatIsStored)
{
    openPage();
    const char* const edits[] = {"editAlways", "editBusy", "editNoAnswer", "editBlank"};
    for (const char* edit : edits) {
        kit::tap(child<QLineEdit>(edit));
        softKey(1);
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(edit)), "2aB") << edit;
    }
    enter("editBusy", "999");
    back();
    openPage();
    for (const char* edit : edits)
        EXPECT_EQ(qGetCurrentIME(child<QLineEdit>(edit)), "123") << edit;
    EXPECT_EQ(text("editBusy"), "200");
}

TEST_F(ForwardPage, SaveStoresAndTellsNobody)
{
    openPage();
    tick("chkAlways", false);
    tick("chkBusy", true);
    enter("editBusy", "201");
    enter("editNoAnswer", "anna@pbx.test");
    enter("editBlank", "007");
    mark();
    expectSaved();
    expectStored(USER_FILE, "AlwaysForward", "bEnable", "0");
    expectStored(USER_FILE, "BusyForward", "bEnable", "1");
    expectStored(USER_FILE, "BusyForward", "strTarget", "201");
    expectStored(USER_FILE, "NoAnswerForward", "strTarget", "anna@pbx.test");
    expectStored(USER_FILE, "NoAnswerForward", "nTimeout", "7");
    EXPECT_EQ(logged("broadcast"), QStringList());
}

TEST_F(ForwardPage, ATimeOfOneToAHundredSecondsPasses)
{
    for (const char* good : {"1", "100", "007"}) {
        openPage();
        enter("editBlank", good);
        expectSaved();
        expectStored(USER_FILE, "NoAnswerForward", "nTimeout", QByteArray::number(atoi(good)));
    }
    openPage();
    for (const char* bad : {"0", "101", "", "000"}) {
        enter("editBlank", bad);
        expectRefused(USER_FILE, "No answer time is not within 1-100 seconds!", "editBlank");
        EXPECT_EQ(text("editBlank"), bad) << "what was typed stays";
    }
}

TEST_F(ForwardPage, ANumberThatIsMissingIsRefusedInTheirOrder)
{
    openPage();
    tick("chkBusy", true);
    for (const char* edit : {"editAlways", "editBusy", "editNoAnswer", "editBlank"})
        enter(edit, "");
    expectRefused(USER_FILE, "Always forward number is invalid!", "editAlways");
    enter("editAlways", "1");
    expectRefused(USER_FILE, "Busy forward number is invalid!", "editBusy");
    enter("editBusy", "2");
    expectRefused(USER_FILE, "No answer forward number is invalid!", "editNoAnswer");
    enter("editNoAnswer", "3");
    expectRefused(USER_FILE, "No answer time is not within 1-100 seconds!", "editBlank");
    enter("editBlank", "4");
    expectSaved();
}

TEST_F(ForwardPage, OneThatIsOffIsNotChecked)
{
    openPage();
    setAccount(0, LINE_REGISTERED, "200");
    tick("chkAlways", false);
    tick("chkNoAnswer", false);
    enter("editAlways", "");
    enter("editNoAnswer", "");
    enter("editBlank", "0");
    expectSaved();
    expectStored(USER_FILE, "BusyForward", "strTarget", "200");
    expectStored(USER_FILE, "NoAnswerForward", "nTimeout", "0");
}

TEST_F(ForwardPage, TheNumberOfARegisteredLineIsRefused)
{
    const QList<QPair<LINE_STATE, bool>> states = {
        {LINE_DISABLED, false},        {LINE_REGISTERING, false},   {LINE_REGISTERED, true},
        {LINE_REGISTER_FAILED, false}, {LINE_UNREGISTERED, false},  {LINE_DEFAULT_ACCOUNT, true},
        {LINE_INEXISTENCE, false},     {LINE_UNREGISTERING, false}, {LINE_EXIT, false}};
    for (const auto& [state, refused] : states) {
        SCOPED_TRACE(state);
        setAccount(3, state, "100");
        openPage();
        if (refused) {
            expectRefused(USER_FILE, "Can't forward to own number!", "editAlways");
            back();
        } else {
            expectSaved();
        }
    }
    setAccount(3, LINE_REGISTERED, "100@pbx.test");
    openPage();
    expectSaved();
}

TEST_F(ForwardPage, ABadSecondLineLeavesAllOfThemAsTheyWere)
{
    setAccount(1, LINE_REGISTERED, "444");
    openPage();
    tick("chkBusy", true);
    enter("editAlways", "101");
    enter("editBusy", "444");
    enter("editNoAnswer", "301");
    expectRefused(USER_FILE, "Can't forward to own number!", "editBusy");
    enter("editBusy", "445");
    enter("editNoAnswer", "444");
    enter("editBlank", "0");
    expectRefused(USER_FILE, "Can't forward to own number!", "editNoAnswer");
    expectStored(USER_FILE, "AlwaysForward", "strTarget", "100");
}

TEST_F(ForwardPage, AFullDiskIsToldAndKeepsWhatWasTyped)
{
    openPage();
    enter("editAlways", "101");
    expectFailedSave(USER_FILE);
    EXPECT_EQ(text("editAlways"), "101");
}

TEST_F(ForwardPage, ItsFilterIsTraced)
{
    expectFilterTraced("Forward", "dlgForward_Setting");
}

TEST_F(ForwardPage, OthersMayShowWhatTheyLike)
{
    openPage();
    forwards()->Display_Always_Forward(Qt::Unchecked, "1");
    forwards()->Display_Busy_Forward(Qt::Checked, "2");
    forwards()->Display_No_Answer_Forward(Qt::Unchecked, "3", "4");
    EXPECT_FALSE(child<QCheckBox>("chkAlways")->isChecked());
    EXPECT_TRUE(child<QCheckBox>("chkBusy")->isChecked());
    EXPECT_FALSE(child<QCheckBox>("chkNoAnswer")->isChecked());
    EXPECT_EQ(text("editAlways") + text("editBusy") + text("editNoAnswer") + text("editBlank"), "1234");
    back();
}

TEST_F(ForwardPage, OthersMayMoveTheFocusRoundItsInputs)
{
    openPage();
    QStringList visited;
    for (int step = 0; step < 7; ++step) {
        forwards()->setNextFocus(1);
        visited.append(focusName());
    }
    EXPECT_EQ(visited, (QStringList{"editAlways", "chkBusy", "editBusy", "chkNoAnswer", "editNoAnswer",
                                    "editBlank", "chkAlways"}));
    child<QLineEdit>("editBlank")->setEnabled(false);
    forwards()->setPreFocus(1);
    EXPECT_EQ(focusName(), "editNoAnswer") << "past one that is disabled";
    forwards()->setNextFocus(1);
    EXPECT_EQ(focusName(), "chkAlways");
    forwards()->setPreFocus(15);
    EXPECT_EQ(focusName(), "editNoAnswer") << "twice round and one back";
    child<QLineEdit>("editBlank")->setEnabled(true);
    EXPECT_EQ(forwards()->initm_cur({child<QLineEdit>("editBusy"), child<QLineEdit>("editAlways")}), 0);
    forwards()->setNextFocus(1);
    EXPECT_EQ(focusName(), "editAlways");
    forwards()->initm_cur({});
    forwards()->setNextFocus(1);
    EXPECT_EQ(focusName(), "editAlways");
    back();
}

} // namespace

TEST_F(ForwardPage, TheTimeIsADurationInEveryLanguage)
{
    GetLanguageHelper()->SetLanguage("French");
    open("Forward");
    EXPECT_EQ(child<QLabel>("labTime")->text(), QString("Dur\u00e9e")) << "opened in it";
    const char* const captions[][2] = {
        {"German", "Zeit"}, {"Spanish", "Tiempo"}, {"French", "Dur\u00e9e"}, {"English", "Time"}};
    for (const auto& [language, caption] : captions) {
        GetLanguageHelper()->SetLanguage(language);
        kit::settle();
        EXPECT_EQ(child<QLabel>("labTime")->text(), QString(caption)) << language;
    }
}
