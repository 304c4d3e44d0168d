#pragma once
// Calls of the simulated world: who calls, what the other side does, and what became of it.
#include "host/control/controlReply.h"

#define CONTROL_RING_FORM "ring NUMBER [LINE|pstn] [NAME] [anonymous] [video] [by=NUMBER]..."
#define CONTROL_OTHER_SIDE_FORM "other-side ID hold|resume|hangup|refuse|accept"
#define CONTROL_STREAMS_FORM "streams ID [sound=NAME] [picture=NAME] [quality=-1..4] [encrypted=0|1]"
#define CONTROL_CONNECT_FORM "connect ID OTHER"
#define CONTROL_JOIN_FORM "join ID OTHER"
#define CONTROL_SPLIT_FORM "split ID"

void controlRing(const QStringList& arguments, const ControlReply& reply);
// The calls that are there, and those that have ended, newest first.
void controlCalls(const QStringList& arguments, const ControlReply& reply);
void controlOtherSide(const QStringList& arguments, const ControlReply& reply);
// What goes over the wire of a simulated call; what is not said stays.
void controlStreams(const QStringList& arguments, const ControlReply& reply);
// What the user does with two calls that talk.
void controlConnect(const QStringList& arguments, const ControlReply& reply);
void controlJoin(const QStringList& arguments, const ControlReply& reply);
void controlSplit(const QStringList& arguments, const ControlReply& reply);
