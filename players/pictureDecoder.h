#pragma once
// Makes pictures of the packets of a stream that are in order. Put from one thread; pictures come on another.
#include "players/pictureFormat.h"
#include <functional>
#include <gst/video/video.h>
#include <memory>

class pictureDecoder
{
public:
    enum : int { MAX_WIDTH = 1920, MAX_HEIGHT = 1088, MAX_WAITING = 1 << 20 }; // pixels, bytes

    using PictureHandler = std::function<void(const GstVideoFrame& frame)>;
    static std::unique_ptr<pictureDecoder> make(PICTURE_CODEC codec, PictureHandler onPicture);
    // Nothing comes any more afterwards.
    ~pictureDecoder();
    pictureDecoder(const pictureDecoder&) = delete;
    pictureDecoder& operator=(const pictureDecoder&) = delete;

    PICTURE_CODEC codec() const { return m_eCodec; }
    // False when it was too much: what is behind it cannot be shown.
    bool put(const QByteArray& packet);
    // It has met what it cannot go on with, or pictures that are too large.
    bool hasFailed() const;
    static QList<QByteArray> parts();

private:
    struct tagInside;
    pictureDecoder() = default;
    bool build();

    PICTURE_CODEC m_eCodec = PICTURE_CODEC::NONE;
    std::unique_ptr<tagInside> m_inside;
};
