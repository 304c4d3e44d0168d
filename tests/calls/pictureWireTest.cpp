// What goes over the wire of a call's pictures: key pictures, how many bits, and what is asked for.
#include "tests/calls/pictureStand.h"
#include "tests/players/wirePort.h"
#include <QElapsedTimer>
#include <QtEndian>
#include <tuple>

namespace {

constexpr int kPayload = 97;
constexpr int kFeedback = 206;

class PictureWire : public PictureStand
{
protected:
    // H.264 with the other side, which takes reports on the port of its pictures.
    tagAgreedPicture both() const
    {
        tagAgreedPicture agreed;
        agreed.bPicture = true;
        agreed.send = pictureFormat::known().first();
        agreed.send.nPayload = kPayload;
        agreed.take = {agreed.send};
        agreed.peer = "127.0.0.1";
        agreed.nPort = agreed.nRtcpPort = m_peer.port();
        return agreed;
    }
    void send(const tagPictureBounds& bounds, int kbit)
    {
        tagAgreedPicture agreed = both();
        agreed.bSends = true;
        agreed.bounds = bounds;
        agreed.nKbit = kbit;
        m_one.session->agree(agreed);
    }
    struct tagPicture
    {
        int nBytes = 0;
        bool bKey = false;
    };
    // The next whole one; the source of its packets is noted.
    tagPicture next()
    {
        tagPicture picture;
        bool isLast = false;
        while (!isLast) {
            const QByteArray packet = m_peer.next();
            const auto* bytes = reinterpret_cast<const unsigned char*>(packet.constData());
            if (rtpPacket::isRtcp(bytes, int(packet.size())))
                continue;
            tagRtpHead head;
            int start = 0, length = 0;
            if (!rtpPacket::read(bytes, int(packet.size()), head, start, length) || length < 2) {
                ADD_FAILURE() << "no picture comes";
                return picture;
            }
            isLast = head.bMarker;
            m_nSource = head.nSource;
            picture.nBytes += length;
            const int unit = bytes[start] & 0x1f;
            picture.bKey = picture.bKey || unit == 5 || (unit == 28 && (bytes[start + 1] & 0x1f) == 5);
        }
        return picture;
    }
    // A second, of so many pictures.
    int kbitOf(int pictures, int rate)
    {
        int bytes = 0;
        for (int i = 0; i < pictures; ++i)
            bytes += next().nBytes;
        return bytes * 8 / 1000 * rate / pictures;
    }
    // Of what this side sends so much is lost, in parts of 256.
    void tellLoss(int lost)
    {
        const quint32 source = qToBigEndian(m_nSource);
        QByteArray report("\x81\xc9\0\x07her1", 8);
        report.append(reinterpret_cast<const char*>(&source), 4);
        report += QByteArray(1, char(lost)) + QByteArray(19, '\0');
        m_peer.say(m_one.session->port(), report);
    }
    // In the oldest way.
    void wantPicture() { m_peer.say(m_one.session->port(), QByteArray("\x80\xc0\0\1none", 8)); }

    const WirePort m_peer;
    quint32 m_nSource = 0;
};

TEST_F(PictureWire, AKeyPictureComesWhenItIsAskedForAndHardlyOtherwise)
{
    const tagPictureBounds bounds = {176, 144, 30};
    send(bounds, 300);
    EXPECT_TRUE(next().bKey);
    for (int i = 0; i < 40; ++i)
        EXPECT_FALSE(next().bKey) << i;
    wantPicture();
    int waited = 0;
    while (!next().bKey && waited < bounds.nRate * pictureEncoder::KEY_SECONDS / 2)
        ++waited;
    EXPECT_LT(waited, bounds.nRate * pictureEncoder::KEY_SECONDS / 2);
}

TEST_F(PictureWire, WhoAsksWithoutEndGetsNotEveryPictureWhole)
{
    send({176, 144, 15}, 300);
    next();
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i) {
        wantPicture();
        pass(10);
    }
    EXPECT_TRUE(waitFor([&] { return m_one.session->counts().nKeyed > 0; }));
    EXPECT_LE(m_one.session->counts().nKeyed, 2 + timer.elapsed() / 300);
}

TEST_F(PictureWire, AsManyBitsGoOutAsWereAgreedAndFewerWhenTheyAreLost)
{
    // Noise, but not in each pixel: nothing would make that small.
    qputenv("HX_PICTURE_SOURCE", "videotestsrc is-live=true pattern=snow ! capsfilter "
                                 "caps=video/x-raw,width=22,height=18 ! videoscale");
    constexpr int kRate = 30, kKbit = 600;
    send({176, 144, kRate}, kKbit);
    kbitOf(20, kRate); // it finds its way
    const int before = kbitOf(30, kRate);
    EXPECT_GT(before, kKbit / 3);
    EXPECT_LT(before, kKbit * 2);
    int kbit = kKbit;
    for (int report = 0; report < 6; ++report) {
        tellLoss(128);
        EXPECT_TRUE(waitFor([&] { return m_one.session->counts().nKbit < kbit; }));
        kbit = m_one.session->counts().nKbit;
    }
    EXPECT_LT(kbit, kKbit / 4);
    kbitOf(20, kRate);
    EXPECT_LT(kbitOf(30, kRate), before * 2 / 3);
}

TEST_F(PictureWire, ANewPictureIsAskedForInTheWayThatTheOtherSideKnows)
{
    for (const auto& [pli, fir, kind] :
         {std::tuple(true, false, 1), std::tuple(false, true, 4), std::tuple(true, true, 1)}) {
        PictureSide side;
        tagAgreedPicture agreed = both();
        agreed.bReceives = true;
        agreed.bPli = pli;
        agreed.bFir = fir;
        side.session->agree(agreed);
        unsigned char head[rtpPacket::HEAD_BYTES];
        rtpPacket::write({kPayload, true, 1, 90000, 4711}, head);
        m_peer.say(side.session->port(), QByteArray(reinterpret_cast<char*>(head), sizeof head) + "\x61\xe0");
        int asked = -1;
        for (int report = 0; asked < 0 && report < 5; ++report) {
            const QByteArray packet = m_peer.next();
            for (qsizetype at = 0; at + 4 <= packet.size();
                 at += 4 * (qFromBigEndian<quint16>(packet.constData() + at + 2) + 1)) {
                if (quint8(packet[at + 1]) == kFeedback)
                    asked = packet[at] & 0x1f;
            }
        }
        EXPECT_EQ(asked, kind) << pli << fir;
    }
}

} // namespace
