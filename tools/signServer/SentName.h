#pragma once
// Which file names a phone asks for: a name that it refuses is better told to the administrator than put into
// a schedule. Any thread.
#include <QByteArray>

// Empty, or what is said behind the name of a file that no phone asks for.
QByteArray NameFault(const QByteArray& name);
