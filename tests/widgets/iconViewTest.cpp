#include "support/host/iconview.h"
#include "host/services/system/hostLog.h"
#include "host/widgets/IconGrid.h"
#include "support/host/language.h"
#include "support/host/managers.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QWindow>
#include <qpa/qwindowsysteminterface.h>

namespace {

const char kMenu[] = "/rundata/menu.xml";
const char kRemoteBooks[] = "/rundata/data/remotebook.xml";
const char kUserConfig[] = "/rundata/config/user/user.ini";

QStringList g_opened; // what the module was asked to open
QWidget* g_parent = nullptr;

QString textOf(const chString& text)
{
    return QString::fromUtf8(text.GetText());
}

void openPage(const chString& name, tagLeftBarInfo info, QWidget* parent)
{
    g_opened.append("page " + textOf(name) + " " + info.strIcon + " " + info.strTitle);
    g_parent = parent;
}

void openMenu(const chString& file)
{
    g_opened.append("menu " + textOf(file));
}

void openDirectory(int type, chString first, chString second, QWidget* parent)
{
    g_opened.append(QString("directory %1 [%2] [%3]").arg(type).arg(textOf(first), textOf(second)));
    g_parent = parent;
}

class IconView : public PhoneTest
{
protected:
    IconView()
    {
        tagModuleEntries entries;
        entries.openPageWithInfo = openPage;
        entries.openMenu = openMenu;
        entries.openDirectory = openDirectory;
        hostSetModule(entries);
        g_opened.clear();
        g_parent = nullptr;
        page.setWindowFlags(Qt::FramelessWindowHint);
        page.setGeometry(0, 0, 800, 480);
        QWidget* place = new QWidget(&page);
        place->setGeometry(152, 40, 648, 400);
        view = qReplaceIconView(place);
        view->setFocusPolicy(Qt::NoFocus);
        view->setFrameShape(QFrame::Shape(3));
        view->SetMartrixGrix(4, 2);
    }
    ~IconView() override { hostSetModule(tagModuleEntries()); }

    // Items named "0", "1", ...
    void showItems(int count)
    {
        writeItems(count);
        view->LoadMenuFile(kMenu);
        showPage();
    }
    void writeItems(int count)
    {
        QByteArray content("<RootMenu title=\"T\">");
        for (int i = 0; i < count; ++i)
            content += "<item title=\"" + QByteArray::number(i) + "\" icon=\"/i.png\"/>";
        writeFile(kMenu, content + "</RootMenu>");
    }
    void showMenu(const QByteArray& content)
    {
        writeFile(kMenu, content);
        view->LoadMenuFile(kMenu);
        showPage();
    }
    void showPage()
    {
        page.show();
        page.activateWindow();
        kit::settle();
    }
    // The middle of the icon at a place of the page.
    static QPoint icon(int place) { return QPoint(152 + 81 + place % 4 * 162, 120 + place / 4 * 192); }
    static void swipe(QPoint from, QPoint to)
    {
        kit::press(from);
        for (int step = 1; step <= 5; ++step)
            kit::moveTo(from + (to - from) * step / 5);
        kit::release(to);
    }
    QString selected() const { return view->currentItem() ? view->currentItem()->text() : QString(); }
    QString keysLeadTo(std::initializer_list<Qt::Key> keys)
    {
        for (Qt::Key key : keys)
            kit::key(key);
        return selected();
    }
    static QColor pixel(int x, int y) { return kit::screen().pixelColor(x, y); }

