#pragma once
#include "host/control/controlReply.h"

// Touches and keys, put in below the toolkit's widgets as the window system would.
void controlTouch(const QStringList& arguments, const ControlReply& reply);
// What the simulated touch panel reports, in its own counts.
void controlTouchRaw(const QStringList& arguments, const ControlReply& reply);
void controlKey(const QStringList& arguments, const ControlReply& reply);
void controlType(const QStringList& arguments, const ControlReply& reply);
