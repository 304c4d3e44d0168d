#pragma once
// Samples of one channel at another rate, by the media toolkit's resampler. One thread.
#include <QByteArray>
#include <gst/audio/audio.h>

class rateChange
{
public:
    // Hz.
    rateChange(int from, int to);
    ~rateChange();
    rateChange(const rateChange&) = delete;
    rateChange& operator=(const rateChange&) = delete;

    // 16-bit samples at the other rate; at its beginning it keeps a little back.
    QByteArray change(const short* samples, qsizetype count);

private:
    GstAudioResampler* m_pResampler;
};
