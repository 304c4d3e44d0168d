#pragma once
// Descriptions of calls, as tests make and read them.
#include "players/callCrypto.h"
#include <QByteArray>
#include <QList>

// Keys that can be told apart: each byte of the first is 1.
inline callCrypto::KeySource countedKeys()
{
    return [count = 0](int bytes) mutable { return QByteArray(bytes, char(++count)); };
}

// The lines of media, each with "|" behind it.
inline QByteArray mediaLines(const QByteArray& text)
{
    QByteArray lines;
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith("m="))
            lines += line.trimmed() + '|';
    }
    return lines;
}
