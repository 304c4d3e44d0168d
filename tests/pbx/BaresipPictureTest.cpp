// A picture with a number goes from the whole phone to one that nobody here wrote, and another one the other
// way: each is recognised where it arrives.
#include "tests/kit/plain/processes.h"
#include "tests/pbx/baresipProcess.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/talkingPhone.h"
#include "tests/players/films.h"
#include <QFile>
#include <QImage>
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
        ASSERT_TRUE(pbx.start({"--md5"})) << pbx.output().constData();
        tagPhoneSetup setup;
        setup.user = "1001";
        setup.password = RegistrarProcess::passwordOf("1001");
        setup.server = pbx.port();
        setup.says = "audiotestsrc is-live=true volume=0";
        setup.shows = "filesrc location=" + picture(kOurs).toUtf8() + " ! pngdec ! imagefreeze is-live=true";
        setup.bEncrypts = GetParam().bEncrypts;
        ASSERT_TRUE(phone.start(setup));
        tagBaresipSound sound;
        sound.bEncrypts = GetParam().bEncrypts;
        sound.settings = BaresipProcess::pictureSettings(GetParam().pModule, film(kTheirs));
        ASSERT_TRUE(other.start("1002", pbx.port(), RegistrarProcess::passwordOf("1002"),
                                GetParam().bPhoneCalls, sound))
            << other.output().constData();
        ASSERT_TRUE(other.prints("[1 binding]")) << other.output().constData();
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
    void talk()
    {
        if (GetParam().bPhoneCalls) {
            ASSERT_TRUE(phone.dial("1002"));
        } else {
            other.command("dial", "sip:1001@127.0.0.1:" + QByteArray::number(pbx.port()));
            ASSERT_TRUE(phone.rings()) << other.output().constData();
            ASSERT_TRUE(phone.answer());
        }
        ASSERT_TRUE(phone.talks()) << other.output().constData();
        ASSERT_TRUE(other.tells("CALL_ESTABLISHED")) << other.output().constData();
    }
    // Between the shades and beside the own picture.
    int seenHere()
    {
        const QString file = folder.filePath("here.png");
        return phone.shot(file) ? numberIn(QImage(file).copy(112, 210, 576, 100)) : -1;
    }
    int seenThere()
    {
        const QString file = folder.filePath("there.png");
        other.command("snapshot_recv", file.toUtf8());
        kit::waits([&] { return !QImage(file).isNull(); }, 2000);
        const int number = numberIn(QImage(file));
        QFile::remove(file);
        return number;
    }

    QTemporaryDir folder;
    RegistrarProcess pbx;
    TalkingPhone phone;
    BaresipProcess other;
};

} // namespace

TEST_P(BaresipPicture, IsRecognisedAtBothEnds)
{
    ASSERT_NO_FATAL_FAILURE(talk());
    EXPECT_TRUE(kit::waits([&] { return seenHere() == kTheirs; }, TalkingPhone::WAIT_MS))
        << other.output().constData();
    EXPECT_TRUE(kit::waits([&] { return seenThere() == kOurs; }, TalkingPhone::WAIT_MS))
        << other.output().constData();
    EXPECT_EQ(phone.call()["picture"].toString(), GetParam().pShown);
    EXPECT_EQ(phone.call()["encrypted"].toBool(), GetParam().bEncrypts);
    EXPECT_TRUE(phone.hangUp());
    EXPECT_TRUE(other.tells("CALL_CLOSED")) << other.output().constData();
}

INSTANTIATE_TEST_SUITE_P(Codecs, BaresipPicture, ::testing::ValuesIn(kCalls),
                         [](const auto& info) { return info.param.pName; });
