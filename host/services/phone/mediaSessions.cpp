#include "host/services/phone/mediaSessions.h"
#include "support/host/net.h"
#include "support/host/player.h"
#include "support/host/trace.h"
#include <QElapsedTimer>
#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr int kLookMs = 250;

chThreadBase* server()
{
    return msgGetThreadByName("app_hxMedia");
}

qint64 nowMs()
{
    QElapsedTimer clock;
    clock.start();
    return clock.msecsSinceReference();
}

QByteArray recordOf(const tagMediaWish& wish)
{
    CALL_WISH record = {};
    qstrncpy(record.szLocalIP, addr2String(netGetLocalIPv4()), sizeof record.szLocalIP);
    record.bHeld = wish.bHeld;
    record.bEncrypt = wish.bEncrypt;
    record.bVideo = wish.options.bVideo;
    if (wish.options.bCamera)
        record.eCamera = wish.bCameraNow ? CALL_CAMERA_NOW : CALL_CAMERA_ON;
    record.nBandwidth = uint32_t(std::max(0, wish.options.nBandwidth));
    record.nFrameRate = uint32_t(std::max(0, wish.options.nFrameRate));
    record.bPreview = wish.bPreview;
    qstrncpy(record.szStunIP, wish.stunServer.constData(), sizeof record.szStunIP);
    record.nStunPort = uint32_t(std::max(0, wish.nStunPort));
    return QByteArray(reinterpret_cast<const char*>(&record), sizeof record);
}

bool isLate(qint64 since)
{
    return nowMs() - since >= mediaSessions::ANSWER_MS;
}

bool send(unsigned int message, int call, unsigned int number, const QByteArray& record)
{
    return record.size() <= CALL_DESCRIPTION_SIZE + qsizetype(sizeof(CALL_WISH)) &&
           msgPostMsgToThreadEx(server(), message, unsigned(call), number, int(record.size()),
                                record.constData()) != 0;
}

void post(unsigned int message, int call, unsigned int more = 0)
{
    msgPostMsgToThread(server(), message, unsigned(call), more);
}

// A text of a record that may have no end.
template <int size>
QString textOf(const char (&text)[size])
{
    return QString::fromUtf8(text, qsizetype(strnlen(text, size)));
}

} // namespace

mediaSessions::mediaSessions()
{
    m_look.setInterval(kLookMs);
    QObject::connect(&m_look, &QTimer::timeout, &m_look, [this] { look(); });
}

// What cannot be asked is late, as soon as the caller has returned.
qint64 mediaSessions::askedSince(bool isSent)
{
    m_look.start(isSent ? kLookMs : 0);
    return isSent ? nowMs() : nowMs() - ANSWER_MS;
}

void mediaSessions::ask(unsigned int message, int call, const QByteArray& record)
{
    tagState& state = m_calls[call];
    state.nAsked = ++m_nAsked;
    state.nSince = askedSince(send(message, call, state.nAsked, record));
}

int mediaSessions::judge(const QByteArray& offer, const tagMediaWish& wish)
{
    const unsigned int question = ++m_nAsked;
    const bool isSent = send(MEDIA_MSG_CALL_JUDGE, 0, question, recordOf(wish) + offer + '\0');
    m_judging[question] = askedSince(isSent);
    return int(question);
}

// One call too many that rings is better than one that is lost.
void mediaSessions::judged(unsigned int question, CALL_FIT fit)
{
    if (m_judging.remove(question) > 0 && m_pNews)
        m_pNews->mediaJudged(int(question), fit <= CALL_NO_FORMAT ? fit : CALL_FITS);
}

void mediaSessions::look()
{
    m_look.setInterval(kLookMs);
    QList<int> late;
    bool waits = false;
    for (auto it = m_calls.begin(); it != m_calls.end(); ++it) {
        if (it->nAsked == 0)
            continue;
        if (!isLate(it->nSince)) {
            waits = true;
            continue;
        }
        it->nAsked = 0;
        late.append(it.key());
    }
    QList<unsigned int> unjudged = m_judging.keys();
    unjudged.removeIf([this](unsigned int question) { return !isLate(m_judging[question]); });
    waits = waits || unjudged.size() < m_judging.size();
    if (!waits)
        m_look.stop();
    for (const int call : late) {
        nuxTrace(TRACE_NOTE, "call %d: no description of its media can be had", call);
        if (m_pNews)
            m_pNews->mediaMissing(call);
    }
    for (const unsigned int question : unjudged)
        judged(question, CALL_FITS);
}

void mediaSessions::prepare()
{
    if (!std::exchange(m_bPrepared, true))
        msgPostMsgToThread(server(), MEDIA_MSG_CALL_PREPARE, 0, 0);
}

void mediaSessions::offer(int call, const tagMediaWish& wish)
{
    ask(MEDIA_MSG_CALL_OFFER, call, recordOf(wish));
}

void mediaSessions::answer(int call, const QByteArray& offer, const tagMediaWish& wish)
{
    ask(MEDIA_MSG_CALL_ANSWER, call, recordOf(wish) + offer + '\0');
}

