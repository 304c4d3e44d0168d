#pragma once
// What comes back for a message that was sent.
#include <QByteArray>

struct tagReply
{
    int nResult = 0;
    QByteArray extra; // empty when the receiver gave no block
};
