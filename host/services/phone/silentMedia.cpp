#include "host/services/phone/silentMedia.h"
#include <QList>
#include <QTimer>

namespace {

const QByteArray kSilence = "a=inactive\r\n";

// "m=audio 4000 RTP/AVP 8 0" without its first two letters.
struct tagStream
{
    QByteArray kind;
    QByteArray port;
    QByteArray protocol;
    QByteArray formats;
};

tagStream streamOf(const QByteArray& line)
{
    const QList<QByteArray> words = line.mid(2).trimmed().split(' ');
    return {words.value(0), words.value(1), words.value(2), words.mid(3).join(' ')};
}

bool isPlainSound(const tagStream& stream)
{
    const QList<QByteArray> formats = stream.formats.split(' ');
    return stream.kind == "audio" && stream.port.toInt() > 0 && stream.protocol == "RTP/AVP" &&
           (formats.contains("0") || formats.contains("8"));
}

} // namespace

QByteArray silentMedia::head(int call)
{
    const QByteArray id = QByteArray::number(call), version = QByteArray::number(++m_versions[call]);
    return "v=0\r\no=- " + id + ' ' + version + " IN IP4 0.0.0.0\r\ns=-\r\nc=IN IP4 0.0.0.0\r\nt=0 0\r\n";
}

void silentMedia::tellLater(int call, const QByteArray& sdp)
{
    QTimer::singleShot(0, this, [this, call, sdp] {
        if (m_pNews)
            m_pNews->mediaDescribed(call, sdp);
    });
}

void silentMedia::offer(int call, const tagMediaWish& wish)
{
    // There is nothing to encrypt with.
    tellLater(call, wish.bEncrypt ? QByteArray() : head(call) + "m=audio 9 RTP/AVP 8 0\r\n" + kSilence);
}

// The first sound that is known is taken; every other stream keeps its place and is refused.
void silentMedia::answer(int call, const QByteArray& offer, const tagMediaWish& wish)
{
    QByteArray sdp = head(call);
    bool isAgreed = false;
    int streams = 0;
    for (const QByteArray& line : offer.split('\n')) {
        if (!line.startsWith("m=") || ++streams > STREAMS_MAX)
            continue;
        const tagStream stream = streamOf(line);
        const bool isTaken = !isAgreed && !wish.bEncrypt && isPlainSound(stream);
        const QByteArray formats = stream.formats.split(' ').contains("8") ? "8" : "0";
        sdp += "m=" + stream.kind + (isTaken ? " 9 " : " 0 ") + stream.protocol + ' ' +
               (isTaken ? formats : stream.formats) + "\r\n" + (isTaken ? kSilence : QByteArray());
        isAgreed = isAgreed || isTaken;
    }
    tellLater(call, isAgreed && streams <= STREAMS_MAX ? sdp : QByteArray());
}
