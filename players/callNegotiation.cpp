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

// How a call was held before there were directions.
bool isNowhere(const QByteArray& address)
{
    return address == "0.0.0.0";
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

tagMappedPlace callNegotiation::placeOf(const QByteArray& address, int port, const tagMappedPlace& mapped)
{
    return mapped.address.isEmpty() ? tagMappedPlace{address, port, address, port + 1} : mapped;
}

QByteArray callNegotiation::rtcpLine(const tagMappedPlace& place)
{
    const bool isElsewhere = place.rtcpAddress != place.address;
    return "a=rtcp:" + number(place.nRtcpPort) + (isElsewhere ? " IN IP4 " + place.rtcpAddress : "") + kEnd;
}

QByteArray callNegotiation::head()
{
    ++m_nVersion;
    const QByteArray address = soundPlace().address;
    return "v=0" + kEnd + "o=- " + QByteArray::number(m_own.nSession) + ' ' + QByteArray::number(m_nVersion) +
           " IN IP4 " + address + kEnd + "s=-" + kEnd + "c=IN IP4 " + address + kEnd + "t=0 0" + kEnd;
}

QByteArray callNegotiation::soundLine(const QByteArray& transport, const tagAgreedSound& sound,
                                      const Cryptos& cryptos, const QByteArray& direction, bool mux) const
{
    QByteArray text = "m=audio " + number(soundPlace().nPort) + ' ' + transport;
    for (const tagAgreedCodec& codec : sound.take)
        text += ' ' + number(codec.nPayload);
    text += kEnd;
    for (const tagAgreedCodec& codec : sound.take)
        text += codecLines(codec);
    text += "a=ptime:" + number(sound.nPtime) + kEnd + rtcpLine(soundPlace());
    if (mux)
        text += "a=rtcp-mux" + kEnd;
    for (const tagCrypto& crypto : cryptos)
        text += "a=crypto:" + callCrypto::write(crypto) + kEnd;
    return text + "a=" + direction + kEnd;
}

QByteArray callNegotiation::pictureLine(const QByteArray& transport, const QList<tagPictureFormat>& formats,
                                        const Cryptos& cryptos, const QByteArray& direction, bool mux) const
{
    const tagMappedPlace place = picturePlace();
    QByteArray text = "m=video " + number(place.nPort) + ' ' + transport;
    for (const tagPictureFormat& format : formats)
        text += ' ' + number(format.nPayload);
    text += kEnd;
    if (place.address != soundPlace().address)
        text += "c=IN IP4 " + place.address + kEnd;
    if (m_wanted.nKbit > 0)
        text += "b=AS:" + number(m_wanted.nKbit) + kEnd;
    for (const tagPictureFormat& format : formats)
        text += pictureFormat::lines(format);
    text += rtcpLine(place) + "a=rtcp-fb:* nack pli" + kEnd + "a=rtcp-fb:* ccm fir" + kEnd;
    if (mux)
        text += "a=rtcp-mux" + kEnd;
    for (const tagCrypto& crypto : cryptos)
        text += "a=crypto:" + callCrypto::write(crypto) + kEnd;
    return text + "a=" + direction + kEnd;
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

int callNegotiation::numberFor(const tagPictureFormat& format)
{
    for (const tagPictureFormat& known : m_pictureNumbers) {
        if (pictureFormat::isSame(known, format))
            return known.nPayload;
    }
    m_pictureNumbers.append(format);
    m_pictureNumbers.last().nPayload = freeNumber();
    return m_pictureNumbers.last().nPayload;
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
            if (line.bPicture && pictureFormat::isSpoken(codec.picture)) {
                const auto known = std::find_if(m_pictureNumbers.begin(), m_pictureNumbers.end(),
                                                [&](const tagPictureFormat& format) {
                                                    return pictureFormat::isSame(format, codec.picture);
                                                });
                if (known == m_pictureNumbers.end())
                    m_pictureNumbers.append(codec.picture);
            }
            if (line.bSound && codec.eCodec == SOUND_CODEC::OPUS)
                m_nOpus = codec.nPayload;
            if (line.bSound && codec.bTones && codec.nClock == 8000)
                m_nTones = codec.nPayload;
        }
    }
}

