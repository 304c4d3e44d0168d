#include "players/rateChange.h"

namespace {

// It keeps both sides of 4 kHz apart well enough for speech.
constexpr guint kQuality = 2;

} // namespace

rateChange::rateChange(int from, int to)
{
    GstStructure* options = gst_structure_new_empty("options");
    gst_audio_resampler_options_set_quality(GST_AUDIO_RESAMPLER_METHOD_KAISER, kQuality, from, to, options);
    m_pResampler = gst_audio_resampler_new(GST_AUDIO_RESAMPLER_METHOD_KAISER, GST_AUDIO_RESAMPLER_FLAG_NONE,
                                           GST_AUDIO_FORMAT_S16, 1, from, to, options);
    gst_structure_free(options);
}

rateChange::~rateChange()
{
    gst_audio_resampler_free(m_pResampler);
}

QByteArray rateChange::change(const short* samples, qsizetype count)
{
    const gsize made = gst_audio_resampler_get_out_frames(m_pResampler, gsize(count));
    QByteArray changed(qsizetype(made * sizeof(short)), Qt::Uninitialized);
    gpointer in[] = {const_cast<short*>(samples)};
    gpointer out[] = {changed.data()};
    gst_audio_resampler_resample(m_pResampler, in, gsize(count), out, made);
    return changed;
}
