// One form for each menu file and menu name, and the boot.
#include "frame/menuOpening.h"
#include "frame/configFiles.h"
#include "frame/roomHooks.h"
#include "support/host/bars.h"
#include "support/host/desktop.h"
#include "support/host/iconview.h"
#include "support/xml/xmlFile.h"
#include "tests/frame/failingMenu.h"
#include "tests/frame/frameTest.h"
#include <QApplication>
#include <QFile>
#include <cstring>

namespace {

const char kGenerated[] = "/rundata/data/ipcameradata.xml";

class Menus : public FrameTest
{
protected:
    void writeMenu(const char* path, int items)
    {
        QByteArray text = "<RootMenu title='Setting'>";
        for (int i = 0; i < items; ++i)
            text += "<item title='Item " + QByteArray::number(i) + "'/>";
        writeFile(path, text + "</RootMenu>");
    }
    static dlgIconviewForm* form(const char* file) { return namedFind(GetListDial(), chString(file)); }
    static int icons(const char* file) { return form(file)->GetIconView()->currentIconCount(); }
    static QString pointerText(const void* pointer) { return QString::asprintf("%p", pointer); }
};

} // namespace

TEST_F(Menus, AMenuFileIsFoundInTheFirmwareAndShown)
{
    settingOpenXml("setting.xml");
    ASSERT_NE(form("setting.xml"), nullptr);
    EXPECT_TRUE(form("setting.xml")->isVisible());
    EXPECT_EQ(form("setting.xml")->GetIconView()->m_strTitleName, "Setting");
    EXPECT_TRUE(traced("new dlgIconviewForm(" + pointerText(form("setting.xml")) + ")"));
    EXPECT_GE(tracedTimes("settingOpenXml(setting.xml)"), 2);
    EXPECT_GE(tracedTimes("PopupXMLIconView(setting.xml)"), 2);
}

TEST_F(Menus, GeneratedMenusAreFoundInTheDataFolder)
{
    for (const char* file : {"ipcameradata.xml", "doorphonedata.xml"}) {
        writeMenu((QByteArray("/rundata/data/") + file).constData(), 4);
        PopupXMLIconView(file, 0);
        EXPECT_EQ(icons(file), 4) << file;
        EXPECT_FALSE(form(file)->isVisible());
    }
}

TEST_F(Menus, AListedMenuIsShownAgainWithoutLoadingItsFile)
{
    replaceFirmwareFile("/phone/resource/ui-config/media.xml",
                        "<RootMenu title='Media'><item title='A'/></RootMenu>");
    settingOpenXml("media.xml");
    dlgIconviewForm* first = form("media.xml");
    first->reject();
    replaceFirmwareFile("/phone/resource/ui-config/media.xml", "<RootMenu title='Media'/>");
    settingOpenXml("media.xml");
    EXPECT_EQ(form("media.xml"), first);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(icons("media.xml"), 1);
    EXPECT_EQ(GetListDial().size(), 1);
    EXPECT_TRUE(traced("get dlgIconviewForm(" + pointerText(first) + ")"));
}

TEST_F(Menus, NamesThatAreNoneCostOneFormTogether)
{
    settingOpenFrame("Nowhere");
    const qsizetype widgets = QApplication::allWidgets().size();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(settingOpenFrame(fmtString("Nowhere%d", i)), 0);
    EXPECT_EQ(QApplication::allWidgets().size(), widgets);
    const qIconView* last = getIconView();
    settingOpenXml("media.xml");
    EXPECT_EQ(form("media.xml")->GetIconView(), last);
    EXPECT_EQ(getIconView(), last) << "the form that was made last";
    settingOpenXml("setting.xml");
    EXPECT_NE(form("setting.xml"), form("media.xml"));
    EXPECT_EQ(getIconView(), form("setting.xml")->GetIconView());
}

TEST_F(Menus, AListedGeneratedMenuIsRefreshedByItsManager)
{
    for (const char* file : {"ipcameradata.xml", "doorphonedata.xml"}) {
        const QByteArray path = QByteArray("/rundata/data/") + file;
        writeMenu(path.constData(), 2);
        settingOpenXml(file);
        writeMenu(path.constData(), 5);
        settingOpenXml(file);
        EXPECT_EQ(icons(file), 5) << file;
    }
}

