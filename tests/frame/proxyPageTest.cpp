// The page that docs/writing-a-page.md writes.
#include "frame/configFiles.h"
#include "tests/frame/example/examplePages.h"
#include "tests/kit/pageTest.h"
#include <QCheckBox>

namespace {

class ProxyPage : public PageTest
{
protected:
    ProxyPage()
    {
        examplePages();
        writeFile(USER_INI, "[Proxy]\nbEnable=0\neMode=1\nstrServer=sip.example.org\nnPort=5060\n");
        openClass("dlgProxy");
    }
};

} // namespace

TEST_F(ProxyPage, ShowsWhatIsStoredWithTheFocusOnTheCheckBox)
{
    EXPECT_FALSE(child<QCheckBox>("chkEnable")->isChecked());
    EXPECT_EQ(child<QComboBox>("cmbMode")->currentText(), "Auto");
    EXPECT_EQ(child<QLineEdit>("editServer")->text(), "sip.example.org");
    EXPECT_EQ(focusName(), "chkEnable");
    kit::shot("example-page");
}

TEST_F(ProxyPage, ABadEntryIsRefused)
{
    enter("editServer", "not a server");
    expectRefused(USER_INI, "SIP proxy server is invalid!", "editServer");
    enter("editServer", "sip.example.com");
    enter("editPort", "");
    expectRefused(USER_INI, "SIP proxy port is invalid!", "editPort");
}

TEST_F(ProxyPage, SaveStoresAndTells)
{
    tick("chkEnable", true);
    choose("cmbMode", "0");
    enter("editPort", "5061");
    expectSaved();
    expectStored(USER_INI, "Proxy", "bEnable", "1");
    expectStored(USER_INI, "Proxy", "eMode", "0");
    expectStored(USER_INI, "Proxy", "nPort", "5061");
    expectChangesTold({"11 0"});
}

TEST_F(ProxyPage, AnUnchangedSaveTellsNobody)
{
    expectSaved();
    expectChangesTold({});
}

TEST_F(ProxyPage, AFullDiskIsToldAndKeepsWhatWasTyped)
{
    enter("editServer", "sip.example.com");
    expectFailedSave(USER_INI);
    EXPECT_EQ(child<QLineEdit>("editServer")->text(), "sip.example.com");
    expectChangesTold({});
    expectSaved();
    expectStored(USER_INI, "Proxy", "strServer", "sip.example.com");
    expectChangesTold({"11 0"});
}
