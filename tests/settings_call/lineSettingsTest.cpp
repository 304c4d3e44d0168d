// The pages "Auto Answer", "Anonymous Call" and "Video Set", with a tab for each line.
#include "host/services/phone/phoneSimulation.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "tests/settings_call/callSettingTest.h"
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace {

class AutoAnswerPage : public LineSettingTest
{
protected:
    void openPage()
    {
        open("Auto Answer");
        ASSERT_STREQ(page->metaObject()->className(), "dlgAuto_Answer");
    }
};

TEST_F(AutoAnswerPage, ShowsItsTextsAndWhatIsStored)
{
    set(2, "AutoAnswer", "bEnable", "1");
    set(2, "AutoAnswer", "nTimeout", "15");
    openPage();
    EXPECT_EQ(title(), "Auto Answer");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(focusName(), "chkAutoAnswer");
    EXPECT_EQ(child<QCheckBox>("chkAutoAnswer")->text(), "Enable Auto Answer");
    EXPECT_EQ(child<QLabel>("labAutoAnswerType")->text(), "Auto Answer Type");
    EXPECT_EQ(items("cmbAutoAnswerType"), (QStringList{"Directly: 0", "After 5 Seconds: 5",
                                                       "After 15 Seconds: 15", "After 30 Seconds: 30"}));
    onLine(0, [this] {
        EXPECT_FALSE(child<QCheckBox>("chkAutoAnswer")->isChecked());
        EXPECT_EQ(chosen("cmbAutoAnswerType"), "0") << "the first where nothing is stored";
    });
    onLine(2, [this] {
        EXPECT_TRUE(child<QCheckBox>("chkAutoAnswer")->isChecked());
        EXPECT_EQ(chosen("cmbAutoAnswerType"), "15");
    });
    expectFilterTraced("Auto Answer", "dlgAuto_Answer");
}

TEST_F(AutoAnswerPage, SaveStoresEachLineAndTellsNobody)
{
    openPage();
    onLine(1, [this] {
        tick("chkAutoAnswer", true);
        choose("cmbAutoAnswerType", "30");
    });
    mark();
    expectSaved();
    expectLine(1, "AutoAnswer", "bEnable", "1");
    expectLine(1, "AutoAnswer", "nTimeout", "30");
    for (const int line : {0, 2, 3})
        expectLine(line, "AutoAnswer", "bEnable", "(absent)");
    EXPECT_EQ(logged("broadcast"), QStringList());
    openPage();
    EXPECT_EQ(tab(), 0) << "it opens on the first line";
    onLine(1, [this] { tick("chkAutoAnswer", false); });
    back();
    openPage();
    EXPECT_EQ(tab(), 0);
    onLine(1, [this] { EXPECT_TRUE(child<QCheckBox>("chkAutoAnswer")->isChecked()); });
}

TEST_F(AutoAnswerPage, AFullDiskIsToldAndKeepsWhatWasChosen)
{
    openPage();
    onLine(3, [this] { tick("chkAutoAnswer", true); });
    expectFailedSave(lineFile(3));
    EXPECT_EQ(tab(), 3);
}

TEST_F(AutoAnswerPage, ItsTabsFollowTheLanguage)
{
    openPage();
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    kit::settle();
    for (int line = 0; line < 4; ++line)
        EXPECT_EQ(lines()->m_pTabs->tabText(line), QString("Leitung %1").arg(line + 1));
    GetLanguageHelper()->SetLanguage("English");
    kit::settle();
    EXPECT_EQ(lines()->m_pTabs->tabText(3), "Line 4");
}

class AnonymousPage : public LineSettingTest
{
protected:
    void openPage()
    {
        open("Anonymous Call");
        ASSERT_STREQ(page->metaObject()->className(), "dlgAnonymousCallDialog");
    }
    QString text(const char* label) const { return child<QLabel>(label)->text(); }
};

TEST_F(AnonymousPage, ShowsItsTextsAndWhatIsStored)
{
    set(0, "account", "RejectAnonymousCall", "1");
    set(0, "account", "AnonymousCall_OnCode", "*1");
    set(0, "account", "AnonymousCall_OffCode", "*2");
    set(0, "account", "AnonymousReject_OnCode", "*3");
    set(0, "account", "AnonymousReject_OffCode", "*4");
    openPage();
    EXPECT_EQ(title(), "Anonymous Call");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(focusName(), "cmbAnonymousCall");
    EXPECT_EQ(text("labAnonymousCall"), "Anonymous Call");
    EXPECT_EQ(text("labAnonymousCallRejection"), "Anonymous Call Rejection");
    EXPECT_EQ(text("labAnonymousCallOnCode") + text("labRejectionOnCode"), "On CodeOn Code");
    EXPECT_EQ(text("labAnonymousCallOffCode") + text("labRejectionOffCode"), "Off CodeOff Code");
    onLine(0, [this] {
        for (const char* box : {"cmbAnonymousCall", "cmbAnonymousCallRejection"})
            EXPECT_EQ(items(box), (QStringList{"Off: 0", "On: 1"})) << box;
        EXPECT_EQ(chosen("cmbAnonymousCall"), "0");
        EXPECT_EQ(chosen("cmbAnonymousCallRejection"), "1");
    });
    const QStringList edits = {"editAnonymousCallOnCode", "editAnonymousCallOffCode", "editRejectionOnCode",
                               "editRejectionOffCode"};
    for (int i = 0; i < edits.size(); ++i)
        EXPECT_EQ(at<QLineEdit>(0, edits[i].toUtf8())->text(), QString("*%1").arg(i + 1));
    expectFilterTraced("Anonymous Call", "dlgAnonymousCallDialog");
}

TEST_F(AnonymousPage, ItsKeysFollowTheFocus)
{
    openPage();
    for (const char* edit : {"editAnonymousCallOnCode", "editAnonymousCallOffCode", "editRejectionOnCode",
                             "editRejectionOffCode"}) {
        QLineEdit* field = at<QLineEdit>(0, edit);
        kit::tap(field);
        EXPECT_EQ(softKeys(), (QStringList{"Save", "123", "Delete", "Back"})) << edit;
        for (const char* next : {"2aB", "ABC", "abc", "123"}) {
            softKey(1);
            EXPECT_EQ(softKeyTitle(1), next) << edit;
        }
        kit::type("12");
        softKey(2);
        EXPECT_EQ(field->text(), "1") << edit;
        EXPECT_EQ(field->maxLength(), QString(edit) == "editAnonymousCallOnCode" ? 32 : 32767) << edit;
    }
    kit::tap(at<QLineEdit>(0, "editAnonymousCallOnCode"));
    softKey(1);
    at<QComboBox>(0, "cmbAnonymousCall")->setFocus();
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    back();
    openPage();
    EXPECT_EQ(qGetCurrentIME(at<QLineEdit>(0, "editAnonymousCallOnCode")), "123");
}

TEST_F(AnonymousPage, AnOnCodeNeedsAnOffCode)
{
    openPage();
    onLine(0, [this] { choose("cmbAnonymousCall", "1"); });
    onLine(2, [this] {
        enter("editAnonymousCallOnCode", "*1");
        enter("editRejectionOnCode", "*3");
    });
    lines()->ResetCurrentWgtPage(0);
    expectRefused(lineFile(2), "Anonymous Call Off code can't be empty!", "editAnonymousCallOffCode");
    EXPECT_EQ(tab(), 2);
    expectLine(0, "account", "AnonymousCall", "(absent)");
    onLine(2, [this] { enter("editAnonymousCallOffCode", "*2"); });
    expectRefused(lineFile(2), "Rejection Off code can't be empty!", "editRejectionOffCode");
    onLine(2, [this] {
        enter("editRejectionOnCode", "");
        enter("editRejectionOffCode", "*4");
    });
    expectSaved();
    expectLine(0, "account", "AnonymousCall", "1");
    expectLine(2, "account", "AnonymousCall_OnCode", "*1");
    expectLine(2, "account", "AnonymousReject_OffCode", "*4");
}

TEST_F(AnonymousPage, EachLineThatChangedIsTold)
{
    openPage();
    onLine(1, [this] { choose("cmbAnonymousCallRejection", "1"); });
    onLine(3, [this] { enter("editAnonymousCallOffCode", "*2"); });
    expectSaved();
    expectChangesTold({"3 1", "3 3"});
    expectLine(1, "account", "RejectAnonymousCall", "1");
    openPage();
    expectSaved();
    expectChangesTold({});
}

class VideoPage : public LineSettingTest
{
protected:
    VideoPage()
    {
        phone_GetCallTotal();
        phoneSimulation::instance()->setPstn(0);
    }
    void openPage()
    {
        open("Video Set");
        ASSERT_STREQ(page->metaObject()->className(), "dlgVideoSet");
    }
};

TEST_F(VideoPage, ShowsItsTextsAndWhatHoldsWhereNothingIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Video Set");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_EQ(focusName(), "cmbCallType");
    EXPECT_EQ(child<QLabel>("labCallType")->text(), "Preferred Call Type");
    EXPECT_EQ(child<QLabel>("labLocalVideo")->text(), "Local Video");
    EXPECT_EQ(child<QLabel>("labBandwidth")->text(), "Bandwidth");
    EXPECT_EQ(child<QLabel>("labFrameRate")->text(), "Frame Rate");
    EXPECT_EQ(items("cmbCallType"), (QStringList{"Voice Call: 0", "Video Call: 1"}));
    EXPECT_EQ(items("cmbLocalVideo"), (QStringList{"Off: 0", "On: 1"}));
    EXPECT_EQ(items("cmbBandwidth"),
              (QStringList{"Auto: 0", "128kbps: 128", "192kbps: 192", "256kbps: 256", "384kbps: 384",
                           "512kbps: 512", "768kbps: 768", "1Mbps: 1024"}));
    EXPECT_EQ(items("cmbFrameRate"),
              (QStringList{"10fps: 10", "15fps: 15", "20fps: 20", "25fps: 25", "30fps: 30"}));
    onLine(0, [this] {
        EXPECT_EQ(chosen("cmbCallType"), "1");
        EXPECT_EQ(chosen("cmbLocalVideo"), "1");
        EXPECT_EQ(chosen("cmbBandwidth"), "0");
        EXPECT_EQ(chosen("cmbFrameRate"), "30");
    });
    expectFilterTraced("Video Set", "dlgVideoSet");
}

TEST_F(VideoPage, TheAnalogueLineIsAChoiceWhereItIs)
{
    phoneSimulation::instance()->setPstn(1);
    openPage();
    EXPECT_EQ(items("cmbCallType"), (QStringList{"Voice Call: 0", "Video Call: 1", "PSTN Call: 2"}));
    onLine(3, [this] { choose("cmbCallType", "2"); });
    expectSaved();
    expectLine(3, "CallOption", "eCallMode", "2");
}

TEST_F(VideoPage, AStoredAnalogueLineThatIsNotThereIsNoItem)
{
    set(0, "CallOption", "eCallMode", "2");
    openPage();
    onLine(0, [this] {
        EXPECT_EQ(items("cmbCallType").size(), 2);
        EXPECT_EQ(chosen("cmbCallType"), "");
    });
    expectSaved();
    expectLine(0, "CallOption", "eCallMode", "2");
    expectChangesTold({});
}

TEST_F(VideoPage, EachLineThatChangedIsStoredAndTold)
{
    openPage();
    onLine(1, [this] {
        choose("cmbCallType", "0");
        choose("cmbBandwidth", "1024");
    });
    onLine(3, [this] {
        choose("cmbLocalVideo", "0");
        choose("cmbFrameRate", "10");
    });
    expectSaved();
    expectLine(1, "CallOption", "eCallMode", "0");
    expectLine(1, "ADVANCED", "VideoBandwidth", "1024");
    expectLine(3, "CallOption", "bActiveCamera", "0");
    expectLine(3, "hxMedia", "nFrameRate", "10");
    expectLine(0, "CallOption", "eCallMode", "(absent)");
    expectChangesTold({"3 1", "3 3"});
    openPage();
    EXPECT_EQ(tab(), 0);
    onLine(0, [this] { choose("cmbFrameRate", "15"); });
    expectFailedSave(lineFile(0));
}

} // namespace