const tagCrypto& callNegotiation::ownCrypto(CRYPTO_SUITE suite, Cryptos& of)
{
    const auto known = std::find_if(of.begin(), of.end(),
                                    [suite](const tagCrypto& crypto) { return crypto.eSuite == suite; });
    if (known != of.end())
        return *known;
    const int place = int(std::find(std::begin(kSuites), std::end(kSuites), suite) - std::begin(kSuites));
    of.append({place + 1, suite, m_keys(callCrypto::KEY_BYTES), {}});
    return of.last();
}

// A key that is at work stays. One that has been must not come back: both sides would begin to count anew,
// and seal other packets with what has sealed some before.
void callNegotiation::renewKeys()
{
    const auto keep = [](Cryptos& of, const tagAgreedStream& at) {
        of.removeIf(
            [&](const tagCrypto& crypto) { return crypto.eSuite != at.eSuite || crypto.key != at.sendKey; });
    };
    keep(m_cryptos, m_agreed);
    keep(m_pictureCryptos, m_picture);
}

// The other side does not open the camera of a call that began without it.
tagMediaWant callNegotiation::allowed(const tagMediaWant& want) const
{
    tagMediaWant allowed = want;
    allowed.bCamera = want.bCamera && (!m_bBegun || m_bShown || want.bCameraNow);
    return allowed;
}

void callNegotiation::setAgreed(const tagAgreedSound& sound, const tagAgreedPicture& picture)
{
    m_agreed = sound;
    m_picture = picture;
    m_bBegun = true;
    m_bShown = m_bShown || (picture.bPicture && m_wanted.bCamera);
}

// What is encrypted stays so for the call.
bool callNegotiation::mustSealSound(const tagMediaWant& want) const
{
    return want.bEncrypt || m_agreed.eSuite != CRYPTO_SUITE::NONE;
}

// So does a call without pictures that come in clear: nobody would see that the new ones do.
bool callNegotiation::mustSealPicture(const tagMediaWant& want) const
{
    const bool isSealed = m_picture.eSuite != CRYPTO_SUITE::NONE;
    return want.bEncrypt || isSealed || (m_agreed.eSuite != CRYPTO_SUITE::NONE && !m_picture.bPicture);
}

bool callNegotiation::setKeys(const tagDescribedMedia& answer, const Cryptos& of,
                              tagAgreedStream& stream) const
{
    if (!answer.bSecure)
        return true;
    const auto own = std::find_if(of.begin(), of.end(), [&](const tagCrypto& crypto) {
        return !answer.cryptos.isEmpty() && crypto.nTag == answer.cryptos.first().nTag &&
               crypto.eSuite == answer.cryptos.first().eSuite;
    });
    if (own == of.end())
        return false;
    stream.eSuite = own->eSuite;
    stream.sendKey = own->key;
    stream.takeKey = answer.cryptos.first().key;
    stream.takeMark = answer.cryptos.first().mark;
    return true;
}

callNegotiation::Cryptos callNegotiation::keysFor(const tagDescribedMedia& offered, Cryptos& of,
                                                  tagAgreedStream& stream)
{
    if (!offered.bSecure)
        return {};
    tagCrypto own = ownCrypto(offered.cryptos.first().eSuite, of);
    own.nTag = offered.cryptos.first().nTag;
    stream.eSuite = own.eSuite;
    stream.sendKey = own.key;
    stream.takeKey = offered.cryptos.first().key;
    stream.takeMark = offered.cryptos.first().mark;
    return {own};
}

