#include "host/menu/iconMenu.h"
#include "support/host/iconview.h"
#include "support/host/registry.h"
#include "support/xml/xmlFile.h"
#include "tests/kit/phoneTest.h"
#include <QFile>

namespace {

const char kMenu[] = "/rundata/menu.xml";

class IconMenus : public PhoneTest
{
protected:
    int load(const QByteArray& content)
    {
        writeFile(kMenu, content);
        return view.LoadMenuFile(kMenu);
    }
    QStringList captions() const
    {
        QStringList texts;
        for (int row = 0; row < view.count(); ++row)
            texts.append(view.item(row)->text());
        return texts;
    }
    qIconView view;
};

TEST_F(IconMenus, MenuFileGivesTitleIconAndItemsInOrder)
{
    EXPECT_EQ(load("<RootMenu title=\"Tools\" icon=\"/i/tools.png\"><item title=\"B\" icon=\"/i/b.png\"/>"
                   "<item title=\"A\"/></RootMenu>"),
              1);
    EXPECT_EQ(view.m_strTitleName, "Tools");
    EXPECT_EQ(view.m_strIconPath, "/i/tools.png");
    EXPECT_EQ(captions(), (QStringList{"B", "A"}));
    EXPECT_EQ(view.currentIconCount(), 2);
}

TEST_F(IconMenus, EveryMenuOfTheFirmwareLoads)
{
    for (const char* name : {"setting", "callfeature", "application", "media"}) {
        const QByteArray path = QByteArray("/phone/resource/ui-config/") + name + ".xml";
        EXPECT_EQ(view.LoadMenuFile(path.constData()), 1) << name;
        EXPECT_GT(view.currentIconCount(), 0) << name;
    }
}

TEST_F(IconMenus, OtherElementsAndItemsWithoutATitleAreLeftOut)
{
    EXPECT_EQ(load("<RootMenu><!-- c --><item icon=\"x\"/><note title=\"N\"/><item title=\" \"/>"
                   "<item title=\"A\"/></RootMenu>"),
              1);
    EXPECT_EQ(captions(), QStringList{"A"});
}

TEST_F(IconMenus, AFileThatIsFarTooLargeGivesAnEmptyMenuAndATraceLine)
{
    mark();
    EXPECT_EQ(load("<RootMenu title=\"T\"><item title=\"A\"/></RootMenu>" + QByteArray(XML_TABLE_LIMIT, ' ')),
              0);
    EXPECT_EQ(view.currentIconCount(), 0);
    EXPECT_EQ(traces().filter("The file is too large.").size(), 1);
}

TEST_F(IconMenus, MissingFileGivesAnEmptyMenuAndATraceLine)
{
    load("<RootMenu title=\"T\"><item title=\"A\"/></RootMenu>");
    EXPECT_EQ(view.LoadMenuFile("/rundata/none.xml"), 0);
    EXPECT_EQ(view.currentIconCount(), 0);
    EXPECT_EQ(view.GetPageCount(), 0);
    EXPECT_EQ(view.m_strTitleName, "");
    EXPECT_TRUE(traces().join("\n").contains("menu /rundata/none.xml not loaded"));
}

TEST_F(IconMenus, BrokenFileGivesAnEmptyMenuAndATraceLine)
{
    EXPECT_EQ(load("<RootMenu title=\"T\"><item title=\"A\"/>"), 0);
    EXPECT_EQ(view.currentIconCount(), 0);
    EXPECT_EQ(view.m_strTitleName, "");
    EXPECT_TRUE(traces().join("\n").contains("menu /rundata/menu.xml not loaded"));
}

TEST_F(IconMenus, FileOfAnotherKindGivesAnEmptyMenu)
{
    EXPECT_EQ(load("<Stock><item title=\"A\"/></Stock>"), 0);
    EXPECT_EQ(load(""), 0);
    EXPECT_EQ(view.LoadMenuFile(nullptr), 0);
    EXPECT_EQ(view.LoadMenuFile(""), 0);
    EXPECT_EQ(view.currentIconCount(), 0);
}

TEST_F(IconMenus, MenuHoldsAtMost256Items)
{
    QByteArray content("<RootMenu title=\"T\">");
    for (int i = 0; i < 5000; ++i)
        content += "<item title=\"" + QByteArray::number(i) + "\"/>";
    EXPECT_EQ(load(content + "</RootMenu>"), 1);
    EXPECT_EQ(view.currentIconCount(), 256);
    EXPECT_EQ(captions().last(), "255");
}

TEST_F(IconMenus, HugeTitleIsCut)
{
    EXPECT_EQ(load("<RootMenu><item title=\"" + QByteArray(100000, 'x') + "\"/></RootMenu>"), 1);
    EXPECT_EQ(captions().first().size(), 128);
}

TEST_F(IconMenus, MenuAttributeThatIsNoBareFileNameIsLeftOut)
{
    EXPECT_EQ(load("<RootMenu><item title=\"A\" menu=\"../../etc/passwd\"/><item title=\"B\" menu=\"..\"/>"
                   "<item title=\"C\" menu=\"media.xml\"/></RootMenu>"),
              1);
    EXPECT_EQ(captions(), QStringList{"C"});
}

TEST_F(IconMenus, DoorPhonesAreShownByTheirDisplayNames)
{
    EXPECT_EQ(load("<DoorPhone><item title=\"Door Phone 1\"><DisplayName>Front door</DisplayName></item>"
                   "<door title=\"Door Phone 2\"><DisplayName/></door>"
                   "<item title=\"Door Phone 3\"/></DoorPhone>"),
              1);
    EXPECT_EQ(view.m_strTitleName, "Door Phone");
    EXPECT_EQ(view.m_strIconPath, "/phone/resource/theme/default/bmp/menu/menu_doorphone.png");
    EXPECT_EQ(captions(), (QStringList{"Front door", "Door Phone 2", "Door Phone 3"}));
}

TEST_F(IconMenus, CamerasAreShownByTheirDisplayNames)
{
    EXPECT_EQ(load("<IPCamera><item title=\"IP Camera 1\"><DisplayName>Entrance</DisplayName></item>"
                   "<other title=\"X\"/><item title=\"IP Camera 2\"/></IPCamera>"),
              1);
    EXPECT_EQ(view.m_strTitleName, "IP Camera");
    EXPECT_EQ(view.m_strIconPath, "/phone/resource/theme/default/bmp/menu/menu_ipcamera.png");
    EXPECT_EQ(captions(), (QStringList{"Entrance", "IP Camera 2"}));
}

TEST_F(IconMenus, FactoryListsOfDoorPhonesAndCamerasLoad)
{
    EXPECT_EQ(view.LoadMenuFile("/rundata/data/doorphonedata.xml"), 1);
    EXPECT_EQ(view.LoadMenuFile("/rundata/data/ipcameradata.xml"), 1);
}

TEST_F(IconMenus, DisplayNameIsShownAsItIsWritten)
{
    EXPECT_EQ(load("<IPCamera><item title=\"A\"><DisplayName> T\xC3\xBCr &amp; Tor "
                   "</DisplayName></item></IPCamera>"),
              1);
    EXPECT_EQ(captions(), QStringList{QString::fromUtf8("T\xC3\xBCr & Tor")});
}

TEST_F(IconMenus, DirectoryHoldsTheLocalPhoneBookAlone)
{
    writeFile("/rundata/data/remotebook.xml", "<root><RemotePhoneBook/></root>");
    nuxSetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 0);
    EXPECT_EQ(view.LoadMenuFileEx("Directory"), 1);
    EXPECT_EQ(view.m_strTitleName, "Directory");
    EXPECT_EQ(view.m_strIconPath, "/phone/resource/theme/default/bmp/menu/menu_directory.png");
    EXPECT_EQ(captions(), QStringList{"Local Phonebook"});
}

