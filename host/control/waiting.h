#pragma once
#include "host/control/controlReply.h"

// "wait page CLASS MS" and "wait idle MS".
void controlWait(const QStringList& arguments, const ControlReply& reply);
