#include "players/rtpDescription.h"
#include <QList>
#include <cstring>
#include <gst/sdp/sdp.h>
#include <memory>

namespace {

struct FreeMedia
{
    void operator()(GstSDPMedia* media) const { gst_sdp_media_free(media); }
};
using Media = std::unique_ptr<GstSDPMedia, FreeMedia>;

Media newMedia()
{
    GstSDPMedia* media = nullptr;
    gst_sdp_media_new(&media);
    return Media(media);
}

tagStream makeStream(int payload, const char* name, const char* param, int rate, int channels)
{
    tagStream stream;
    if (!*name)
        return stream;
    stream.nPayload = payload;
    stream.name = name;
    stream.param = param;
    stream.nRate = rate;
    stream.nChannels = channels;
    return stream;
}

template <int size>
void copyText(char (&target)[size], const QByteArray& text)
{
    static_assert(size > 0);
    if (text.size() < size)
        memcpy(target, text.constData(), size_t(text.size()) + 1);
}

int intOf(const GstStructure* structure, const char* field)
{
    int value = 0;
    gst_structure_get_int(structure, field, &value);
    return value;
}

// "sprop-parameter-sets=...;" and the like make most of the length.
QByteArray withoutLongest(const QByteArray& param)
{
    const QList<QByteArray> fields = param.split(';');
    qsizetype longest = 0;
    for (qsizetype i = 1; i < fields.size(); ++i) {
        if (fields[i].size() > fields[longest].size())
            longest = i;
    }
    QList<QByteArray> kept = fields;
    kept.removeAt(longest);
    return kept.join(';');
}

template <int size>
void copyParam(char (&target)[size], QByteArray param)
{
    while (param.size() >= size && param.contains(';'))
        param = withoutLongest(param);
    copyText(target, param);
}

} // namespace

tagStream rtpDescription::soundOf(const MOV_SDP& sdp)
{
    return makeStream(sdp.nAudPayload, sdp.szAudName, sdp.szAudParam, sdp.nAudRate, sdp.nChannels);
}

tagStream rtpDescription::pictureOf(const MOV_SDP& sdp)
{
    return makeStream(sdp.nVidPayload, sdp.szVidName, sdp.szVidParam, sdp.nVidRate, 0);
}

tagStream rtpDescription::soundOf(const VOICE_PARAM& session)
{
    return makeStream(session.audDec.nPayload, session.szAudMime, session.szAudSdpParam, session.nAudRate,
                      session.nChannels);
}

tagStream rtpDescription::pictureOf(const VOICE_PARAM& session)
{
    return makeStream(session.vidDec.nPayload, session.szVidMime, session.szVidSdpParam, session.nVidRate, 0);
}

void rtpDescription::store(const tagStream& sound, const tagStream& picture, MOV_SDP& sdp)
{
    sdp = {};
    sdp.nAudPayload = sound.nPayload;
    copyText(sdp.szAudName, sound.name);
    copyParam(sdp.szAudParam, sound.param);
    sdp.nAudRate = sound.nRate;
    sdp.nChannels = sound.nChannels;
    sdp.nVidPayload = picture.nPayload;
    copyText(sdp.szVidName, picture.name);
    copyParam(sdp.szVidParam, picture.param);
    sdp.nVidRate = picture.nRate;
}

tagStream rtpDescription::fromCaps(const GstCaps* caps)
{
    tagStream stream;
    const Media media = newMedia();
    if (!caps || gst_caps_is_empty(caps) ||
        gst_sdp_media_set_media_from_caps(caps, media.get()) != GST_SDP_OK)
        return stream;
    const GstStructure* structure = gst_caps_get_structure(caps, 0);
    const char* name = gst_structure_get_string(structure, "encoding-name");
    stream.nPayload = intOf(structure, "payload");
    stream.nRate = intOf(structure, "clock-rate");
    // The registered spelling of this one name is in small letters.
    stream.name = qstricmp(name, "mpeg4-generic") == 0 ? QByteArray("mpeg4-generic") : QByteArray(name);
    stream.param = QByteArray(gst_sdp_media_get_attribute_val(media.get(), "fmtp"));
    return stream;
}

GstCaps* rtpDescription::toCaps(const tagStream& stream, bool isPicture)
{
    if (stream.name.isEmpty() || stream.nRate <= 0)
        return nullptr;
    const Media media = newMedia();
    const QByteArray payload = QByteArray::number(stream.nPayload);
    QByteArray map = payload + ' ' + stream.name + '/' + QByteArray::number(stream.nRate);
    if (stream.nChannels > 0)
        map += '/' + QByteArray::number(stream.nChannels);
    gst_sdp_media_set_media(media.get(), isPicture ? "video" : "audio");
    gst_sdp_media_add_format(media.get(), payload.constData());
    gst_sdp_media_add_attribute(media.get(), "rtpmap", map.constData());
    if (!stream.param.isEmpty())
        gst_sdp_media_add_attribute(media.get(), "fmtp", stream.param.constData());
    GstCaps* caps = gst_sdp_media_get_caps_from_media(media.get(), stream.nPayload);
    if (caps)
        gst_structure_set_name(gst_caps_get_structure(caps, 0), "application/x-rtp");
    return caps;
}
