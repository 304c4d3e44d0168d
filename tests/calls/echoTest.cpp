// Loudspeaker and microphone of calls as devices: what the microphone hears of the loudspeaker does not go
// back.
#include "players/deviceSound.h"
#include "tests/calls/callStand.h"
#include "tests/kit/plain/recordedSound.h"
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <cstdlib>

namespace {

// Bursts of noise, as loud and as long as words.
class NoisyVoice : public soundPort
{
public:
    explicit NoisyVoice(bool speaks) : m_bSpeaks(speaks) {}
    void read(short* frame) override
    {
        for (int i = 0; i < callSession::FRAME_SAMPLES; ++i, ++m_nSaid) {
            m_noise = m_noise * 1664525u + 1013904223u;
            const bool isWord = m_bSpeaks && m_nSaid / 3200 % 3 != 2;
            frame[i] = short(isWord ? int(m_noise >> 18) - 8192 : 0);
        }
    }
    void write(const short* frame) override
    {
        double sum = 0;
        for (int i = 0; i < callSession::FRAME_SAMPLES; ++i)
            sum += double(frame[i]) * frame[i];
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_powers.push_back(sum / callSession::FRAME_SAMPLES);
    }
    // Root of the mean power of the last second.
    double heard() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        double sum = 0;
        const size_t count = std::min<size_t>(m_powers.size(), 50);
        for (size_t i = m_powers.size() - count; i < m_powers.size(); ++i)
            sum += m_powers[i];
        return count ? std::sqrt(sum / double(count)) : 0;
    }

private:
    bool m_bSpeaks;
    qint64 m_nSaid = 0;
    unsigned int m_noise = 1;
    mutable std::mutex m_mutex;
    std::vector<double> m_powers;
};

class Echo : public CallStand
{
protected:
    Echo()
    {
        setenv("HX_SOUND_SINK", "interaudiosink channel=room", 1);
        setenv("HX_SOUND_SOURCE",
               "interaudiosrc channel=room buffer-time=100000000 latency-time=20000000 period-time=10000000",
               1);
    }
    ~Echo() override
    {
        for (const char* name : {"HX_SOUND_SINK", "HX_SOUND_SOURCE", "HX_SOUND_PROCESSING"})
            unsetenv(name);
    }
    static tagAgreedSound plain(int peerPort)
    {
        tagAgreedSound agreed;
        agreed.bSound = agreed.bSends = agreed.bReceives = true;
        agreed.send = {SOUND_CODEC::G722, 9, 8000};
        agreed.take = {agreed.send};
        agreed.peer = "127.0.0.1";
        agreed.nPort = peerPort;
        return agreed;
    }
    // What the far side hears after some seconds, in which it speaks or not; a canceller that learns has more
    // of them, until it is no more than that.
    static double heardThere(bool speaks, double atMost = 1e9)
    {
        deviceSound devices;
        devices.open();
        NoisyVoice voice(speaks);
        callDesk near(devices);
        callDesk far(voice);
        auto one = callSockets::open();
        auto other = callSockets::open();
        const int onePort = one->port();
        const int otherPort = other->port();
        near.add(1, std::make_unique<callSession>(std::move(one)));
        far.add(1, std::make_unique<callSession>(std::move(other)));
        callSession::tagParts nearParts = callSession::build(plain(otherPort));
        callSession::tagParts farParts = callSession::build(plain(onePort));
        near.with(1, [&](callSession& session) { session.agree(plain(otherPort), nearParts); });
        far.with(1, [&](callSession& session) { session.agree(plain(onePort), farParts); });
        pass(5000);
        waitFor([&] { return voice.heard() <= atMost; }, 20000);
        const double heard = voice.heard();
        near.remove(1);
        far.remove(1);
        return heard;
    }
};

TEST_F(Echo, DoesNotGoBackToWhoSpeaks)
{
    setenv("HX_SOUND_PROCESSING", "off", 1);
    const double untouched = heardThere(true);
    EXPECT_GT(untouched, 1000) << "the room answers";
    unsetenv("HX_SOUND_PROCESSING");
    EXPECT_LE(heardThere(true, untouched / 10), untouched / 10);
    // Bursts, as words are: what lasts is noise.
    setenv("HX_SOUND_SOURCE",
           "audiotestsrc is-live=true wave=ticks freq=500 tick-interval=400000000 sine-periods-per-tick=100",
           1);
    EXPECT_GT(heardThere(false), 300) << "who speaks here is heard";
}

// Of what the microphone hears, without what processes it and with it.
class Microphone : public Echo
{
protected:
    // Hears the file, from its beginning, with each call.
    void hears(const std::vector<float>& samples)
    {
        const QString path = m_folder.filePath("heard.wav");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kit::waveFile(samples, kRate));
        ASSERT_TRUE(file.flush());
        setenv("HX_SOUND_SOURCE",
               ("filesrc location=" + path + " ! wavparse ! identity sync=true").toUtf8().constData(), 1);
    }
    static double untouched()
    {
        setenv("HX_SOUND_PROCESSING", "off", 1);
        const double heard = heardThere(false);
        unsetenv("HX_SOUND_PROCESSING");
        return heard;
    }
    // Syllables of a voice that rises and falls: overtones of a throat, shaped by a mouth, with pauses.
    static std::vector<float> voice()
    {
        std::vector<float> samples;
        double phase = 0;
        for (int i = 0; i < kSeconds * kRate; ++i) {
            const double second = double(i) / kRate;
            const double syllable = std::fmod(second, 0.25) / 0.25;
            const int word = int(second / 0.25);
            const double hertz = 120 + 40 * std::sin(2 * M_PI * 0.7 * second) + 9 * (word * 7 % 5);
            const double mouth = 400 + 130 * (word * 5 % 7);
            const bool isPause = word % 5 == 4;
            phase += 2 * M_PI * hertz / kRate;
            double sum = 0;
            for (int overtone = 1; overtone <= 20; ++overtone) {
                const double off = (overtone * hertz - mouth) / 250;
                sum += (0.1 + std::exp(-off * off)) / overtone * std::sin(overtone * phase);
            }
            samples.push_back(float(isPause ? 0 : 0.2 * sum * std::sin(M_PI * syllable)));
        }
        return samples;
    }
    static std::vector<float> noise()
    {
        std::vector<float> samples;
        unsigned int state = 1;
        for (int i = 0; i < kSeconds * kRate; ++i) {
            state = state * 1664525u + 1013904223u;
            samples.push_back(0.05f * (float(state >> 16) / 32768 - 1));
        }
        return samples;
    }

private:
    enum { kRate = 48000, kSeconds = 30 };
    QTemporaryDir m_folder;
};

TEST_F(Microphone, NoiseThatLastsIsHeardLess)
{
    hears(noise());
    const double steady = untouched();
    EXPECT_GT(steady, 300) << "there is noise";
    const double most = 0.7 * steady;
    EXPECT_LE(heardThere(false, most), most);
}

TEST_F(Microphone, AVoiceThatIsNotLoudIsHeardLouder)
{
    hears(voice());
    const double words = untouched();
    EXPECT_GT(words, 300) << "somebody speaks";
    EXPECT_GT(heardThere(false), 1.5 * words);
}

} // namespace
