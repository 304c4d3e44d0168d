#pragma once
// The window with the list of a combo box. User-interface thread.
class QObject;
class QWidget;

bool comboListIsWindow(const QObject* object);
// Masks its corners out, for a screen without a compositor.
void comboListRound(QWidget* window);
// At its combo box, below it or above, between the bars of the page, and as high as whole rows are; what has
// no room is scrolled to. For a window that is about to be shown.
void comboListPlace(QWidget* window);
