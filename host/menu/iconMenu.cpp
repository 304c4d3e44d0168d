#include "host/menu/iconMenu.h"
#include "support/file/path.h"
#include "support/host/language.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include "support/xml/xmlFile.h"

namespace {

QString textOf(const char* utf8)
{
    return QString::fromUtf8(utf8).left(ICON_MENU_TEXT_LIMIT).trimmed();
}

QString attribute(xmlElement* element, const char* name)
{
    return textOf(element->GetAttributeValue(name));
}

QString content(const xmlElement* element, const char* child)
{
    chString value;
    PeekValue(element->FindChildElement(child), value);
    return textOf(value);
}

void addItem(IconMenu& menu, const IconMenuItem& item)
{
    if (!item.strTitle.isEmpty())
        menu.items.append(item);
}

template <class Read>
void readItems(const xmlElement* list, IconMenu& menu, Read read)
{
    for (xmlElement* element = list->GetFirstChildElement();
         element && menu.items.size() < ICON_MENU_ITEM_LIMIT; element = xmlGetNextElement(element))
        addItem(menu, read(element));
}

// The files of one folder are the menus that there are: a name with a path in it is none of them.
IconMenuItem readMenuItem(xmlElement* element)
{
    IconMenuItem item;
    if (qstrcmp(element->GetName(), "item") != 0)
        return item;
    item.strTitle = attribute(element, "title");
    item.strIcon = attribute(element, "icon");
    item.strLevel = attribute(element, "level");
    item.strTarget = attribute(element, "dial");
    if (!item.strTarget.isEmpty()) {
        item.eAction = IconMenuItem::DialItem;
        return item;
    }
    // Pages that have no name to be opened by.
    const QString made = attribute(element, "make");
    if (made == QLatin1String("dialplan") || made == QLatin1String("speeddial")) {
        item.eAction =
            made == QLatin1String("dialplan") ? IconMenuItem::OpenDialPlan : IconMenuItem::OpenSpeedDials;
        return item;
    }
    item.strTarget = attribute(element, "menu");
    if (item.strTarget.isEmpty())
        return item;
    item.eAction = IconMenuItem::OpenMenu;
    if (!pathIsSafeName(item.strTarget.toUtf8().constData()))
        item.strTitle.clear();
    return item;
}

IconMenuItem readDoorPhone(xmlElement* element)
{
    IconMenuItem item;
    item.strTitle = attribute(element, "title");
    item.strCaption = content(element, "DisplayName");
    item.strIcon = QStringLiteral(HX_THEME("menu/menu_doorphoneitem.png"));
    item.eAction = IconMenuItem::CallDoorPhone;
    item.nDetail = -1;
    item.strTarget = content(element, "PhoneNumber");
    return item;
}

IconMenuItem readCamera(xmlElement* element)
{
    IconMenuItem item;
    if (qstrcmp(element->GetName(), "item") != 0)
        return item;
    item.strTitle = attribute(element, "title");
    item.strCaption = content(element, "DisplayName");
    item.strIcon = QStringLiteral(HX_THEME("menu/menu_ipcamera.png"));
    item.eAction = IconMenuItem::CallCamera;
    item.strTarget = content(element, "PhoneNumber");
    const QString account = content(element, "Account");
    item.nDetail = account.isEmpty() ? -1 : account.toInt();
    return item;
}

int readDocument(const xmlDocument& document, IconMenu& menu)
{
    if (xmlElement* list = xmlFindElementFromRoot(&document, "RootMenu", 0)) {
        menu.strTitle = attribute(list, "title");
        menu.strIcon = attribute(list, "icon");
        readItems(list, menu, readMenuItem);
        return 1;
    }
    if (const xmlElement* list = xmlFindElementFromRoot(&document, "DoorPhone", 0)) {
        menu.strTitle = QStringLiteral(HX_TR("Door Phone"));
        menu.strIcon = QStringLiteral(HX_THEME("menu/menu_doorphone.png"));
        readItems(list, menu, readDoorPhone);
        return 1;
    }
    if (const xmlElement* list = xmlFindElementFromRoot(&document, "IPCamera", 0)) {
        menu.strTitle = QStringLiteral(HX_TR("IP Camera"));
        menu.strIcon = QStringLiteral(HX_THEME("menu/menu_ipcamera.png"));
        readItems(list, menu, readCamera);
        return 1;
    }
    return 0;
}

IconMenuItem directoryItem(int kind, const char* title, const char* icon)
{
    IconMenuItem item;
    item.strTitle = QString::fromUtf8(title);
    item.strIcon = QString::fromUtf8(icon);
    item.eAction = IconMenuItem::OpenDirectory;
    item.nDetail = kind;
    return item;
}

IconMenuItem readRemoteBook(xmlElement* element)
{
    if (qstrcmp(element->GetName(), "item") != 0)
        return IconMenuItem();
    IconMenuItem item = directoryItem(1, "", HX_THEME("menu/menu_remotebook.png"));
    item.strTitle = attribute(element, "name");
    item.strCaption = item.strTitle;
    item.strTarget = QString::fromUtf8(element->GetAttributeValue("url").GetText());
    return item;
}

void addRemoteBooks(IconMenu& menu)
{
    xmlFile document;
    if (!document.LoadFromFile("/rundata/data/remotebook.xml", XML_TABLE_LIMIT) || !document.GetRootElement())
        return;
    if (const xmlElement* books = document.GetRootElement()->FindChildElement("RemotePhoneBook"))
        readItems(books, menu, readRemoteBook);
}

} // namespace

QString IconMenuItem::caption() const
{
    return strCaption.isEmpty() ? qTranslate(strTitle.toUtf8().constData()) : strCaption;
}

int loadIconMenu(const char* path, IconMenu& menu)
{
    menu = IconMenu();
    xmlFile document;
    if (document.LoadFromFile(path, XML_TABLE_LIMIT) && readDocument(document, menu))
        return 1;
    nuxTrace(TRACE_NOTE, "menu %s not loaded: %s", path ? path : "", document.GetErrorText());
    return 0;
}

void makeDirectoryMenu(IconMenu& menu)
{
    menu = IconMenu();
    menu.strTitle = QStringLiteral(HX_TR("Directory"));
    menu.strIcon = QStringLiteral(HX_THEME("menu/menu_directory.png"));
    addItem(menu, directoryItem(0, HX_TR("Local Phonebook"), HX_THEME("menu/menu_phonebook.png")));
    addRemoteBooks(menu);
    if (nuxGetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 0) != 0)
        addItem(menu, directoryItem(2, HX_TR("LDAP"), HX_THEME("menu/menu_ldap.png")));
}
