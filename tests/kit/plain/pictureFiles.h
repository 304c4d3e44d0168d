#pragma once
// Picture files that nobody would want to open, made in a moment.
#include <QByteArray>
#include <QImage>
#include <QSize>

namespace kit {

// All black: a kilobyte for each megapixel. isInterlaced: as seven pictures in one.
QByteArray pngOfOneColour(const QSize& size, bool isInterlaced = false);
// As large as that of a photo. The height is a multiple of 50.
QByteArray pngPhoto(const QSize& size);
// With the checksum of each chunk as it should be, as far as there are chunks.
QByteArray pngMended(const QByteArray& png);
// Soft shapes with some grain, as a photo has them.
QImage photo(const QSize& size);
QByteArray jpegPhoto(const QSize& size);
// A GIF of 35 bytes that claims a screen of that size, and holds a frame of one pixel.
QByteArray gifOfScreen(const QSize& screen);

} // namespace kit
