#pragma once
// The sound and the picture of real calls, for whoever makes the calls on the wire: he passes descriptions
// between the other side and this, and reads none of them. They are SDP texts (RFC 4566) that are offered and
// answered as RFC 3264 has it, of less than 16 KiB. A call is known by the number that it has on the phone
// (tagCall::nId). User-interface thread.
#include "host/services/phone/tagCall.h"
#include "support/host/player.h"
#include <QByteArray>

// What this side wants of a call's media.
struct tagMediaWish
{
    tagCallOptions options;
    bool bHeld = false;    // by the user: nothing is sent, and nothing is heard
    bool bEncrypt = false; // an offer of nothing but SRTP
    bool bPreview = false; // only what the other side shows is taken, until begin()
    QByteArray stunServer; // IPv4; says where others see the phone. Empty: nobody is asked
    int nStunPort = 0;
    // The camera may open although the call began without it: the user has said so.
    bool bCameraNow = false;
};

// Hears of the media. Never before the call that asked has returned.
class sipMediaNews
{
public:
    virtual ~sipMediaNews() = default;
    // The offer or the answer that was asked for; an empty one cannot be had: the two sides have nothing in
    // common.
    virtual void mediaDescribed(int call, const QByteArray& sdp) = 0;
    // In its place: there is no media process, or it does not answer.
    virtual void mediaMissing(int call) = 0;
    // The other side's last answer does not fit: the streams stay as they were agreed before.
    virtual void mediaUnfit(int /*call*/) {}
    // What was asked by judge(); CALL_FITS too where nobody can say.
    virtual void mediaJudged(int question, CALL_FIT fit) = 0;
    // What goes over the call's streams, or how well, is another.
    virtual void mediaChanged(int call, const tagCallStreams& streams) = 0;
    // The process died, and another one is there: descriptions and streams are gone. Calls that talk want an
    // offer anew.
    virtual void mediaLost() = 0;
};

class sipMedia
{
public:
    virtual ~sipMedia() = default;
    // Null: nobody listens any more.
    virtual void setNews(sipMediaNews* news) = 0;
    // A line is registered: calls may come, and what they need may be made ready.
    virtual void prepare() {}
    // Asks whether an offer of somebody who calls could be answered with that wish; the question's number,
    // never given again.
    virtual int judge(const QByteArray& offer, const tagMediaWish& wish) = 0;
    // Asks for an offer, of a new call or of one that talks; one is asked for at a time.
    virtual void offer(int call, const tagMediaWish& wish) = 0;
    // Asks for the answer to the other side's offer. The streams run as agreed from the answer on.
    virtual void answer(int call, const QByteArray& offer, const tagMediaWish& wish) = 0;
    // The other side's answer to the last offer, also an early one: the streams run as agreed.
    virtual void agree(int call, const QByteArray& answer) = 0;
    // What was answered as a preview goes both ways, as it was described.
    virtual void begin(int /*call*/) {}
    // The last offer was refused: the streams stay as they were agreed before.
    virtual void withdraw(int call) = 0;
    // The other side does not hear the user.
    virtual void setMuted(int call, bool muted) = 0;
    // The user holds the call: whatever is agreed, he is neither heard nor seen, and hears nothing.
    virtual void setStill(int call, bool still) = 0;
    // One of "0123456789*#ABCD", within the sound (RFC 4733), for 40 to 5000 ms, after those before it. False
    // when the other side has not agreed to take it so.
    virtual bool sendTone(int call, QChar tone, int ms) = 0;
    // The sounds of two calls that talk are mixed, so that all three hear each other; false when one of them
    // has none. It ends with split(), or with either call.
    virtual bool join(int call, int other) = 0;
    virtual void split(int call) = 0;
    virtual void end(int call) = 0;
};
