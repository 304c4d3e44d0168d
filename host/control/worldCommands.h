#pragma once
#include "host/control/controlCommands.h"

// "set ...": the world around the phone.
void controlSet(const QStringList& arguments, const controlServer::Reply& reply);
