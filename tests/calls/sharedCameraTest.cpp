// One camera for two calls of a phone, as in a conference: each has its pictures in its own way, and what
// becomes of one is nothing to the other.
#include "players/pictureEncoder.h"
#include "tests/calls/pictureStand.h"
#include <QDir>
#include <QFileInfo>

namespace {

class SharedCamera : public PictureStand
{
protected:
    ~SharedCamera() override { m_first.seen.bStuck = m_second.seen.bStuck = false; }
    void connectBoth(const tagMediaWant& first = video(), const char* codec = "")
    {
        connect(m_first, m_other, first, video(false), codec);
        connect(m_second, m_third, video(), video(false));
    }
    bool bothSee(int number = 165)
    {
        return waitFor(
            [&] {
                m_first.session->watchCamera();
                m_second.session->watchCamera();
                return m_other.seen.nNumber == number && m_third.seen.nNumber == number;
            },
            20000);
    }
    static bool goesOn(const PictureSide& side, int ms = 8000)
    {
        const int before = side.seen.nOther;
        return waitFor([&] { return side.seen.nOther > before + 10; }, ms);
    }
    // How often the camera is open: its picture's file is, as long.
    int captures() const
    {
        int count = 0;
        for (const QFileInfo& handle : QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System))
            count += handle.symLinkTarget() == m_folder.filePath("165.png") ? 1 : 0;
        return count;
    }

    pictureCamera m_camera;
    PictureSide m_first{m_camera};
    PictureSide m_second{m_camera};
    PictureSide m_third; // of the second one; the other is of the first
};

TEST_F(SharedCamera, ItIsOpenOnceWhileAnybodyWantsIt)
{
    EXPECT_EQ(captures(), 0);
    connectBoth();
    EXPECT_TRUE(bothSee());
    EXPECT_TRUE(goesOn(m_other) && goesOn(m_third));
    EXPECT_EQ(captures(), 1);
    m_first.session->setCamera(false);
    EXPECT_EQ(captures(), 1);
    EXPECT_TRUE(goesOn(m_third));
    EXPECT_TRUE(sees(m_other, -1));
    m_second.session->setCamera(false);
    EXPECT_EQ(captures(), 0);
    m_first.session->setCamera(true);
    EXPECT_TRUE(sees(m_other));
    EXPECT_EQ(captures(), 1);
}

TEST_F(SharedCamera, EachCallHasItsOwnCodecAndRate)
{
    tagMediaWant slow = video();
    slow.nRate = 5;
    connectBoth(slow, "VP8");
    ASSERT_TRUE(bothSee());
    const int other = m_other.seen.nOther;
    const int third = m_third.seen.nOther;
    ASSERT_TRUE(waitFor([&] { return m_third.seen.nOther > third + 45; }, 20000));
    const int slower = m_other.seen.nOther - other;
    EXPECT_GT(slower, 5);
    EXPECT_LT(slower, 30) << "a third of the other one's";
    EXPECT_EQ(m_first.negotiation->agreedPicture().send.eCodec, PICTURE_CODEC::VP8);
    EXPECT_EQ(m_second.negotiation->agreedPicture().send.eCodec, PICTURE_CODEC::H264);
}

TEST_F(SharedCamera, ANewPictureIsMadeForWhoAsksAlone)
{
    connectBoth();
    ASSERT_TRUE(bothSee());
    pass(1000); // what was asked for at the start is done
    const int keyed = m_first.session->counts().nKeyed, others = m_second.session->counts().nKeyed;
    tagAgreedPicture agreed = m_other.negotiation->agreedPicture();
    agreed.bReceives = false;
    m_other.session->agree(agreed);
    ASSERT_TRUE(sees(m_other, -1));
    // The new decoder there wants one, long before it is due by itself.
    const int before = m_third.seen.nOther;
    agreed.bReceives = true;
    m_other.session->agree(agreed);
    EXPECT_TRUE(sees(m_other));
    EXPECT_LT(m_third.seen.nOther - before, video().nRate * pictureEncoder::KEY_SECONDS / 2);
    EXPECT_GT(m_first.session->counts().nKeyed, keyed);
    EXPECT_EQ(m_second.session->counts().nKeyed, others);
    EXPECT_TRUE(goesOn(m_third));
}

TEST_F(SharedCamera, AnEncoderThatDoesNotComeBackHoldsNobodyUp)
{
    connectBoth();
    ASSERT_TRUE(bothSee());
    m_first.seen.bStuck = true;
    ASSERT_TRUE(waitFor([&] {
        const int before = m_other.seen.nOther;
        pass(300);
        return m_other.seen.nOther == before;
    }));
    EXPECT_TRUE(goesOn(m_third) && goesOn(m_third) && goesOn(m_third));
    EXPECT_TRUE(m_second.session->sends());
    m_first.seen.bStuck = false;
    EXPECT_TRUE(goesOn(m_other)) << "with the newest picture";
}

TEST_F(SharedCamera, OneThatFailsComesBackForBoth)
{
    const QByteArray good = qgetenv("HX_PICTURE_SOURCE");
    qputenv("HX_PICTURE_SOURCE", good + " ! identity error-after=40");
    connectBoth();
    EXPECT_TRUE(bothSee());
    EXPECT_TRUE(bothSee(-1));
    EXPECT_EQ(captures(), 0);
    setSource(90);
    EXPECT_TRUE(bothSee(90));
    EXPECT_TRUE(goesOn(m_other) && goesOn(m_third));
}

TEST_F(SharedCamera, WhoWantsItAnewWhileItHasFailedOpensItForBoth)
{
    const QByteArray good = qgetenv("HX_PICTURE_SOURCE");
    qputenv("HX_PICTURE_SOURCE", good + " ! identity error-after=40");
    connectBoth();
    EXPECT_TRUE(bothSee());
    ASSERT_TRUE(waitFor([&] { return !m_camera.fault().isEmpty(); }));
    setSource(90);
    m_first.session->setCamera(false);
    m_first.session->setCamera(true);
    EXPECT_TRUE(sees(m_other, 90) && sees(m_third, 90)) << "before anybody has looked at it";
}

} // namespace
