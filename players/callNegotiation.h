#pragma once
// What the two sides of a call agree upon, by offer and answer (RFC 3264): sound in one stream. Pictures and
// whatever else is offered are refused and keep their places. No socket and no stream is here. One thread.
#include "players/callDescription.h"
#include <functional>

struct tagAgreedCodec
{
    SOUND_CODEC eCodec = SOUND_CODEC::NONE; // NONE: tones
    int nPayload = 0;
    int nClock = 0;
};

// How the sound goes.
struct tagAgreedSound
{
    bool bSound = false; // there is a stream; all that follows is of it
    tagAgreedCodec send;
    int nSendTones = -1; // payload number of RFC 4733; -1: the other side does not take them
    int nTonesClock = 8000;
    QList<tagAgreedCodec> take; // what may come
    int nPtime = 20;            // ms of sound in a packet that goes out: 10, 20, 30, 40 or 60
    bool bSends = false;        // this side
    bool bReceives = false;
    bool bHeldByPeer = false;
    QByteArray own;  // this side's address, IPv4 with dots
    QByteArray peer; // the other side's
    int nPort = 0;
    int nRtcpPort = 0; // 0: none; that of the sound: both come on one
    CRYPTO_SUITE eSuite = CRYPTO_SUITE::NONE;
    QByteArray sendKey;
    QByteArray takeKey;
};

// Where this side is.
struct tagOwnMedia
{
    QByteArray address;     // IPv4 with dots
    int nPort = 0;          // of the sound; its RTCP is one above
    bool bLoopback = false; // the other side may be on this machine's loopback interface
    quint64 nSession = 0;   // of o=
};

struct tagMediaWant
{
    bool bHeld = false;    // by the user
    bool bEncrypt = false; // nothing but SRTP
};

class callNegotiation
{
public:
    explicit callNegotiation(const tagOwnMedia& own, callCrypto::KeySource keys = callCrypto::randomBytes);

    // An offer, also of a call that talks: what was agreed stays until the answer.
    QByteArray offer(const tagMediaWant& want);
    // The answer to the other side's offer, which is agreed with it. Empty when there is nothing in common,
    // or the text is no offer: all stays as it was. An offer without a port stops the sound of a call that
    // has one, until the next agreement.
    QByteArray answer(const QByteArray& offer, const tagMediaWant& want);
    // The answer to the last offer; another one may follow an early one. False when it does not fit: all
    // stays as it was.
    bool agree(const QByteArray& answer);
    // The last offer was refused.
    void withdraw() { m_bOffered = false; }
    const tagAgreedSound& agreed() const { return m_agreed; }

    // Sound may be sent there: an address of one machine, that is no system's port. loopback: also to this
    // machine's loopback interface.
    static bool mayHearUs(const QByteArray& address, int port, bool loopback);

private:
    struct tagPlace // a line of media, in its place
    {
        QByteArray kind = "audio";
        QByteArray transport = "RTP/AVP";
        QByteArray format = "0";
        bool bOurs = false;
    };
    struct tagChoice
    {
        const tagDescribedMedia* pMedia = nullptr;
        tagAgreedCodec codec;
        tagCrypto crypto; // of the other side
    };

    QByteArray head();
    QByteArray attributes(const tagAgreedSound& sound, const QList<tagCrypto>& cryptos, bool sends,
                          bool receives, bool mux) const;
    QByteArray refused(const tagPlace& place) const;
    bool stops(const QList<tagDescribedMedia>& offered) const;
    tagAgreedSound stopped() const;
    QByteArray answerOfStop(const QList<tagDescribedMedia>& offered);
    void learnNumbers(const QList<tagDescribedMedia>& media);
    int numberFor(SOUND_CODEC codec);
    int numberForTones();
    int freeNumber();
    bool choose(const tagDescribedMedia& media, bool encrypt, tagChoice& choice) const;
    bool fits(const tagDescribedMedia& answer, tagAgreedSound& sound) const;
    void setPeer(const tagDescribedMedia& media, bool held, tagAgreedSound& sound) const;
    const tagCrypto& ownCrypto(CRYPTO_SUITE suite);

    tagOwnMedia m_own;
    callCrypto::KeySource m_keys;
    quint64 m_nVersion = 0;
    QList<tagPlace> m_places;   // of the present description
    QList<tagCrypto> m_cryptos; // our keys: one of each suite, for the whole call
    QList<int> m_taken;         // payload numbers that mean something
    int m_nOpus = -1;           // not given yet
    int m_nTones = -1;
    bool m_bOffered = false;
    tagMediaWant m_wanted;           // with the last offer
    QList<tagAgreedCodec> m_offered; // with it
    tagAgreedSound m_agreed;
};
