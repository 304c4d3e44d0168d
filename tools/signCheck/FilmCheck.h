#pragma once
// What of a film a phone would play.
#include <QByteArray>
#include <QStringList>

// Why a phone does not play the film as it is, a line each; of nothing when it does. file: a path of this
// machine. Takes some seconds at most.
QStringList filmFaults(const QByteArray& file);
