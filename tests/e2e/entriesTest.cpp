// Entries that a host calls at any moment, on the running phone.
#include "tests/e2e/livePhone.h"
#include <QJsonArray>

namespace {

class EntryStory : public LivePhone
{
protected:
    void openBox()
    {
        ctl({"open", "Reboot"});
        waitPage("dlgMessageBox");
    }
};

} // namespace

TEST_F(EntryStory, APageOpenedOverABoxTakesTouchesAndKeys)
{
    openBox();
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    tap("radBtnStaticIp");
    EXPECT_TRUE(widget("radBtnStaticIp")["checked"].toBool());
    key("F4");
    waitPage("frmDesktop");
    EXPECT_TRUE(logOf("reboot").isEmpty()) << "the question was answered as cancelled";
}

TEST_F(EntryStory, AMenuOpenedOverABoxTakesTouchesAndKeys)
{
    openBox();
    ctl({"menu", "setting.xml"});
    waitPage("dlgIconviewForm");
    key("Return");
    waitPage("dlgWan");
}

TEST_F(EntryStory, ACallOverABoxIsTakenCareOf)
{
    openBox();
    ctl({"ring", "4711", "0", "Anna"});
    waitPage("frmCall");
    key("F4");
    waitPage("frmDesktop");
    waitIdle();
    EXPECT_EQ(topWindow()["active"].toBool(), true);
}

TEST_F(EntryStory, ThePageWhoseOwnQuestionIsUpComesUpWhenItIsOpenedAgain)
{
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    tap("radBtnDHCP");
    softKey(0);
    waitPage("dlgMessageBox");
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    waitIdle();
    EXPECT_EQ(topWindow()["class"], "dlgWan");
    tap("radBtnStaticIp");
    EXPECT_TRUE(widget("radBtnStaticIp")["checked"].toBool());
}

TEST_F(EntryStory, ACoveredPageIsRaised)
{
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    ctl({"menu", "setting.xml"});
    waitPage("dlgIconviewForm");
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    key("F4", 2);
    waitPage("frmDesktop");
}
