#pragma once
// Makes packets of the user's own pictures, for one call: size, rate, codec. What comes of it comes on a
// thread of its own; while that is busy the camera's newest picture waits, and others are left out.
#include "players/callNegotiation.h"
#include "players/pictureCamera.h"
#include <atomic>
#include <functional>
#include <gst/video/video.h>
#include <memory>
#include <mutex>

class pictureEncoder
{
public:
    enum : int { PACKET_BYTES = 1200, KEY_SECONDS = 10, SILENT_MS = pictureCamera::SILENT_MS };

    // An RTP packet, with a time, a mark and a content that count; and the picture before it is encoded.
    using PacketHandler = std::function<void(const unsigned char* packet, int size)>;
    using PictureHandler = std::function<void(const GstVideoFrame& frame)>;

    // Null when there is no camera, or it cannot be opened; fault says why, in words for a log. camera
    // outlives the encoder.
    static std::unique_ptr<pictureEncoder> make(pictureCamera& camera, const tagAgreedPicture& agreed,
                                                int kbit, PacketHandler onPacket, PictureHandler onPicture,
                                                QByteArray& fault);
    // Nothing comes any more afterwards.
    ~pictureEncoder();
    pictureEncoder(const pictureEncoder&) = delete;
    pictureEncoder& operator=(const pictureEncoder&) = delete;

    bool isFor(const tagAgreedPicture& agreed) const;
    // Why no more pictures come, as above; empty while they do.
    QByteArray fault() const;
    // The next picture stands for itself.
    void askKeyPicture();
    void setKbit(int kbit);
    static QList<QByteArray> parts();

private:
    explicit pictureEncoder(pictureCamera& camera) : m_camera(camera) {}
    bool build(int kbit);
    void watchPictures(GstElement* encoder);
    void takePacket(GstElement* sink);
    static GstBusSyncReply onMessage(GstBus*, GstMessage* message, gpointer self);

    pictureCamera& m_camera;
    tagPictureFormat m_format;
    tagPictureBounds m_bounds;
    PacketHandler m_onPacket;
    PictureHandler m_onPicture;
    GstElement* m_pPipeline = nullptr;
    GstElement* m_pSource = nullptr;  // of the pipeline
    GstElement* m_pEncoder = nullptr; // of the pipeline
    std::atomic<qint64> m_nSentUs{0};
    mutable std::mutex m_mutex; // of what follows
    QByteArray m_fault;
};