TEST_F(IconMenus, DirectoryHoldsRemotePhoneBooksAndLdap)
{
    writeFile(
        "/rundata/data/remotebook.xml",
        "<root><RemotePhoneBook><item name=\"Company\" url=\"http://a\"/><item name=\"\" url=\"http://b\"/>"
        "<item name=\"Setting\" url=\"http://c\"/></RemotePhoneBook></root>");
    nuxSetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 1);
    EXPECT_EQ(view.LoadMenuFileEx("Directory"), 1);
    EXPECT_EQ(captions(), (QStringList{"Local Phonebook", "Company", "Setting", "LDAP"}));
}

TEST_F(IconMenus, DirectoryWithoutAFileOfRemotePhoneBooksIsMadeAllTheSame)
{
    QFile::remove(hostPath("/rundata/data/remotebook.xml"));
    EXPECT_EQ(view.LoadMenuFileEx("Directory"), 1);
    writeFile("/rundata/data/remotebook.xml", "<root><RemotePhoneBook>");
    EXPECT_EQ(view.LoadMenuFileEx("Directory"), 1);
    EXPECT_EQ(view.currentIconCount(), 1);
}

TEST_F(IconMenus, LdapStaysInTheDirectoryHoweverManyRemotePhoneBooksThereAre)
{
    QByteArray content("<root><RemotePhoneBook>");
    for (int i = 0; i < 400; ++i)
        content += "<item name=\"Book\" url=\"u\"/>";
    writeFile("/rundata/data/remotebook.xml", content + "</RemotePhoneBook></root>");
    nuxSetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 1);
    EXPECT_EQ(view.LoadMenuFileEx("Directory"), 1);
    EXPECT_LE(view.currentIconCount(), 257);
    EXPECT_EQ(captions().last(), "LDAP");
}

TEST_F(IconMenus, NameThatTheHostDoesNotKnowLeavesTheMenu)
{
    load("<RootMenu title=\"T\"><item title=\"A\"/></RootMenu>");
    EXPECT_EQ(view.LoadMenuFileEx("Phonebook"), 0);
    EXPECT_EQ(view.LoadMenuFileEx("directory"), 0);
    EXPECT_EQ(view.LoadMenuFileEx(nullptr), 0);
    EXPECT_EQ(captions(), QStringList{"A"});
}

TEST_F(IconMenus, PicturesOfTheHostsOwnMenusAreInTheTheme)
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 1);
    writeFile("/rundata/data/remotebook.xml",
              "<root><RemotePhoneBook><item name=\"C\" url=\"u\"/></RemotePhoneBook></root>");
    IconMenu menu;
    makeDirectoryMenu(menu);
    QStringList pictures{menu.strIcon};
    for (const char* file : {"/rundata/data/doorphonedata.xml", "/rundata/data/ipcameradata.xml"}) {
        IconMenu generated;
        loadIconMenu(file, generated);
        pictures.append(generated.strIcon);
        menu.items.append(generated.items);
    }
    for (const IconMenuItem& item : menu.items)
        pictures.append(item.strIcon);
    EXPECT_EQ(pictures.size(), 14);
    for (const QString& picture : pictures)
        EXPECT_TRUE(QFile::exists(hostPath(picture.toUtf8().constData()))) << qPrintable(picture);
}

} // namespace
