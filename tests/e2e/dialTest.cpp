// What a person dials, and what becomes of it: the dial plan.
#include "tests/e2e/livePhone.h"
#include <QJsonArray>

namespace {

class Dialling : public LivePhone
{
protected:
    void SetUp() override
    {
        LivePhone::SetUp();
        ctl({"set", "line", "0", "state=2", "user=1001", "server=pbx"});
    }
    // On the second page of icons, in the place of the third of its first row.
    void openDialPlan()
    {
        tap("tileCallFeature");
        waitPage("dlgIconviewForm");
        softKey(0);
    }
    QJsonObject call() { return ctl({"calls"}).toObject()["calls"].toArray().first().toObject(); }
};

} // namespace

TEST_F(Dialling, ARuleTypedByFingerRewritesTheNextCallWithTheLongestPrefixFirst)
{
    openDialPlan();
    tap(557, 120);
    waitPage("dlgDialPlan");
    waitIdle();
    tap("editPrefix"); // the first rule needs no "Add"
    pad("0");
    tap("editReplace");
    pad("9");
    tap("btnOK");
    softKey(0);
    pad("00");
    key("Down");
    pad("77");
    tap("btnOK");
    shot("dial-plan-rules");
    softKey(3);
    waitPage("dlgIconviewForm");
    tap("btnHome");
    waitPage("frmDesktop");
    pad("00123");
    key("Return");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"].toString(), "77123");
}

TEST_F(Dialling, ARuleTypedByKeysIsStoredByTheKeyThatLeavesThePage)
{
    key("Right"); // to the tile
    key("Return");
    waitPage("dlgIconviewForm");
    key("F1");
    key("Right", 2);
    key("Return");
    waitPage("dlgDialPlan");
    waitIdle();
    key("F1");
    pad("8");
    key("Down");
    pad("0044");
    key("Down");
    key("Return");
    key("F4");
    waitPage("dlgIconviewForm");
    key("F4");
    waitPage("frmDesktop");
    pad("812");
    key("Return");
    waitPage("frmCall");
    EXPECT_EQ(call()["number"].toString(), "004412");
}

TEST_F(Dialling, AFullDialPlanSaysSoAndLeavesTheKeyOfTheInputMethodEmpty)
{
    QByteArray rules;
    for (int rule = 0; rule < 20; ++rule)
        rules += "<Data Prefix=\"7" + QByteArray::number(rule) + "\" Replace=\"5\"/>";
    writeFile("/rundata/data/dialplan.xml", "<DialRule>" + rules + "</DialRule>");
    openDialPlan();
    tap(557, 120);
    waitPage("dlgDialPlan");
    waitIdle();
    key("F1");
    waitPage("dlgMessageBox");
    key("Return");
    waitPage("dlgDialPlan");
    waitIdle();
    EXPECT_EQ(softKeys().size(), 4);
    EXPECT_TRUE(widget("btnOK")["focus"].toBool());
    EXPECT_EQ(softKeys().value(1), "");
}
