#pragma once
// The companding of ITU-T Recommendation G.711: a sample of 16 bits to 8 and back. Any thread.
#include "players/soundCodec.h"

namespace g711 {

// codec: PCMA or PCMU.
unsigned char packed(SOUND_CODEC codec, short sample);
short unpacked(SOUND_CODEC codec, unsigned char code);

} // namespace g711
