#include "support/host/linepages.h"
#include "tests/widgets/screenPage.h"
#include <QLabel>
#include <QLineEdit>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>

namespace {

class LinePages : public PhoneTest
{
protected:
    LinePages() { pages = qReplaceLinePages(page.add<QLabel>(QRect(160, 50, 600, 380))); }
    void addFour()
    {
        for (int line = 1; line <= 4; ++line)
            pages->AddLinePage(new qLineBodyWidget, QString("Line %1").arg(line));
    }
    QPoint tabMiddle(int index) const
    {
        const QTabBar* bar = pages->m_pTabs->tabBar();
        return bar->mapToGlobal(bar->tabRect(index).center());
    }
    ScreenPage page;
    qLinePages* pages;
};

TEST_F(LinePages, TakesThePlaceholdersPlace)
{
    EXPECT_EQ(pages->geometry(), QRect(160, 50, 600, 380));
    EXPECT_EQ(pages->parentWidget(), &page);
    EXPECT_EQ(qReplaceLinePages(nullptr), nullptr);
}

TEST_F(LinePages, EachLineHasItsTabAndItsPage)
{
    addFour();
    EXPECT_EQ(pages->GetLinePageCount(), 4);
    EXPECT_EQ(pages->m_pTabs->count(), 4);
    EXPECT_EQ(pages->m_pTabs->tabText(2), "Line 3");
    EXPECT_EQ(pages->GetLinePage(2), pages->m_pPages->widget(2));
    EXPECT_EQ(pages->GetLinePage(4), nullptr);
    EXPECT_EQ(pages->GetLinePage(-1), nullptr);
}

TEST_F(LinePages, TappedTabShowsItsPage)
{
    addFour();
    page.open();
    EXPECT_EQ(pages->m_pPages->currentIndex(), 0);
    kit::tap(tabMiddle(2));
    EXPECT_EQ(pages->m_pTabs->currentIndex(), 2);
    EXPECT_EQ(pages->m_pPages->currentIndex(), 2);
    EXPECT_TRUE(pages->GetLinePage(2)->isVisible());
    EXPECT_FALSE(pages->GetLinePage(0)->isVisible());
}

TEST_F(LinePages, ArrowsStepTheTabsWhenTheyHaveTheFocus)
{
    addFour();
    page.open();
    pages->m_pTabs->tabBar()->setFocus();
    kit::key(Qt::Key_Right);
    EXPECT_EQ(pages->m_pPages->currentIndex(), 1);
    kit::key(Qt::Key_Left);
    EXPECT_EQ(pages->m_pPages->currentIndex(), 0);
}

TEST_F(LinePages, ResetGoesToTheGivenPage)
{
    addFour();
    page.open();
    kit::tap(tabMiddle(3));
    pages->ResetCurrentWgtPage(0);
    EXPECT_EQ(pages->m_pTabs->currentIndex(), 0);
    EXPECT_EQ(pages->m_pPages->currentIndex(), 0);
}

TEST_F(LinePages, PageThatComesAfterItsTabWasChosenIsShown)
{
    for (int line = 1; line <= 4; ++line)
        pages->m_pTabs->addTab(new QWidget, QString("Line %1").arg(line));
    pages->m_pPages->addWidget(new qLineBodyWidget);
    page.open();
    kit::tap(tabMiddle(2));
    for (int line = 2; line <= 4; ++line)
        pages->m_pPages->addWidget(new qLineBodyWidget);
    kit::settle();
    EXPECT_EQ(pages->m_pPages->currentIndex(), 2);
}

TEST_F(LinePages, TabsFillTheWidthAndShowWhichOneIsOpen)
{
    addFour();
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 170, 70, look::kSelection));
    EXPECT_FALSE(isColour(screen, 330, 70, look::kSelection));
    EXPECT_NEAR(tabMiddle(3).x(), 160 + 525, 10);
}

TEST_F(LinePages, FocusOfTheTabsIsVisible)
{
    addFour();
    QLineEdit* edit = new QLineEdit(pages->GetLinePage(0));
    page.open();
    edit->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 235, 53, look::kSelection));
    pages->m_pTabs->tabBar()->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 235, 53, look::kBlue));
}

TEST_F(LinePages, PlainBodyAcceptsEverythingAndSavesNothing)
{
    qLineBodyWidget body;
    QString message = "kept";
    body.LoadLineInfo(3);
    EXPECT_EQ(body.GetInvalidInput(message), nullptr);
    EXPECT_EQ(message, "kept");
    EXPECT_FALSE(body.SaveLineInfo());
}

} // namespace
