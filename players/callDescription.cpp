#include "players/callDescription.h"
#include <algorithm>
#include <arpa/inet.h>
#include <gst/sdp/sdp.h>
#include <memory>

namespace {

struct FreeMessage
{
    void operator()(GstSDPMessage* message) const { gst_sdp_message_free(message); }
};
using Message = std::unique_ptr<GstSDPMessage, FreeMessage>;

constexpr int kMaxPort = 65535;
constexpr int kMaxPayload = 127;

// A number that is nothing else, or -1.
int numberOf(const QByteArray& text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 0 ? number : -1;
}

bool isText(const QByteArray& text)
{
    return std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte == 0x7f || (byte < 0x20 && c != '\r' && c != '\n' && c != '\t');
    });
}

QByteArray addressOf(const GstSDPConnection* connection)
{
    in_addr address = {};
    const bool isIPv4 = connection && connection->address && qstricmp(connection->nettype, "IN") == 0 &&
                        qstricmp(connection->addrtype, "IP4") == 0 &&
                        inet_pton(AF_INET, connection->address, &address) == 1;
    return isIPv4 ? QByteArray(connection->address) : QByteArray();
}

bool isRtp(const QByteArray& transport)
{
    static const char* const kSpoken[] = {"RTP/AVP", "RTP/SAVP", "RTP/AVPF", "RTP/SAVPF"};
    return std::any_of(std::begin(kSpoken), std::end(kSpoken),
                       [&](const char* spoken) { return qstricmp(transport, spoken) == 0; });
}

void setDirection(const QByteArray& key, tagDescribedMedia& media)
{
    if (key != "sendrecv" && key != "sendonly" && key != "recvonly" && key != "inactive")
        return;
    media.bSends = key == "sendrecv" || key == "sendonly";
    media.bReceives = key == "sendrecv" || key == "recvonly";
}

// "96 opus/48000/2"
void readMap(const QByteArray& value, tagDescribedMedia& media)
{
    const QList<QByteArray> words = value.simplified().split(' ');
    const QList<QByteArray> parts = words.size() == 2 ? words[1].split('/') : QList<QByteArray>();
    if (parts.size() < 2)
        return;
    const int payload = numberOf(words[0]);
    const QByteArray name = parts[0].toLower();
    for (tagDescribedCodec& codec : media.codecs) {
        if (codec.nPayload != payload)
            continue;
        codec.eCodec = SOUND_CODEC::NONE;
        codec.nClock = numberOf(parts[1]);
        codec.bTones = name == "telephone-event" && codec.nClock >= 8000 && codec.nClock <= 48000;
        for (const tagSoundCodec& known : kSoundCodecs) {
            if (name == QByteArray(known.pName).toLower() && codec.nClock == known.nClock)
                codec.eCodec = known.eCodec;
        }
        for (const tagPictureCodec& known : kPictureCodecs) {
            if (name == QByteArray(known.pName).toLower() && codec.nClock == PICTURE_CLOCK)
                codec.picture.eCodec = known.eCodec;
        }
    }
}

// "97 profile-level-id=42e01f;packetization-mode=1"
void readParameters(const QByteArray& value, tagDescribedMedia& media)
{
    const qsizetype at = value.indexOf(' ');
    const int payload = numberOf(value.left(at));
    for (tagDescribedCodec& codec : media.codecs) {
        if (at > 0 && codec.nPayload == payload)
            pictureFormat::readParameters(value.mid(at + 1), codec.picture);
    }
}

// "101 0-11,16": which tones are taken. What says it in another way says nothing.
void readTones(const QByteArray& value, tagDescribedMedia& media)
{
    constexpr int kLast = 15;
    const QList<QByteArray> words = value.simplified().split(' ');
    unsigned tones = 0;
    for (const QByteArray& part : words.mid(1).join("").split(',')) {
        const QList<QByteArray> ends = part.split('-');
        const int first = numberOf(ends.first()), last = numberOf(ends.last());
        if (ends.size() > 2 || first < 0 || last < first)
            return;
        for (int event = first; event <= std::min(last, kLast); ++event)
            tones |= 1u << event;
    }
    for (tagDescribedCodec& codec : media.codecs) {
        if (codec.nPayload == numberOf(words.first()))
            codec.nTones = tones;
    }
}

// "* nack pli", "97 ccm fir"
void readFeedback(const QByteArray& value, tagDescribedMedia& media)
{
    const QByteArray text = value.simplified().toLower();
    media.bPli = media.bPli || text.endsWith(" nack pli");
    media.bFir = media.bFir || text.endsWith(" ccm fir");
}

void readAttribute(const QByteArray& key, const QByteArray& value, tagDescribedMedia& media)
{
    setDirection(key, media);
    tagCrypto crypto;
    if (key == "rtpmap")
        readMap(value, media);
    else if (key == "fmtp" && media.bPicture)
        readParameters(value, media);
    else if (key == "fmtp")
        readTones(value, media);
    else if (key == "rtcp-fb")
        readFeedback(value, media);
    else if (key == "ptime")
        media.nPtime = std::clamp(numberOf(value), 0, 1000);
    else if (key == "maxptime")
        media.nMaxPtime = std::clamp(numberOf(value), 0, 1000);
    else if (key == "rtcp-mux")
        media.bRtcpMux = true;
    else if (key == "rtcp")
        media.nRtcpPort = numberOf(value.simplified().split(' ').first());
    else if (key == "crypto" && media.cryptos.size() < callDescription::MAX_CRYPTOS &&
             callCrypto::read(value, crypto))
        media.cryptos.append(crypto);
}

