#pragma once
// What the two sides of a call agree upon, by offer and answer (RFC 3264): sound in one stream, and pictures
// in another where both want them. Whatever else is offered is refused and keeps its place. No socket and no
// stream is here. One thread.
#include "players/callDescription.h"
#include "support/host/player.h"
#include <functional>

struct tagAgreedCodec
{
    SOUND_CODEC eCodec = SOUND_CODEC::NONE; // NONE: tones
    int nPayload = 0;
    int nClock = 0;
};

// Where a stream goes, and which ways.
struct tagAgreedStream
{
    bool bSends = false; // this side
    bool bReceives = false;
    QByteArray own;  // this side's address, IPv4 with dots
    QByteArray peer; // the other side's
    int nPort = 0;
    int nRtcpPort = 0; // 0: none; that of the stream: both come on one
    CRYPTO_SUITE eSuite = CRYPTO_SUITE::NONE;
    QByteArray sendKey;
    QByteArray takeKey;
    QByteArray takeMark; // that its packets bear; empty: none
};

// How the sound goes.
struct tagAgreedSound : public tagAgreedStream
{
    bool bSound = false; // there is a stream; all that follows is of it
    tagAgreedCodec send;
    int nSendTones = -1; // payload number of RFC 4733; -1: the other side does not take them
    int nTonesClock = 8000;
    unsigned nTones = 0xffff;   // a bit of each that it takes
    QList<tagAgreedCodec> take; // what may come
    int nPtime = 20;            // ms of sound in a packet that goes out: 10, 20, 30, 40 or 60
    bool bHeldByPeer = false;
};

// How the pictures go.
struct tagAgreedPicture : public tagAgreedStream
{
    bool bPicture = false;        // there is a stream; all that follows is of it
    tagPictureFormat send;        // the format, as the other side takes it
    QList<tagPictureFormat> take; // what may come
    tagPictureBounds bounds;      // of what goes out
    int nKbit = 0;                // a second, at most; 0: nobody says
    bool bPli = false;            // the other side makes a new picture when asked to
    bool bFir = false;            // the same, asked in another way
    bool bHeldByPeer = false;     // the call, as its sound says
};

// Where a stream of this side is seen beyond the routers.
struct tagMappedPlace
{
    QByteArray address; // IPv4 with dots; empty: where this side itself says that it is
    int nPort = 0;
    QByteArray rtcpAddress; // the same of its reports
    int nRtcpPort = 0;
};

// Where this side is.
struct tagOwnMedia
{
    QByteArray address;     // IPv4 with dots
    int nPort = 0;          // of the sound; its RTCP is one above
    int nPicturePort = 0;   // the same of pictures; 0: there are none
    bool bLoopback = false; // the other side may be on this machine's loopback interface
    quint64 nSession = 0;   // of o=
};

struct tagMediaWant
{
    bool bHeld = false;    // by the user
    bool bEncrypt = false; // nothing but SRTP
    bool bVideo = false;
    bool bCamera = false;    // there are pictures to be sent; none that were not from the beginning
    int nKbit = 0;           // of pictures a second; 0: what the network bears
    int nRate = 30;          // pictures a second
    bool bCameraNow = false; // the user has just said so
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
    // Whether that answer could be made; nothing changes.
    CALL_FIT judge(const QByteArray& offer, const tagMediaWant& want) const;
    // The answer to the last offer; another one may follow an early one. False when it does not fit: all
    // stays as it was.
    bool agree(const QByteArray& answer);
    // The last offer was refused.
    void withdraw() { m_bOffered = false; }
    const tagAgreedSound& agreed() const { return m_agreed; }
    tagAgreedPicture agreedPicture() const;
    void setPicturePort(int port) { m_own.nPicturePort = port; }
    // Before the first description that names the stream.
    void setMapped(const tagMappedPlace& place) { m_mapped = place; }
    void setPictureMapped(const tagMappedPlace& place) { m_pictureMapped = place; }

    // Sound may be sent there: an address of one machine, that is no system's port. loopback: also to this
    // machine's loopback interface.
    static bool mayHearUs(const QByteArray& address, int port, bool loopback);

private:
    enum class PLACE { OTHER, SOUND, PICTURE };
    struct tagPlace // a line of media, in its place
    {
        QByteArray kind = "audio";
        QByteArray transport = "RTP/AVP";
        QByteArray format = "0";
        PLACE eIs = PLACE::OTHER;
    };
    struct tagChoice
    {
        const tagDescribedMedia* pMedia = nullptr;
        tagAgreedCodec codec;
    };
    struct tagPictureChoice
    {
        const tagDescribedMedia* pMedia = nullptr;
        tagPictureFormat format; // of the other side
    };
    using Cryptos = QList<tagCrypto>;

