#include "players/callNegotiation.h"
#include <algorithm>
#include <arpa/inet.h>
#include <utility>

namespace {

constexpr int kFirstDynamic = 96;
constexpr int kLastDynamic = 127;
constexpr int kUsualTones = 101;
constexpr int kFirstPort = 1024; // those below are a system's
constexpr CRYPTO_SUITE kSuites[] = {CRYPTO_SUITE::AES_SHA1_80, CRYPTO_SUITE::AES_SHA1_32};
const QByteArray kEnd = "\r\n";

QByteArray number(int value)
{
    return QByteArray::number(value);
}

// What this side sends and takes is speech of 8 kHz, which spares the other side the rest.
QByteArray codecLines(const tagAgreedCodec& codec)
{
    const tagSoundCodec* known = soundCodec(codec.eCodec);
    const QByteArray map = "a=rtpmap:" + number(codec.nPayload) + ' ';
    if (!known)
        return map + "telephone-event/" + number(codec.nClock) + kEnd + "a=fmtp:" + number(codec.nPayload) +
               " 0-15" + kEnd;
    QByteArray lines = map + known->pName + '/' + number(known->nClock);
    if (known->nChannels > 1)
        lines += '/' + number(known->nChannels);
    lines += kEnd;
    if (codec.eCodec == SOUND_CODEC::OPUS)
        lines += "a=fmtp:" + number(codec.nPayload) +
                 " useinbandfec=1;maxplaybackrate=16000;sprop-maxcapturerate=16000" + kEnd;
    return lines;
}

QByteArray direction(bool sends, bool receives)
{
    if (sends && receives)
        return "sendrecv";
    return sends ? "sendonly" : receives ? "recvonly" : "inactive";
}

// The longest packet that does not ask for more than the other side bears.
int ptimeFor(const tagDescribedMedia& media, SOUND_CODEC codec)
{
    static constexpr int kTimes[] = {60, 40, 30, 20, 10};
    int most = media.nPtime > 0 ? media.nPtime : 20;
    if (media.nMaxPtime > 0)
        most = std::min(most, media.nMaxPtime);
    for (const int time : kTimes) {
        if (time <= most && !(time == 30 && codec == SOUND_CODEC::OPUS)) // Opus has no such frame
            return time;
    }
    return 10;
}

// Tones with the clock of the sound are preferred.
const tagDescribedCodec* tonesOf(const tagDescribedMedia& media, int clock)
{
    const tagDescribedCodec* found = nullptr;
    for (const tagDescribedCodec& codec : media.codecs) {
        if (codec.bTones && (!found || (codec.nClock == clock && found->nClock != clock)))
            found = &codec;
    }
    return found;
}

} // namespace

callNegotiation::callNegotiation(const tagOwnMedia& own, callCrypto::KeySource keys)
    : m_own(own), m_keys(std::move(keys))
{
}

bool callNegotiation::mayHearUs(const QByteArray& address, int port, bool loopback)
{
    in_addr parsed = {};
    if (port < kFirstPort || port > 65535 || inet_pton(AF_INET, address.constData(), &parsed) != 1)
        return false;
    const uint32_t ip = ntohl(parsed.s_addr);
    const uint32_t first = ip >> 24;
    // No machine, many machines, and what is reserved.
    return first != 0 && first < 224 && (loopback || first != 127);
}

QByteArray callNegotiation::head()
{
    ++m_nVersion;
    return "v=0" + kEnd + "o=- " + QByteArray::number(m_own.nSession) + ' ' + QByteArray::number(m_nVersion) +
           " IN IP4 " + m_own.address + kEnd + "s=-" + kEnd + "c=IN IP4 " + m_own.address + kEnd + "t=0 0" +
           kEnd;
}

QByteArray callNegotiation::attributes(const tagAgreedSound& sound, const QList<tagCrypto>& cryptos,
                                       bool sends, bool receives, bool mux) const
{
    QByteArray lines;
    for (const tagAgreedCodec& codec : sound.take)
        lines += codecLines(codec);
    lines += "a=ptime:" + number(sound.nPtime) + kEnd + "a=rtcp:" + number(m_own.nPort + 1) + kEnd;
    if (mux)
        lines += "a=rtcp-mux" + kEnd;
    for (const tagCrypto& crypto : cryptos)
        lines += "a=crypto:" + callCrypto::write(crypto) + kEnd;
    return lines + "a=" + direction(sends, receives) + kEnd;
}

QByteArray callNegotiation::refused(const tagPlace& place) const
{
    return "m=" + place.kind + " 0 " + place.transport + ' ' + place.format + kEnd;
}

int callNegotiation::freeNumber()
{
    for (int payload = kFirstDynamic; payload < kLastDynamic; ++payload) {
        if (!m_taken.contains(payload)) {
            m_taken.append(payload);
            return payload;
        }
    }
    return kLastDynamic;
}

int callNegotiation::numberFor(SOUND_CODEC codec)
{
    const int own = soundCodec(codec)->nPayload;
    if (own >= 0)
        return own;
    if (m_nOpus < 0)
        m_nOpus = freeNumber();
    return m_nOpus;
}