// A line for pictures: the one that was there before, or one behind all others.
void callNegotiation::placePicture()
{
    for (tagPlace& place : m_places) {
        if (place.eIs == PLACE::PICTURE)
            return;
    }
    for (tagPlace& place : m_places) {
        if (qstricmp(place.kind, "video") == 0 && place.transport.toUpper().startsWith("RTP/")) {
            place.eIs = PLACE::PICTURE;
            return;
        }
    }
    m_places.append(tagPlace{"video", "RTP/AVP", "96", PLACE::PICTURE});
}

callNegotiation::Cryptos callNegotiation::offerTransport(tagPlace& place, bool secure, Cryptos& of)
{
    const bool hasProfile = place.transport.toUpper().endsWith('F');
    place.transport = secure ? "RTP/SAVP" : "RTP/AVP";
    place.transport += hasProfile ? "F" : "";
    Cryptos cryptos;
    for (const CRYPTO_SUITE suite : kSuites) {
        if (secure)
            cryptos.append(ownCrypto(suite, of));
    }
    return cryptos;
}

QByteArray callNegotiation::soundOffer(tagPlace& place, bool secure)
{
    const Cryptos cryptos = offerTransport(place, secure, m_cryptos);
    tagAgreedSound sound;
    sound.take = m_offered;
    return soundLine(place.transport, sound, cryptos, direction(true, !m_wanted.bHeld), true);
}

QByteArray callNegotiation::pictureOffer(tagPlace& place, bool secure)
{
    const Cryptos cryptos = offerTransport(place, secure, m_pictureCryptos);
    place.format = number(m_offeredPictures.first().nPayload);
    return pictureLine(place.transport, m_offeredPictures, cryptos,
                       direction(m_wanted.bCamera, !m_wanted.bHeld), true);
}

QByteArray callNegotiation::offer(const tagMediaWant& want)
{
    m_wanted = allowed(want);
    m_bOffered = true;
    m_offered.clear();
    m_offeredPictures.clear();
    for (const tagSoundCodec& codec : kSoundCodecs)
        m_offered.append({codec.eCodec, numberFor(codec.eCodec), codec.nClock});
    m_offered.append({SOUND_CODEC::NONE, numberForTones(), 8000});
    const bool isSecure = mustSealSound(want);
    renewKeys();
    if (m_places.isEmpty())
        m_places.append(tagPlace{"audio", "RTP/AVP", "0", PLACE::SOUND});
    if (want.bVideo && m_own.nPicturePort != 0) {
        for (tagPictureFormat& format : pictureFormat::known()) {
            format.nPayload = numberFor(format);
            m_offeredPictures.append(format);
        }
        placePicture();
    }
    QByteArray text = head();
    for (tagPlace& place : m_places) {
        if (place.eIs == PLACE::SOUND)
            text += soundOffer(place, isSecure);
        else if (place.eIs == PLACE::PICTURE && !m_offeredPictures.isEmpty())
            text += pictureOffer(place, isSecure || mustSealPicture(want));
        else
            text += refused(place);
    }
    return text;
}

tagAgreedPicture callNegotiation::agreedPicture() const
{
    tagAgreedPicture picture = m_picture;
    picture.bHeldByPeer = m_agreed.bHeldByPeer;
    return picture;
}

CALL_FIT callNegotiation::reachOf(const tagDescribedMedia& media, bool encrypt) const
{
    if (media.nPort == 0)
        return CALL_NO_SOUND;
    if (!media.bRtp || (media.bSecure ? media.cryptos.isEmpty() : encrypt))
        return CALL_NO_TRANSPORT;
    if (!isNowhere(media.address) && !mayHearUs(media.address, media.nPort, m_own.bLoopback))
        return CALL_NO_ADDRESS;
    return CALL_FITS;
}

bool callNegotiation::choose(const tagDescribedMedia& media, bool encrypt, tagChoice& choice) const
{
    if (!media.bSound || !canReach(media, encrypt))
        return false;
    for (const tagSoundCodec& known : kSoundCodecs) {
        for (const tagDescribedCodec& codec : media.codecs) {
            if (codec.eCodec != known.eCodec)
                continue;
            choice.pMedia = &media;
            choice.codec = {codec.eCodec, codec.nPayload, known.nClock};
            return true;
        }
    }
    return false;
}

