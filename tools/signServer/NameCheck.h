#pragma once
// Names in the folder that no phone can ask for: files, and the display, city or code in its lists.
#include "tools/signServer/SignFolder.h"
#include <QStringList>

// A line each, with the place.
QStringList NameComplaints(const SignFolder& folder);
