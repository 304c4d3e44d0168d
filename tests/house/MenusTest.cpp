// The menu files of the device image: what they name, in which order, and that their icons are there.
#include "tests/house/sourceTree.h"
#include <QFileInfo>
#include <QSet>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace {

struct MenuItem
{
    QString title;
    QString icon;
    QString menu;
    QString level;
    QString make;
};

struct Menu
{
    QString title;
    QString icon;
    QVector<MenuItem> items;
    QString error;
};

const QStringList MenuFiles = {"setting.xml", "callfeature.xml", "application.xml", "media.xml"};

// Every page that is opened by its whole name from a menu: "Version Detail" is opened by "Status" alone.
const QStringList PageTitles = {"Directory",
                                "Call Histroy",
                                "Wallpaper Manager",
                                "Contact Picture Manage",
                                "Photo Manager",
                                "Video Manager",
                                "Sound Manager",
                                "Personalize",
                                "Screen Saver",
                                "Sound Set",
                                "Security",
                                "Account Setting",
                                "WAN",
                                "Forward",
                                "Auto Answer",
                                "Voice Mail",
                                "DSS Key",
                                "Key As Send",
                                "Status",
                                "Date & Time",
                                "Call Waiting",
                                "Message",
                                "Photo Play",
                                "Video Play",
                                "Factory",
                                "Reboot",
                                "Video Set",
                                "Hotline",
                                "TV Output",
                                "Anonymous Call",
                                "Weather",
                                "Stock",
                                "LCD Adjusting",
                                "Ndeck",
                                "Auto Provision",
                                "Picture-dial Setting"};

Menu loadMenu(const QString& file)
{
    Menu menu;
    QXmlStreamReader xml(readText(imagePath("/phone/resource/ui-config/" + file)));
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const QString title = attributes.value("title").toString(),
                      icon = attributes.value("icon").toString();
        if (xml.name() == QLatin1String("RootMenu")) {
            menu.title = title;
            menu.icon = icon;
        } else if (xml.name() == QLatin1String("item")) {
            menu.items.append({title, icon, attributes.value("menu").toString(),
                               attributes.value("level").toString(), attributes.value("make").toString()});
        } else {
            menu.error = "element " + xml.name().toString();
        }
    }
    if (xml.hasError())
        menu.error = xml.errorString();
    return menu;
}

QStringList titlesOf(const Menu& menu)
{
    QStringList titles;
    for (const MenuItem& item : menu.items)
        titles.append(item.title);
    return titles;
}

} // namespace

TEST(Menus, EveryMenuFileIsWellFormedAndHasATitleAndItems)
{
    const QStringList titles = {"Setting", "Call Feature", "Application", "Media"};
    for (int i = 0; i < MenuFiles.size(); ++i) {
        const Menu menu = loadMenu(MenuFiles[i]);
        EXPECT_EQ(menu.error.toStdString(), "") << qPrintable(MenuFiles[i]);
        EXPECT_EQ(menu.title.toStdString(), titles[i].toStdString());
        EXPECT_FALSE(menu.items.isEmpty()) << qPrintable(MenuFiles[i]);
    }
}

TEST(Menus, TheFirstPageOfTheSettingMenuIsInItsFixedOrder)
{
    const QStringList first = {"WAN",         "Account Setting", "Security",      "Status",
                               "Date & Time", "Auto Provision",  "LCD Adjusting", "TV Output"};
    EXPECT_EQ(titlesOf(loadMenu("setting.xml")).mid(0, 8).join('|').toStdString(),
              first.join('|').toStdString());
}

TEST(Menus, EveryPageIsNamedByAMenu)
{
    QSet<QString> named;
    for (const QString& file : MenuFiles) {
        for (const QString& title : titlesOf(loadMenu(file)))
            named.insert(title);
    }
    for (const QString& page : PageTitles)
        EXPECT_TRUE(named.contains(page)) << qPrintable(page) << " cannot be reached";
}

TEST(Menus, EveryItemOpensAPageOrAMenuThatThePhoneHas)
{
    for (const QString& file : MenuFiles) {
        for (const MenuItem& item : loadMenu(file).items) {
            // These have no name to be opened by.
            const bool isMade = (item.title == "Dial Plan" && item.make == "dialplan") ||
                                (item.title == "Speed Dial" && item.make == "speeddial");
            EXPECT_EQ(isMade, !item.make.isEmpty()) << qPrintable(item.title);
            const bool opens =
                isMade || (item.menu.isEmpty() ? PageTitles.contains(item.title)
                                               : QFileInfo::exists(imagePath("/rundata/data/" + item.menu)));
            EXPECT_TRUE(opens) << qPrintable(item.title) << " " << qPrintable(item.menu);
        }
    }
}

// A newcomer reaches every page.
TEST(Menus, OnlyAResetAsksForTheAdministrator)
{
    for (const QString& file : MenuFiles) {
        for (const MenuItem& item : loadMenu(file).items)
            EXPECT_EQ(item.level.toStdString(), item.title == "Factory" ? "admin" : "")
                << qPrintable(item.title);
    }
}

TEST(Menus, TheDialPlanIsAmongTheCallFeatures)
{
    EXPECT_TRUE(titlesOf(loadMenu("callfeature.xml")).contains("Dial Plan"));
}

TEST(Menus, NoMenuNamesATitleTwice)
{
    for (const QString& file : MenuFiles) {
        QStringList titles = titlesOf(loadMenu(file));
        EXPECT_EQ(titles.removeDuplicates(), 0) << qPrintable(file);
    }
}

TEST(Menus, EveryIconIsInTheImage)
{
    for (const QString& file : MenuFiles) {
        const Menu menu = loadMenu(file);
        QStringList icons = {menu.icon};
        for (const MenuItem& item : menu.items)
            icons.append(item.icon);
        for (const QString& icon : icons)
            EXPECT_TRUE(QFileInfo(imagePath(icon)).isFile()) << qPrintable(file) << ": " << qPrintable(icon);
    }
}

TEST(Menus, NeighboursOnAMenuPageDoNotLookTheSame)
{
    for (const QString& file : MenuFiles) {
        const QVector<MenuItem> items = loadMenu(file).items;
        for (int i = 1; i < items.size(); ++i)
            EXPECT_NE(items[i].icon.toStdString(), items[i - 1].icon.toStdString()) << qPrintable(file);
    }
}
