// Descriptions of calls' media that come from the network. The first byte says whether one is an offer or an
// answer, and what this side wants; what is agreed must keep the limits that the streams rely on, and what is
// written must be a description.
#include "fuzz/fuzzRoot.h"
#include "players/callNegotiation.h"
#include <cstdint>

namespace {

void expectPicture(const tagAgreedPicture& picture, const tagMediaWant& want)
{
    if (!picture.bPicture)
        return;
    expect(want.bVideo && (want.bCamera || !picture.bSends) && !(want.bHeld && picture.bReceives));
    expect(picture.peer == "0.0.0.0" ? !picture.bSends
                                     : callNegotiation::mayHearUs(picture.peer, picture.nPort, false));
    expect(picture.nRtcpPort == 0 || callNegotiation::mayHearUs(picture.peer, picture.nRtcpPort, false));
    expect(pictureFormat::isSpoken(picture.send) && picture.send.nPayload >= 0 &&
           picture.send.nPayload <= 127);
    expect(!picture.take.isEmpty() && picture.nKbit >= 0);
    expect(picture.bounds.nWidth >= 176 && picture.bounds.nWidth <= 640 && picture.bounds.nRate >= 1 &&
           picture.bounds.nRate <= 30);
    const bool isSecure = picture.eSuite != CRYPTO_SUITE::NONE;
    expect(isSecure || !want.bEncrypt);
    expect(picture.sendKey.size() == (isSecure ? int(callCrypto::KEY_BYTES) : 0));
    expect(picture.takeKey.size() == picture.sendKey.size());
}

void expectAgreed(const tagAgreedSound& sound)
{
    if (!sound.bSound)
        return;
    const bool isAway = sound.peer == "0.0.0.0";
    expect(isAway ? !sound.bSends : callNegotiation::mayHearUs(sound.peer, sound.nPort, false));
    expect(sound.nRtcpPort == 0 || callNegotiation::mayHearUs(sound.peer, sound.nRtcpPort, false));
    expect(soundCodec(sound.send.eCodec) && sound.send.nPayload >= 0 && sound.send.nPayload <= 127);
    expect(sound.nSendTones >= -1 && sound.nSendTones <= 127);
    expect(sound.nTones <= 0xffff);
    expect(sound.nTonesClock >= 8000 && sound.nTonesClock <= 48000);
    expect(sound.nPtime >= 10 && sound.nPtime <= 60);
    const bool isSecure = sound.eSuite != CRYPTO_SUITE::NONE;
    expect(sound.sendKey.size() == (isSecure ? int(callCrypto::KEY_BYTES) : 0));
    expect(sound.takeKey.size() == sound.sendKey.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    tagOwnMedia own;
    own.address = "192.0.2.1";
    own.nPort = 36000;
    own.nPicturePort = 36002;
    callNegotiation ours(own, [](int bytes) { return QByteArray(bytes, 'k'); });
    tagMediaWant want = {(data[0] & 1) != 0, (data[0] & 2) != 0};
    want.bVideo = (data[0] & 8) != 0;
    want.bCamera = (data[0] & 16) != 0;
    const QByteArray text(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    QList<tagDescribedMedia> media;
    if ((data[0] & 4) != 0) {
        ours.offer(want);
        ours.agree(text);
    } else {
        const QByteArray answer = ours.answer(text, want);
        expect(answer.isEmpty() != ours.agreed().bSound);
        // What repeats the names of the other side may be longer than what it sent.
        if (!answer.isEmpty() && answer.size() < callDescription::MAX_BYTES)
            expect(callDescription::read(answer, media));
    }
    expectAgreed(ours.agreed());
    expectPicture(ours.agreedPicture(), want);
    const QByteArray next = ours.offer({});
    if (next.size() < callDescription::MAX_BYTES)
        expect(callDescription::read(next, media));
    return 0;
}
