#include "players/g711Sound.h"
#include "players/g711.h"
#include <utility>

namespace {

constexpr int kRate = 8000;
const char* const kNarrow = "audio/x-raw,format=S16LE,layout=interleaved,rate=8000,channels=1";

} // namespace

g711Encoder::g711Encoder(SOUND_CODEC codec, int rate) : m_eCodec(codec), m_rate(rate, kRate) {}

bool g711Encoder::push(const void* data, int bytes, qint64)
{
    const QByteArray narrow =
        m_rate.change(static_cast<const short*>(data), bytes / qsizetype(sizeof(short)));
    const auto* samples = reinterpret_cast<const short*>(narrow.constData());
    QByteArray codes(narrow.size() / qsizetype(sizeof(short)), Qt::Uninitialized);
    for (qsizetype i = 0; i < codes.size(); ++i)
        codes[i] = char(g711::packed(m_eCodec, samples[i]));
    output().append(codes);
    return true;
}

std::unique_ptr<g711Decoder> g711Decoder::make(SOUND_CODEC codec, int rate)
{
    std::unique_ptr<soundChain> concealed = soundChain::make("spanplc", kNarrow, kNarrow);
    if (!concealed)
        return nullptr;
    return std::unique_ptr<g711Decoder>(new g711Decoder(codec, rate, std::move(concealed)));
}

g711Decoder::g711Decoder(SOUND_CODEC codec, int rate, std::unique_ptr<soundChain> concealed)
    : m_eCodec(codec), m_concealed(std::move(concealed)), m_rate(kRate, rate)
{
}

bool g711Decoder::push(const void* data, int bytes, qint64 ns)
{
    const auto* codes = static_cast<const unsigned char*>(data);
    QByteArray narrow(bytes * qsizetype(sizeof(short)), Qt::Uninitialized);
    auto* samples = reinterpret_cast<short*>(narrow.data());
    for (int i = 0; i < bytes; ++i)
        samples[i] = g711::unpacked(m_eCodec, codes[i]);
    const bool goesOn = m_concealed->push(samples, int(narrow.size()), ns);
    take();
    return goesOn;
}

bool g711Decoder::pushGap(qint64 ns)
{
    const bool goesOn = m_concealed->pushGap(ns);
    take();
    return goesOn;
}

void g711Decoder::take()
{
    for (const QByteArray& part : std::exchange(m_concealed->output(), {})) {
        const auto* samples = reinterpret_cast<const short*>(part.constData());
        output().append(m_rate.change(samples, part.size() / qsizetype(sizeof(short))));
    }
}
