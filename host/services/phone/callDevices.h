#pragma once
// Door phones and cameras among those who are called: what is set for calls with them. Who keeps them is
// asked, the rules and the call screen ask. User-interface thread.
#include "support/host/api.h"
#include <QList>
#include <QString>

struct tagCallDevice
{
    QString strNumber;           // empty: nobody's
    QString strName;             // empty where none is set
    QString strUnlockPin;        // digits that open its door; a secret: in no trace, no log and on no screen
    bool bRefusesOthers = false; // nobody else comes in while it talks
    bool bFullScreen = false;    // its picture has the whole screen
    bool bNoVideo = false;       // it gets no picture from here
    bool bNoAudio = false;       // and no sound
};

using CallDevices = QList<tagCallDevice> (*)();

// Null, as at the beginning: there are none.
HX_HOST_API void callDevicesAre(CallDevices devices);
HX_HOST_API QList<tagCallDevice> callDevices();
