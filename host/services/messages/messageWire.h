#pragma once
// The form in which messages travel between processes: a head of eight little-endian words (mark, kind,
// ticket, message, wParam, lParam, result, bytes that follow) and the message's byte block.
#include "support/host/api.h"
#include <QByteArray>

namespace messageWire {

enum KIND : quint32 {
    KIND_POST = 1,
    KIND_SEND = 2,      // the sender waits for a reply with the same ticket
    KIND_BROADCAST = 3, // has no byte block
    KIND_REPLY = 4      // carries a ticket, a result and perhaps a byte block
};

enum : int {
    HEAD_SIZE = 32,
    MAX_EXTRA = 1 << 20 // bytes of one message's block
};

struct tagFrame
{
    KIND eKind = KIND_POST;
    quint32 nTicket = 0; // 0 unless somebody waits
    quint32 message = 0;
    quint32 wParam = 0;
    quint32 lParam = 0;
    qint32 nResult = 0;
    QByteArray extra;
};

enum class DECODED {
    FRAME,     // one frame was read
    NEED_MORE, // what is there is the start of one
    BAD        // no peer of ours writes this
};

HX_HOST_API QByteArray encode(const tagFrame& frame);
// Reads the frame at the start of data; used: its bytes, 0 unless there is one.
HX_HOST_API DECODED decode(const char* data, qsizetype size, tagFrame& frame, qsizetype& used);

} // namespace messageWire
