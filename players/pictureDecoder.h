#pragma once
// Makes pictures of the packets of a stream that are in order. Put from one thread; pictures come on another.
#include "players/pictureFormat.h"
#include <functional>
#include <gst/video/video.h>
#include <memory>

class pictureDecoder
{
public:
    enum : int {
        MAX_WIDTH = 1920, // pixels
        MAX_HEIGHT = 1088,
        MAX_PICTURE = 1 << 20, // bytes of one that is still coded
        MAX_WAITING = 1 << 20, // bytes
        MAX_PACKETS = 4000,    // that wait
        RATE = 90,             // pictures a second
        AT_ONCE = 150          // after the network has held them back
    };

    using PictureHandler = std::function<void(const GstVideoFrame& frame)>;
    static std::unique_ptr<pictureDecoder> make(PICTURE_CODEC codec, PictureHandler onPicture);
    // Nothing comes any more afterwards.
    ~pictureDecoder();
    pictureDecoder(const pictureDecoder&) = delete;
    pictureDecoder& operator=(const pictureDecoder&) = delete;

    // False when it was too much, or is no part of a picture: what is behind it cannot be shown.
    // packet: one of more than rtpPacket::MAX_BYTES is no part.
    bool put(const QByteArray& packet);
    // Bytes that it has not begun with.
    qint64 waiting() const;
    // It has met what it cannot go on with, or pictures that are too large or too many.
    bool hasFailed() const;
    static QList<QByteArray> parts();

private:
    struct tagInside;
    pictureDecoder() = default;
    bool build();
    static GstPadProbeReturn onPart(GstPad*, GstPadProbeInfo* info, gpointer inside);
    static GstPadProbeReturn onWhole(GstPad*, GstPadProbeInfo* info, gpointer inside);

    std::unique_ptr<tagInside> m_inside;
};
