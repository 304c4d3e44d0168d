#pragma once
// What an icon view shows: the menus of the firmware, the menus of door phones and cameras that the
// settings write, and the directory. User-interface thread.
#include <QList>
#include <QString>

struct IconMenuItem
{
    enum Action {
        OpenPage,
        OpenMenu,
        OpenDirectory,
        OpenDialPlan,
        OpenSpeedDials,
        CallDoorPhone,
        CallCamera,
        DialItem
    };

    QString strTitle;   // name of the page and key of the caption
    QString strCaption; // a name that a person gave, shown instead of the title; may be empty
    QString strIcon;    // device path
    Action eAction = OpenPage;
    QString strLevel;  // "admin": the administrator's password is asked for first
    QString strTarget; // the menu file, the address of a remote phone book, the number to call or its key
    int nDetail = 0;   // kind of directory (0 local, 1 remote, 2 LDAP), or the account of a call (-1: any)

    // In the present language.
    QString caption() const;
};

struct IconMenu
{
    QString strTitle; // key
    QString strIcon;  // device path
    QList<IconMenuItem> items;
};

enum { ICON_MENU_ITEM_LIMIT = 256, ICON_MENU_TEXT_LIMIT = 128 };

// Reads a menu file: <RootMenu>, or the <DoorPhone> and <IPCamera> lists. Items past the limit and items
// without a title are left out, longer texts are cut. 0, a trace line and an empty menu when the file is
// missing, broken or none of these.
int loadIconMenu(const char* path, IconMenu& menu);
// The phone books: the local one, the remote ones, LDAP when it is enabled.
void makeDirectoryMenu(IconMenu& menu);
