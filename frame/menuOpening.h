#pragma once
// The icon menus, one form for each menu file or menu name. User-interface thread. Forms are never deleted.
#include "frame/dlgIconviewForm.h"
#include "frame/namedList.h"

// The forms made so far: by menu file ("setting.xml"), and by menu name ("Directory").
chNamedList<dlgIconviewForm>& GetListDial();
chNamedList<dlgIconviewForm>& GetListFrame();

// Makes the form of a menu file at its first call; bShow non-zero shows it.
void PopupXMLIconView(const chString& file, int bShow);
// Loads the file of a form that exists again.
void RefreshXMLIconView(const chString& file);
// Shows the menu that the host knows by name; 0 when the host cannot make it.
int PopupIconViewEx(const chString& name);

// Whether the directory menu has more than the local phone book.
int IsExsitLDAP();
int IsExsitRemoteDirectory();
