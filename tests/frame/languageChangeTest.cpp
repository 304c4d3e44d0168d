// A change of the language is seen everywhere at once: on what is on view, and on the rest when it is shown.
#include "frame/dlgIconviewForm.h"
#include "support/host/bars.h"
#include "support/host/iconview.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QLabel>
#include <QPushButton>

namespace {

const char kMenu[] = "/rundata/data/testmenu.xml";

class LanguageChange : public FrameTest
{
protected:
    ~LanguageChange() override { GetLanguageHelper()->SetLanguage("English"); }
    static void speak(const char* language)
    {
        ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1);
        kit::settle();
    }
    static void open(QWidget& window)
    {
        window.show();
        kit::settle();
    }
    void writeMenu(int items)
    {
        QByteArray text = "<RootMenu title='Setting' icon=''>";
        for (int i = 0; i < items; ++i)
            text += "<item title='Security' icon=''/>";
        writeFile(kMenu, text + "</RootMenu>");
    }
};

} // namespace

TEST_F(LanguageChange, AnOpenPageShowsItAtOnce)
{
    dlgBarePage page;
    QLabel label("Status", &page);
    QPushButton button("Delete", &page);
    QLabel value("Save", &page);
    page.frame().Build(&page, &page, page.m_pBackground, "Security", KEYS_EDIT);
    page.frame().SetLeftBar(nullptr, "Account");
    value.setText("192.168.1.1");
    open(page);
    speak("German");
    EXPECT_EQ(page.frame().m_pTopBar->title(), "Sicherheit");
    EXPECT_EQ(page.m_pLeftBar->title(), "Konto");
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(0), "Speichern");
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(3), "Zurück");
    EXPECT_EQ(button.text(), "Löschen");
    EXPECT_EQ(value.text(), "192.168.1.1");
    speak("English");
    EXPECT_EQ(page.frame().m_pTopBar->title(), "Security");
    EXPECT_EQ(button.text(), "Delete");
}

TEST_F(LanguageChange, AKeyThatFollowsTheFocusStillDoes)
{
    dlgConfigPage page;
    open(page);
    ASSERT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(SOFT_KEY_IME), "123");
    speak("German");
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(SOFT_KEY_IME), "123");
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(SOFT_KEY_DELETE), "Löschen");
}

TEST_F(LanguageChange, APageBelowAnotherShowsItToo)
{
    dlgBarePage below;
    dlgBarePage above;
    open(below);
    open(above);
    speak("Spanish");
    EXPECT_EQ(below.frame().m_pSoftKeyBar->GetButtonTitle(3), "Atrás");
    EXPECT_EQ(above.frame().m_pSoftKeyBar->GetButtonTitle(3), "Atrás");
}

TEST_F(LanguageChange, ARecordInTheLeftBarOfACachedPageFollowsEvenWhenItIsGone)
{
    dlgBarePage page;
    auto info = std::make_unique<tagLeftBarInfo>(tagLeftBarInfo{HX_THEME("menu/menu_wan.png"), "Account"});
    page.m_pLeftBarInfo = info.get();
    page.setLeftBar();
    open(page);
    EXPECT_EQ(page.m_pLeftBar->title(), "Account");
    info.reset();
    page.m_pLeftBarInfo = nullptr;
    speak("German");
    EXPECT_EQ(page.m_pLeftBar->title(), "Konto");
    page.hide();
    speak("French");
    EXPECT_EQ(page.m_pLeftBar->title(), "Konto");
    open(page);
    EXPECT_EQ(page.m_pLeftBar->title(), "Compte");
    EXPECT_EQ(page.m_pLeftBar->icon(), HX_THEME("menu/menu_wan.png"));
}

TEST_F(LanguageChange, ANewRecordIsNotReplacedByTheOldOne)
{
    dlgBarePage page;
    tagLeftBarInfo first{HX_THEME("menu/menu_wan.png"), "Account"};
    tagLeftBarInfo second{HX_THEME("menu/menu_status.png"), "Status"};
    for (tagLeftBarInfo* info : {&first, &second}) {
        page.hide();
        speak(info == &first ? "French" : "Spanish");
        page.m_pLeftBarInfo = info;
        page.setLeftBar();
        open(page);
    }
    EXPECT_EQ(page.m_pLeftBar->title(), "Estado");
    EXPECT_EQ(page.m_pLeftBar->icon(), second.strIcon);
}

TEST_F(LanguageChange, AnOpenMenuShowsItAtOnce)
{
    netSetLocalTime(2009, 3, 2, 13, 5, 0);
    writeKey("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", "1");
    writeMenu(9);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    open(form);
    form.GetIconView()->SetCurrentPage(1);
    speak("Chinese");
    EXPECT_EQ(form.findChild<qLeftBar*>()->title(), "设置");
    EXPECT_EQ(form.GetIconView()->item(8)->text(), "安全");
    EXPECT_EQ(form.findChild<qSoftKeyBar*>()->GetButtonTitle(0), "更多");
    EXPECT_EQ(form.findChild<qSoftKeyBar*>()->GetButtonTitle(3), "返回");
    EXPECT_EQ(form.GetIconView()->GetCurrentPage(), 1);
    bool hasClock = false;
    for (const QLabel* label : form.findChildren<QLabel*>())
        hasClock = hasClock || label->text().endsWith("下午 01:05");
    EXPECT_TRUE(hasClock);
}

TEST_F(LanguageChange, ThatAnotherProgramStoresIsThatOfTheNextStart)
{
    dlgBarePage page;
    open(page);
    QByteArray file = readFile("/rundata/config/user/user.ini");
    ASSERT_TRUE(file.contains("strGUILanguage=English"));
    writeFile("/rundata/config/user/user.ini",
              file.replace("strGUILanguage=English", "strGUILanguage=German"));
    kit::stepTime(1000);
    EXPECT_EQ(page.frame().m_pSoftKeyBar->GetButtonTitle(3), "Back");
}

TEST_F(LanguageChange, WhatIsHiddenWaitsForItsNextShow)
{
    QWidget widget;
    int times = 0;
    qFollowLanguage(&widget, [&] { ++times; });
    speak("German");
    EXPECT_EQ(times, 0);
    open(widget);
    EXPECT_EQ(times, 1);
    widget.hide();
    open(widget);
    EXPECT_EQ(times, 1);
    speak("German");
    EXPECT_EQ(times, 1);
    speak("French");
    EXPECT_EQ(times, 2);
}
