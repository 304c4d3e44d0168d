#pragma once
#include "host/menu/iconMenu.h"

class QWidget;

// Does what an icon stands for, when the user may. window is the one that the icon is in. User-interface
// thread.
void openIconMenuItem(const IconMenuItem& item, QWidget* window);
// What holding an icon does: true when there is such a thing. It sets what a touch calls.
bool holdIconMenuItem(const IconMenuItem& item, QWidget* window);
// Whether there is, for whoever has to know before.
bool canHoldIconMenuItem(const IconMenuItem& item);