    QByteArray head();
    // Where the stream of one of this side's ports is to be sent.
    static tagMappedPlace placeOf(const QByteArray& address, int port, const tagMappedPlace& mapped);
    tagMappedPlace soundPlace() const { return placeOf(m_own.address, m_own.nPort, m_mapped); }
    tagMappedPlace picturePlace() const
    {
        return placeOf(m_own.address, m_own.nPicturePort, m_pictureMapped);
    }
    static QByteArray rtcpLine(const tagMappedPlace& place);
    QByteArray soundLine(const QByteArray& transport, const tagAgreedSound& sound, const Cryptos& cryptos,
                         const QByteArray& direction, bool mux) const;
    QByteArray pictureLine(const QByteArray& transport, const QList<tagPictureFormat>& formats,
                           const Cryptos& cryptos, const QByteArray& direction, bool mux) const;
    QByteArray refused(const tagPlace& place) const;
    bool stops(const QList<tagDescribedMedia>& offered) const;
    tagAgreedSound stopped() const;
    QByteArray answerOfStop(const QList<tagDescribedMedia>& offered);
    // With these keys of ours.
    Cryptos offerTransport(tagPlace& place, bool secure, Cryptos& of);
    QByteArray soundOffer(tagPlace& place, bool secure);
    QByteArray pictureOffer(tagPlace& place, bool secure);
    QByteArray soundAnswer(const tagChoice& choice, const tagMediaWant& want);
    QByteArray pictureAnswer(const tagPictureChoice& choice, const tagMediaWant& want);
    void placePicture();
    void learnNumbers(const QList<tagDescribedMedia>& media);
    int numberFor(SOUND_CODEC codec);
    int numberFor(const tagPictureFormat& format);
    int numberForTones();
    int freeNumber();
    CALL_FIT reachOf(const tagDescribedMedia& media, bool encrypt) const;
    bool canReach(const tagDescribedMedia& media, bool encrypt) const
    {
        return reachOf(media, encrypt) == CALL_FITS;
    }
    // A choice without a line: there is nothing in common.
    tagChoice chooseSound(const QList<tagDescribedMedia>& media, const tagMediaWant& want) const;
    tagPictureChoice choosePicture(const QList<tagDescribedMedia>& media, const tagMediaWant& want) const;
    bool choose(const tagDescribedMedia& media, bool encrypt, tagChoice& choice) const;
    bool choose(const tagDescribedMedia& media, const tagMediaWant& want, tagPictureChoice& choice) const;
    static void takeByTheirNumbers(const tagDescribedMedia& answer, tagAgreedSound& sound);
    bool fits(const tagDescribedMedia& answer, tagAgreedSound& sound) const;
    bool fits(const tagDescribedMedia& answer, const tagPlace& place, tagAgreedPicture& picture) const;
    void setStream(const tagDescribedMedia& media, bool held, tagAgreedStream& stream) const;
    void setPeer(const tagDescribedMedia& media, bool held, tagAgreedSound& sound) const;
    void setBounds(const tagDescribedMedia& media, const tagMediaWant& want, tagAgreedPicture& picture) const;
    const tagCrypto& ownCrypto(CRYPTO_SUITE suite, Cryptos& of);
    void renewKeys();
    tagMediaWant allowed(const tagMediaWant& want) const;
    void setAgreed(const tagAgreedSound& sound, const tagAgreedPicture& picture);
    bool mustSealSound(const tagMediaWant& want) const;
    bool mustSealPicture(const tagMediaWant& want) const;
    // Of an answer: the keys of both sides; false when it took none of ours.
    bool setKeys(const tagDescribedMedia& answer, const Cryptos& of, tagAgreedStream& stream) const;
    // For an answer, the same.
    Cryptos keysFor(const tagDescribedMedia& offered, Cryptos& of, tagAgreedStream& stream);

    tagOwnMedia m_own;
    tagMappedPlace m_mapped; // of the sound
    tagMappedPlace m_pictureMapped;
    callCrypto::KeySource m_keys;
    quint64 m_nVersion = 0;
    QList<tagPlace> m_places;                 // of the present description
    Cryptos m_cryptos;                        // our keys: one of each suite, for one description or longer
    Cryptos m_pictureCryptos;                 // the same of pictures
    QList<int> m_taken;                       // payload numbers that mean something
    QList<tagPictureFormat> m_pictureNumbers; // those of pictures
    int m_nOpus = -1;                         // not given yet
    int m_nTones = -1;
    bool m_bOffered = false;
    bool m_bBegun = false;           // something was agreed
    bool m_bShown = false;           // so were pictures, with the camera
    tagMediaWant m_wanted;           // with the last offer
    QList<tagAgreedCodec> m_offered; // with it
    QList<tagPictureFormat> m_offeredPictures;
    tagAgreedSound m_agreed;
    tagAgreedPicture m_picture;
};
