#pragma once
#include "host/control/controlCommands.h"

// "wait page CLASS MS" and "wait idle MS".
void controlWait(const QStringList& arguments, const controlServer::Reply& reply);
