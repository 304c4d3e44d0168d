#pragma once
// Pictures whose times say only when each is decoded: a decoder gives them in the order in which they are
// shown, and each gets the earliest of the times that are left. One thread.
#include <gst/gst.h>
#include <set>

class pictureOrder
{
public:
    // Both pads are the decoder's, and live shorter than this.
    void watch(GstElement* decoder);

private:
    static GstPadProbeReturn onCoded(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static GstPadProbeReturn onPicture(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static GstPadProbeReturn onEvent(GstPad* pad, GstPadProbeInfo* info, gpointer self);

    std::multiset<GstClockTime> m_times;
};
