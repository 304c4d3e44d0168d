// A picture with a number goes from the whole phone to one that nobody here wrote, and another one the other
// way: each is recognised where it arrives.
#include "tests/kit/plain/processes.h"
#include "tests/pbx/baresipPair.h"
#include "tests/players/films.h"
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>
#include <ostream>

namespace {

constexpr int kOurs = 173;
constexpr int kTheirs = 90;
constexpr int kFilmSeconds = 60;

struct tagPictureCall
{
    const char* pName;
    const char* pModule; // of the other phone
    const char* pShown;  // as ours says it
    bool bPhoneCalls;
    bool bEncrypts;
};

void PrintTo(const tagPictureCall& call, std::ostream* stream)
{
    *stream << call.pName;
}

// What makes its H.264 is libx264; ours is OpenH264.
const tagPictureCall kCalls[] = {
    {"H264", "avcodec", "H.264", true, false},
    {"Vp8", "vp8", "VP8", false, false},
    {"EncryptedH264", "avcodec", "H.264", false, true},
};

class BaresipPicture : public ::testing::TestWithParam<tagPictureCall>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        ASSERT_TRUE(pair.startExchange()) << pair.fault().constData();
        tagPhoneSetup ours;
        ours.says = "audiotestsrc is-live=true volume=0";
        ours.shows = "filesrc location=" + picture(kOurs).toUtf8() + " ! pngdec ! imagefreeze is-live=true";
        ours.bEncrypts = GetParam().bEncrypts;
        tagBaresipSound theirs;
        theirs.bEncrypts = GetParam().bEncrypts;
        theirs.settings = BaresipProcess::pictureSettings(GetParam().pModule, film(kTheirs));
        ASSERT_TRUE(pair.startPhones(ours, theirs, GetParam().bPhoneCalls)) << pair.fault().constData();
    }
    QString picture(int number)
    {
        const QString file = folder.filePath(QString("%1.png").arg(number));
        EXPECT_TRUE(numberedPicture(QSize(640, 480), number).save(file));
        return file;
    }
    // Long enough: it does not begin anew by itself.
    QString film(int number)
    {
        QFile file(folder.filePath("film.y4m"));
        const QImage image =
            numberedPicture(QSize(320, 240), number).convertToFormat(QImage::Format_Grayscale8);
        const QByteArray grey(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
        const QByteArray frame = "FRAME\n" + grey + QByteArray(grey.size() / 2, char(0x80));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) &&
                    file.write("YUV4MPEG2 W320 H240 F5:1 Ip A1:1 C420jpeg\n") > 0);
        for (int i = 0; i < kFilmSeconds * 5; ++i)
            EXPECT_EQ(file.write(frame), frame.size());
        return file.fileName();
    }
    // Between the shades and beside the own picture.
    int seenHere()
    {
        const QString file = folder.filePath("here.png");
        return pair.phone().shot(file) ? numberIn(QImage(file).copy(112, 210, 576, 100)) : -1;
    }
    int seenThere()
    {
        const QString file = folder.filePath("there.png");
        pair.other().command("snapshot_recv", file.toUtf8());
        kit::waits([&] { return !QImage(file).isNull(); }, 2000);
        const int number = numberIn(QImage(file));
        QFile::remove(file);
        return number;
    }

    QTemporaryDir folder;
    BaresipPair pair;
};

} // namespace

TEST_P(BaresipPicture, IsRecognisedAtBothEnds)
{
    ASSERT_TRUE(pair.talk()) << pair.fault().constData();
    EXPECT_TRUE(kit::waits([&] { return seenHere() == kTheirs; }, TalkingPhone::WAIT_MS))
        << pair.fault().constData();
    EXPECT_TRUE(kit::waits([&] { return seenThere() == kOurs; }, TalkingPhone::WAIT_MS))
        << pair.fault().constData();
    const QJsonObject call = pair.phone().call();
    EXPECT_EQ(call["picture"].toString(), GetParam().pShown);
    EXPECT_EQ(call["encrypted"].toBool(), GetParam().bEncrypts);
    EXPECT_TRUE(pair.hangUp()) << pair.fault().constData();
}

INSTANTIATE_TEST_SUITE_P(Codecs, BaresipPicture, ::testing::ValuesIn(kCalls),
                         [](const auto& info) { return info.param.pName; });