bool callNegotiation::choose(const tagDescribedMedia& media, const tagMediaWant& want,
                             tagPictureChoice& choice) const
{
    if (!want.bVideo || m_own.nPicturePort == 0 || !media.bPicture || !canReach(media, mustSealPicture(want)))
        return false;
    for (const tagPictureFormat& known : pictureFormat::known()) {
        for (const tagDescribedCodec& codec : media.codecs) {
            if (!pictureFormat::isSame(known, codec.picture) || !pictureFormat::isSpoken(codec.picture))
                continue;
            choice.pMedia = &media;
            choice.format = codec.picture;
            return true;
        }
    }
    return false;
}

void callNegotiation::setStream(const tagDescribedMedia& media, bool held, tagAgreedStream& stream) const
{
    stream.own = m_own.address;
    stream.peer = media.address;
    stream.nPort = media.nPort;
    stream.nRtcpPort = media.bRtcpMux ? media.nPort : media.nRtcpPort;
    if (!mayHearUs(stream.peer, stream.nRtcpPort, m_own.bLoopback))
        stream.nRtcpPort = 0;
    const bool isAway = isNowhere(media.address);
    stream.bSends = media.bReceives && !isAway && !held;
    stream.bReceives = media.bSends && !isAway && !held;
}

void callNegotiation::setPeer(const tagDescribedMedia& media, bool held, tagAgreedSound& sound) const
{
    setStream(media, held, sound);
    sound.bSound = true;
    sound.bHeldByPeer = isNowhere(media.address) || !media.bReceives;
    sound.nPtime = callDescription::ptimeFor(media, sound.send.eCodec);
    const tagDescribedCodec* tones = tonesOf(media, sound.send.nClock);
    sound.nSendTones = tones ? tones->nPayload : -1;
    sound.nTonesClock = tones ? tones->nClock : 8000;
    sound.nTones = tones ? tones->nTones : 0xffff;
}

// The line of the sound is still there, and has no port any more. Who offers something else in its place that
// is not spoken here, as a fax, has nothing in common with us, and the sound goes on.
bool callNegotiation::stops(const QList<tagDescribedMedia>& offered) const
{
    const bool isOther = std::any_of(offered.begin(), offered.end(), [](const tagDescribedMedia& line) {
        return line.nPort != 0 && !line.bSound && !line.bPicture;
    });
    if (isOther)
        return false;
    for (qsizetype i = 0; i < std::min(offered.size(), m_places.size()); ++i) {
        if (m_places[i].eIs == PLACE::SOUND)
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
    sound.takeMark = m_agreed.takeMark;
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
                                 i < before.size() ? before[i].eIs : PLACE::OTHER});
        text += refused(m_places.last());
    }
    m_agreed = stopped();
    m_picture = tagAgreedPicture();
    return text;
}

void callNegotiation::setBounds(const tagDescribedMedia& media, const tagMediaWant& want,
                                tagAgreedPicture& picture) const
{
    picture.bPicture = true;
    picture.bSends = picture.bSends && want.bCamera;
    tagPictureBounds wanted;
    wanted.nRate = std::clamp(want.nRate, 1, 30);
    picture.bounds = pictureFormat::boundsOf(picture.send, wanted);
    picture.nKbit = want.nKbit;
    if (media.nKbit > 0)
        picture.nKbit = want.nKbit > 0 ? std::min(want.nKbit, media.nKbit) : media.nKbit;
    picture.bPli = media.bPli;
    picture.bFir = media.bFir;
}