    QDialog page;
    qIconView* view;
};

TEST_F(IconView, TakesThePlaceOfThePlaceholder)
{
    EXPECT_EQ(view->geometry(), QRect(152, 40, 648, 400));
    EXPECT_EQ(view->parentWidget(), &page);
    EXPECT_EQ(qReplaceIconView(nullptr), nullptr);
}

TEST_F(IconView, PageHoldsEightIcons)
{
    showItems(8);
    EXPECT_EQ(view->GetPageCount(), 1);
    showItems(9);
    EXPECT_EQ(view->GetPageCount(), 2);
    showItems(16);
    EXPECT_EQ(view->GetPageCount(), 2);
    showItems(0);
    EXPECT_EQ(view->GetPageCount(), 0);
    EXPECT_EQ(view->GetCurrentPage(), 0);
}

TEST_F(IconView, PageDownGoesFromTheLastPageToTheFirst)
{
    showItems(17);
    view->PageDown();
    EXPECT_EQ(view->GetCurrentPage(), 1);
    EXPECT_EQ(selected(), "8");
    view->PageDown();
    EXPECT_EQ(selected(), "16");
    view->PageDown();
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(selected(), "0");
}

TEST_F(IconView, PageUpGoesFromTheFirstPageToTheLast)
{
    showItems(17);
    view->PageUp();
    EXPECT_EQ(selected(), "16");
    view->PageUp();
    EXPECT_EQ(selected(), "8");
}

TEST_F(IconView, PageNumberIsClampedAndItsFirstIconSelected)
{
    showItems(10);
    view->SetCurrentPage(7);
    EXPECT_EQ(view->GetCurrentPage(), 1);
    EXPECT_EQ(selected(), "8");
    kit::key(Qt::Key_Right);
    view->SetCurrentPage(-3);
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(selected(), "0");
}

TEST_F(IconView, PagingAnEmptyMenuDoesNothing)
{
    showItems(0);
    view->PageDown();
    view->PageUp();
    view->SetCurrentPage(1);
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    kit::tap(icon(0));
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, ReloadKeepsPageAndSelectionByItem)
{
    showItems(12);
    view->PageDown();
    kit::key(Qt::Key_Right);
    ASSERT_EQ(selected(), "9");
    view->refreshIconView();
    EXPECT_EQ(selected(), "9");
    EXPECT_EQ(view->GetCurrentPage(), 1);
    writeFile(kMenu, "<RootMenu><item title=\"9\"/><item title=\"x\"/></RootMenu>");
    view->refreshIconView();
    EXPECT_EQ(selected(), "9");
    EXPECT_EQ(view->GetCurrentPage(), 0);
}

TEST_F(IconView, ReloadWithoutTheSelectedItemSelectsWhatIsInItsPlace)
{
    showItems(12);
    view->PageDown();
    writeItems(5);
    view->refreshIconView();
    EXPECT_EQ(selected(), "4");
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(view->GetPageCount(), 1);
}

TEST_F(IconView, LoadingTheSameFileAgainIsAReload)
{
    showItems(12);
    view->PageDown();
    view->LoadMenuFile(kMenu);
    EXPECT_EQ(view->GetCurrentPage(), 1);
    writeFile("/rundata/other.xml", "<RootMenu><item title=\"0\"/></RootMenu>");
    view->LoadMenuFile("/rundata/other.xml");
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(selected(), "0");
}

TEST_F(IconView, ReloadOfTheDirectoryReadsThePhoneBooksAgain)
{
    writeFile(kRemoteBooks, "<root/>");
    view->LoadMenuFileEx("Directory");
    EXPECT_EQ(view->currentIconCount(), 1);
    writeFile(kRemoteBooks, "<root><RemotePhoneBook><item name=\"C\" url=\"u\"/></RemotePhoneBook></root>");
    view->refreshIconView();
    EXPECT_EQ(view->currentIconCount(), 2);
}

TEST_F(IconView, ReloadThatFindsABrokenFileEmptiesTheMenuUntilItIsMended)
{
    showItems(3);
    writeFile(kMenu, "<RootMenu");
    view->refreshIconView();
    EXPECT_EQ(view->currentIconCount(), 0);
    kit::key(Qt::Key_Right);
    writeItems(3);
    view->refreshIconView();
    EXPECT_EQ(selected(), "0");
}

TEST_F(IconView, AnotherMatrixKeepsTheSelectedIconOnThePage)
{
    showItems(12);
    view->PageDown();
    view->SetMartrixGrix(2, 1);
    EXPECT_EQ(view->GetPageCount(), 6);
    EXPECT_EQ(view->GetCurrentPage(), 4);
    EXPECT_EQ(selected(), "8");
    view->SetMartrixGrix(0, -1);
    EXPECT_EQ(view->GetPageCount(), 12);
}

TEST_F(IconView, LeftAndRightGoOnFromRowToRowAndPageToPage)
{
    showItems(10);
    EXPECT_EQ(keysLeadTo({Qt::Key_Right}), "1");
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Right, Qt::Key_Right}), "4");
    EXPECT_EQ(keysLeadTo({Qt::Key_Left}), "3");
    view->SetCurrentPage(0);
    EXPECT_EQ(keysLeadTo({Qt::Key_Left}), "9");
    EXPECT_EQ(view->GetCurrentPage(), 1);
    EXPECT_EQ(keysLeadTo({Qt::Key_Left, Qt::Key_Left}), "7");
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Right, Qt::Key_Right}), "0");
}

