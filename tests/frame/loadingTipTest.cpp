// The "Loading..." box over a page that is being built.
#include "frame/dlgLoadingTip.h"
#include "frame/popupDialog.h"
#include "tests/frame/frameTest.h"
#include "tests/frame/testPages.h"
#include <QApplication>
#include <QLabel>

namespace {

dlgLoadingTip* shownTip()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        dlgLoadingTip* tip = qobject_cast<dlgLoadingTip*>(window);
        if (tip && tip->isVisible())
            return tip;
    }
    return nullptr;
}

bool g_tipWhileBuilding = false;

class dlgSlowPage : public dlgBarePage
{
public:
    dlgSlowPage(QWidget* parent, tagLeftBarInfo* info) : dlgBarePage(parent, info)
    {
        g_tipWhileBuilding = shownTip() != nullptr;
    }
};

class dlgQuickPage : public dlgSlowPage
{
public:
    using dlgSlowPage::dlgSlowPage;
};

class LoadingTip : public FrameTest
{
};

} // namespace

TEST_F(LoadingTip, StandsInTheMiddleOfTheScreenWithItsText)
{
    ShowLoadingTipBox();
    dlgLoadingTip* tip = shownTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->geometry(), QRect(192, 157, 416, 166));
    EXPECT_FALSE(tip->isModal());
    QLabel* text = tip->findChild<QLabel*>("labLoading");
    EXPECT_EQ(text->text(), "Loading...");
    EXPECT_EQ(text->font().pixelSize(), 28);
    EXPECT_EQ(text->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    EXPECT_EQ(tip->palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_FALSE(tip->findChild<QLabel*>("labLoadingIcon")->pixmap().isNull());
    EXPECT_FALSE(tip->palette().brush(QPalette::Window).texture().isNull());
}

TEST_F(LoadingTip, BelongsToTheFocusWidgetAndIsOneBox)
{
    dlgConfigPage page;
    page.show();
    kit::settle();
    QWidget* focus = QApplication::focusWidget();
    ASSERT_NE(focus, nullptr);
    ShowLoadingTipBox();
    dlgLoadingTip* tip = shownTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->parentWidget(), focus);
    EXPECT_TRUE(tip->isWindow());
    page.activateWindow();
    kit::settle();
    EXPECT_EQ(shownTip(), nullptr);
    EXPECT_EQ(tip->parentWidget(), nullptr);
    ShowLoadingTipBox();
    EXPECT_EQ(shownTip(), tip);
    page.activateWindow();
    kit::settle();
}

TEST_F(LoadingTip, IsMadeAnewWhenItsOwnerWasDestroyed)
{
    {
        dlgConfigPage page;
        page.show();
        kit::settle();
        ShowLoadingTipBox();
        ASSERT_NE(shownTip(), nullptr);
    }
    ShowLoadingTipBox();
    EXPECT_NE(shownTip(), nullptr);
}

TEST_F(LoadingTip, CoversTheFirstOpeningOfAPageAndGoesWhenThePageTakesOver)
{
    PopupDialog<dlgSlowPage>(nullptr, 1, 1, 1);
    EXPECT_TRUE(g_tipWhileBuilding);
    kit::settle();
    EXPECT_EQ(shownTip(), nullptr);
    g_tipWhileBuilding = false;
    PopupDialog<dlgSlowPage>(nullptr, 1, 1, 1);
    EXPECT_EQ(shownTip(), nullptr);
}

TEST_F(LoadingTip, IsNotShownForAPageThatIsOnlyBuiltOrNotAnnounced)
{
    g_tipWhileBuilding = true;
    PopupDialog<dlgQuickPage>(nullptr, 1, 0, 1);
    EXPECT_FALSE(g_tipWhileBuilding);
    g_tipWhileBuilding = true;
    delete PopupDialog<dlgQuickPage>(nullptr, 0, 1, 1);
    EXPECT_FALSE(g_tipWhileBuilding);
}