void readFormats(const GstSDPMedia* from, tagDescribedMedia& media)
{
    for (guint i = 0; i < gst_sdp_media_formats_len(from); ++i) {
        const QByteArray format = gst_sdp_media_get_format(from, i);
        const int payload = numberOf(format);
        if (i == 0)
            media.format = format;
        if (payload < 0 || payload > kMaxPayload || media.codecs.size() >= callDescription::MAX_CODECS)
            continue;
        tagDescribedCodec codec;
        codec.nPayload = payload;
        codec.picture = {
            PICTURE_CODEC::NONE, payload, 0, "4200", 0x0a, false}; // what it is when nobody says more
        for (const tagSoundCodec& known : kSoundCodecs) {
            if (known.nPayload == payload) {
                codec.eCodec = known.eCodec;
                codec.nClock = known.nClock;
            }
        }
        media.codecs.append(codec);
    }
}

void readPorts(const GstSDPMedia* from, tagDescribedMedia& media)
{
    const guint port = gst_sdp_media_get_port(from);
    media.nPort = port <= kMaxPort ? int(port) : 0;
    if (media.nRtcpPort < 1 || media.nRtcpPort > kMaxPort)
        media.nRtcpPort = media.nPort + 1;
    if (media.nRtcpPort > kMaxPort)
        media.nRtcpPort = 0;
}

// The bits of this line alone.
void readBandwidth(const GstSDPMedia* from, tagDescribedMedia& media)
{
    for (guint i = 0; i < gst_sdp_media_bandwidths_len(from); ++i) {
        const GstSDPBandwidth* bandwidth = gst_sdp_media_get_bandwidth(from, i);
        const guint kbit = std::min(bandwidth->bandwidth, 1000000u);
        if (g_strcmp0(bandwidth->bwtype, GST_SDP_BWTYPE_AS) == 0)
            media.nKbit = int(kbit);
    }
}

tagDescribedMedia readMedia(const GstSDPMessage* message, const GstSDPMedia* from)
{
    tagDescribedMedia media;
    media.kind = gst_sdp_media_get_media(from);
    media.transport = gst_sdp_media_get_proto(from);
    media.bSound = qstricmp(media.kind, "audio") == 0;
    media.bPicture = qstricmp(media.kind, "video") == 0;
    media.bRtp = isRtp(media.transport);
    media.bSecure = callDescription::isSealed(media.transport);
    const bool hasOwn = gst_sdp_media_connections_len(from) > 0;
    media.address =
        addressOf(hasOwn ? gst_sdp_media_get_connection(from, 0) : gst_sdp_message_get_connection(message));
    readFormats(from, media);
    for (guint i = 0; i < gst_sdp_message_attributes_len(message); ++i)
        setDirection(gst_sdp_message_get_attribute(message, i)->key, media);
    for (guint i = 0; i < gst_sdp_media_attributes_len(from); ++i) {
        const GstSDPAttribute* attribute = gst_sdp_media_get_attribute(from, i);
        readAttribute(attribute->key, attribute->value, media);
    }
    readPorts(from, media);
    readBandwidth(from, media);
    return media;
}

} // namespace

bool callDescription::isSealed(const QByteArray& transport)
{
    return transport.toUpper().startsWith("RTP/SAVP");
}

bool callDescription::read(const QByteArray& text, QList<tagDescribedMedia>& media)
{
    media.clear();
    if (text.isEmpty() || text.size() >= MAX_BYTES || !text.startsWith("v=0") || !isText(text))
        return false;
    GstSDPMessage* raw = nullptr;
    gst_sdp_message_new(&raw);
    const Message message(raw);
    if (gst_sdp_message_parse_buffer(reinterpret_cast<const guint8*>(text.constData()), guint(text.size()),
                                     message.get()) != GST_SDP_OK)
        return false;
    const guint count = gst_sdp_message_medias_len(message.get());
    if (count == 0 || count > MAX_MEDIA)
        return false;
    for (guint i = 0; i < count; ++i) {
        media.append(readMedia(message.get(), gst_sdp_message_get_media(message.get(), i)));
        if (media.last().kind.isEmpty() || media.last().transport.isEmpty() || media.last().format.isEmpty())
            return false;
    }
    return true;
}

int callDescription::ptimeFor(const tagDescribedMedia& media, SOUND_CODEC codec)
{
    static constexpr int kTimes[] = {60, 40, 30, 20, 10};
    int most = media.nPtime > 0 ? media.nPtime : 20;
    if (media.nMaxPtime > 0)
        most = std::min(most, media.nMaxPtime);
    for (const int time : kTimes) {
        if (time <= most && !(time == 30 && codec == SOUND_CODEC::OPUS)) // Opus has no such frame
            return time;
    }
    return 10;
}
