#pragma once
#include "host/menu/iconMenu.h"

class QWidget;

// Does what an icon stands for. window is the one that the icon is in. User-interface thread.
void openIconMenuItem(const IconMenuItem& item, QWidget* window);
