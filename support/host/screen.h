#pragma once
// The screen as a whole: windows in stacking order, touch input, savers, the message lamp.
// User-interface thread.
#include "support/host/api.h"
#include <QList>

class QWidget;

class HX_HOST_API QWSServer
{
public:
    // Visible top-level windows, topmost first.
    static QList<QWidget*> clientWindows();
    // Stops and starts the touch input of the window system, for a reader of the raw device.
    static void closeMouse();
    static void openMouse();
    static bool isMouseOpen();
    static void setCursorVisible(bool visible);
};

// Brings a window up over all others, whether it is hidden or only covered, and gives it the keys. All that
// comes onto the screen by itself comes by this: boxes that wait for an answer and open lists would keep
// touches and keys from it, and are answered as cancelled. A window that is covered is raised and shown no
// second time.
HX_HOST_API void screenBringUp(QWidget* window);

// Clients that suspend the screen saver, by number: 5 a full-screen player, 7 a meeting layout.
enum SCREEN_SAVERS { SCREEN_SAVERS_PLAYER = 5, SCREEN_SAVERS_MEETING = 7 };
HX_HOST_API void RegisterScreenSavers(SCREEN_SAVERS client, int flags);
HX_HOST_API void UnRegisterScreenSavers(SCREEN_SAVERS client, int flags);
// Restarts the idle count; restart is 1, flags 0.
HX_HOST_API void ResetScreenSavers(int restart, int flags);

// Reasons to light the message lamp; it is lit while at least one is registered.
enum SIGNAL_LAMP { SIGNAL_LAMP_OFF = 0, SIGNAL_LAMP_MEETING = 1 };
HX_HOST_API void RegisterSignalLamp(SIGNAL_LAMP lamp);
HX_HOST_API void UnRegisterSignalLamp(SIGNAL_LAMP lamp);
