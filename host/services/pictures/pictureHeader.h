#pragma once
// What a picture file says about itself, read before anything is allocated for it. Any thread.
#include <QByteArray>
#include <QImageIOHandler>
#include <QSize>

class PictureSource;

struct tagPictureHeader
{
    enum KIND { NONE, JPEG, PNG, BMP, GIF };

    KIND eKind = NONE;                     // NONE: no picture of these kinds, or cut short
    QSize size;                            // pixels, before it is turned
    QImageIOHandler::Transformations turn; // the way up that a camera wrote into its picture
    // Bytes that decoding takes beside those of the result: of a picture that comes from the decoder in one
    // piece, or in several rounds over the whole.
    qint64 nWorkBytes = 0;

    const char* format() const; // as the toolkit's readers are called
    bool isTurned() const { return turn & QImageIOHandler::TransformationRotate90; }
    QSize shownSize() const { return isTurned() ? size.transposed() : size; }
};

tagPictureHeader pictureReadHeader(PictureSource& source);
