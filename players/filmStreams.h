#pragma once
// A film file taken apart into the RTP streams of its first sound and its first picture, without decoding a
// picture: to be sent to loopback ports in real time, or only to learn what they are.
#include "players/rtpDescription.h"
#include <QList>
#include <mutex>

// Where the streams go. A port of 0: the stream is not sent.
struct tagTarget
{
    uint16_t nSoundPort = 0;
    uint16_t nPicturePort = 0;
    quint32 nSource = 0; // number of the play, in the packets of both streams
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
    // When the pipeline has come to its pause: the streams there are. False when there is none.
    bool describe(MOV_SDP& sdp);
    // The streams of a file, within maxMs. False, with a trace line, when it has none or is not readable.
    static bool describeFile(const QByteArray& file, int maxMs, MOV_SDP& sdp);

private:
    static void onPad(GstElement* parser, GstPad* pad, gpointer self);
    void addStream(GstPad* pad);
    bool addSound(GstPad* pad, const GstStructure* kind);
    bool addPicture(GstPad* pad, const GstStructure* kind);
    bool addPcma(GstPad* pad);
    GstElement* addPayloader(const char* name, int payload, int channels);
    GstElement* addEnd(bool isSound);
    GstElement* add(const char* name);
    bool link(GstPad* pad, const QList<GstElement*>& chain);
    void addDrain(GstPad* pad);
    void addDecoder(GstPad* pad, GstElement* into);

    GstElement* m_pPipeline = nullptr;
    bool m_bSend;
    tagTarget m_target;
    std::mutex m_mutex; // of what is below: pads come on threads of the pipeline
    GstElement* m_pSound = nullptr;
    GstElement* m_pPicture = nullptr;
    int m_nChannels = 0;
};
