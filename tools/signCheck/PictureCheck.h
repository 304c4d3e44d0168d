#pragma once
// What a phone makes of a picture.
#include <QByteArray>
#include <QStringList>

// Why a phone does not show the picture, a line each; nothing when it does. file: a path of this machine.
QStringList pictureFaults(const QByteArray& file);
