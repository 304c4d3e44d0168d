#pragma once
// Sound to packets and packets to sound, on the caller's thread. Sound is one channel of 16-bit samples at
// SAMPLE_RATE.
#include "players/soundCodec.h"
#include "players/soundStep.h"
#include <gst/gst.h>
#include <memory>
#include <vector>

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
    bool makeWay();
    QByteArray takePacket();

    SOUND_CODEC m_eCodec = SOUND_CODEC::NONE;
    int m_nPtime = 0;
    int m_nLoss = 0;
    std::vector<short> m_waiting;
    QByteArray m_encoded;
    std::unique_ptr<soundStep> m_way;
    GstElement* m_pCoder = nullptr; // of the way, where it has one
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
    std::unique_ptr<soundStep> m_way;
};

namespace soundCoder {

enum : int { SAMPLE_RATE = 16000 };

// The parts that calls need.
QList<QByteArray> parts();

} // namespace soundCoder
