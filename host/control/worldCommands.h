#pragma once
#include "host/control/controlReply.h"

// "set ...": the world around the phone.
void controlSet(const QStringList& arguments, const ControlReply& reply);