QByteArray callNegotiation::pictureAnswer(const tagPictureChoice& choice, const tagMediaWant& want)
{
    const tagDescribedMedia& line = *choice.pMedia;
    tagAgreedPicture picture;
    setStream(line, want.bHeld, picture);
    picture.send = choice.format;
    tagPictureFormat ours = choice.format;
    ours.nLevel = ours.bAsymmetric ? int(pictureFormat::OWN_LEVEL)
                                   : std::min<int>(ours.nLevel, pictureFormat::OWN_LEVEL);
    picture.take = {ours};
    setBounds(line, want, picture);
    const Cryptos cryptos = keysFor(line, m_pictureCryptos, picture);
    const bool sends = want.bCamera && line.bReceives && !isNowhere(line.address);
    const bool receives = line.bSends && !want.bHeld;
    m_picture = picture;
    return pictureLine(line.transport, picture.take, cryptos, direction(sends, receives), line.bRtcpMux);
}

QByteArray callNegotiation::soundAnswer(const tagChoice& choice, const tagMediaWant& want)
{
    const tagDescribedMedia& line = *choice.pMedia;
    tagAgreedSound sound;
    sound.send = choice.codec;
    setPeer(line, want.bHeld, sound);
    sound.take = {choice.codec};
    if (sound.nSendTones >= 0)
        sound.take.append({SOUND_CODEC::NONE, sound.nSendTones, sound.nTonesClock});
    const Cryptos cryptos = keysFor(line, m_cryptos, sound);
    const bool sends = line.bReceives && !isNowhere(line.address);
    const bool receives = line.bSends && !want.bHeld;
    m_agreed = sound;
    return soundLine(line.transport, sound, cryptos, direction(sends, receives), line.bRtcpMux);
}

// Of two lines of sound the encrypted one.
callNegotiation::tagChoice callNegotiation::chooseSound(const QList<tagDescribedMedia>& media,
                                                        const tagMediaWant& want) const
{
    tagChoice choice;
    for (const bool isSecure : {true, false}) {
        for (const tagDescribedMedia& line : media) {
            if (line.bSecure == isSecure && choose(line, mustSealSound(want), choice))
                return choice;
        }
    }
    return choice;
}

callNegotiation::tagPictureChoice callNegotiation::choosePicture(const QList<tagDescribedMedia>& media,
                                                                 const tagMediaWant& want) const
{
    tagPictureChoice choice;
    for (const tagDescribedMedia& line : media) {
        if (choose(line, want, choice))
            break;
    }
    return choice;
}

CALL_FIT callNegotiation::judge(const QByteArray& offer, const tagMediaWant& want) const
{
    QList<tagDescribedMedia> media;
    if (!callDescription::read(offer, media))
        return CALL_NO_DESCRIPTION;
    if (chooseSound(media, want).pMedia)
        return CALL_FITS;
    CALL_FIT fit = CALL_NO_SOUND;
    for (const tagDescribedMedia& line : media) {
        const CALL_FIT reach = line.bSound ? reachOf(line, mustSealSound(want)) : CALL_NO_SOUND;
        fit = std::max(fit, reach == CALL_FITS ? CALL_NO_FORMAT : reach);
    }
    return fit;
}

QByteArray callNegotiation::answer(const QByteArray& offer, const tagMediaWant& asked)
{
    const tagMediaWant want = allowed(asked);
    QList<tagDescribedMedia> media;
    if (!callDescription::read(offer, media))
        return {};
    const tagChoice sound = chooseSound(media, want);
    const tagPictureChoice picture = choosePicture(media, want);
    if (!sound.pMedia)
        return stops(media) ? answerOfStop(media) : QByteArray();
    m_bOffered = false;
    m_wanted = want;
    renewKeys();
    learnNumbers(media);
    QByteArray text = head();
    m_places.clear();
    m_picture = tagAgreedPicture();
    for (const tagDescribedMedia& line : media) {
        tagPlace place = {line.kind, line.transport, line.format, PLACE::OTHER};
        if (&line == sound.pMedia) {
            place.eIs = PLACE::SOUND;
            text += soundAnswer(sound, want);
        } else if (&line == picture.pMedia) {
            place.eIs = PLACE::PICTURE;
            text += pictureAnswer(picture, want);
        } else {
            text += refused(place);
        }
        m_places.append(place);
    }
    setAgreed(m_agreed, m_picture);
    return text;
}

