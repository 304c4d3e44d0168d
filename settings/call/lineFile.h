#pragma once
// The key file of a line.
#include "frame/configFiles.h"
#include <QByteArray>

// line: 0 to 3.
inline QByteArray lineFile(int line)
{
    return SIP_ACCOUNT_FILE + QByteArray::number(line) + ".cfg";
}
