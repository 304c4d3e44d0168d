#include "host/services/messages/messageWire.h"
#include <QtEndian>

namespace {

constexpr quint32 kMark = 0x31676d68; // "hmg1"
constexpr int kWords = messageWire::HEAD_SIZE / int(sizeof(quint32));
enum WORD { WORD_MARK, WORD_KIND, WORD_TICKET, WORD_MESSAGE, WORD_W, WORD_L, WORD_RESULT, WORD_EXTRA };

// What each kind of message leaves empty must be empty: a frame has one form only.
bool isSound(const quint32 (&words)[kWords])
{
    const bool hasTicket = words[WORD_TICKET] != 0;
    const bool hasWords = words[WORD_MESSAGE] || words[WORD_W] || words[WORD_L];
    switch (words[WORD_KIND]) {
    case messageWire::KIND_POST:
        return !hasTicket && words[WORD_RESULT] == 0;
    case messageWire::KIND_BROADCAST:
        return !hasTicket && words[WORD_RESULT] == 0 && words[WORD_EXTRA] == 0;
    case messageWire::KIND_SEND:
        return hasTicket && words[WORD_RESULT] == 0;
    case messageWire::KIND_REPLY:
        return hasTicket && !hasWords;
    default:
        return false;
    }
}

} // namespace

QByteArray messageWire::encode(const tagFrame& frame)
{
    const quint32 words[kWords] = {
        kMark,        frame.eKind,  frame.nTicket,          frame.message,
        frame.wParam, frame.lParam, quint32(frame.nResult), quint32(frame.extra.size())};
    QByteArray bytes(HEAD_SIZE, Qt::Uninitialized);
    for (int i = 0; i < kWords; ++i)
        qToLittleEndian(words[i], bytes.data() + i * int(sizeof(quint32)));
    return bytes + frame.extra;
}

messageWire::DECODED messageWire::decode(const char* data, qsizetype size, tagFrame& frame, qsizetype& used)
{
    used = 0;
    if (size < HEAD_SIZE)
        return DECODED::NEED_MORE;
    quint32 words[kWords];
    for (int i = 0; i < kWords; ++i)
        words[i] = qFromLittleEndian<quint32>(data + i * int(sizeof(quint32)));
    if (words[WORD_MARK] != kMark || words[WORD_EXTRA] > quint32(MAX_EXTRA) || !isSound(words))
        return DECODED::BAD;
    const qsizetype whole = HEAD_SIZE + qsizetype(words[WORD_EXTRA]);
    if (size < whole)
        return DECODED::NEED_MORE;
    frame = {KIND(words[WORD_KIND]),
             words[WORD_TICKET],
             words[WORD_MESSAGE],
             words[WORD_W],
             words[WORD_L],
             qint32(words[WORD_RESULT]),
             QByteArray(data + HEAD_SIZE, words[WORD_EXTRA])};
    used = whole;
    return DECODED::FRAME;
}
