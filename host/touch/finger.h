#pragma once
// A finger on the screen, put in below the toolkit's widgets as the window system would. User-interface
// thread.
#include <QPoint>

class QMouseEvent;

enum FINGER { FINGER_DOWN, FINGER_MOVE, FINGER_UP };

// screen: in pixels. A window keeps the finger that went down in it until it is up.
void fingerTouch(const QPoint& screen, FINGER what);
// True for such a touch, and for what the toolkit makes of it; false for one of a mouse.
bool fingerIs(const QMouseEvent* event);