int callNegotiation::numberForTones()
{
    if (m_nTones < 0 && !m_taken.contains(kUsualTones)) {
        m_nTones = kUsualTones;
        m_taken.append(kUsualTones);
    }
    if (m_nTones < 0)
        m_nTones = freeNumber();
    return m_nTones;
}

// A number means one thing as long as the call lasts.
void callNegotiation::learnNumbers(const QList<tagDescribedMedia>& media)
{
    for (const tagDescribedMedia& line : media) {
        for (const tagDescribedCodec& codec : line.codecs) {
            if (codec.nPayload >= kFirstDynamic && !m_taken.contains(codec.nPayload))
                m_taken.append(codec.nPayload);
            if (line.bSound && codec.eCodec == SOUND_CODEC::OPUS)
                m_nOpus = codec.nPayload;
            if (line.bSound && codec.bTones && codec.nClock == 8000)
                m_nTones = codec.nPayload;
        }
    }
}

const tagCrypto& callNegotiation::ownCrypto(CRYPTO_SUITE suite)
{
    const auto known = std::find_if(m_cryptos.begin(), m_cryptos.end(),
                                    [suite](const tagCrypto& crypto) { return crypto.eSuite == suite; });
    if (known != m_cryptos.end())
        return *known;
    m_cryptos.append({int(m_cryptos.size()) + 1, suite, m_keys(callCrypto::KEY_BYTES)});
    return m_cryptos.last();
}

QByteArray callNegotiation::offer(const tagMediaWant& want)
{
    m_wanted = want;
    m_bOffered = true;
    m_offered.clear();
    for (const tagSoundCodec& codec : kSoundCodecs)
        m_offered.append({codec.eCodec, numberFor(codec.eCodec), codec.nClock});
    m_offered.append({SOUND_CODEC::NONE, numberForTones(), 8000});
    QList<tagCrypto> cryptos;
    // A stream that is encrypted stays so.
    const bool isSecure = want.bEncrypt || m_agreed.eSuite != CRYPTO_SUITE::NONE;
    for (const CRYPTO_SUITE suite : kSuites) {
        if (isSecure)
            cryptos.append(ownCrypto(suite));
    }
    if (m_places.isEmpty())
        m_places.append(tagPlace{"audio", "RTP/AVP", "0", true});
    QByteArray text = head();
    for (tagPlace& place : m_places) {
        if (!place.bOurs) {
            text += refused(place);
            continue;
        }
        const bool hasProfile = place.transport.endsWith('F');
        place.transport = isSecure ? "RTP/SAVP" : "RTP/AVP";
        place.transport += hasProfile ? "F" : "";
        text += "m=audio " + number(m_own.nPort) + ' ' + place.transport;
        for (const tagAgreedCodec& codec : m_offered)
            text += ' ' + number(codec.nPayload);
        tagAgreedSound sound;
        sound.take = m_offered;
        text += kEnd + attributes(sound, cryptos, true, !want.bHeld, true);
    }
    return text;
}

bool callNegotiation::choose(const tagDescribedMedia& media, bool encrypt, tagChoice& choice) const
{
    const bool isHeld = media.address == "0.0.0.0";
    if (!media.bSound || !media.bRtp || media.nPort == 0 ||
        !(isHeld || mayHearUs(media.address, media.nPort, m_own.bLoopback)))
        return false;
    if (media.bSecure ? media.cryptos.isEmpty() : encrypt)
        return false;
    for (const tagSoundCodec& known : kSoundCodecs) {
        for (const tagDescribedCodec& codec : media.codecs) {
            if (codec.eCodec != known.eCodec)
                continue;
            choice.pMedia = &media;
            choice.crypto = media.bSecure ? media.cryptos.first() : tagCrypto();
            choice.codec = {codec.eCodec, codec.nPayload, known.nClock};
            return true;
        }
    }
    return false;
}

void callNegotiation::setPeer(const tagDescribedMedia& media, bool held, tagAgreedSound& sound) const
{
    sound.bSound = true;
    sound.own = m_own.address;
    sound.peer = media.address;
    sound.nPort = media.nPort;
    sound.nRtcpPort = media.bRtcpMux ? media.nPort : media.nRtcpPort;
    if (!mayHearUs(sound.peer, sound.nRtcpPort, m_own.bLoopback))
        sound.nRtcpPort = 0;
    const bool isAway = media.address == "0.0.0.0"; // how a call was held before there were directions
    sound.bHeldByPeer = isAway || !media.bReceives;
    sound.bSends = media.bReceives && !isAway && !held;
    sound.bReceives = media.bSends && !isAway && !held;
    sound.nPtime = ptimeFor(media, sound.send.eCodec);
    const tagDescribedCodec* tones = tonesOf(media, sound.send.nClock);
    sound.nSendTones = tones ? tones->nPayload : -1;
    sound.nTonesClock = tones ? tones->nClock : 8000;
}

// The line of the sound is still there, and has no port any more.
bool callNegotiation::stops(const QList<tagDescribedMedia>& offered) const
{
    for (qsizetype i = 0; i < std::min(offered.size(), m_places.size()); ++i) {
        if (m_places[i].kind == "audio" && m_places[i].bOurs)
            return offered[i].bSound && offered[i].nPort == 0;
    }
    return false;
}

