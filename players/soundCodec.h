#pragma once
// The codecs that the sound of calls may have.
#include <QByteArray>
#include <array>

enum class SOUND_CODEC { NONE, OPUS, G722, PCMA, PCMU };

struct tagSoundCodec
{
    SOUND_CODEC eCodec;
    const char* pName;  // as in a=rtpmap
    const char* pShown; // for a person
    int nClock;         // of the time stamps, Hz
    int nChannels;      // as in a=rtpmap
    int nPayload;       // the number that it always has; -1: agreed for each call
};

// In the order of preference.
constexpr std::array<tagSoundCodec, 4> kSoundCodecs = {{{SOUND_CODEC::OPUS, "opus", "Opus", 48000, 2, -1},
                                                        {SOUND_CODEC::G722, "G722", "G.722", 8000, 1, 9},
                                                        {SOUND_CODEC::PCMA, "PCMA", "PCMA", 8000, 1, 8},
                                                        {SOUND_CODEC::PCMU, "PCMU", "PCMU", 8000, 1, 0}}};

// Null for NONE.
constexpr const tagSoundCodec* soundCodec(SOUND_CODEC codec)
{
    for (const tagSoundCodec& known : kSoundCodecs) {
        if (known.eCodec == codec)
            return &known;
    }
    return nullptr;
}
