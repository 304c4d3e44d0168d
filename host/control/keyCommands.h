#pragma once
#include "host/control/controlReply.h"
#include <QJsonValue>

// "dsskey ...": a programmable key. "lamp ...": an extension of the simulated world.
void controlDssKey(const QStringList& arguments, const ControlReply& reply);
void controlLamp(const QStringList& arguments, const ControlReply& reply);
// "set list ...": the extensions that the server of a line has put on its list.
QJsonValue controlSetList(const QStringList& words);