TEST_F(IconView, UpAndDownGoOnFromPageToPageInTheirColumn)
{
    showItems(15);
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Down}), "5");
    EXPECT_EQ(keysLeadTo({Qt::Key_Down}), "9");
    EXPECT_EQ(view->GetCurrentPage(), 1);
    EXPECT_EQ(keysLeadTo({Qt::Key_Up}), "5");
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_EQ(keysLeadTo({Qt::Key_Up, Qt::Key_Up}), "13");
    EXPECT_EQ(keysLeadTo({Qt::Key_Down}), "1");
}

TEST_F(IconView, DownIntoAShorterRowEndsOnItsLastIcon)
{
    showItems(6);
    EXPECT_EQ(keysLeadTo({Qt::Key_Left, Qt::Key_Up}), "1");
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Right, Qt::Key_Down}), "5");
}

TEST_F(IconView, OkOpensThePageOfTheSelectedIcon)
{
    showMenu("<RootMenu><item title=\"A\" icon=\"/a.png\"/><item title=\"Date &amp; Time\" icon=\"/b.png\"/>"
             "</RootMenu>");
    kit::key(Qt::Key_Right);
    for (Qt::Key ok : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Select})
        kit::key(ok);
    EXPECT_EQ(g_opened, QStringList(3, "page Date & Time /b.png Date & Time"));
    EXPECT_EQ(g_parent, &page);
}

TEST_F(IconView, HeldOkOpensOnce)
{
    showItems(1);
    for (bool repeat : {false, true, true})
        QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
            page.windowHandle(), QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), repeat);
    EXPECT_EQ(g_opened.size(), 1);
    EXPECT_TRUE(page.isVisible());
}

TEST_F(IconView, KeysGoToTheIconsThoughAButtonHasTheFocus)
{
    QPushButton home(&page);
    home.setGeometry(10, 5, 44, 39);
    int clicks = 0;
    QObject::connect(&home, &QPushButton::clicked, [&] { ++clicks; });
    showItems(8);
    home.setFocus();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Down}), "5");
    kit::key(Qt::Key_Return);
    EXPECT_EQ(g_opened.size(), 1);
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(home.hasFocus());
}

TEST_F(IconView, KeysGoToAnEditThatHasTheFocus)
{
    QLineEdit edit(&page);
    showItems(8);
    edit.setFocus();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right, Qt::Key_Return}), "0");
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, KeysOfAnotherWindowDoNotMoveTheSelection)
{
    showItems(8);
    QDialog above;
    above.setWindowFlags(Qt::FramelessWindowHint);
    above.setGeometry(0, 0, 800, 480);
    above.show();
    above.activateWindow();
    kit::settle();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right}), "0");
    above.hide();
    page.activateWindow();
    kit::settle();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right}), "1");
}

TEST_F(IconView, HiddenGridLeavesTheKeysToItsWindow)
{
    showItems(8);
    view->hide();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right}), "0");
    view->show();
    EXPECT_EQ(keysLeadTo({Qt::Key_Right}), "1");
}

TEST_F(IconView, OtherKeysStayWithTheWindow)
{
    showItems(8);
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(page.isVisible());
}

TEST_F(IconView, TapOpensTheIconAndSelectsIt)
{
    showItems(8);
    kit::tap(icon(6));
    EXPECT_EQ(g_opened, QStringList{"page 6 /i.png 6"});
    EXPECT_EQ(selected(), "6");
}

TEST_F(IconView, TapOpensTheIconOfThePageOnView)
{
    showItems(12);
    view->PageDown();
    kit::tap(icon(3));
    EXPECT_EQ(g_opened, QStringList{"page 11 /i.png 11"});
    kit::tap(icon(4));
    EXPECT_EQ(g_opened.size(), 1);
}

TEST_F(IconView, TwoQuickTapsAreTwoTaps)
{
    showItems(8);
    kit::tap(icon(1));
    kit::tap(icon(1));
    kit::tap(icon(2));
    EXPECT_EQ(g_opened, (QStringList{"page 1 /i.png 1", "page 1 /i.png 1", "page 2 /i.png 2"}));
}

