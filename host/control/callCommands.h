#pragma once
// Calls of the simulated world: who calls, what the other side does, and what became of it.
#include "host/control/controlReply.h"

#define CONTROL_RING_FORM "ring NUMBER [LINE|pstn] [NAME] [anonymous] [video] [by=NUMBER]..."
#define CONTROL_OTHER_SIDE_FORM "other-side ID hold|resume|hangup"

void controlRing(const QStringList& arguments, const ControlReply& reply);
// The calls that are there, and those that have ended, newest first.
void controlCalls(const QStringList& arguments, const ControlReply& reply);
void controlOtherSide(const QStringList& arguments, const ControlReply& reply);
