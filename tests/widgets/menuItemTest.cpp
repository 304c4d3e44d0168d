// Menu items that ask who the user is, and items that dial a number of the user's.
#include "support/host/dialitem.h"
#include "support/host/iconview.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QDialog>

namespace {

const char kMenu[] = "/rundata/menu.xml";
const char kUserConfig[] = "/rundata/config/user/user.ini";

QStringList g_done; // what the module was asked for
int g_nAnswer = 0;

void openPage(const chString& name, tagLeftBarInfo, QWidget*)
{
    g_done.append(QString("page ") + name.GetText());
}

void openMenu(const chString& file)
{
    g_done.append(QString("menu ") + file.GetText());
}

int promptUserLevel(const QString& level, QWidget* parent)
{
    g_done.append("level " + level + (parent ? "" : " nobody"));
    return g_nAnswer;
}

void setDialNumber(qDialNumberItem* item, QWidget*)
{
    g_done.append(QString("set ") + item->PhoneNumber().GetText());
    item->SavePhoneNumber("200");
}

QDialog* makeDialPlan(tagLeftBarInfo* info)
{
    g_done.append("make " + info->strTitle + ' ' + info->strIcon);
    return new QDialog;
}

class MenuItem : public PhoneTest
{
protected:
    MenuItem()
    {
        tagModuleEntries entries;
        entries.openPageWithInfo = openPage;
        entries.openMenu = openMenu;
        entries.promptUserLevel = promptUserLevel;
        entries.makeDialPlan = makeDialPlan;
        entries.setDialNumber = setDialNumber;
        hostSetModule(entries);
        g_done.clear();
        window.setGeometry(0, 0, 800, 480);
        view = new qIconView(&window);
        view->setGeometry(152, 40, 648, 400);
        view->SetMartrixGrix(4, 2);
    }
    ~MenuItem() override { hostSetModule(tagModuleEntries()); }

    void showMenu(const QByteArray& items)
    {
        writeFile(kMenu, "<RootMenu title='T'>" + items + "</RootMenu>");
        view->LoadMenuFile(kMenu);
        window.show();
        window.activateWindow();
        kit::settle();
    }
    static QPoint icon(int place) { return QPoint(152 + 81 + place % 4 * 162, 120); }
    QStringList doneBy(const std::function<void()>& hand)
    {
        g_done.clear();
        hand();
        return g_done;
    }
    void setNumber(const char* number) { nuxSetRegistryString(kUserConfig, "DialNumber", "desk", number); }

    QDialog window;
    qIconView* view;
};

} // namespace

TEST_F(MenuItem, WithALevelOpensWhenTheUserMay)
{
    showMenu("<item title='Factory' level='admin'/><item title='M' menu='m.xml' level='user'/><item "
             "title='WAN'/>");
    g_nAnswer = 0;
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList{"level admin"});
    EXPECT_EQ(doneBy([] { kit::key(Qt::Key_Return); }), QStringList{"level admin"});
    g_nAnswer = 1;
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), (QStringList{"level admin", "page Factory"}));
    EXPECT_EQ(doneBy([] { kit::key(Qt::Key_Return); }), (QStringList{"level admin", "page Factory"}));
    EXPECT_EQ(doneBy([] { kit::tap(icon(1)); }), (QStringList{"level user", "menu m.xml"}));
    EXPECT_EQ(doneBy([] { kit::tap(icon(2)); }), QStringList{"page WAN"});
}

TEST_F(MenuItem, WithALevelStaysShutWithoutAModuleThatAsks)
{
    tagModuleEntries entries;
    entries.openPageWithInfo = openPage;
    hostSetModule(entries);
    showMenu("<item title='Factory' level='admin'/><item title='WAN'/>");
    EXPECT_EQ(doneBy([] {
                  kit::tap(icon(0));
                  kit::tap(icon(1));
              }),
              QStringList{"page WAN"});
}

