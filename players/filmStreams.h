#pragma once
// A film file taken apart into the RTP streams of its first sound and its first picture, without decoding a
// picture: to be sent to loopback ports in real time, or only to learn what they are. A film is one file:
// what a file names, as play lists do, is not opened.
#include "players/loopback.h"
#include "players/packetTimes.h"
#include "players/rtpDescription.h"
#include <QList>
#include <mutex>

// Where the streams go. A port of 0: the stream is not sent.
struct tagTarget
{
    uint16_t nSoundPort = 0;
    uint16_t nPicturePort = 0;
    quint32 nSource = 0; // number of the play, in the packets of both streams
    // Not owned; they live longer than the play. Null: the stream is not sent.
    GSocket* pSoundSocket = nullptr;
    GSocket* pPictureSocket = nullptr;
};

class filmStreams
{
public:
    // file: a path of this machine. target: null when nothing is sent.
    filmStreams(const QByteArray& file, const tagTarget* target);
    ~filmStreams();
    filmStreams(const filmStreams&) = delete;
    filmStreams& operator=(const filmStreams&) = delete;

    // Owned by this; null when the toolkit lacks a part of it.
    GstElement* pipeline() const { return m_pPipeline; }
    // The sound that goes out is not to be heard, or again. Any thread.
    void silence(bool silent) { m_soundTimes.setUnseen(silent); }
    // When the pipeline has come to its pause: the streams there are. False when there is none.
    bool describe(PLAYER_STREAMS& streams);
    // The streams of a file, within maxMs. False, with a trace line, when it has none or is not readable.
    static bool describeFile(const QByteArray& file, int maxMs, MOV_SDP& sdp);

private:
    static void onPad(GstElement* parser, GstPad* pad, gpointer self);
    static GstPadProbeReturn onDrained(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    void failWithoutStreams();
    void addStream(GstPad* pad);
    bool addSound(GstPad* pad, GstCaps* caps);
    bool addPicture(GstPad* pad, const GstStructure* kind);
    bool addCodedSound(GstPad* pad);
    GstElement* addPayloader(const char* name, int payload);
    GstElement* addEnd(GstElement* payloader, bool isSound);
    GstElement* add(const char* name);
    bool link(GstPad* pad, const QList<GstElement*>& chain);
    void addDrain(GstPad* pad);

    GstElement* m_pPipeline = nullptr;
    bool m_bSend;
    tagTarget m_target;
    std::mutex m_mutex; // of what is below: pads come on threads of the pipeline
    GstElement* m_pSound = nullptr;
    GstElement* m_pPicture = nullptr;
    packetTimes m_soundTimes{false};
    packetTimes m_pictureTimes{true};
};
