// What another process writes into a message socket. Whatever is accepted must come out of the encoder
// as the same bytes.
#include "host/services/messages/messageWire.h"
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* next = reinterpret_cast<const char*>(data);
    qsizetype left = qsizetype(size);
    for (;;) {
        messageWire::tagFrame frame;
        qsizetype used = 0;
        if (messageWire::decode(next, left, frame, used) != messageWire::DECODED::FRAME)
            return 0;
        const QByteArray again = messageWire::encode(frame);
        if (again.size() != used || memcmp(again.constData(), next, size_t(used)) != 0)
            abort();
        next += used;
        left -= used;
    }
}
