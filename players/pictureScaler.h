#pragma once
// Turns decoded pictures into the phone's pixels, of the size in which they are shown, in one step. One
// thread.
#include "players/quickColours.h"
#include <QSize>
#include <gst/video/video.h>

class pictureScaler
{
public:
    pictureScaler() = default;
    ~pictureScaler();
    pictureScaler(const pictureScaler&) = delete;
    pictureScaler& operator=(const pictureScaler&) = delete;

    // What the next pictures are and become. keepShape: black borders instead of another shape. False when
    // the toolkit cannot do that.
    bool prepare(const GstVideoInfo& pictures, const QSize& size, bool keepShape);
    // pixels: room for the size, four bytes a pixel (blue, green, red, unused). lineBytes: from one line to
    // the next; 0: no gaps between them.
    void paint(const GstVideoFrame& picture, unsigned char* pixels, int lineBytes = 0) const;

private:
    void drop();

    GstVideoConverter* m_pConverter = nullptr;
    GstVideoInfo m_from = {};
    GstVideoInfo m_to = {};
    QSize m_size;
    bool m_bKeepShape = false;
    quickColours m_quick;
    bool m_bQuick = false; // only colours change, and they are of the usual kind
};
