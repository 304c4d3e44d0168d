#pragma once
// When each packet of a stream that is sent goes out, and what its stamp says. A packet goes when it has to
// be decoded, which may be long before its picture is due: others may refer to it. A file may know no other
// times than those, as AVI and bare streams do. One thread, but for isDecodeOrder().
#include <QList>
#include <atomic>
#include <gst/gst.h>

class packetTimes
{
public:
    // Payload number of what is not shown or heard: pictures before the beginning of a film that was cut,
    // which others refer to, and the sound of a film that pauses before it has begun.
    enum : int { UNSEEN_PAYLOAD = 98 };
    // Payload number of a packet without content behind the last one: decoders keep pictures back until they
    // know that none is to be put before them.
    enum : int { END_PAYLOAD = 99 };

    explicit packetTimes(bool isPicture) : m_bPicture(isPicture) {}
    packetTimes(const packetTimes&) = delete;
    packetTimes& operator=(const packetTimes&) = delete;
    // Both live shorter than this.
    void watch(GstElement* payloader, GstElement* sink);
    // The stamps are times to decode: pictures are shown in these times, but in an order of their own. Any
    // thread.
    bool isDecodeOrder() const { return m_bDecodeOrder; }
    void setDecodeOrder() { m_bDecodeOrder = true; }
    // From now on nothing of it is shown or heard, or all is again. Any thread.
    void setUnseen(bool unseen) { m_bUnseen = unseen; }

private:
    struct tagTimes
    {
        GstClockTime shown;
        GstClockTime decoded;
    };
    static GstPadProbeReturn onContent(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static GstPadProbeReturn onPacket(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    void noteContent(GstBuffer* content);
    static GstPadProbeReturn onEvent(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    void forgetOnJump(GstEvent* event);
    void setTimes(GstBuffer* packet, const GstSegment& segment, int rate);
    GstClockTime decodeTime(GstClockTime shown) const;

    const bool m_bPicture;
    std::atomic<bool> m_bDecodeOrder{false};
    std::atomic<bool> m_bUnseen{false};
    QList<tagTimes> m_times;              // of the last pictures
    GstClockTime m_next = 0;              // of a picture that comes without any time
    GstClockTime m_end = 0;               // of what has gone
    guint32 m_nJump = GST_SEQNUM_INVALID; // of the film's present part
};
