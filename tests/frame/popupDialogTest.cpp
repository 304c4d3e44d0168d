// The one cached instance of each page class, and the page's left bar.
#include "frame/popupDialog.h"
#include "frame/pageClass.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QPointer>

// The two classes whose constructor is told the view that they are tied to.
class dlgWeather : public dlgBarePage
{
public:
    dlgWeather(QWidget* parent, tagLeftBarInfo* info, const char* view)
        : dlgBarePage(parent, info), m_strView(view)
    {
    }
    QString m_strView;
};

class dlgStock : public dlgBarePage
{
public:
    dlgStock(QWidget* parent, tagLeftBarInfo* info, const char* view)
        : dlgBarePage(parent, info), m_strView(view)
    {
    }
    QString m_strView;
};

namespace {

class dlgCounted : public dlgBarePage
{
public:
    dlgCounted(QWidget* parent, tagLeftBarInfo* info) : dlgBarePage(parent, info), m_pBuiltWith(info)
    {
        ++s_nBuilt;
    }
    void setLeftBar() override
    {
        ++m_nBarSet;
        dlgBarePage::setLeftBar();
    }
    tagLeftBarInfo* m_pBuiltWith;
    int m_nBarSet = 0;
    static int s_nBuilt;
};
int dlgCounted::s_nBuilt = 0;

class Popup : public FrameTest
{
protected:
    tagLeftBarInfo m_first{HX_THEME("menu/menu_wan.png"), "WAN"};
    tagLeftBarInfo m_second{HX_THEME("menu/menu_status.png"), "Status"};
};

} // namespace

TEST_F(Popup, ThePageIsBuiltOnceAndFoundAgain)
{
    dlgCounted* page = PopupDialog<dlgCounted>(&m_first, 1, 1, 0);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(PopupDialog<dlgCounted>(&m_second, 1, 1, 0), page);
    EXPECT_EQ(dlgCounted::s_nBuilt, 1);
    EXPECT_EQ(page->m_pBuiltWith, &m_first);
    EXPECT_FALSE(page->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(page->parentWidget(), nullptr);
}

TEST_F(Popup, WithoutShowThePageIsBuiltAndStaysHidden)
{
    dlgCounted* page = PopupDialog<dlgCounted>(&m_first, 1, 0, 0);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(PopupDialog<dlgCounted>(&m_second, 1, 0, 0), page);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(page->m_pLeftBarInfo, &m_first);
    EXPECT_EQ(page->m_nBarSet, 0);
}

TEST_F(Popup, EachShowPutsItsInfoIntoTheLeftBar)
{
    dlgCounted* page = PopupDialog<dlgCounted>(&m_first, 1, 1, 0);
    EXPECT_EQ(page->m_pLeftBar->title(), "WAN");
    EXPECT_EQ(page->m_pLeftBar->icon(), m_first.strIcon);
    PopupDialog<dlgCounted>(&m_second, 1, 1, 0);
    EXPECT_EQ(page->m_pLeftBar->title(), "Status");
    EXPECT_EQ(page->m_pLeftBar->icon(), m_second.strIcon);
}

TEST_F(Popup, ShowingWithoutInfoTakesTheInfoAwayAndLeavesTheBar)
{
    dlgCounted* page = PopupDialog<dlgCounted>(&m_first, 1, 1, 0);
    PopupDialog<dlgCounted>(nullptr, 1, 1, 0);
    EXPECT_EQ(page->m_pLeftBarInfo, nullptr);
    EXPECT_EQ(page->m_nBarSet, 2);
    EXPECT_EQ(page->m_pLeftBar->title(), "WAN");
}

TEST_F(Popup, ABackHidesACachedPageAndDeletesAnUncachedOne)
{
    QPointer<dlgCounted> cached = PopupDialog<dlgCounted>(nullptr, 1, 1, 0);
    QPointer<dlgCounted> own = PopupDialog<dlgCounted>(&m_first, 0, 1, 0);
    ASSERT_NE(own.data(), cached.data());
    EXPECT_TRUE(own->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_TRUE(own->isVisible());
    kit::settle();
    own->reject();
    cached->reject();
    kit::settle();
    EXPECT_TRUE(own.isNull());
    ASSERT_FALSE(cached.isNull());
    EXPECT_FALSE(cached->isVisible());
    EXPECT_EQ(PopupDialog<dlgCounted>(nullptr, 1, 0, 0), cached.data());
}

TEST_F(Popup, AnUncachedPageCanBeMadeWithoutShowingIt)
{
    QPointer<dlgCounted> page = PopupDialog<dlgCounted>(&m_first, 0, 0, 0);
    ASSERT_FALSE(page.isNull());
    EXPECT_FALSE(page->isVisible());
    delete page;
}

TEST_F(Popup, WeatherAndStockAreToldTheirViews)
{
    EXPECT_EQ(PopupDialog<dlgWeather>(nullptr, 1, 0, 0)->m_strView, "strWeatherUI");
    EXPECT_EQ(PopupDialog<dlgStock>(nullptr, 1, 0, 0)->m_strView, "strStockUI");
}

TEST_F(Popup, APageClassIsFoundByTheNameItWasEnteredUnder)
{
    static PageClass page("dlgCounted", pagePopup<dlgCounted>);
    EXPECT_EQ(PageClass::Find("dlgCounted"), &page);
    EXPECT_EQ(PageClass::Find("dlgNobody"), nullptr);
    EXPECT_EQ(page.Open(1, 0), static_cast<QDialog*>(PopupDialog<dlgCounted>(nullptr, 1, 0, 0)));
}

TEST_F(Popup, TheCopyOfAnInfoOutlivesTheCall)
{
    static PageClass page("dlgCounted", pagePopup<dlgCounted>);
    {
        tagLeftBarInfo info = m_first;
        page.OpenWithInfo(info);
        info.strTitle = "gone";
    }
    dlgCounted* dialog = PopupDialog<dlgCounted>(nullptr, 1, 0, 0);
    ASSERT_NE(dialog->m_pLeftBarInfo, nullptr);
    EXPECT_EQ(dialog->m_pLeftBarInfo->strTitle, "WAN");
}
