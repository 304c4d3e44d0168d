#pragma once
// Whether texts have the room that they need, in the font and the place in which they are painted.
#include <QStringList>

class QWidget;

// What of the window and its visible children is cut off, or painted smaller than it should be: a line for
// each, empty when all is well. known: texts of the phone; a cell of a list counts only when it is one of
// them, since a person's own names may be longer than a column.
QStringList cutTexts(QWidget* window, const QStringList& known = {});