void mediaSessions::agree(int call, const QByteArray& answer)
{
    tagState& state = m_calls[call];
    state.nAgreed = ++m_nAsked;
    msgPostMsgToThreadEx(server(), MEDIA_MSG_CALL_AGREE, unsigned(call), state.nAgreed,
                         int(answer.size()) + 1, answer.constData());
}

void mediaSessions::begin(int call)
{
    post(MEDIA_MSG_CALL_BEGIN, call);
}

void mediaSessions::withdraw(int call)
{
    post(MEDIA_MSG_CALL_WITHDRAW, call);
}

void mediaSessions::setMuted(int call, bool muted)
{
    post(MEDIA_MSG_CALL_MUTE, call, muted);
}

void mediaSessions::setStill(int call, bool still)
{
    post(MEDIA_MSG_CALL_STILL, call, still);
}

bool mediaSessions::sendTone(int call, QChar tone, int ms)
{
    const QString tones("0123456789*#ABCD");
    if (!m_calls.value(call).bTones || !tones.contains(tone))
        return false;
    const int bounded = std::clamp<int>(ms, MIN_TONE_MS, MAX_TONE_MS);
    post(MEDIA_MSG_CALL_TONE, call, CALL_TONE(tone.toLatin1(), unsigned(bounded)));
    return true;
}

bool mediaSessions::join(int call, int other)
{
    if (call == other || m_calls.value(call).streams.strSound.isEmpty() ||
        m_calls.value(other).streams.strSound.isEmpty())
        return false;
    post(MEDIA_MSG_CALL_JOIN, call, unsigned(other));
    return true;
}

void mediaSessions::split(int call)
{
    post(MEDIA_MSG_CALL_SPLIT, call);
}

void mediaSessions::end(int call)
{
    m_calls.remove(call);
    post(MEDIA_MSG_CALL_END, call);
}

int mediaSessions::TryThreadMessage(msgObject& msg)
{
    switch (msg.message) {
    case MEDIA_MSG_CALL_DESCRIBED:
        described(msg);
        return 1;
    case MEDIA_MSG_CALL_STREAMS:
        changed(msg);
        return 1;
    case MEDIA_MSG_CALL_UNFIT:
        unfit(msg);
        return 1;
    case MEDIA_MSG_CALL_JUDGED:
        judged(msg.lParam, CALL_FIT(msg.wParam));
        return 1;
    case PLAYER_MSG_UP:
        if (msg.wParam == PLAYER_MEDIA)
            isUp();
        return 0;
    default:
        return 0;
    }
}

void mediaSessions::described(const msgObject& msg)
{
    const int call = int(msg.wParam);
    const auto state = m_calls.find(call);
    if (state == m_calls.end() || state->nAsked == 0 || state->nAsked != msg.lParam)
        return; // it was too late, or the call is over
    state->nAsked = 0;
    const char* text = static_cast<const char*>(msg.GetExtraData());
    const int size = msg.GetExtraSize();
    const bool isText = text && size > 1 && size <= CALL_DESCRIPTION_SIZE && text[size - 1] == 0;
    if (m_pNews)
        m_pNews->mediaDescribed(call, isText ? QByteArray(text, size - 1) : QByteArray());
}

// One that another one has followed is of no interest any more.
void mediaSessions::unfit(const msgObject& msg)
{
    const auto state = m_calls.constFind(int(msg.wParam));
    if (state != m_calls.constEnd() && state->nAgreed == msg.lParam && m_pNews)
        m_pNews->mediaUnfit(int(msg.wParam));
}

void mediaSessions::changed(const msgObject& msg)
{
    const int call = int(msg.wParam);
    const auto state = m_calls.find(call);
    CALL_STREAMS record;
    if (state == m_calls.end() || msg.GetExtraSize() != int(sizeof record))
        return;
    memcpy(&record, msg.GetExtraData(), sizeof record);
    state->bTones = record.bTones != 0;
    tagCallStreams streams;
    streams.strSound = textOf(record.szSound);
    streams.strPicture = textOf(record.szPicture);
    streams.nQuality = std::clamp(record.nQuality, -1, 4);
    streams.bEncrypted = record.bEncrypted != 0;
    streams.bOtherHolds = record.bOtherHolds != 0;
    streams.nOwnPicture = record.bOwnPicture != 0 ? 1 : 0;
    streams.nOtherPicture = record.bOtherPicture != 0 ? 1 : 0;
    if (streams == state->streams)
        return;
    state->streams = streams;
    if (m_pNews)
        m_pNews->mediaChanged(call, streams);
}

// A server that has just begun knows of no call.
void mediaSessions::isUp()
{
    if (m_bPrepared)
        msgPostMsgToThread(server(), MEDIA_MSG_CALL_PREPARE, 0, 0);
    for (const unsigned int question : m_judging.keys())
        judged(question, CALL_FITS);
    if (m_calls.isEmpty())
        return;
    QList<int> asked;
    for (auto it = m_calls.begin(); it != m_calls.end(); ++it) {
        if (it->nAsked != 0)
            asked.append(it.key());
        *it = tagState();
    }
    for (const int call : asked) {
        if (m_pNews)
            m_pNews->mediaMissing(call);
    }
    if (m_pNews)
        m_pNews->mediaLost();
}