TEST_F(Menus, ARefreshThatShrinksAMenuToOnePageClearsTheMoreKey)
{
    writeMenu(kGenerated, 9);
    settingOpenXml("ipcameradata.xml");
    qSoftKeyBar* keys = form("ipcameradata.xml")->findChild<qSoftKeyBar*>();
    ASSERT_EQ(keys->GetButtonTitle(0), "More");
    writeMenu(kGenerated, 3);
    RefreshOpenXml("ipcameradata.xml");
    EXPECT_EQ(keys->GetButtonTitle(0), "");
    EXPECT_EQ(keys->GetButton(0)->name(), "");
    EXPECT_TRUE(traced("Refresh dlgIconviewForm(" + pointerText(form("ipcameradata.xml")) + ")"));
    EXPECT_GE(tracedTimes("RefreshOpenXml(ipcameradata.xml)"), 2);
    EXPECT_TRUE(traced("RefreshXMLIconView(ipcameradata.xml)"));
}

TEST_F(Menus, ARefreshOfAMenuThatWasNotMadeIsOnlyTraced)
{
    const int windows = int(QApplication::topLevelWidgets().size());
    RefreshXMLIconView("setting.xml");
    EXPECT_TRUE(traced("No find (setting.xml) dlgIconview")) << show(logged("trace"));
    EXPECT_EQ(GetListDial().size(), 0);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
}

TEST_F(Menus, TheOldestEntryOfANameIsFound)
{
    PopupXMLIconView("setting.xml", 0);
    dlgIconviewForm* first = form("setting.xml");
    dlgIconviewForm other;
    GetListDial().append(tagNamed<dlgIconviewForm>{chString("setting.xml"), &other});
    EXPECT_EQ(form("setting.xml"), first);
    GetListDial().pop_back();
}

TEST_F(Menus, ANameOpenedThreeTimesIsListedThreeTimesAndTheFirstIsFound)
{
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(settingOpenFrame("Directory"), 1);
    ASSERT_EQ(GetListFrame().size(), 3);
    dlgIconviewForm* first = GetListFrame().front().pValue;
    for (const tagNamed<dlgIconviewForm>& entry : GetListFrame()) {
        EXPECT_EQ(entry.pValue, first);
        EXPECT_STREQ(entry.strKey.GetText(), "Directory");
    }
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(tracedTimes("new dlgIconviewForm("), 1);
    EXPECT_EQ(tracedTimes("get dlgIconviewForm(" + pointerText(first) + ")"), 2);
    EXPECT_GE(tracedTimes("settingOpenFrame = Directory"), 2);
}

TEST_F(Menus, AMenuThatTheHostCannotMakeIsNeitherShownNorListed)
{
    EXPECT_EQ(settingOpenFrame("Nowhere"), 0);
    EXPECT_EQ(GetListFrame().size(), 0);
    ASSERT_NE(g_pDlgIconviewForm, nullptr);
    EXPECT_FALSE(g_pDlgIconviewForm->isVisible());
    EXPECT_EQ(settingOpenFrame("Directory"), 1);
    FailingMenu failing;
    GetListFrame().front().pValue->reject();
    EXPECT_EQ(settingOpenFrame("Directory"), 0);
    EXPECT_FALSE(GetListFrame().front().pValue->isVisible());
    EXPECT_EQ(GetListFrame().size(), 1);
}

TEST_F(Menus, AFormInUseIsNotGivenToTheNextMenuWhenItFailsAgain)
{
    ASSERT_EQ(settingOpenFrame("Directory"), 1);
    const dlgIconviewForm* directory = GetListFrame().front().pValue;
    {
        FailingMenu failing;
        ASSERT_EQ(settingOpenFrame("Directory"), 0);
    }
    settingOpenXml("media.xml");
    ASSERT_NE(form("media.xml"), nullptr);
    EXPECT_NE(form("media.xml"), directory);
}

TEST_F(Menus, LDAPIsThereWhenItsKeyIsNotZero)
{
    EXPECT_EQ(IsExsitLDAP(), 0);
    writeKey(USER_INI, "LDAP", "bEnable", "2");
    EXPECT_NE(IsExsitLDAP(), 0);
    writeKey(USER_INI, "LDAP", "bEnable", "0");
    EXPECT_EQ(IsExsitLDAP(), 0);
}

TEST_F(Menus, ARemoteDirectoryNeedsAtLeastOneItem)
{
    const char* const without[] = {"",
                                   "<root/>",
                                   "<root><RemotePhoneBook/></root>",
                                   "<root><item/></root>",
                                   "<root><RemotePhoneBook><other/></RemotePhoneBook></root>",
                                   "<root><RemotePhoneBook><item/></RemotePhoneBook>"};
    for (const char* text : without) {
        writeFile(REMOTE_BOOK_XML, text);
        EXPECT_EQ(IsExsitRemoteDirectory(), 0) << text;
    }
    for (const char* text : {"<root><RemotePhoneBook><item/></RemotePhoneBook></root>",
                             "<RemotePhoneBook><other/><item/></RemotePhoneBook>"}) {
        writeFile(REMOTE_BOOK_XML, text);
        EXPECT_EQ(IsExsitRemoteDirectory(), 1) << text;
    }
    writeFile(REMOTE_BOOK_XML,
              "<root><RemotePhoneBook><item/></RemotePhoneBook></root>" + QByteArray(XML_TABLE_LIMIT, ' '));
    EXPECT_EQ(IsExsitRemoteDirectory(), 0) << "far too large";
    EXPECT_EQ(traces().filter("is larger than").size(), 1);
    QFile::remove(hostPath(REMOTE_BOOK_XML));
    EXPECT_EQ(IsExsitRemoteDirectory(), 0);
}

