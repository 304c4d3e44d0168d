#include "players/soundCoder.h"
#include "support/host/trace.h"
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
// The resampler of the toolkit keeps both sides of 4 kHz apart well enough for speech at this quality.
constexpr tagChains kChains[] = {
    {SOUND_CODEC::OPUS, "opusenc name=coder audio-type=voice bitrate=32000 complexity=5 inband-fec=true",
     "opusdec plc=true", "audio/x-opus,channel-mapping-family=0,rate=48000,channels=1", "audio/x-opus"},
    {SOUND_CODEC::G722, "avenc_g722", "avdec_g722 ! spanplc", "audio/G722,rate=16000,channels=1",
     "audio/G722"},
    {SOUND_CODEC::PCMA, "audioresample quality=2 ! audio/x-raw,rate=8000 ! alawenc",
     "alawdec ! spanplc ! audioresample quality=2", "audio/x-alaw,rate=8000,channels=1", "audio/x-alaw"},
    {SOUND_CODEC::PCMU, "audioresample quality=2 ! audio/x-raw,rate=8000 ! mulawenc",
     "mulawdec ! spanplc ! audioresample quality=2", "audio/x-mulaw,rate=8000,channels=1", "audio/x-mulaw"}};

const tagChains* chainsOf(SOUND_CODEC codec)
{
    for (const tagChains& chains : kChains) {
        if (chains.eCodec == codec)
            return &chains;
    }
    return nullptr;
}

GstPad* newPad(const char* caps, GstPadDirection direction)
{
    GstCaps* kind = gst_caps_from_string(caps);
    GstPadTemplate* form =
        gst_pad_template_new(direction == GST_PAD_SRC ? "src" : "sink", direction, GST_PAD_ALWAYS, kind);
    gst_caps_unref(kind);
    GstPad* pad = gst_pad_new_from_template(form, nullptr);
    gst_object_unref(gst_object_ref_sink(form));
    gst_object_ref_sink(pad);
    return pad;
}

// To the part itself: each pad of a bin is one more step for each packet.
bool linkToPart(GstElement* bin, GstPad* pad)
{
    const bool isSource = gst_pad_get_direction(pad) == GST_PAD_SRC;
    GstPad* other = gst_bin_find_unlinked_pad(GST_BIN(bin), isSource ? GST_PAD_SINK : GST_PAD_SRC);
    if (!other)
        return false;
    const GstPadLinkReturn linked = isSource ? gst_pad_link(pad, other) : gst_pad_link(other, pad);
    gst_object_unref(other);
    return linked == GST_PAD_LINK_OK;
}

} // namespace

std::unique_ptr<soundChain> soundChain::make(const char* description, const char* in, const char* out)
{
    std::unique_ptr<soundChain> chain(new soundChain);
    if (chain->open(description, in, out))
        return chain;
    nuxTrace(TRACE_NOTE, "sound cannot go through \"%s\"", description);
    return nullptr;
}

bool soundChain::open(const char* description, const char* in, const char* out)
{
    GError* error = nullptr;
    m_pBin = gst_parse_bin_from_description(description, FALSE, &error);
    const bool isWhole = m_pBin && !error;
    g_clear_error(&error);
    if (m_pBin)
        gst_object_ref_sink(m_pBin);
    m_pIn = newPad(in, GST_PAD_SRC);
    m_pOut = newPad(out, GST_PAD_SINK);
    gst_pad_set_element_private(m_pOut, this);
    gst_pad_set_chain_function(m_pOut, onOutput);
    if (!isWhole || !linkToPart(m_pBin, m_pIn) || !linkToPart(m_pBin, m_pOut))
        return false;
    gst_pad_set_active(m_pOut, TRUE);
    gst_pad_set_active(m_pIn, TRUE);
    if (gst_element_set_state(m_pBin, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        return false;
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    GstCaps* caps = gst_caps_from_string(in);
    gst_pad_push_event(m_pIn, gst_event_new_stream_start("call"));
    const bool isTaken = gst_pad_push_event(m_pIn, gst_event_new_caps(caps));
    gst_caps_unref(caps);
    gst_pad_push_event(m_pIn, gst_event_new_segment(&segment));
    return isTaken;
}

soundChain::~soundChain()
{
    if (m_pIn)
        gst_pad_set_active(m_pIn, FALSE);
    if (m_pBin) {
        gst_element_set_state(m_pBin, GST_STATE_NULL);
        gst_object_unref(m_pBin);
    }
    if (m_pOut)
        gst_pad_set_active(m_pOut, FALSE);
    gst_clear_object(&m_pIn);
    gst_clear_object(&m_pOut);
}

GstElement* soundChain::part(const char* name) const
{
    GstElement* found = gst_bin_get_by_name(GST_BIN(m_pBin), name);
    if (found)
        gst_object_unref(found); // the bin keeps it
    return found;
}

GstFlowReturn soundChain::onOutput(GstPad* pad, GstObject*, GstBuffer* buffer)
{
    auto* chain = static_cast<soundChain*>(gst_pad_get_element_private(pad));
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        chain->m_output.append(QByteArray(reinterpret_cast<const char*>(map.data), qsizetype(map.size)));
        gst_buffer_unmap(buffer, &map);
    }
    gst_buffer_unref(buffer);
    return GST_FLOW_OK;
}

bool soundChain::push(const void* data, int bytes, qint64 ns)
{
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, gsize(bytes), nullptr);
    gst_buffer_fill(buffer, 0, data, gsize(bytes));
    GST_BUFFER_PTS(buffer) = GstClockTime(m_nTime);
    GST_BUFFER_DURATION(buffer) = GstClockTime(ns);
    m_nTime += ns;
    return gst_pad_push(m_pIn, buffer) == GST_FLOW_OK;
}