TEST_F(IconView, PressHighlightsTheIconAndOpensNothingYet)
{
    showItems(8);
    const QRgb before = pixel(152 + 162 + 20, 200).rgb();
    kit::press(icon(1));
    EXPECT_NE(pixel(152 + 162 + 20, 200).rgb(), before);
    EXPECT_TRUE(g_opened.isEmpty());
    EXPECT_EQ(selected(), "0");
    kit::release(icon(1));
    EXPECT_EQ(g_opened.size(), 1);
}

TEST_F(IconView, FingerDraggedOffTheIconOpensNothing)
{
    showItems(8);
    const QImage before = kit::screen();
    kit::press(icon(1));
    kit::moveTo(icon(5));
    EXPECT_EQ(kit::screen(), before);
    kit::release(icon(5));
    EXPECT_TRUE(g_opened.isEmpty());
    EXPECT_EQ(selected(), "0");
}

TEST_F(IconView, FingerThatComesBackToTheIconOpensIt)
{
    showItems(8);
    kit::press(icon(1));
    kit::moveTo(icon(5));
    kit::moveTo(icon(1));
    kit::release(icon(1));
    EXPECT_EQ(g_opened.size(), 1);
}

TEST_F(IconView, ReleaseWithoutAPressOpensNothing)
{
    showItems(8);
    kit::press(QPoint(20, 300));
    kit::release(icon(1));
    kit::release(icon(1));
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, SwipeTurnsThePage)
{
    showItems(20);
    swipe(icon(3), icon(0));
    EXPECT_EQ(view->GetCurrentPage(), 1);
    swipe(icon(0) + QPoint(-70, 0), icon(0) + QPoint(20, 5));
    EXPECT_EQ(view->GetCurrentPage(), 0);
    swipe(icon(0), icon(3));
    EXPECT_EQ(view->GetCurrentPage(), 2);
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, FingerThatSlipsAsideInALongerMenuOpensNothing)
{
    showItems(20);
    swipe(icon(1) - QPoint(20, 0), icon(1) + QPoint(20, 0));
    EXPECT_TRUE(g_opened.isEmpty());
    EXPECT_EQ(view->GetCurrentPage(), 0);
    swipe(icon(1), icon(1) + QPoint(10, 0));
    EXPECT_EQ(g_opened.size(), 1);
}

TEST_F(IconView, SwipeOverASinglePageOpensNothing)
{
    showItems(8);
    swipe(icon(3), icon(0));
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, UpAndDownDragTurnsNoPage)
{
    showItems(20);
    swipe(icon(1), icon(5) + QPoint(70, 0));
    EXPECT_EQ(view->GetCurrentPage(), 0);
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, ItemWithAMenuOpensThatMenu)
{
    showMenu("<RootMenu><item title=\"Door Phone\" menu=\"doorphonedata.xml\"/></RootMenu>");
    kit::tap(icon(0));
    EXPECT_EQ(g_opened, QStringList{"menu doorphonedata.xml"});
}

