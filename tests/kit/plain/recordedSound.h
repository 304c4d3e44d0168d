#pragma once
// What a loudspeaker was given, as floats in a file, and sounds to compare with. One channel.
#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <vector>

namespace kit {

// HX_SOUND_SINK for a loudspeaker that keeps the pace of the clock and writes all it gets to the end of a
// file.
QByteArray recordingSink(const QString& file);
// A WAV file of one sound of 0.8 of full scale, the same on all channels.
QByteArray waveFile(double hertz, double seconds, int rate, int channels = 1);
// Of samples from -1 to 1.
QByteArray waveFile(const std::vector<float>& samples, int rate, int channels = 1);

class RecordedSound
{
public:
    explicit RecordedSound(const QString& file);
    explicit RecordedSound(std::vector<float> samples, int rate)
        : m_samples(std::move(samples)), m_nRate(rate)
    {
    }

    // The first channel of a WAV file of 16-bit samples, which may still be written.
    static RecordedSound ofWave(const QString& file);

    qint64 size() const { return qint64(m_samples.size()); }
    int rate() const { return m_nRate; }
    const std::vector<float>& samples() const { return m_samples; }
    double seconds(int rate) const { return double(size()) / rate; }
    // A piece of it; shorter, or empty, where there is less.
    RecordedSound from(double second, double seconds, int rate) const;
    RecordedSound last(double seconds, int rate) const;
    double peak() const;
    // That sound is a good part of the piece. Pieces only: they know their rate.
    bool has(double hertz) const;
    // How much of the piece's power that sound is, from 0 to 1.
    double share(double hertz) const;
    // Samples in a row of (nearly) nothing.
    int longestQuiet() const;

private:
    std::vector<float> m_samples;
    int m_nRate = 0;
};

// Asked again and again: whether nothing has come for longer than the pieces in which sound comes.
class StillSound
{
public:
    explicit StillSound(const QString& file) : m_file(file) {}
    bool isStill();

private:
    const QString m_file;
    qint64 m_nBefore = -1;
    QElapsedTimer m_still;
};

} // namespace kit
