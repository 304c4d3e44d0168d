#pragma once
// A picture as a GIF file of at most 255 colours; what is less than half opaque becomes transparent.
#include <QByteArray>
#include <QImage>

// The picture is at most 65535 pixels on a side.
QByteArray GifFile(const QImage& picture);
