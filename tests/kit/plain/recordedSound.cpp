#include "tests/kit/plain/recordedSound.h"
#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kLoud = 0.8;
constexpr float kQuiet = 0.02f;
constexpr double kShare = 0.1; // of the whole power
constexpr int kSilenceMs = 500;

void putNumber(QByteArray& out, quint32 value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.append(char(value >> (8 * i) & 0xff));
}

} // namespace

QByteArray kit::recordingSink(const QString& file)
{
    return "capsfilter caps=audio/x-raw,format=F32LE ! filesink async=false sync=true append=true "
           "buffer-mode=unbuffered "
           "location=" +
           file.toUtf8();
}

QByteArray kit::waveFile(const std::vector<float>& samples, int rate, int channels)
{
    const quint32 step = 2 * quint32(channels);
    const quint32 size = quint32(samples.size()) * step;
    QByteArray out = "RIFF";
    putNumber(out, 36 + size, 4);
    out += "WAVEfmt ";
    putNumber(out, 16, 4);
    putNumber(out, 1, 2);
    putNumber(out, quint32(channels), 2);
    putNumber(out, quint32(rate), 4);
    putNumber(out, step * quint32(rate), 4);
    putNumber(out, step, 2);
    putNumber(out, 16, 2);
    out += "data";
    putNumber(out, size, 4);
    for (const float sample : samples) {
        for (int channel = 0; channel < channels; ++channel)
            putNumber(out, quint32(quint16(qint16(sample * 32767))), 2);
    }
    return out;
}

QByteArray kit::waveFile(double hertz, double seconds, int rate, int channels)
{
    std::vector<float> samples(size_t(seconds * rate));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = float(kLoud * std::sin(kTurn * hertz * double(i) / rate));
    return waveFile(samples, rate, channels);
}

kit::RecordedSound::RecordedSound(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    m_samples.resize(size_t(bytes.size()) / sizeof(float));
    if (!m_samples.empty())
        memcpy(m_samples.data(), bytes.constData(), m_samples.size() * sizeof(float));
}

kit::RecordedSound kit::RecordedSound::ofWave(const QString& path)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const qsizetype data = bytes.indexOf("data");
    if (!bytes.startsWith("RIFF") || data < 36)
        return RecordedSound({}, 0);
    // Who still writes says nothing of the length yet.
    const int step = 2 * qFromLittleEndian<quint16>(bytes.constData() + 22);
    std::vector<float> samples;
    for (qsizetype at = data + 8; step > 0 && at + step <= bytes.size(); at += step)
        samples.push_back(float(qFromLittleEndian<qint16>(bytes.constData() + at)) / 32768);
    return RecordedSound(std::move(samples), int(qFromLittleEndian<quint32>(bytes.constData() + 24)));
}

kit::RecordedSound kit::RecordedSound::from(double second, double seconds, int rate) const
{
    const size_t first = std::min(m_samples.size(), size_t(second * rate));
    const size_t end = std::min(m_samples.size(), first + size_t(seconds * rate));
    return RecordedSound({m_samples.begin() + qptrdiff(first), m_samples.begin() + qptrdiff(end)}, rate);
}

kit::RecordedSound kit::RecordedSound::last(double seconds, int rate) const
{
    return from(std::max(0.0, this->seconds(rate) - seconds), seconds, rate);
}

double kit::RecordedSound::peak() const
{
    double most = 0;
    for (const float sample : m_samples)
        most = std::max(most, double(std::fabs(sample)));
    return most;
}

bool kit::RecordedSound::has(double hertz) const
{
    return share(hertz) > kShare;
}

// The power of one frequency, as one bin of a Fourier transform.
double kit::RecordedSound::share(double hertz) const
{
    double real = 0;
    double imaginary = 0;
    double power = 0;
    for (size_t i = 0; i < m_samples.size(); ++i) {
        const double at = kTurn * hertz * double(i) / m_nRate;
        real += m_samples[i] * std::cos(at);
        imaginary += m_samples[i] * std::sin(at);
        power += double(m_samples[i]) * m_samples[i];
    }
    const double count = double(m_samples.size());
    return power > 0 ? 2 * (real * real + imaginary * imaginary) / count / power : 0;
}

int kit::RecordedSound::longestQuiet() const
{
    int longest = 0;
    int quiet = 0;
    for (const float sample : m_samples) {
        quiet = std::fabs(sample) < kQuiet ? quiet + 1 : 0;
        longest = std::max(longest, quiet);
    }
    return longest;
}

bool kit::StillSound::isStill()
{
    const qint64 now = RecordedSound(m_file).size();
    if (now != m_nBefore)
        m_still.start();
    m_nBefore = now;
    return m_still.hasExpired(kSilenceMs);
}
