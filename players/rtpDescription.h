#pragma once
// A stream as RTP describes it, between the records of the messages and the toolkit's own form. Any thread.
#include "support/host/player.h"
#include <QByteArray>
#include <gst/gst.h>

struct tagStream
{
    int nPayload = 0;
    QByteArray name;   // as in a=rtpmap; empty: no stream
    QByteArray param;  // payload number, a space, the text of a=fmtp; or empty
    int nRate = 0;     // clock rate in Hz
    int nChannels = 0; // of sound
    bool operator==(const tagStream& other) const
    {
        return nPayload == other.nPayload && name == other.name && param == other.param &&
               nRate == other.nRate && nChannels == other.nChannels;
    }
    bool operator!=(const tagStream& other) const { return !(*this == other); }
};

namespace rtpDescription {

tagStream soundOf(const MOV_SDP& sdp);
tagStream pictureOf(const MOV_SDP& sdp);
tagStream soundOf(const VOICE_PARAM& session);
tagStream pictureOf(const VOICE_PARAM& session);
// What does not fit into the record is left out: the stream carries its parameters too.
void store(const tagStream& sound, const tagStream& picture, MOV_SDP& sdp);

// The stream that leaves a payloader with these caps.
tagStream fromCaps(const GstCaps* caps);
// The caps of what arrives; the caller's to release. Null when the description is none.
GstCaps* toCaps(const tagStream& stream, bool isPicture);

} // namespace rtpDescription
