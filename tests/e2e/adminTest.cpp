// What the administrator's password keeps, and what the status page tells, on the running phone.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>

namespace {

constexpr int kWaitMs = 20000;

class Admin : public LivePhone
{
protected:
    // The last icon of the first row on the menu's second page.
    void touchFactory()
    {
        tap("tileSetting");
        waitPage("dlgIconviewForm");
        softKey(0);
        tap(719, 130);
        waitPage("dlgPassWord");
    }
    void expectNote(const QString& text)
    {
        waitPage("dlgMessageBox");
        EXPECT_EQ(widget("labText")["text"].toString(), text);
    }
    bool shows(const QString& label, const QString& text)
    {
        return kit::waits([&] { return widget(label)["text"] == text; }, kWaitMs);
    }
    // Every file that the phone has written, and all that it has traced.
    bool isKeptAnywhere(const QByteArray& secret)
    {
        QDirIterator files(root() + "/rundata", QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains(secret))
                return true;
        }
        return QJsonDocument(ctl({"log"}).toObject()).toJson().contains(secret);
    }
};

} // namespace

TEST_F(Admin, AResetIsTheAdministratorsByFingerAndByKeys)
{
    touchFactory();
    ctl({"type", "Wrong"});
    shot("admin-typed");
    tap("btnOK");
    expectNote("Password is wrong!");
    tap("btnOK");
    waitPage("dlgPassWord");
    for (int left = 0; left < 5; ++left)
        tap("btnDelet");
    tap("btnOK"); // out of the box there is none
    expectNote("Reset to factory?");
    tap("btnNo");

    ctl({"open", "Security"});
    waitPage("dlgSecurity");
    key("Down");
    ctl({"type", "Gate47"});
    key("Down");
    ctl({"type", "Gate47"});
    shot("admin-security");
    softKey(0);
    waitPage("dlgIconviewForm");

    key("Return");
    waitPage("dlgPassWord");
    key("Return");
    expectNote("Password is wrong!");
    key("Return");
    waitPage("dlgPassWord");
    ctl({"type", "Gate47"});
    EXPECT_FALSE(QJsonDocument(topWindow()).toJson().contains("Gate47"));
    key("Return");
    expectNote("Reset to factory?");
    key("F4");
    EXPECT_EQ(QFile::permissions(root() + "/rundata/data/htpasswd") & 0x0077, QFile::Permissions());
    EXPECT_FALSE(isKeptAnywhere("Gate47"));
    EXPECT_FALSE(isKeptAnywhere("Wrong"));
}

TEST_F(Admin, TheStatusPageSeesCableAndLine)
{
    ctl({"set", "net", "cable=1", "conflict=0"});
    ctl({"open", "Status"});
    waitPage("dlgStatus");
    EXPECT_TRUE(shows("valueLinkStatus", "Connected"));
    ctl({"set", "net", "cable=0"});
    EXPECT_TRUE(shows("valueLinkStatus", "Disconnected"));
    ctl({"set", "line", "0", "state=3", "user=1001", "server=pbx", "name=Anna"});
    EXPECT_TRUE(shows("valueStatus", "Register failed"));
    EXPECT_EQ(widget("valueDisplayName")["text"], "Anna");
    ctl({"set", "line", "0", "state=9"});
    EXPECT_TRUE(shows("valueStatus", "Unknown"));
    softKey(1);
    waitPage("dlgVersion_Detail");
    shot("versions");
}
