#pragma once
// Sound to packets and packets to sound, by parts of the media toolkit that work on the caller's thread and
// have none of their own. Sound is one channel of 16-bit samples at SAMPLE_RATE.
#include "players/soundCodec.h"
#include <QList>
#include <gst/gst.h>
#include <memory>
#include <vector>

// A row of parts with a way in and a way out.
class soundChain
{
public:
    // description: in the words of gst-launch-1.0. in, out: what goes in and comes out. Null, with a trace
    // line, when a part is missing.
    static std::unique_ptr<soundChain> make(const char* description, const char* in, const char* out);
    ~soundChain();
    soundChain(const soundChain&) = delete;
    soundChain& operator=(const soundChain&) = delete;

    // What comes out is appended to output(). False when the parts do not go on.
    bool push(const void* data, int bytes, qint64 ns);
    // So much is missing.
    bool pushGap(qint64 ns);
    QList<QByteArray>& output() { return m_output; }
    // Null when there is no such part.
    GstElement* part(const char* name) const;

private:
    soundChain() = default;
    bool open(const char* description, const char* in, const char* out);
    static GstFlowReturn onOutput(GstPad* pad, GstObject* parent, GstBuffer* buffer);

    GstElement* m_pBin = nullptr;
    GstPad* m_pIn = nullptr;
    GstPad* m_pOut = nullptr;
    qint64 m_nTime = 0; // ns, of what goes in
    QList<QByteArray> m_output;
};

class soundEncoder
{
public:
    // ptime: ms of sound in a packet.
    static std::unique_ptr<soundEncoder> make(SOUND_CODEC codec, int ptime);
    // The contents of the packets that have become whole.
    QList<QByteArray> encode(const short* samples, int count);
    // What waits for a whole packet goes: a pause is next.
    void forget() { m_waiting.clear(); }
    SOUND_CODEC codec() const { return m_eCodec; }
    int ptime() const { return m_nPtime; }
    // The other side loses so many of the packets: 0 to 100.
    void setLoss(int percent);

private:
    SOUND_CODEC m_eCodec = SOUND_CODEC::NONE;
    int m_nPtime = 0;
    int m_nLoss = 0;
    QByteArray takePacket();

    std::vector<short> m_waiting;
    QByteArray m_encoded;
    std::unique_ptr<soundChain> m_chain;
};

class soundDecoder
{
public:
    static std::unique_ptr<soundDecoder> make(SOUND_CODEC codec);
    // Appends what it becomes.
    void decode(const QByteArray& content, std::vector<short>& samples);
    // Makes up for a packet that is missing.
    void conceal(std::vector<short>& samples);
    SOUND_CODEC codec() const { return m_eCodec; }

private:
    int lengthMs(const QByteArray& content) const;
    void take(std::vector<short>& samples);

    SOUND_CODEC m_eCodec = SOUND_CODEC::NONE;
    int m_nLastMs = 20;
    bool m_bBegun = false;
    std::unique_ptr<soundChain> m_chain;
};

namespace soundCoder {

enum : int { SAMPLE_RATE = 16000 };

// The parts that calls need.
QList<QByteArray> parts();

} // namespace soundCoder
