#pragma once
// The user's camera: open while somebody takes its pictures, and once, however many they are. One thread
// takes and leaves; the pictures come on another.
#include <QByteArray>
#include <atomic>
#include <functional>
#include <gst/gst.h>
#include <map>
#include <mutex>

class pictureCamera
{
public:
    enum : int {
        WIDTH = 640, // what is asked of a camera that has several sizes; no call sends more
        HEIGHT = 480,
        RATE = 30,
        SILENT_MS = 5000 // without a picture it does not work
    };

    // A picture as the camera gives it, with a time of the steady clock. Whoever is slow holds up all others.
    using SampleHandler = std::function<void(GstSample* sample)>;

    pictureCamera() = default;
    ~pictureCamera();
    pictureCamera(const pictureCamera&) = delete;
    pictureCamera& operator=(const pictureCamera&) = delete;

    // False when there is none, or it cannot be opened; fault() says why. One that does not work any more is
    // opened anew for all who take its pictures.
    bool take(const void* who, SampleHandler onSample);
    // Nothing comes any more afterwards.
    void leave(const void* who);
    // Why no more pictures come, in words for a log; empty while they do.
    QByteArray fault() const;

private:
    bool open();
    void close();
    void fail(const QByteArray& fault);
    void onSample(GstElement* sink);
    static GstBusSyncReply onMessage(GstBus*, GstMessage* message, gpointer self);

    GstElement* m_pPipeline = nullptr;
    std::atomic<qint64> m_nCameUs{0};
    mutable std::mutex m_faultMutex; // of the next one
    QByteArray m_fault;
    std::mutex m_mutex; // of the next one
    std::map<const void*, SampleHandler> m_takers;
};
