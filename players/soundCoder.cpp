#include "players/soundCoder.h"
#include "players/g711Sound.h"
#include <algorithm>
#include <cstring>
#include <utility>

namespace {

const char* const kSound = "audio/x-raw,format=S16LE,layout=interleaved,rate=16000,channels=1";
constexpr qint64 kMs = 1000000;
constexpr int kLeastGapMs = 20;
constexpr int kBytesPerMs = 8; // of all codecs but Opus

struct tagChains
{
    SOUND_CODEC eCodec;
    const char* pEncode;
    const char* pDecode;
    const char* pCoded; // what is decoded, and as whom the encoder knows what it makes
    const char* pMade;
};
constexpr tagChains kChains[] = {
    {SOUND_CODEC::OPUS, "opusenc name=coder audio-type=voice bitrate=32000 complexity=5 inband-fec=true",
     "opusdec plc=true", "audio/x-opus,channel-mapping-family=0,rate=48000,channels=1", "audio/x-opus"},
    {SOUND_CODEC::G722, "avenc_g722", "avdec_g722 ! spanplc", "audio/G722,rate=16000,channels=1",
     "audio/G722"}};

const tagChains* chainsOf(SOUND_CODEC codec)
{
    for (const tagChains& chains : kChains) {
        if (chains.eCodec == codec)
            return &chains;
    }
    return nullptr;
}

bool isG711(SOUND_CODEC codec)
{
    return codec == SOUND_CODEC::PCMA || codec == SOUND_CODEC::PCMU;
}

std::unique_ptr<soundStep> wayBack(SOUND_CODEC codec)
{
    if (isG711(codec))
        return g711Decoder::make(codec, soundCoder::SAMPLE_RATE);
    const tagChains* chains = chainsOf(codec);
    return chains ? soundChain::make(chains->pDecode, chains->pCoded, kSound) : nullptr;
}

} // namespace

std::unique_ptr<soundEncoder> soundEncoder::make(SOUND_CODEC codec, int ptime)
{
    auto encoder = std::make_unique<soundEncoder>();
    encoder->m_eCodec = codec;
    encoder->m_nPtime = ptime;
    return encoder->makeWay() ? std::move(encoder) : nullptr;
}

bool soundEncoder::makeWay()
{
    if (isG711(m_eCodec)) {
        m_way = std::make_unique<g711Encoder>(m_eCodec, soundCoder::SAMPLE_RATE);
        return true;
    }
    const tagChains* chains = chainsOf(m_eCodec);
    std::unique_ptr<soundChain> chain =
        chains ? soundChain::make(chains->pEncode, kSound, chains->pMade) : nullptr;
    if (!chain)
        return false;
    m_pCoder = chain->part("coder");
    if (m_eCodec == SOUND_CODEC::OPUS)
        gst_util_set_object_arg(G_OBJECT(m_pCoder), "frame-size", QByteArray::number(m_nPtime).constData());
    m_way = std::move(chain);
    return true;
}

void soundEncoder::setLoss(int percent)
{
    if (m_eCodec != SOUND_CODEC::OPUS || percent == m_nLoss)
        return;
    m_nLoss = percent;
    g_object_set(m_pCoder, "packet-loss-percentage", percent, nullptr);
}

QList<QByteArray> soundEncoder::encode(const short* samples, int count)
{
    m_waiting.insert(m_waiting.end(), samples, samples + count);
    const size_t whole = size_t(m_nPtime) * soundCoder::SAMPLE_RATE / 1000;
    QList<QByteArray> packets;
    while (m_waiting.size() >= whole) {
        m_way->push(m_waiting.data(), int(whole * sizeof(short)), m_nPtime * kMs);
        m_waiting.erase(m_waiting.begin(), m_waiting.begin() + qptrdiff(whole));
        packets.append(takePacket());
    }
    return packets;
}

// The resampler keeps a little back at its beginning, which would make each packet one sound later.
QByteArray soundEncoder::takePacket()
{
    for (const QByteArray& part : m_way->output())
        m_encoded += part;
    m_way->output().clear();
    if (m_eCodec == SOUND_CODEC::OPUS)
        return std::exchange(m_encoded, QByteArray());
    const qsizetype whole = qsizetype(m_nPtime) * kBytesPerMs;
    const char silence = m_eCodec == SOUND_CODEC::PCMU ? '\xff' : '\xd5';
    m_encoded.prepend(std::max<qsizetype>(0, whole - m_encoded.size()), silence);
    const QByteArray packet = m_encoded.left(whole);
    m_encoded.remove(0, whole);
    return packet;
}

std::unique_ptr<soundDecoder> soundDecoder::make(SOUND_CODEC codec)
{
    auto decoder = std::make_unique<soundDecoder>();
    decoder->m_eCodec = codec;
    decoder->m_way = wayBack(codec);
    return decoder->m_way ? std::move(decoder) : nullptr;
}

// Of Opus the first byte tells (RFC 6716); the others have 8000 bytes a second.
int soundDecoder::lengthMs(const QByteArray& content) const
{
    if (m_eCodec != SOUND_CODEC::OPUS)
        return std::max(1, int(content.size() / kBytesPerMs));
    static constexpr int kSilk[] = {10, 20, 40, 60};
    const auto first = static_cast<unsigned char>(content[0]);
    const int config = first >> 3;
    const int frame = config < 12 ? kSilk[config & 3] : config < 16 ? kSilk[config & 1] : 20;
    return (first & 3) == 0 ? frame : std::min(120, 2 * frame);
}

void soundDecoder::take(std::vector<short>& samples)
{
    for (const QByteArray& part : m_way->output()) {
        const size_t before = samples.size();
        samples.resize(before + size_t(part.size()) / sizeof(short));
        memcpy(samples.data() + before, part.constData(), (samples.size() - before) * sizeof(short));
    }
    m_way->output().clear();
}

void soundDecoder::decode(const QByteArray& content, std::vector<short>& samples)
{
    if (content.isEmpty())
        return;
    m_nLastMs = lengthMs(content);
    m_bBegun = true;
    m_way->push(content.constData(), int(content.size()), m_nLastMs * kMs);
    take(samples);
}

void soundDecoder::conceal(std::vector<short>& samples)
{
    if (!m_bBegun)
        return;
    // What makes up for less writes beyond its end.
    m_way->pushGap(std::max(m_nLastMs, kLeastGapMs) * kMs);
    take(samples);
}

QList<QByteArray> soundCoder::parts()
{
    return {"opusenc", "opusdec", "avenc_g722", "avdec_g722", "spanplc", "audioresample", "audioconvert"};
}
