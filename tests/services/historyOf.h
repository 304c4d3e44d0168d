#pragma once
// The history of calls as it is stored.
#include <QStringList>

// That attribute of each call, newest first, when there are as many; what is there when it does not come so
// far.
QStringList historyOf(const char* attribute, int count);
