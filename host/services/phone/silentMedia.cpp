#include "host/services/phone/silentMedia.h"
#include <QList>
#include <QTimer>
#include <algorithm>

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

QList<tagStream> streamsOf(const QByteArray& description)
{
    QList<tagStream> streams;
    for (const QByteArray& line : description.split('\n')) {
        if (line.startsWith("m="))
            streams.append(streamOf(line));
    }
    return streams;
}

bool isPlainSound(const tagStream& stream)
{
    const QList<QByteArray> formats = stream.formats.split(' ');
    return stream.kind == "audio" && stream.port.toInt() > 0 && stream.protocol.toUpper() == "RTP/AVP" &&
           (formats.contains("0") || formats.contains("8"));
}

// The first sound that is known; none of too many, and none where there is nothing to encrypt with.
int soundOf(const QList<tagStream>& streams, const tagMediaWish& wish)
{
    const auto sound = std::find_if(streams.begin(), streams.end(), isPlainSound);
    const bool isTaken =
        sound != streams.end() && !wish.bEncrypt && streams.size() <= silentMedia::STREAMS_MAX;
    return isTaken ? int(sound - streams.begin()) : -1;
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

int silentMedia::judge(const QByteArray& offer, const tagMediaWish& wish)
{
    const int question = ++m_nJudged;
    const CALL_FIT fit = soundOf(streamsOf(offer), wish) < 0 ? CALL_NO_FORMAT : CALL_FITS;
    QTimer::singleShot(0, this, [this, question, fit] {
        if (m_pNews)
            m_pNews->mediaJudged(question, fit);
    });
    return question;
}

// Every stream but the sound keeps its place and is refused.
void silentMedia::answer(int call, const QByteArray& offer, const tagMediaWish& wish)
{
    const QList<tagStream> streams = streamsOf(offer);
    const int sound = soundOf(streams, wish);
    QByteArray sdp = head(call);
    for (int i = 0; i < streams.size(); ++i) {
        const tagStream& stream = streams[i];
        const QByteArray formats = stream.formats.split(' ').contains("8") ? "8" : "0";
        sdp += "m=" + stream.kind + (i == sound ? " 9 " : " 0 ") + stream.protocol + ' ' +
               (i == sound ? formats : stream.formats) + "\r\n" + (i == sound ? kSilence : QByteArray());
    }
    tellLater(call, sound < 0 ? QByteArray() : sdp);
}