// What was encrypted stays so when the sound goes on.
tagAgreedSound callNegotiation::stopped() const
{
    tagAgreedSound sound;
    sound.eSuite = m_agreed.eSuite;
    sound.sendKey = m_agreed.sendKey;
    sound.takeKey = m_agreed.takeKey;
    sound.bHeldByPeer = true;
    return sound;
}

QByteArray callNegotiation::answerOfStop(const QList<tagDescribedMedia>& offered)
{
    m_bOffered = false;
    learnNumbers(offered);
    QByteArray text = head();
    const QList<tagPlace> before = std::exchange(m_places, {});
    for (qsizetype i = 0; i < offered.size(); ++i) {
        m_places.append(tagPlace{offered[i].kind, offered[i].transport, offered[i].format,
                                 i < before.size() && before[i].bOurs});
        text += refused(m_places.last());
    }
    m_agreed = stopped();
    return text;
}

QByteArray callNegotiation::answer(const QByteArray& offer, const tagMediaWant& want)
{
    QList<tagDescribedMedia> media;
    if (!callDescription::read(offer, media))
        return {};
    tagChoice choice;
    // Of two lines of sound the encrypted one.
    for (const bool isSecure : {true, false}) {
        for (const tagDescribedMedia& line : media) {
            if (!choice.pMedia && line.bSecure == isSecure)
                choose(line, want.bEncrypt, choice);
        }
    }
    if (!choice.pMedia)
        return stops(media) ? answerOfStop(media) : QByteArray();
    m_bOffered = false;
    learnNumbers(media);
    const tagDescribedMedia& chosen = *choice.pMedia;
    tagAgreedSound sound;
    sound.send = choice.codec;
    setPeer(chosen, want.bHeld, sound);
    sound.take = {choice.codec};
    if (sound.nSendTones >= 0)
        sound.take.append({SOUND_CODEC::NONE, sound.nSendTones, sound.nTonesClock});
    QList<tagCrypto> cryptos;
    if (choice.crypto.eSuite != CRYPTO_SUITE::NONE) {
        tagCrypto own = ownCrypto(choice.crypto.eSuite);
        own.nTag = choice.crypto.nTag;
        cryptos.append(own);
        sound.eSuite = own.eSuite;
        sound.sendKey = own.key;
        sound.takeKey = choice.crypto.key;
    }
    const bool sends = chosen.bReceives && chosen.address != "0.0.0.0";
    const bool receives = chosen.bSends && !want.bHeld;
    QByteArray text = head();
    m_places.clear();
    for (const tagDescribedMedia& line : media) {
        m_places.append(tagPlace{line.kind, line.transport, line.format, &line == &chosen});
        if (&line != &chosen) {
            text += refused(m_places.last());
            continue;
        }
        text += "m=audio " + number(m_own.nPort) + ' ' + line.transport;
        for (const tagAgreedCodec& codec : sound.take)
            text += ' ' + number(codec.nPayload);
        text += kEnd + attributes(sound, cryptos, sends, receives, line.bRtcpMux);
    }
    m_agreed = sound;
    return text;
}

// Of the codecs that were offered, the first one that the other side names is what it wants.
bool callNegotiation::fits(const tagDescribedMedia& answer, tagAgreedSound& sound) const
{
    for (const tagDescribedCodec& codec : answer.codecs) {
        if (codec.eCodec == SOUND_CODEC::NONE)
            continue;
        sound.send = {codec.eCodec, codec.nPayload, soundCodec(codec.eCodec)->nClock};
        sound.take = m_offered;
        return true;
    }
    return false;
}

bool callNegotiation::agree(const QByteArray& answer)
{
    QList<tagDescribedMedia> media;
    if (!m_bOffered || !callDescription::read(answer, media) || media.size() != m_places.size())
        return false;
    for (qsizetype i = 0; i < media.size(); ++i) {
        const tagDescribedMedia& line = media[i];
        if (!m_places[i].bOurs)
            continue;
        tagAgreedSound sound;
        if (line.nPort == 0) {
            m_agreed = stopped();
            return true;
        }
        const bool isHeld = line.address == "0.0.0.0";
        if (!line.bSound || !line.bRtp || line.bSecure != m_places[i].transport.startsWith("RTP/SAVP") ||
            !fits(line, sound) || !(isHeld || mayHearUs(line.address, line.nPort, m_own.bLoopback)))
            return false;
        setPeer(line, m_wanted.bHeld, sound);
        if (line.bSecure) {
            const auto own = std::find_if(m_cryptos.begin(), m_cryptos.end(), [&](const tagCrypto& crypto) {
                return !line.cryptos.isEmpty() && crypto.nTag == line.cryptos.first().nTag &&
                       crypto.eSuite == line.cryptos.first().eSuite;
            });
            if (own == m_cryptos.end())
                return false;
            sound.eSuite = own->eSuite;
            sound.sendKey = own->key;
            sound.takeKey = line.cryptos.first().key;
        }
        m_agreed = sound;
        return true;
    }
    return false;
}
