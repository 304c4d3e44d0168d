#pragma once
#include <QJsonObject>

// {"windows": [...]}, topmost first: every window with all its widgets, in screen positions.
QJsonObject screenTree();
