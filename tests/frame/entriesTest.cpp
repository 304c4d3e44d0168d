// Every entry of the module brings up what it opens: over a box, and from under other windows.
#include "frame/menuOpening.h"
#include "frame/pageLists.h"
#include "frame/popupDialog.h"
#include "frame/roomHooks.h"
#include "support/host/box.h"
#include "support/host/dialogs.h"
#include "support/host/screen.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QApplication>
#include <QTimer>
#include <functional>

namespace {

struct tagEntry
{
    const char* szName;
    std::function<void()> call;
};

void PrintTo(const tagEntry& entry, std::ostream* stream)
{
    *stream << entry.szName;
}

dlgBarePage* hookPage()
{
    static dlgBarePage* page = new dlgBarePage;
    return page;
}

const tagEntry kEntries[] = {
    {"page by name", [] { settingOpenPage("Call Histroy", nullptr); }},
    {"page with info", [] { settingOpenPage("Call Histroy", tagLeftBarInfo{}, nullptr); }},
    {"local directory", [] { settingOpenPage(DIRECTORY_LOCAL, "", "", nullptr); }},
    {"remote directory", [] { settingOpenPage(DIRECTORY_REMOTE, "Book", "http://127.0.0.1:1/", nullptr); }},
    {"directory search", [] { settingOpenPage(DIRECTORY_LDAP, "Search", "", nullptr); }},
    {"menu", [] { settingOpenXml("setting.xml"); }},
    {"menu by name", [] { EXPECT_EQ(settingOpenFrame("Directory"), 1); }},
    {"cached page", [] { PopupDialog<dlgPhoneBook>(nullptr, 1, 1, 0); }},
    {"cached page with tip", [] { PopupDialog<dlgContactEditor>(nullptr, 1, 1, 1); }},
    {"account page", [] { PopupAccountDialog(1, 1); }},
    {"door phone page", [] { PopupDoorPhoneDialog(1, 1); }},
    {"camera page of an item", [] { settingIpCamera(nullptr, nullptr); }},
    {"camera page of a title", [] { settingIpCamera_DoorPhone("SettingIPCamera", "Gate", nullptr); }},
};

class Entries : public FrameTest, public ::testing::WithParamInterface<tagEntry>
{
protected:
    Entries()
    {
        tagRoomHooks& hooks = roomHooks();
        hooks.makeAccountPage = [](int) -> QDialog* { return new dlgBarePage; };
        hooks.makeDoorPhonePage = hooks.makeAccountPage;
        hooks.ipCameraPageOfItem = [](QWidget*, IPCameraIconViewItem*) -> QDialog* { return hookPage(); };
        hooks.ipCameraPageOfTitle = [](const QString&) -> QDialog* { return hookPage(); };
        m_below.show();
        kit::settle();
    }
    ~Entries() override
    {
        roomHooks() = tagRoomHooks();
        for (QWidget* window : QApplication::topLevelWidgets())
            window->hide();
    }
    // What a person has in front of him, alive.
    QWidget* opened()
    {
        kit::settle();
        QWidget* top = QWSServer::clientWindows().value(0);
        EXPECT_NE(top, &m_below);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(top && top->isActiveWindow());
        return top;
    }

    dlgBarePage m_below;
};

} // namespace

TEST_P(Entries, OverABoxIsUsableAndTheBoxIsCancelled)
{
    QTimer::singleShot(0, &m_below, GetParam().call);
    EXPECT_EQ(xMessageBox("Note", "Reboot device?", BOX_QUESTION, &m_below, -1), 0);
    QWidget* top = opened();
    ASSERT_NE(top, nullptr);
    kit::tap(QPoint(700, 460));
    kit::settle();
    EXPECT_FALSE(top->isVisible()) << "\"Back\" takes no touch";
}

TEST_P(Entries, FromUnderAnotherWindowIsRaised)
{
    GetParam().call();
    QWidget* top = opened();
    dlgBarePage cover;
    cover.show();
    kit::settle();
    ASSERT_EQ(QWSServer::clientWindows().value(0), &cover);
    GetParam().call();
    EXPECT_EQ(opened(), top);
}

INSTANTIATE_TEST_SUITE_P(All, Entries, ::testing::ValuesIn(kEntries));

namespace {
class EntryForms : public FrameTest
{
};
} // namespace

TEST_F(EntryForms, ARaisedFormIsRememberedOnceAndTheHomeButtonClosesIt)
{
    settingOpenXml("setting.xml");
    settingOpenXml("media.xml");
    settingOpenXml("setting.xml");
    kit::settle();
    QWidget* form = namedFind(GetListDial(), chString("setting.xml"));
    ASSERT_EQ(QWSServer::clientWindows().value(0), form);
    kit::tap(form->findChild<QWidget*>("btnHome"));
    kit::settle();
    EXPECT_TRUE(QWSServer::clientWindows().isEmpty());
}

// ---- the administrator's password

namespace {
class PromptUserLevel : public FrameTest
{
protected:
    ~PromptUserLevel() override { roomHooks() = tagRoomHooks(); }
    static void answerWith(int (*answer)(QWidget*)) { roomHooks().askAdminPassword = answer; }
};
QWidget* g_pAskedUpon = nullptr;
} // namespace

TEST_F(PromptUserLevel, AsksNobodyButTheAdministrator)
{
    answerWith([](QWidget*) {
        ADD_FAILURE() << "asked";
        return 0;
    });
    for (const char* level : {"", "user", "Admin", "ADMIN", "admin "})
        EXPECT_EQ(settingPromptUserLevel(level, nullptr), 1) << level;
    EXPECT_FALSE(traced("input"));
}

TEST_F(PromptUserLevel, AnswersWhetherThePasswordWasGiven)
{
    dlgBarePage page;
    answerWith([](QWidget* parent) {
        g_pAskedUpon = parent;
        return 1;
    });
    EXPECT_EQ(settingPromptUserLevel("admin", &page), 1);
    EXPECT_EQ(g_pAskedUpon, &page);
    EXPECT_EQ(tracedTimes("Complete input the password."), 1);
    EXPECT_FALSE(traced("Cancel input password!"));
    answerWith([](QWidget*) { return 0; });
    EXPECT_EQ(settingPromptUserLevel("admin", &page), 0);
    EXPECT_EQ(tracedTimes("Complete input the password."), 1);
    EXPECT_EQ(tracedTimes("Cancel input password!"), 1);
}

TEST_F(PromptUserLevel, WithoutTheBoxTheUserIsToldAndLetNowhere)
{
    kit::BoxAnswers boxes({"ok"});
    EXPECT_EQ(settingPromptUserLevel("admin", nullptr), 0);
    EXPECT_EQ(boxes.texts(), QStringList("Unknow dialog type"));
    EXPECT_EQ(tracedTimes("Cancel input password!"), 1);
}
