// A menu: grid, title, clock, home button.
#include "frame/configFiles.h"
#include "frame/dlgIconviewForm.h"
#include "support/host/bars.h"
#include "support/host/iconview.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "tests/frame/failingMenu.h"
#include "tests/frame/frameTest.h"
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace {

const char kMenu[] = "/rundata/data/testmenu.xml";

class MenuForm : public FrameTest
{
protected:
    void writeMenu(int items, const char* title = "Setting", const char* path = kMenu)
    {
        QByteArray text =
            QByteArray("<RootMenu title='") + title + "' icon='" HX_THEME("menu/menu_setting.png") "'>";
        for (int i = 0; i < items; ++i)
            text +=
                "<item title='Item " + QByteArray::number(i) + "' icon='" HX_THEME("menu/menu_wan.png") "'/>";
        writeFile(path, text + "</RootMenu>");
    }
    static qSoftKeyBar* keys(dlgIconviewForm& form) { return form.findChild<qSoftKeyBar*>(); }
    static qLeftBar* leftBar(dlgIconviewForm& form) { return form.findChild<qLeftBar*>(); }
    static QPushButton* home(dlgIconviewForm& form) { return form.findChild<QPushButton*>("btnHome"); }
    static QLabel* clock(dlgIconviewForm& form)
    {
        for (QLabel* label : form.findChildren<QLabel*>()) {
            if (label->geometry() == QRect(600, 0, 200, 40))
                return label;
        }
        return nullptr;
    }
    static void open(dlgIconviewForm& form)
    {
        form.show();
        kit::settle();
    }
    // With "Back" in between, which leaves it on the stack.
    static void showTwice(dlgIconviewForm& form)
    {
        form.LoadFile(kMenu);
        open(form);
        kit::tap(keys(form)->GetButton(3));
        open(form);
    }
};

} // namespace

TEST_F(MenuForm, HasItsPartsInTheirPlaces)
{
    dlgIconviewForm form;
    kit::settle();
    EXPECT_TRUE(form.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(form.minimumSize(), QSize(800, 480));
    EXPECT_EQ(form.maximumSize(), QSize(800, 480));
    EXPECT_EQ(form.findChild<qTopBar*>()->geometry(), QRect(0, 0, 800, 40));
    EXPECT_EQ(leftBar(form)->geometry(), QRect(0, 40, 152, 400));
    EXPECT_EQ(form.GetIconView()->geometry(), QRect(152, 40, 648, 400));
    EXPECT_EQ(keys(form)->geometry(), QRect(0, 440, 800, 40));
    EXPECT_EQ(home(form)->geometry(), QRect(10, 5, 44, 39));
    EXPECT_FALSE(form.palette().brush(QPalette::Window).texture().isNull());
    EXPECT_EQ(form.GetIconView()->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(form.GetIconView()->frameShape(), 3);
    EXPECT_EQ(keys(form)->GetButton(3)->name(), "Back");
}

TEST_F(MenuForm, LoadingAFileSetsTitleAndIcon)
{
    writeMenu(3);
    dlgIconviewForm form;
    EXPECT_EQ(form.LoadFile(kMenu), 1);
    EXPECT_EQ(leftBar(form)->title(), "Setting");
    EXPECT_EQ(leftBar(form)->icon(), HX_THEME("menu/menu_setting.png"));
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 3);
}

TEST_F(MenuForm, AMissingFileGivesAnEmptyMenu)
{
    dlgIconviewForm form;
    EXPECT_EQ(form.LoadFile("/rundata/data/nothing.xml"), 1);
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 0);
    EXPECT_EQ(keys(form)->GetButton(0)->name(), "");
}

TEST_F(MenuForm, EightIconsNeedNoMoreKeyAndNineDo)
{
    dlgIconviewForm form;
    writeMenu(8);
    form.LoadFile(kMenu);
    EXPECT_EQ(keys(form)->GetButton(0)->name(), "");
    EXPECT_EQ(keys(form)->GetButtonTitle(0), "");
    writeMenu(9);
    form.LoadFile(kMenu);
    EXPECT_EQ(keys(form)->GetButton(0)->name(), "NextPage");
    EXPECT_EQ(keys(form)->GetButtonTitle(0), "More");
}

TEST_F(MenuForm, MorePagesOnAndTheNextShowStartsOnTheFirstPage)
{
    writeMenu(9);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    open(form);
    kit::tap(keys(form)->GetButton(0));
    EXPECT_EQ(form.GetIconView()->GetCurrentPage(), 1);
    kit::tap(keys(form)->GetButton(3));
    EXPECT_FALSE(form.isVisible());
    open(form);
    EXPECT_EQ(form.GetIconView()->GetCurrentPage(), 0);
}

TEST_F(MenuForm, AMenuByNameTakesTheHostsTitleAndIsTraced)
{
    dlgIconviewForm form;
    EXPECT_EQ(form.LoadFileEx("Directory"), 1);
    EXPECT_FALSE(form.GetIconView()->m_strTitleName.isEmpty());
    EXPECT_EQ(leftBar(form)->title(), qTranslate(form.GetIconView()->m_strTitleName.toUtf8().constData()));
    EXPECT_TRUE(traced("_______________m_pIconView->m_strTitleName = " + form.GetIconView()->m_strTitleName));
}

