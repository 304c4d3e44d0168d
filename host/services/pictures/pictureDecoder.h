#pragma once
// From a file to what can be painted, within bounds. Any thread.
#include "support/host/image.h"
#include "support/host/picture.h"
#include <QImage>
#include <QSize>
#include <atomic>

// How a decoded picture comes out: the wish of a request, and two kinds that only the cache knows.
struct tagPictureShape
{
    enum FIT {
        INSIDE = PICTURE_FIT_INSIDE,
        SIDES = PICTURE_FIT_SIDES,
        EXACT = PICTURE_FIT_EXACT,
        COVER = PICTURE_FIT_COVER,
        FITTED,
        AS_IS
    };

    QSize room; // pixels
    int eFit = AS_IS;
    bool operator==(const tagPictureShape& other) const { return room == other.room && eFit == other.eFit; }
};

struct tagPictureLimits
{
    qint64 nFileBytes = 256 << 20;
    qint64 nPixels = 128 << 20;             // of the file
    qint64 nWorkBytes = 48 << 20;           // where it has to be in memory as a whole
    qint64 nAsIsPixels = IMAGE_PIXEL_LIMIT; // of one that is not scaled
    qint64 nAlonePixels = 4 << 20;          // of the file; a larger PNG is unpacked on a thread of its own
    int nCpuMs = 10000;                     // of the processor time of its threads
};

struct tagDecodedPicture
{
    PICTURE_RESULT eResult = PICTURE_MISSING;
    QImage image;     // null unless PICTURE_READ; in the form that a pixmap takes as it is
    QSize sizeInFile; // pixels, the way up followed
};

// path: device path; cancel: set by another thread, it ends the work soon; null for never.
tagDecodedPicture pictureDecode(const char* path, const tagPictureShape& shape,
                                const tagPictureLimits& limits, const std::atomic<bool>* cancel);
