#pragma once
// The head of an HTTP request, as far as it has come. Any thread.
#include <QByteArray>

enum HEAD_STATE {
    HEAD_COMES,
    HEAD_WHOLE,  // one request that reads, and nothing after it
    HEAD_REFUSED // anything else: what is after it, or what a server could take for a second request
};

// HEAD_BYTES: no head that is read is longer.
enum : int { HEAD_BYTES = 64 * 1024 };

// head: all that came; looked: how many bytes of it were looked at before, which are not searched again.
HEAD_STATE readHead(const QByteArray& head, qsizetype looked);
