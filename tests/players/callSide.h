#pragma once
// A side of a call of which only the sound runs: over real ports, with a voice that says a tone and keeps
// what it hears.
#include "players/callDesk.h"
#include "players/callNegotiation.h"
#include "tests/kit/plain/recordedSound.h"
#include <functional>
#include <gtest/gtest.h>
#include <memory>

class ToneVoice : public soundPort
{
public:
    // 0: says nothing.
    explicit ToneVoice(double hertz) : m_hertz(hertz) {}
    void read(short* frame) override;
    void write(const short* frame) override;
    // The last so many seconds of what was heard.
    kit::RecordedSound heard(double seconds) const;
    void forget();

private:
    double m_hertz;
    qint64 m_nSaid = 0; // samples
    mutable std::mutex m_mutex;
    std::vector<float> m_heard;
};

struct CallPhone
{
    explicit CallPhone(double hertz) : voice(hertz), desk(voice) {}
    bool hears(double hertz) const { return voice.heard(0.3).peak() > 0.02 && voice.heard(0.3).has(hertz); }
    bool hearsNothing() const { return voice.heard(0.3).size() > 0 && voice.heard(0.3).peak() < 0.005; }

    ToneVoice voice;
    callDesk desk; // ends before its voice
};

// One end of a call.
struct CallEnd
{
    CallEnd(CallPhone& of, int number);
    // Its sockets are there; address: by which the other side reaches it.
    CallEnd(CallPhone& of, int number, std::unique_ptr<callSockets> sockets, const QByteArray& address);
    ~CallEnd() { phone.desk.remove(call); }
    CallEnd(const CallEnd&) = delete;
    // The streams go as the negotiation has it; port: where what is sent goes instead.
    void apply(int port = 0);
    // As who has begun anew: with other keys.
    void negotiateAnew();
    void with(const std::function<void(callSession&)>& work) { EXPECT_TRUE(phone.desk.with(call, work)); }
    tagAgreedSound agreed() const { return negotiation->agreed(); }

    CallPhone& phone;
    int call;
    int port = 0;
    std::unique_ptr<callNegotiation> negotiation;

private:
    QByteArray m_address;
};
