#pragma once
// Puts the packets of one stream on the local clock: notes when they come, and says when they are due.
#include "players/playClock.h"
#include <gst/gst.h>

class streamTimes
{
public:
    // rate: of the stream's clock, in Hz.
    streamTimes(playClock& clock, int rate, bool isPicture)
        : m_clock(clock), m_nRate(rate), m_bPicture(isPicture)
    {
    }
    // from: the pad where packets come in; to: the pad from which they are used. Both live shorter than this.
    void watch(GstPad* from, GstPad* to);
    // The picture was decoded for others only.
    static bool isUnseen(GstBuffer* picture);

private:
    // A stream's time runs over after some hours; each pad follows it by itself.
    struct tagCount
    {
        quint32 nSource = 0;
        quint32 nStamp = 0; // of the last packet
        qint64 nTime = 0;
        int nPayload = 0;
    };
    static GstPadProbeReturn onArrival(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static GstPadProbeReturn onUse(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    bool read(GstBuffer* packet, tagCount& count, qint64& streamNs) const;

    playClock& m_clock;
    int m_nRate;
    bool m_bPicture;
    tagCount m_arrived; // of the thread that receives
    tagCount m_used;    // of the thread that decodes
};