bool soundChain::pushGap(qint64 ns)
{
    GstEvent* gap = gst_event_new_gap(GstClockTime(m_nTime), GstClockTime(ns));
    m_nTime += ns;
    return gst_pad_push_event(m_pIn, gap);
}

std::unique_ptr<soundEncoder> soundEncoder::make(SOUND_CODEC codec, int ptime)
{
    const tagChains* chains = chainsOf(codec);
    if (!chains)
        return nullptr;
    auto encoder = std::make_unique<soundEncoder>();
    encoder->m_eCodec = codec;
    encoder->m_nPtime = ptime;
    encoder->m_chain = soundChain::make(chains->pEncode, kSound, chains->pMade);
    if (!encoder->m_chain)
        return nullptr;
    if (codec == SOUND_CODEC::OPUS)
        gst_util_set_object_arg(G_OBJECT(encoder->m_chain->part("coder")), "frame-size",
                                QByteArray::number(ptime).constData());
    return encoder;
}

void soundEncoder::setLoss(int percent)
{
    if (m_eCodec != SOUND_CODEC::OPUS || percent == m_nLoss)
        return;
    m_nLoss = percent;
    g_object_set(m_chain->part("coder"), "packet-loss-percentage", percent, nullptr);
}

QList<QByteArray> soundEncoder::encode(const short* samples, int count)
{
    m_waiting.insert(m_waiting.end(), samples, samples + count);
    const size_t whole = size_t(m_nPtime) * soundCoder::SAMPLE_RATE / 1000;
    QList<QByteArray> packets;
    while (m_waiting.size() >= whole) {
        m_chain->push(m_waiting.data(), int(whole * sizeof(short)), m_nPtime * kMs);
        m_waiting.erase(m_waiting.begin(), m_waiting.begin() + qptrdiff(whole));
        packets.append(takePacket());
    }
    return packets;
}

// The resampler keeps a little back at its beginning, which would make each packet one sound later.
QByteArray soundEncoder::takePacket()
{
    for (const QByteArray& part : m_chain->output())
        m_encoded += part;
    m_chain->output().clear();
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
    const tagChains* chains = chainsOf(codec);
    if (!chains)
        return nullptr;
    auto decoder = std::make_unique<soundDecoder>();
    decoder->m_eCodec = codec;
    decoder->m_chain = soundChain::make(chains->pDecode, chains->pCoded, kSound);
    return decoder->m_chain ? std::move(decoder) : nullptr;
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
    for (const QByteArray& part : m_chain->output()) {
        const size_t before = samples.size();
        samples.resize(before + size_t(part.size()) / sizeof(short));
        memcpy(samples.data() + before, part.constData(), (samples.size() - before) * sizeof(short));
    }
    m_chain->output().clear();
}

void soundDecoder::decode(const QByteArray& content, std::vector<short>& samples)
{
    if (content.isEmpty())
        return;
    m_nLastMs = lengthMs(content);
    m_bBegun = true;
    m_chain->push(content.constData(), int(content.size()), m_nLastMs * kMs);
    take(samples);
}

void soundDecoder::conceal(std::vector<short>& samples)
{
    if (!m_bBegun)
        return;
    // What makes up for less writes beyond its end.
    m_chain->pushGap(std::max(m_nLastMs, kLeastGapMs) * kMs);
    take(samples);
}

QList<QByteArray> soundCoder::parts()
{
    return {"opusenc",  "opusdec",  "avenc_g722", "avdec_g722",    "alawenc",      "alawdec",
            "mulawenc", "mulawdec", "spanplc",    "audioresample", "audioconvert", "capsfilter"};
}