TEST_F(MenuForm, AMenuThatTheHostCannotMakeLeavesTheFormAsItWas)
{
    writeMenu(9);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    EXPECT_EQ(form.LoadFileEx("Nowhere"), 0);
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 9);
    EXPECT_EQ(leftBar(form)->title(), "Setting");
    EXPECT_EQ(keys(form)->GetButtonTitle(0), "More");
    EXPECT_FALSE(traced("m_strTitleName"));
}

TEST_F(MenuForm, TheClockIsRightAtOnceAndFollowsEveryThreeSeconds)
{
    netSetLocalTime(2009, 3, 2, 13, 5, 30);
    dlgIconviewForm form;
    ASSERT_NE(clock(form), nullptr);
    EXPECT_EQ(clock(form)->text(), "02/03/2009 13:05");
    EXPECT_EQ(clock(form)->alignment(), Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(clock(form)->palette().color(QPalette::WindowText), QColor(Qt::white));
    netSetLocalTime(2009, 3, 2, 14, 0, 0);
    kit::stepTime(2800);
    EXPECT_EQ(clock(form)->text(), "02/03/2009 13:05");
    kit::stepTime(400);
    EXPECT_EQ(clock(form)->text(), "02/03/2009 14:00");
}

TEST_F(MenuForm, TheHomeButtonClosesAllMenusShownSinceTheLastTime)
{
    writeMenu(3);
    dlgIconviewForm first;
    dlgIconviewForm second;
    first.LoadFile(kMenu);
    second.LoadFile(kMenu);
    open(first);
    open(second);
    kit::tap(home(second));
    EXPECT_FALSE(first.isVisible());
    EXPECT_FALSE(second.isVisible());
    open(first);
    EXPECT_TRUE(first.isVisible());
}

TEST_F(MenuForm, AFormThatIsOnTheStackTwiceIsClosedTwiceWithoutFault)
{
    writeMenu(3);
    dlgIconviewForm form;
    showTwice(form);
    kit::tap(home(form));
    EXPECT_FALSE(form.isVisible());
    open(form);
    EXPECT_TRUE(form.isVisible());
}

// A form that ends takes one entry along: of two the other is left.
TEST_F(MenuForm, AFormThatWasShownTwiceIsOnTheStackTwice)
{
    writeMenu(3);
    dlgIconviewForm form;
    showTwice(form);
    {
        dlgIconviewForm never;
    }
    kit::tap(home(form));
    EXPECT_FALSE(form.isVisible());
    open(form);
    {
        dlgIconviewForm never;
    }
    kit::tap(home(form));
    EXPECT_TRUE(form.isVisible()) << "the home button had taken both";
}

TEST_F(MenuForm, ADestroyedFormTakesTheLastShowAlong)
{
    writeMenu(3);
    dlgIconviewForm below;
    dlgIconviewForm above;
    below.LoadFile(kMenu);
    above.LoadFile(kMenu);
    {
        dlgIconviewForm never;
        open(below);
        open(above);
    }
    kit::tap(home(above));
    EXPECT_TRUE(above.isVisible());
    EXPECT_FALSE(below.isVisible());
}

TEST_F(MenuForm, AFormThatIsDestroyedWhileItIsOnTheStackIsNotClosedAgain)
{
    writeMenu(3);
    dlgIconviewForm rest;
    rest.LoadFile(kMenu);
    {
        dlgIconviewForm gone;
        open(gone);
        gone.reject();
        open(gone);
        gone.reject();
    }
    open(rest);
    kit::tap(home(rest));
    EXPECT_FALSE(rest.isVisible());
}

TEST_F(MenuForm, TheGlobalFormIsTheLastOneMadeUntilAnyIsDestroyed)
{
    EXPECT_EQ(getIconView(), nullptr);
    onRefreshIconView();
    auto older = std::make_unique<dlgIconviewForm>();
    EXPECT_EQ(getIconView(), older->GetIconView());
    dlgIconviewForm last;
    EXPECT_EQ(getIconView(), last.GetIconView());
    older.reset();
    EXPECT_EQ(getIconView(), nullptr);
}

TEST_F(MenuForm, RefreshingTheGridLoadsItsMenuAgain)
{
    writeMenu(3);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    writeMenu(5);
    onRefreshIconView();
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 5);
}

TEST_F(MenuForm, TheApplicationMenuIsLoadedAgainWithEachShow)
{
    const char* const path = "/phone/resource/ui-config/application.xml";
    replaceFirmwareFile(path, "<RootMenu title='Application'><item title='A'/></RootMenu>");
    dlgIconviewForm form;
    form.LoadFile(path);
    replaceFirmwareFile(path, "<RootMenu title='Application'><item title='A'/><item title='B'/></RootMenu>");
    open(form);
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 2);
}

TEST_F(MenuForm, OtherMenusAreNotLoadedAgainWithAShow)
{
    writeMenu(3);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    writeMenu(5);
    open(form);
    EXPECT_EQ(form.GetIconView()->currentIconCount(), 3);
}

TEST_F(MenuForm, AShowUsesThePresentLanguage)
{
    writeMenu(9);
    dlgIconviewForm form;
    form.LoadFile(kMenu);
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    open(form);
    EXPECT_EQ(keys(form)->GetButtonTitle(0), qTranslate("More"));
    EXPECT_EQ(keys(form)->GetButtonTitle(3), qTranslate("Back"));
    EXPECT_EQ(leftBar(form)->title(), qTranslate("Setting"));
    EXPECT_NE(leftBar(form)->title(), "Setting");
    GetLanguageHelper()->SetLanguage("English");
}
