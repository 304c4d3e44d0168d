#include "tests/calls/callStand.h"
#include <chrono>
#include <gst/gst.h>
#include <thread>

CallStand::CallStand()
{
    gst_init(nullptr, nullptr);
}

QByteArray CallStand::only(const QByteArray& offer, const QByteArray& codec)
{
    if (codec.isEmpty())
        return offer;
    QByteArray text;
    QByteArray number;
    for (const QByteArray& line : offer.split('\n')) {
        if (line.startsWith("a=rtpmap:") && line.contains(codec + '/'))
            number = line.mid(9).split(' ').first();
    }
    for (const QByteArray& line : offer.split('\n')) {
        const QList<QByteArray> words = line.trimmed().split(' ');
        text += line.startsWith("m=") ? words.mid(0, 3).join(' ') + ' ' + number + " 101\r" : line;
        text += '\n';
    }
    text.chop(1);
    return text;
}

void CallStand::negotiate(CallEnd& from, CallEnd& to, const QByteArray& codec, tagMediaWant want,
                          tagMediaWant answered)
{
    const QByteArray answer = to.negotiation->answer(only(from.negotiation->offer(want), codec), answered);
    ASSERT_TRUE(from.negotiation->agree(answer)) << answer.constData();
}

void CallStand::connect(CallEnd& from, CallEnd& to, const QByteArray& codec, tagMediaWant want,
                        tagMediaWant answered)
{
    negotiate(from, to, codec, want, answered);
    to.apply();
    from.apply();
}

bool CallStand::waitFor(const std::function<bool()>& check, int ms)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (!check()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        pass(20);
    }
    return true;
}

void CallStand::pass(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}