namespace {

const char* const kTexts[] = {"Loading Local Phonebook Module", "Loading Remote Phonebook Module",
                              "Loading CallHistroy Module",     "Loading Setting Module",
                              "Loading Call Feature Module",    "Loading Application Module",
                              "Loading Media Module",           "Loading Browser Module"};

// Collects the texts that the loading screen really paints.
class PaintedTexts : public QObject
{
public:
    explicit PaintedTexts(frmLoading* loading) : m_pLoading(loading) { loading->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && (m_texts.isEmpty() || m_texts.last() != m_pLoading->text()))
            m_texts.append(m_pLoading->text());
        return false;
    }
    frmLoading* m_pLoading;
    QStringList m_texts;
};

int g_speedDials = 0;

class Boot : public Menus
{
protected:
    Boot()
    {
        g_speedDials = 0;
        roomHooks() = tagRoomHooks();
        frmDesktop::GetInstance()->m_pLoading = &m_loading;
        m_loading.setGeometry(0, 0, 800, 480);
        m_loading.show();
        kit::settle();
    }
    ~Boot() override { frmDesktop::GetInstance()->m_pLoading = nullptr; }
    static QWidget* built(const char* page)
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (strcmp(window->metaObject()->className(), page) == 0)
                return window;
        }
        return nullptr;
    }
    frmLoading m_loading;
};

} // namespace

TEST_F(Boot, EachStepTellsItsTextBeforeItsWork)
{
    for (int i = 0; i < 8; ++i) {
        PaintedTexts painted(&m_loading);
        EXPECT_EQ(settingCacheWindows(i), 1);
        EXPECT_EQ(m_loading.text(), kTexts[i]);
        EXPECT_TRUE(painted.m_texts.contains(kTexts[i])) << kTexts[i] << " was not painted";
        EXPECT_GE(tracedTimes(QString("settingCacheWindows(%1)").arg(i)), 2);
    }
}

TEST_F(Boot, PastTheLastStepNothingHappens)
{
    m_loading.setText("as it was");
    EXPECT_EQ(settingCacheWindows(8), 0);
    EXPECT_EQ(settingCacheWindows(100), 0);
    EXPECT_EQ(m_loading.text(), "as it was");
}

TEST_F(Boot, AllStepsRunInOrderAndTheirWindowsStayHidden)
{
    roomHooks().speedDialPage = []() -> QDialog* {
        ++g_speedDials;
        return nullptr;
    };
    PaintedTexts painted(&m_loading);
    EXPECT_EQ(settingCacheWindows(-1), 1);
    QStringList expected;
    for (const char* text : kTexts)
        expected.append(text);
    painted.m_texts.removeAll(QString());
    EXPECT_EQ(painted.m_texts, expected) << show(painted.m_texts);
    EXPECT_EQ(g_speedDials, 1);
    QStringList menus;
    for (const tagNamed<dlgIconviewForm>& entry : GetListDial()) {
        menus.append(entry.strKey.GetText());
        EXPECT_FALSE(entry.pValue->isVisible()) << entry.strKey.GetText();
    }
    EXPECT_EQ(menus, QStringList({"setting.xml", "callfeature.xml", "application.xml", "media.xml"}));
    for (const char* page : {"dlgPhoneBook", "dlgContactEditor", "dlgRemotePhoneBook", "dlgCallHistroy"}) {
        ASSERT_NE(built(page), nullptr) << page;
        EXPECT_FALSE(built(page)->isVisible()) << page;
    }
}

TEST_F(Boot, TheWindowsOfTheBootAreTheOnesThatOpenLater)
{
    settingCacheWindows(3);
    dlgIconviewForm* cached = form("setting.xml");
    settingOpenXml("setting.xml");
    EXPECT_EQ(form("setting.xml"), cached);
    EXPECT_TRUE(cached->isVisible());
}

TEST_F(Boot, WithoutALoadingScreenTheStepsStillWork)
{
    frmDesktop::GetInstance()->m_pLoading = nullptr;
    EXPECT_EQ(settingCacheWindows(3), 1);
    EXPECT_NE(form("setting.xml"), nullptr);
}