TEST_F(MenuItem, ThatDialsCallsItsNumber)
{
    setNumber("102");
    showMenu("<item title='Desk' dial='desk'/>");
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList());
    EXPECT_EQ(logged("dial"), QStringList{"102 -1 0"});
}

TEST_F(MenuItem, ThatDialsAsksForANumberFirst)
{
    showMenu("<item title='Desk' dial='desk'/>");
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList{"set "});
    EXPECT_TRUE(logged("dial").isEmpty());
    EXPECT_EQ(nuxGetRegistryInt(kUserConfig, "DialNumber", "desk", 0), 200);
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList());
    EXPECT_EQ(logged("dial"), QStringList{"200 -1 0"});
}

TEST_F(MenuItem, ThatDialsIsSetByHoldingItAndDoesNotCall)
{
    setNumber("102");
    showMenu("<item title='Desk' dial='desk'/><item title='WAN'/>");
    EXPECT_EQ(doneBy([] {
                  kit::press(icon(0));
                  kit::stepTime(700);
              }),
              QStringList());
    EXPECT_EQ(doneBy([] {
                  kit::stepTime(200);
                  kit::release(icon(0));
              }),
              QStringList{"set 102"});
    EXPECT_EQ(doneBy([] { kit::key(Qt::Key_Asterisk, {}, "*"); }), QStringList{"set 200"});
    EXPECT_TRUE(logged("dial").isEmpty());
}

TEST_F(MenuItem, ThatDialsMayAskForTheLevelAtAHoldToo)
{
    setNumber("102");
    showMenu("<item title='Desk' dial='desk' level='admin'/>");
    g_nAnswer = 0;
    EXPECT_EQ(doneBy([] { kit::key(Qt::Key_Asterisk, {}, "*"); }), QStringList{"level admin"});
}

TEST_F(MenuItem, HeldOthersOpenWhenTheFingerLifts)
{
    showMenu("<item title='Desk' dial='desk'/><item title='WAN'/>");
    EXPECT_EQ(doneBy([] {
                  kit::press(icon(1));
                  kit::stepTime(1000);
              }),
              QStringList());
    EXPECT_EQ(doneBy([] { kit::release(icon(1)); }), QStringList{"page WAN"});
    EXPECT_EQ(doneBy([] {
                  kit::press(icon(0));
                  kit::moveTo(icon(1));
                  kit::stepTime(1000);
                  kit::release(icon(1));
              }),
              QStringList());
}

TEST_F(MenuItem, ThatIsMadeIsMadeOnceAndShownEachTime)
{
    showMenu("<item title='Dial Plan' icon='p.png' make='dialplan'/><item title='WAN' make='another'/>");
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList{"make Dial Plan p.png"});
    QWidget* page = kit::windows().first();
    ASSERT_NE(page, &window);
    page->hide();
    kit::settle();
    EXPECT_EQ(doneBy([] { kit::tap(icon(0)); }), QStringList());
    EXPECT_EQ(kit::windows().first(), page);
    page->hide();
    kit::settle();
    EXPECT_EQ(doneBy([] { kit::tap(icon(1)); }), QStringList{"page WAN"});
}

TEST_F(MenuItem, ThatIsTheListOfSpeedDialsOpensItAtTheFirst)
{
    tagModuleEntries entries;
    static QStringList opened;
    entries.openSpeedDials = [](int index) { opened.append(QString::number(index)); };
    hostSetModule(entries);
    showMenu("<item title='Speed Dial' make='speeddial'/>");
    kit::tap(icon(0));
    EXPECT_EQ(opened, QStringList{"0"});
}

TEST_F(MenuItem, ThatIsMadeByTheModuleDoesNothingWithoutIt)
{
    hostSetModule(tagModuleEntries());
    showMenu("<item title='Dial Plan' make='dialplan'/><item title='Speed Dial' make='speeddial'/>");
    kit::tap(icon(0));
    kit::tap(icon(1));
    EXPECT_EQ(kit::windows().first(), &window);
}
