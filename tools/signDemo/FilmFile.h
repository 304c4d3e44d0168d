#pragma once
// Writes a film: H.264 and AAC in MP4, as the phone's player likes them.
#include <QImage>
#include <cstdint>
#include <functional>
#include <vector>

struct FilmSource
{
    int width, height;                // pixels
    int frames, frameRate;            // frames a second
    std::function<QImage(int)> frame; // in the format RGB32
    std::vector<int16_t> sound;       // one channel, of the film's length
    int soundRate;                    // samples a second
};

// 0 with a line on the standard error when an encoder is missing or the file cannot be written.
int WriteFilm(const QByteArray& file, const FilmSource& film);
