#pragma once
// The sound of calls to G.711 and back. Of the toolkit's parts only what makes up for loss: a pad between
// each two steps would cost more than the steps.
#include "players/rateChange.h"
#include "players/soundChain.h"
#include "players/soundCodec.h"
#include <memory>

class g711Encoder : public soundStep
{
public:
    // codec: PCMA or PCMU. rate: of the sound, Hz.
    g711Encoder(SOUND_CODEC codec, int rate);
    bool push(const void* data, int bytes, qint64 ns) override;
    bool pushGap(qint64) override { return false; }

private:
    SOUND_CODEC m_eCodec;
    rateChange m_rate;
};

class g711Decoder : public soundStep
{
public:
    // Null, with a trace line, when the toolkit's part is missing.
    static std::unique_ptr<g711Decoder> make(SOUND_CODEC codec, int rate);
    bool push(const void* data, int bytes, qint64 ns) override;
    bool pushGap(qint64 ns) override;

private:
    g711Decoder(SOUND_CODEC codec, int rate, std::unique_ptr<soundChain> concealed);
    void take();

    SOUND_CODEC m_eCodec;
    std::unique_ptr<soundChain> m_concealed;
    rateChange m_rate;
};
