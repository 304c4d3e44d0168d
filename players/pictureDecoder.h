#pragma once
// Makes pictures of the packets of a stream that are in order. Put from one thread; pictures come on another.
#include "players/codedPictures.h"
#include "players/pictureCodec.h"
#include <functional>
#include <gst/video/video.h>
#include <memory>

class lateEnds;

class pictureDecoder
{
public:
    enum : int {
        MAX_WIDTH = codedPictures::MAX_WIDTH, // pixels
        MAX_HEIGHT = codedPictures::MAX_HEIGHT,
        MAX_WAITING = 1 << 20, // bytes
        MAX_PICTURES = 150,    // that wait
        RATE = 90,             // pictures a second
        AT_ONCE = 150,         // after the network has held them back
        WORK_MS = 600,         // of a processor, a second
        WORK_AT_ONCE_MS = 600,
        LATE_MS = 1000, // that one may wait
        SKIP_MS = 2000  // after one was left out: who makes no key picture is seen all the same
    };

    using PictureHandler = std::function<void(const GstVideoFrame& frame)>;
    static std::unique_ptr<pictureDecoder> make(PICTURE_CODEC codec, PictureHandler onPicture);
    // Nothing comes any more afterwards. It waits for a picture that is being handled, and for no decoder.
    ~pictureDecoder();
    pictureDecoder(const pictureDecoder&) = delete;
    pictureDecoder& operator=(const pictureDecoder&) = delete;

    // False when something is missing, or was left out: what is behind it is damaged.
    bool put(const QByteArray& packet);
    // Bytes that it has not begun with.
    qint64 waiting() const;
    // It has met what it cannot go on with.
    bool hasFailed() const;
    // Its pictures are of a kind that is not shown here.
    bool isRefused() const;
    static QList<QByteArray> parts();
    // Where decoders end.
    static lateEnds& ends();

private:
    struct tagInside;
    pictureDecoder() = default;
    bool build();

    std::shared_ptr<tagInside> m_inside;
};
