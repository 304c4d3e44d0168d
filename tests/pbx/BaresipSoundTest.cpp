// What is said into the whole phone is heard at a phone that nobody here wrote, and the other way round: a
// tone each, from a file into a file, by every codec that both know.
#include "tests/kit/plain/processes.h"
#include "tests/pbx/baresipPair.h"
#include <QFile>
#include <gtest/gtest.h>
#include <ostream>

namespace {

constexpr double kTalkSeconds = 60;
constexpr double kLookSeconds = 0.5;
// Of the sound; what a codec that was taken for another makes of a tone is mostly noise.
constexpr double kClear = 0.9;
constexpr double kNothing = 0.01;
constexpr double kAudible = 0.01;

struct tagSoundCall
{
    const char* pName;
    const char* pCodec; // as the other phone names it
    int nRate;          // of its files
    int nChannels;
    const char* pShown; // as ours does
    double ours;        // hertz
    double theirs;
    bool bPhoneCalls;
    bool bEncrypts;
};

void PrintTo(const tagSoundCall& call, std::ostream* stream)
{
    *stream << call.pName;
}

// Both speak higher than a telephone of old where the codec carries it.
const tagSoundCall kCalls[] = {
    {"Pcma", "PCMA/8000/1", 8000, 1, "PCMA", 620, 1030, false, false},
    {"Pcmu", "PCMU/8000/1", 8000, 1, "PCMU", 1030, 620, true, false},
    {"G722", "G722/16000/1", 16000, 1, "G.722", 5210, 4430, false, false},
    {"Opus", "opus/48000/2", 48000, 2, "Opus", 4430, 5210, true, false},
    {"EncryptedPcma", "PCMA/8000/1", 8000, 1, "PCMA", 620, 1030, true, true},
    {"EncryptedOpus", "opus/48000/2", 48000, 2, "Opus", 5210, 4430, false, true},
};

class BaresipSound : public ::testing::TestWithParam<tagSoundCall>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        ASSERT_TRUE(pair.startExchange()) << pair.fault().constData();
        tagPhoneSetup ours;
        ours.says =
            "filesrc location=" + tone("ours", GetParam().ours, TalkingPhone::HEARD_RATE, 1).toUtf8() +
            " ! wavparse ! identity sync=true";
        ours.bEncrypts = GetParam().bEncrypts;
        tagBaresipSound theirs;
        theirs.codec = GetParam().pCodec;
        theirs.says = tone("theirs", GetParam().theirs, GetParam().nRate, GetParam().nChannels);
        theirs.bRecords = true;
        theirs.bEncrypts = GetParam().bEncrypts;
        ASSERT_TRUE(pair.startPhones(ours, theirs, GetParam().bPhoneCalls)) << pair.fault().constData();
    }
    QString tone(const char* name, double hertz, int rate, int channels)
    {
        QFile file(folder.filePath(name));
        const QByteArray wave = kit::waveFile(hertz, kTalkSeconds, rate, channels);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(wave) == wave.size());
        return file.fileName();
    }
    kit::RecordedSound heardHere()
    {
        return pair.phone().heard().last(kLookSeconds, TalkingPhone::HEARD_RATE);
    }
    kit::RecordedSound heardThere()
    {
        const kit::RecordedSound all = kit::RecordedSound::ofWave(pair.other().recorded());
        return all.last(kLookSeconds, all.rate());
    }
    // Nothing but that tone, aloud.
    static bool isClear(const kit::RecordedSound& heard, double hertz)
    {
        return heard.rate() > 0 && heard.seconds(heard.rate()) >= kLookSeconds && heard.peak() > kAudible &&
               heard.share(hertz) > kClear;
    }

    QTemporaryDir folder;
    BaresipPair pair;
};

} // namespace

TEST_P(BaresipSound, IsHeardAtBothEnds)
{
    ASSERT_TRUE(pair.talk()) << pair.fault().constData();
    EXPECT_TRUE(kit::waits([&] { return isClear(heardHere(), GetParam().theirs); }, TalkingPhone::WAIT_MS))
        << heardHere().share(GetParam().theirs) << " of " << heardHere().peak();
    EXPECT_TRUE(kit::waits([&] { return isClear(heardThere(), GetParam().ours); }, TalkingPhone::WAIT_MS))
        << heardThere().share(GetParam().ours) << " of " << heardThere().peak();
    EXPECT_LT(heardHere().share(GetParam().ours), kNothing) << "nobody hears himself";
    EXPECT_LT(heardThere().share(GetParam().theirs), kNothing);
    EXPECT_EQ(pair.phone().call()["sound"].toString(), GetParam().pShown);
    EXPECT_EQ(pair.phone().call()["encrypted"].toBool(), GetParam().bEncrypts);
    EXPECT_TRUE(
        kit::waits([&] { return pair.phone().call()["quality"].toInt() == 4; }, TalkingPhone::WAIT_MS));
    EXPECT_TRUE(pair.hangUp()) << pair.fault().constData();
}

INSTANTIATE_TEST_SUITE_P(Codecs, BaresipSound, ::testing::ValuesIn(kCalls),
                         [](const auto& info) { return info.param.pName; });