// Who gives other numbers than were offered wants to be sent those, and sends them himself all the same.
void callNegotiation::takeByTheirNumbers(const tagDescribedMedia& answer, tagAgreedSound& sound)
{
    for (const tagDescribedCodec& codec : answer.codecs) {
        const auto isIt = [&](const tagAgreedCodec& taken) { return taken.nPayload == codec.nPayload; };
        const bool isKnown = codec.bTones || codec.eCodec != SOUND_CODEC::NONE;
        if (isKnown && std::none_of(sound.take.begin(), sound.take.end(), isIt))
            sound.take.append({codec.eCodec, codec.nPayload, codec.nClock});
    }
}

// Of the codecs that were offered, the first one that the other side names is what it wants.
bool callNegotiation::fits(const tagDescribedMedia& answer, tagAgreedSound& sound) const
{
    for (const tagDescribedCodec& codec : answer.codecs) {
        if (codec.eCodec == SOUND_CODEC::NONE)
            continue;
        sound.send = {codec.eCodec, codec.nPayload, soundCodec(codec.eCodec)->nClock};
        sound.take = m_offered;
        takeByTheirNumbers(answer, sound);
        return true;
    }
    return false;
}

// One that does not fit is no picture; the call goes on without.
bool callNegotiation::fits(const tagDescribedMedia& answer, const tagPlace& place,
                           tagAgreedPicture& picture) const
{
    if (!answer.bPicture || answer.nPort == 0 || m_offeredPictures.isEmpty() ||
        answer.bSecure != callDescription::isSealed(place.transport) || !canReach(answer, m_wanted.bEncrypt))
        return false;
    for (const tagDescribedCodec& codec : answer.codecs) {
        const bool isOffered = std::any_of(
            m_offeredPictures.begin(), m_offeredPictures.end(),
            [&](const tagPictureFormat& format) { return pictureFormat::isSame(format, codec.picture); });
        if (!isOffered || !pictureFormat::isSpoken(codec.picture))
            continue;
        setStream(answer, m_wanted.bHeld, picture);
        picture.send = codec.picture;
        picture.take = m_offeredPictures;
        setBounds(answer, m_wanted, picture);
        return setKeys(answer, m_pictureCryptos, picture);
    }
    return false;
}

// Lines that are missing at the end are refused.
bool callNegotiation::agree(const QByteArray& answer)
{
    QList<tagDescribedMedia> media;
    if (!m_bOffered || !callDescription::read(answer, media) || media.size() > m_places.size())
        return false;
    tagAgreedSound sound;
    tagAgreedPicture picture;
    bool hasSound = false;
    for (qsizetype i = 0; i < media.size(); ++i) {
        const tagDescribedMedia& line = media[i];
        if (m_places[i].eIs == PLACE::PICTURE && !fits(line, m_places[i], picture))
            picture = tagAgreedPicture();
        if (m_places[i].eIs != PLACE::SOUND)
            continue;
        hasSound = true;
        // Who refuses the only sound of a call that begins has nothing in common with us.
        if (line.nPort == 0 && !m_agreed.bSound && !m_agreed.bHeldByPeer)
            return false;
        if (line.nPort == 0) {
            sound = stopped();
            continue;
        }
        if (!line.bSound || !line.bRtp || line.bSecure != callDescription::isSealed(m_places[i].transport) ||
            !fits(line, sound) ||
            !(isNowhere(line.address) || mayHearUs(line.address, line.nPort, m_own.bLoopback)))
            return false;
        setPeer(line, m_wanted.bHeld, sound);
        if (!setKeys(line, m_cryptos, sound))
            return false;
    }
    if (!hasSound)
        return false;
    setAgreed(sound, picture);
    return true;
}
