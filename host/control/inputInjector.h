#pragma once
#include "host/control/controlCommands.h"

// Touches and keys, put in below the toolkit's widgets as the window system would.
void controlTouch(const QStringList& arguments, const controlServer::Reply& reply);
void controlKey(const QStringList& arguments, const controlServer::Reply& reply);
void controlType(const QStringList& arguments, const controlServer::Reply& reply);
