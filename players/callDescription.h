#pragma once
// A description of a call's media (SDP, RFC 4566), taken apart: what this side looks at, and of every line of
// media as much as an answer has to repeat. Nothing here is decided. Any thread.
#include "players/callCrypto.h"
#include "players/pictureFormat.h"
#include "players/soundCodec.h"
#include <QList>

struct tagDescribedCodec
{
    SOUND_CODEC eCodec = SOUND_CODEC::NONE; // NONE: tones, or one that is not known here
    bool bTones = false;                    // RFC 4733
    unsigned nTones = 0xffff;               // of them, those that are taken: a bit of each event
    int nPayload = 0;                       // 0 to 127
    int nClock = 0;
    tagPictureFormat picture; // of pictures; its codec NONE: one that is not known here
};

struct tagDescribedMedia
{
    QByteArray kind;      // "audio"
    QByteArray transport; // "RTP/AVP"
    QByteArray format;    // the first one, as it is written
    bool bSound = false;
    bool bPicture = false;
    bool bRtp = false;    // over a transport that is spoken here
    bool bSecure = false; // RTP/SAVP
    QByteArray address;   // IPv4 with dots; empty: another kind of address
    int nPort = 0;        // 0: refused, or no port at all
    int nRtcpPort = 0;
    bool bRtcpMux = false;
    bool bSends = true; // the side that wrote this
    bool bReceives = true;
    int nPtime = 0;    // ms of sound in a packet, as it wants them; 0: it does not say
    int nMaxPtime = 0; // 0: any
    int nKbit = 0;     // a second, that it wants at most; 0: any
    bool bPli = false; // it makes a new picture when asked to (RFC 4585)
    bool bFir = false; // the same, asked in another way (RFC 5104)
    QList<tagDescribedCodec> codecs;
    QList<tagCrypto> cryptos;
};

namespace callDescription {

enum : int { MAX_BYTES = 16384, MAX_MEDIA = 16, MAX_CODECS = 32, MAX_CRYPTOS = 8 };

// False when it is no description, or larger than one may be.
bool read(const QByteArray& text, QList<tagDescribedMedia>& media);

// Whether what goes over it is encrypted.
bool isSealed(const QByteArray& transport);

// The longest packet, in ms of sound, that does not ask for more than the other side bears.
int ptimeFor(const tagDescribedMedia& media, SOUND_CODEC codec);

} // namespace callDescription
