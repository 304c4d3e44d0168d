#pragma once
#include "host/control/controlReply.h"

// Runs one command. reply is called once, now or later, with the command's JSON value.
void controlRun(const QStringList& words, const ControlReply& reply);
