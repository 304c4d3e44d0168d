#pragma once
// One stream of a session, from its port to the screen or the loudspeaker. Each has a pipeline of its own, on
// a clock that all share, so that trouble with one never stops the other.
#include "players/busWatch.h"
#include "players/loopback.h"
#include "players/pictureOrder.h"
#include "players/rtpDescription.h"
#include "players/soundVolume.h"
#include "players/streamTimes.h"
#include <functional>
#include <gst/video/video.h>
#include <memory>

struct tagDecoder;

// What comes on a port of a session.
struct tagIncoming
{
    tagStream stream;
    int nPort = 0;
    int nFrom = 0;             // the port of who sends it; 0: nobody is known, and nothing is taken
    int nQuarterTurns = 0;     // see PLAYER_STREAMS
    bool bDecodeOrder = false; // stamps tell when a picture is decoded, not when it is shown
};

class mediaStream
{
public:
    // A decoded picture when it is due, on a thread of the pipeline.
    using PictureHandler = std::function<void(const GstVideoFrame&)>;

    // No handler: the stream is sound.
    mediaStream(const tagIncoming& incoming, playClock& clock, const PictureHandler& onPicture);
    ~mediaStream();
    mediaStream(const mediaStream&) = delete;
    mediaStream& operator=(const mediaStream&) = delete;

    // Holds the port, and takes nothing yet. False, with a trace line, when the port is taken or nothing here
    // decodes the stream.
    bool start();
    // Takes what comes from that port of the players' address, and from nowhere else. False when it takes
    // from another one already.
    bool takeFrom(int port);
    // As soundVolume says; nothing for a picture.
    void setVolume(int level, bool mute) { m_volume.set(level, mute); }
    // Cannot go on: one must be made anew.
    bool hasFailed() const { return m_bFailed; }
    // Whoever sends it.
    bool isFor(const tagIncoming& incoming) const
    {
        return m_incoming.stream == incoming.stream && m_incoming.nPort == incoming.nPort &&
               m_incoming.nQuarterTurns == incoming.nQuarterTurns &&
               m_incoming.bDecodeOrder == incoming.bDecodeOrder;
    }

private:
    bool build();
    // The last element, which gives the packets' content; null when it cannot be built.
    GstElement* buildReceiver(const tagDecoder& kind);
    bool buildPicture(const tagDecoder& kind, GstElement* depayloader);
    bool buildSound(const tagDecoder& kind, GstElement* depayloader);
    GstElement* addTurn(GstElement* decoder);
    GstElement* add(const char* name);
    void joinClock();
    void onPicture(GstElement* sink);

    tagIncoming m_incoming;
    LoopbackSocket m_socket;
    int m_nFrom = 0; // 0: nobody
    PictureHandler m_onPicture;
    streamTimes m_times;
    pictureOrder m_order;
    soundVolume m_volume;
    GstElement* m_pPipeline = nullptr;
    std::unique_ptr<busWatch> m_watch;
    bool m_bFailed = false;
    bool m_bUnheard = false; // sound without a loudspeaker
};