TEST_F(IconView, DoorPhoneWithoutANumberOpensItsPage)
{
    showMenu("<DoorPhone><item title=\"Door Phone 2\"><DisplayName>Gate</DisplayName></item></DoorPhone>");
    kit::tap(icon(0));
    EXPECT_EQ(g_opened, QStringList{"page Door Phone2 "
                                    "/phone/resource/theme/default/bmp/menu/menu_doorphoneitem.png "
                                    "Door Phone 2"});
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(IconView, DoorPhoneIsCalledByATouchAndSetUpByHoldingIt)
{
    showMenu("<DoorPhone><item title=\"Door Phone 1\"><PhoneNumber>8100</PhoneNumber></item></DoorPhone>");
    kit::tap(icon(0));
    kit::key(Qt::Key_Return);
    EXPECT_EQ(logged("dial"), (QStringList{"8100 -1 0", "8100 -1 0"}));
    EXPECT_TRUE(g_opened.isEmpty());
    mark();
    kit::press(icon(0));
    kit::stepTime(900);
    kit::release(icon(0));
    kit::key(Qt::Key_Asterisk, {}, "*");
    ASSERT_EQ(g_opened.size(), 2);
    EXPECT_TRUE(g_opened[0].startsWith("page Door Phone1 "));
    EXPECT_EQ(g_opened[1], g_opened[0]);
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(IconView, CameraIsSetUpByHoldingIt)
{
    static QStringList edited;
    edited.clear();
    tagModuleEntries entries = hostModule();
    entries.editCamera = [](IPCameraIconViewItem* item, QWidget* parent) {
        edited.append(QString("%1 %2").arg(item->m_strDisplayName.GetText()).arg(parent != nullptr));
    };
    hostSetModule(entries);
    writeFile("/rundata/data/ipcameradata.xml",
              "<IPCamera><item title='IP Camera 1'/><item title='IP Camera 2'><DisplayName>Yard</DisplayName>"
              "<PhoneNumber>8200</PhoneNumber></item></IPCamera>");
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    view->LoadMenuFile("/rundata/data/ipcameradata.xml");
    showPage();
    kit::press(icon(1));
    kit::stepTime(900);
    kit::release(icon(1));
    EXPECT_EQ(edited, QStringList{"Yard 1"});
    EXPECT_EQ(logged("dial"), QStringList());
    // One without a number is set up first.
    kit::tap(icon(0));
    EXPECT_EQ(edited, (QStringList{"Yard 1", " 1"}));
    EXPECT_EQ(logged("dial"), QStringList());
}

TEST_F(IconView, DirectoryEntriesOpenTheirPhoneBooks)
{
    writeFile(
        kRemoteBooks,
        "<root><RemotePhoneBook><item name=\"Company\" url=\"http://a/b?c\"/></RemotePhoneBook></root>");
    nuxSetRegistryInt(kUserConfig, "LDAP", "bEnable", 1);
    view->LoadMenuFileEx("Directory");
    showPage();
    for (int place = 0; place < 3; ++place)
        kit::tap(icon(place));
    EXPECT_EQ(g_opened, (QStringList{"directory 0 [] []", "directory 1 [Company] [http://a/b?c]",
                                     "directory 2 [LDAP] []"}));
    EXPECT_EQ(g_parent, &page);
}

TEST_F(IconView, CameraIsCalledOnItsLine)
{
    showMenu(
        "<IPCamera><item title=\"IP Camera 1\"><Account>2</Account><PhoneNumber>8100</PhoneNumber></item>"
        "</IPCamera>");
    kit::tap(icon(0));
    EXPECT_EQ(logged("dial"), (QStringList{"8100 2 0"}));
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, CameraWithoutALineOfItsOwnIsCalledOnTheDefaultOne)
{
    for (const char* account : {"", "-1", "-7", "4"}) {
        mark();
        showMenu("<IPCamera><item title=\"C\"><Account>" + QByteArray(account) +
                 "</Account><PhoneNumber>1</PhoneNumber></item></IPCamera>");
        kit::tap(icon(0));
        EXPECT_EQ(logged("dial"), QStringList{"1 -1 0"}) << account;
    }
}

TEST_F(IconView, IconsWithoutAModuleOpenNothing)
{
    hostSetModule(tagModuleEntries());
    showMenu("<RootMenu><item title=\"A\"/><item title=\"B\" menu=\"m.xml\"/></RootMenu>");
    kit::tap(icon(0));
    kit::tap(icon(1));
    view->LoadMenuFileEx("Directory");
    kit::tap(icon(0));
    EXPECT_TRUE(g_opened.isEmpty());
}

TEST_F(IconView, MenuThatIsReloadedByWhatItOpensStaysWhole)
{
    static qIconView* reloaded = nullptr;
    reloaded = view;
    tagModuleEntries entries = hostModule();
    entries.openPageWithInfo = [](const chString& name, tagLeftBarInfo info, QWidget*) {
        reloaded->LoadMenuFileEx("Directory");
        g_opened.append(textOf(name) + info.strTitle);
    };
    hostSetModule(entries);
    showItems(8);
    kit::tap(icon(7));
    EXPECT_EQ(g_opened, QStringList{"77"});
    EXPECT_EQ(selected(), "Local Phonebook");
}

TEST_F(IconView, CaptionsFollowTheLanguage)
{
    showMenu("<RootMenu title=\"Setting\"><item title=\"Security\"/></RootMenu>");
    GetLanguageHelper()->SetLanguage("German");
    const QString german = qTranslate("Security");
    ASSERT_NE(german, "Security");
    page.hide();
    page.show();
    EXPECT_EQ(view->item(0)->text(), german);
    GetLanguageHelper()->SetLanguage("English");
    QEvent change(QEvent::LanguageChange);
    QApplication::sendEvent(view, &change);
    EXPECT_EQ(view->item(0)->text(), "Security");
    EXPECT_EQ(view->m_strTitleName, "Setting");
}

TEST_F(IconView, IconsStandWhereTheDesignHasThem)
{
    page.setStyleSheet("QDialog { background: white }");
    view->LoadMenuFile("/phone/resource/ui-config/setting.xml");
    showPage();
    const QImage screen = kit::screen();
    for (int place = 0; place < 8; ++place) {
        const QPoint tile(191 + place % 4 * 162, 78 + place / 4 * 192);
        const QColor inside = screen.pixelColor(tile + QPoint(42, 2));
        EXPECT_GT(inside.hsvSaturation(), 40) << place;
        EXPECT_GT(screen.pixelColor(tile + QPoint(42, 82)).hsvSaturation(), 60) << place;
        EXPECT_LT(screen.pixelColor(tile + QPoint(42, -6)).hsvSaturation(), 40) << place;
    }
    const QColor selection = screen.pixelColor(170, 220);
    EXPECT_EQ(selection, QColor(225, 237, 252));
    EXPECT_EQ(screen.pixelColor(158, 140), QColor(Qt::white));
    EXPECT_EQ(screen.pixelColor(307, 140), QColor(Qt::white));
    kit::shot("iconview_setting");
}

TEST_F(IconView, PageDotsShowWhereOneIsInALongerMenu)
{
    page.setStyleSheet("QDialog { background: white }");
    showItems(8);
    const auto bluePixels = [] {
        int blue = 0;
        const QImage screen = kit::screen();
        for (int x = 400; x < 560; ++x)
            blue += screen.pixelColor(x, 434) == QColor(47, 128, 237);
        return blue;
    };
    EXPECT_EQ(bluePixels(), 0);
    showItems(9);
    EXPECT_GT(bluePixels(), 4);
}

TEST_F(IconView, MissingPictureLeavesAPlainTile)
{
    page.setStyleSheet("QDialog { background: white }");
    showItems(1);
    EXPECT_EQ(pixel(233, 120), QColor(143, 165, 186));
}

TEST_F(IconView, LongCaptionsStayInTheirCells)
{
    const QStringList texts{"Contact Picture Manage", "Donaudampfschifffahrtsgesellschaft",
                            QString::fromUtf8("Einstellungen f\xC3\xBCr die Bildwahl am Telefon im Flur"),
                            QString(128, QChar(0x8bbe)), QString(128, 'W')};
    for (const QString& text : texts) {
        const look::FittedText caption = fitCaption(text, 138);
        EXPECT_LE(caption.height(), 54) << qPrintable(text);
        for (const QString& line : caption.lines)
            EXPECT_LE(QFontMetrics(caption.font).horizontalAdvance(line), 138) << qPrintable(line);
    }
}

TEST_F(IconView, CaptionIsCutOnlyWhenItFitsInNoOtherWay)
{
    EXPECT_EQ(fitCaption("Account Setting", 138).lines, QStringList{"Account Setting"});
    EXPECT_EQ(fitCaption("Account Setting", 138).font.pixelSize(), 17);
    EXPECT_EQ(fitCaption("Contact Picture Manage", 138).lines, (QStringList{"Contact Picture", "Manage"}));
    EXPECT_EQ(fitCaption("", 138).lines, QStringList{""});
    EXPECT_LT(fitCaption("Bildwahl-Einstellungen im Flur", 138).font.pixelSize(), 18);
    EXPECT_TRUE(fitCaption(QString(128, 'W'), 138).lines.last().endsWith(QChar(0x2026)));
}

TEST_F(IconView, NeighboursOfALongCaptionAreNotPaintedOver)
{
    page.setStyleSheet("QDialog { background: white }");
    showMenu("<RootMenu><item title=\"Donaudampfschifffahrtsgesellschaftskapitaen am Telefon\"/>"
             "<item title=\"B\"/></RootMenu>");
    const QImage screen = kit::screen();
    for (int y = 170; y < 235; ++y)
        EXPECT_EQ(screen.pixelColor(152 + 162, y), QColor(Qt::white)) << y;
    kit::shot("iconview_long");
}

} // namespace
