#pragma once
// What the account buttons of several pages show alike. User-interface thread.
#include "support/host/phone.h"
#include <QString>

class QPushButton;

// The icon for the line's state; states that say nothing about it leave the icon as it is.
void accountSetStateIcon(QPushButton* button, LINE_STATE state);
// text cut to kept characters with "..." behind them when it has more than limit.
QString accountCutText(const QString& text, int limit, int kept);
