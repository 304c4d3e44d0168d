#pragma once
// One stream of a session, from its port to the screen or the loudspeaker. Each has a pipeline of its own, on
// a clock that all share, so that trouble with one never stops the other.
#include "players/busWatch.h"
#include "players/rtpDescription.h"
#include "players/soundVolume.h"
#include "players/streamTimes.h"
#include <functional>
#include <gst/video/video.h>
#include <memory>

struct tagDecoder;

class mediaStream
{
public:
    // A decoded picture when it is due, on a thread of the pipeline.
    using PictureHandler = std::function<void(const GstVideoFrame&)>;

    // No handler: the stream is sound.
    mediaStream(const tagStream& stream, int port, playClock& clock, const PictureHandler& onPicture);
    ~mediaStream();
    mediaStream(const mediaStream&) = delete;
    mediaStream& operator=(const mediaStream&) = delete;

    // False, with a trace line, when the port is taken or nothing here decodes the stream.
    bool start();
    // As soundVolume says; nothing for a picture.
    void setVolume(int level, bool mute) { m_volume.set(level, mute); }
    // Cannot go on: one must be made anew.
    bool hasFailed() const { return m_bFailed; }
    bool isFor(const tagStream& stream, int port) const { return m_stream == stream && m_nPort == port; }

private:
    bool build();
    // The last element, which gives the packets' content; null when it cannot be built.
    GstElement* buildReceiver(const tagDecoder& kind);
    bool buildPicture(const tagDecoder& kind, GstElement* depayloader);
    bool buildSound(const tagDecoder& kind, GstElement* depayloader);
    GstElement* add(const char* name);
    void joinClock();
    void onPicture(GstElement* sink);

    tagStream m_stream;
    int m_nPort;
    PictureHandler m_onPicture;
    streamTimes m_times;
    soundVolume m_volume;
    GstElement* m_pPipeline = nullptr;
    std::unique_ptr<busWatch> m_watch;
    bool m_bFailed = false;
    bool m_bUnheard = false; // sound without a loudspeaker
};
