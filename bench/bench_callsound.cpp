// The sound of a call beside that of a phone that others wrote, which is the other end of the same calls: the
// processor time of each end, how late it is heard, what loss makes of it, and how soon both are heard after
// the answer.
//   bench_callsound [cost] [delay] [loss] [answer]   these parts alone
#include "bench/phoneBench.h"
#include "bench/soundMeasure.h"
#include "bench/soundStand.h"
#include "bench/timedFile.h"
#include "tests/kit/plain/processes.h"
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <cstdio>

using soundMeasure::Samples;

namespace {

constexpr int kRate = TalkingPhone::HEARD_RATE;
constexpr int kSettleMs = 3000;
constexpr int kCostMs = 20000;
constexpr double kMostCost = 1.6;         // times that of the peer
constexpr double kMostCostWithEcho = 3.2; // which takes no echo out
constexpr int kBursts = 20;
constexpr double kMostLaterMs = 10; // than the peer, one way
constexpr int kAnswers = 5;
constexpr double kMostAnswerMs = 150;
constexpr double kAudible = 0.02;
constexpr double kClear = 0.8; // of the power
constexpr double kOurHertz = 600;
constexpr double kTheirHertz = 1000;
constexpr int kLossPercent = 5;
constexpr int kJitterMs = 40;
constexpr double kToneHertz = 500;
constexpr double kToneSeconds = 4;
constexpr double kPauseSeconds = 1; // until all streams run
constexpr unsigned kLossyCalls = 5; // chance hits one word or the other
const char* const kSpeech = "/usr/share/sounds/alsa";
constexpr int kSpeechRate = 48000;

struct tagCodec
{
    const char* pName;
    const char* pCodec; // as the peer names it
    int nRate;          // of the peer's files
    int nChannels;
};
constexpr tagCodec kG711 = {"G.711", "PCMA/8000/1", 8000, 1};
constexpr tagCodec kOpus = {"Opus", "opus/48000/2", 48000, 2};

// What is heard of both is to be made alike.
const char* const kLikeOurs =
    "opus_bitrate 32000\nopus_application voip\nopus_complexity 5\nopus_inbandfec yes\n";
// In steps of a frame, as a device delivers.
const QByteArray kTone = "audiotestsrc is-live=true volume=0.3 freq=600 samplesperbuffer=320";

double median(std::vector<double> values)
{
    if (values.empty())
        return HUGE_VAL;
    std::nth_element(values.begin(), values.begin() + ptrdiff_t(values.size() / 2), values.end());
    return values[values.size() / 2];
}

bool write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// ---- Processor time

bool benchCost(RatioTable& table, const tagCodec& codec, bool bEcho)
{
    SoundStand stand;
    stand.recordNothing();
    if (!stand.begin(codec.pCodec, kTone, {}, bEcho) || !stand.talk())
        return false;
    QThread::msleep(kSettleMs);
    const qint64 ours = kit::scheduledNs(stand.phone().mediaPid());
    const qint64 theirs = kit::scheduledNs(stand.peer().pid());
    QThread::msleep(kCostMs);
    const double perSecond = 1e6 * kCostMs / 1e3;
    const double our = double(kit::scheduledNs(stand.phone().mediaPid()) - ours) / perSecond;
    const double their = double(kit::scheduledNs(stand.peer().pid()) - theirs) / perSecond;
    table.add(QString("%1 leg %2 echo cancelling, processor time a second")
                  .arg(codec.pName, bEcho ? "with" : "without"),
              our, their * (bEcho ? kMostCostWithEcho : kMostCost), "ms");
    printf("%s, %s echo cancelling: ours %.2f ms a second, the peer's %.2f, %.2f times\n", codec.pName,
           bEcho ? "with" : "without", our, their, our / their);
    return stand.hangUp();
}

bool benchCosts(RatioTable& table)
{
    for (const tagCodec& codec : {kG711, kOpus}) {
        for (const bool echo : {false, true}) {
            if (!benchCost(table, codec, echo))
                return false;
        }
    }
    return true;
}

// ---- From mouth to ear

std::vector<double> timesOf(const soundMeasure::tagWire& wire)
{
    std::vector<double> times;
    for (const size_t begin : soundMeasure::beginnings(wire.samples, 8000))
        times.push_back(double(wire.times[begin]) / 1e3);
    return times;
}

std::vector<double> timesOf(const TimedFile& file, const Samples& samples)
{
    std::vector<double> times;
    for (const size_t begin : soundMeasure::beginnings(samples, kRate)) {
        const int64_t us = file.timeOf(file.first() + int64_t(begin));
        if (us >= 0)
            times.push_back(double(us) / 1e3);
    }
    return times;
}

// Of each in from to the next in to.
std::vector<double> waysOf(const std::vector<double>& from, const std::vector<double>& to)
{
    std::vector<double> ways;
    for (const double begin : from) {
        const auto next = std::lower_bound(to.begin(), to.end(), begin);
        if (next != to.end() && *next - begin < 900)
            ways.push_back(*next - begin);
    }
    return ways;
}

Samples samplesFrom(const Samples& all, int64_t first)
{
    return {all.begin() + std::min<ptrdiff_t>(first, ptrdiff_t(all.size())), all.end()};
}

// A burst a second goes from our microphone to the peer, whose loudspeaker is its microphone, and back.
bool benchDelay(RatioTable& table)
{
    QTemporaryDir folder;
    const QString mouth = folder.filePath("mouth.raw");
    const QByteArray says =
        "audiotestsrc is-live=true wave=ticks freq=1000 sine-periods-per-tick=40 tick-interval=1000000000 "
        "samplesperbuffer=320 ! audio/x-raw,format=F32LE,rate=16000,channels=1 ! tee name=t t. ! filesink "
        "async=false sync=false buffer-mode=unbuffered location=" +
        mouth.toUtf8() + " t. ! identity";
    SoundStand stand;
    if (!stand.begin(kG711.pCodec, says) || !stand.ring())
        return false;
    const TimedFile said(mouth, kRate);
    const TimedFile heard(stand.phone().heardFile(), kRate);
    if (!stand.phone().answer() || !stand.phone().talks())
        return false;
    QThread::msleep(kSettleMs);
    stand.network().takePassed(SoundRelay::TO_CALLED);
    stand.network().takePassed(SoundRelay::TO_CALLER);
    QThread::msleep(kBursts * 1000);

    const std::vector<double> mouths =
        timesOf(said, samplesFrom(kit::RecordedSound(mouth).samples(), said.first()));
    const std::vector<double> outs =
        timesOf(soundMeasure::alawOf(stand.network().takePassed(SoundRelay::TO_CALLER)));
    const std::vector<double> backs =
        timesOf(soundMeasure::alawOf(stand.network().takePassed(SoundRelay::TO_CALLED)));
    const std::vector<double> ears =
        timesOf(heard, samplesFrom(stand.phone().heard().samples(), heard.first()));
    const std::vector<double> peers = waysOf(outs, backs);
    const std::vector<double> ins = waysOf(backs, ears);
    if (peers.size() < kBursts / 2 || ins.size() < kBursts / 2) {
        fprintf(stderr, "of %d bursts %zu came back and %zu were heard\n", kBursts, peers.size(), ins.size());
        return false;
    }
    const double out = median(waysOf(mouths, outs));
    const double peer = median(peers);
    const double in = median(ins);
    printf("mouth to wire %.1f ms, wire to ear %.1f ms; the peer's both %.1f ms\n", out, in, peer);
    table.add("mouth to ear of both ways together", out + in, peer + 2 * kMostLaterMs, "ms");
    return stand.hangUp();
}

// ---- Loss

// People who name loudspeakers, and a tone after them.
Samples speech()
{
    Samples all(size_t(kPauseSeconds * kSpeechRate));
    for (const QString& name :
         QDir(kSpeech).entryList({"Front*.wav", "Rear*.wav", "Side*.wav"}, QDir::Files)) {
        const kit::RecordedSound words = kit::RecordedSound::ofWave(QString(kSpeech) + '/' + name);
        if (words.rate() == kSpeechRate)
            all.insert(all.end(), words.samples().begin(), words.samples().end());
    }
    if (all.size() == size_t(kPauseSeconds * kSpeechRate))
        return {};
    const float most = std::fabs(*std::max_element(
        all.begin(), all.end(), [](float a, float b) { return std::fabs(a) < std::fabs(b); }));
    for (float& sample : all)
        sample *= 0.5f / most;
    for (int i = 0; i < int(kToneSeconds * kSpeechRate); ++i)
        all.push_back(float(0.2 * std::sin(2 * M_PI * kToneHertz * i / kSpeechRate)));
    return all;
}

struct tagHeard
{
    double here = 0; // dB
    double there = 0;
};

// Both say the same at once.
bool hear(SoundStand& stand, const Samples& said, const tagCodec& codec, tagHeard& heard)
{
    const int rate = std::min(codec.nRate, kRate);
    const qint64 before = stand.phone().heard().size();
    if (!stand.talk())
        return false;
    QThread::msleep(ulong(1000 * said.size() / kSpeechRate));
    const Samples here = samplesFrom(stand.phone().heard().samples(), before);
    const kit::RecordedSound there = kit::RecordedSound::ofWave(stand.peer().recorded());
    if (!stand.hangUp() || there.rate() < rate)
        return false;
    const Samples model = soundMeasure::slower(said, kSpeechRate / rate);
    heard.here = soundMeasure::distance(model, soundMeasure::slower(here, kRate / rate), rate);
    heard.there =
        soundMeasure::distance(model, soundMeasure::slower(there.samples(), there.rate() / rate), rate);
    return true;
}

bool benchLoss(RatioTable& table, const tagCodec& codec)
{
    const Samples said = speech();
    QTemporaryDir folder;
    const QString ours = folder.filePath("ours.wav");
    const QString theirs = folder.filePath("theirs.wav");
    if (said.empty()) {
        fprintf(stderr, "no speech in %s (package alsa-utils)\n", kSpeech);
        return false;
    }
    const QByteArray says = "filesrc location=" + ours.toUtf8() +
                            " ! wavparse ! audiobuffersplit output-buffer-duration=1/50 ! identity sync=true";
    SoundStand stand;
    tagHeard clean;
    if (!write(ours, kit::waveFile(soundMeasure::slower(said, kSpeechRate / kRate), kRate)) ||
        !write(theirs, kit::waveFile(soundMeasure::slower(said, kSpeechRate / codec.nRate), codec.nRate,
                                     codec.nChannels)) ||
        !stand.begin(codec.pCodec, says, theirs, false, kLikeOurs) || !hear(stand, said, codec, clean))
        return false;
    printf("%s: log-spectral distance here %.2f dB, there %.2f\n", codec.pName, clean.here, clean.there);
    std::vector<double> here, there;
    for (unsigned seed = 1; seed <= kLossyCalls; ++seed) {
        stand.network().setNetwork(kLossPercent, kJitterMs, seed);
        tagHeard lossy;
        if (!hear(stand, said, codec, lossy))
            return false;
        printf("with loss here %.2f dB, there %.2f\n", lossy.here, lossy.there);
        here.push_back(lossy.here - clean.here);
        there.push_back(lossy.there - clean.there);
    }
    table.add(QString("%1: what %2 % loss and %3 ms jitter add to the distance")
                  .arg(codec.pName)
                  .arg(kLossPercent)
                  .arg(kJitterMs),
              median(here), median(there), "dB");
    return true;
}

// ---- From the answer to sound

struct tagAnswer
{
    double out = HUGE_VAL; // ms until it leaves
    double in = HUGE_VAL;  // and until the other is heard
};

// Where that tone begins, and not the one with which the phone has rung; -1: nowhere.
ptrdiff_t beginningOf(const Samples& samples, int rate, double hertz)
{
    const ptrdiff_t piece = rate / 100;
    for (ptrdiff_t at = 0; at + piece <= ptrdiff_t(samples.size()); at += piece / 4) {
        const kit::RecordedSound part({samples.begin() + at, samples.begin() + at + piece}, rate);
        if (part.peak() > kAudible && part.share(hertz) > kClear)
            return at;
    }
    return -1;
}

bool answerOne(SoundStand& stand, tagAnswer& answer)
{
    if (!stand.ring())
        return false;
    stand.network().takePassed(SoundRelay::TO_CALLER);
    const TimedFile file(stand.phone().heardFile(), kRate);
    const double begin = double(SoundRelay::nowUs()) / 1e3;
    if (!stand.phone().answer() || !stand.phone().talks())
        return false;
    QThread::msleep(1000);
    const soundMeasure::tagWire wire =
        soundMeasure::alawOf(stand.network().takePassed(SoundRelay::TO_CALLER));
    const Samples heard = samplesFrom(stand.phone().heard().samples(), file.first());
    const ptrdiff_t said = beginningOf(wire.samples, 8000, kOurHertz);
    const ptrdiff_t sound = beginningOf(heard, kRate, kTheirHertz);
    if (said >= 0)
        answer.out = double(wire.times[size_t(said)]) / 1e3 - begin;
    if (sound >= 0 && file.timeOf(file.first() + sound) >= 0)
        answer.in = double(file.timeOf(file.first() + sound)) / 1e3 - begin;
    return stand.hangUp();
}

bool benchAnswer(RatioTable& table)
{
    QTemporaryDir folder;
    const QString theirs = folder.filePath("theirs.wav");
    SoundStand stand;
    tagAnswer first;
    if (!write(theirs, kit::waveFile(kTheirHertz, 60, kG711.nRate)) ||
        !stand.begin(kG711.pCodec, kTone, theirs) || !answerOne(stand, first))
        return false;
    std::vector<double> outs, ins;
    for (int i = 0; i < kAnswers; ++i) {
        tagAnswer next;
        if (!answerOne(stand, next))
            return false;
        outs.push_back(next.out);
        ins.push_back(next.in);
    }
    printf("the first call of the program: sound leaves after %.1f ms, is heard after %.1f ms\n", first.out,
           first.in);
    table.add("answer to sound that leaves, pipelines warm", median(outs), kMostAnswerMs, "ms");
    table.add("answer to sound that is heard", median(ins), kMostAnswerMs, "ms");
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList parts = application.arguments().mid(1);
    const auto wants = [&](const char* part) { return parts.isEmpty() || parts.contains(part); };
    RatioTable table;
    bool runs = true;
    if (wants("cost"))
        runs = benchCosts(table);
    if (wants("delay"))
        runs = benchDelay(table) && runs;
    if (wants("loss"))
        runs = benchLoss(table, kG711) && benchLoss(table, kOpus) && runs;
    if (wants("answer"))
        runs = benchAnswer(table) && runs;
    return table.print() && runs ? 0 : 1;
}
