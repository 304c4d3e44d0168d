// Companding as others have written it: the media toolkit's own parts.
#include "players/g711.h"
#include "players/soundChain.h"
#include "tests/calls/callStand.h"
#include <cstdlib>

namespace {

const char* const kNarrow = "audio/x-raw,format=S16LE,layout=interleaved,rate=8000,channels=1";

struct tagLaw
{
    SOUND_CODEC eCodec;
    const char* pPack;
    const char* pUnpack;
    const char* pPacked;
};

class EachLaw : public CallStand, public testing::WithParamInterface<tagLaw>
{
protected:
    // What the toolkit makes of it.
    static QByteArray made(const char* part, const char* in, const char* out, const QByteArray& data)
    {
        const auto chain = soundChain::make(part, in, out);
        if (!chain || !chain->push(data.constData(), int(data.size()), GST_SECOND))
            return {};
        return chain->output().join();
    }
    static int awayFrom(int sample, unsigned char code)
    {
        return std::abs(g711::unpacked(GetParam().eCodec, code) - sample);
    }
};

TEST_P(EachLaw, PacksEachSampleAsNearAsOthersDo)
{
    QByteArray samples;
    for (int sample = -32768; sample <= 32767; ++sample) {
        const auto value = short(sample);
        samples.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    const QByteArray theirs = made(GetParam().pPack, kNarrow, GetParam().pPacked, samples);
    ASSERT_EQ(theirs.size(), 65536);
    for (int sample = -32768; sample <= 32767; ++sample) {
        const auto ours = g711::packed(GetParam().eCodec, short(sample));
        const auto their = static_cast<unsigned char>(theirs[sample + 32768]);
        // Between two steps either is as near.
        ASSERT_LE(awayFrom(sample, ours), awayFrom(sample, their) + 1) << sample;
    }
}

TEST_P(EachLaw, UnpacksEachCodeAsOthersDo)
{
    QByteArray codes;
    for (int code = 0; code < 256; ++code)
        codes.append(char(code));
    const QByteArray theirs = made(GetParam().pUnpack, GetParam().pPacked, kNarrow, codes);
    ASSERT_EQ(theirs.size(), 512);
    for (int code = 0; code < 256; ++code) {
        const short sample = reinterpret_cast<const short*>(theirs.constData())[code];
        ASSERT_EQ(g711::unpacked(GetParam().eCodec, static_cast<unsigned char>(code)), sample) << code;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Both, EachLaw,
    testing::Values(tagLaw{SOUND_CODEC::PCMA, "alawenc", "alawdec", "audio/x-alaw,rate=8000,channels=1"},
                    tagLaw{SOUND_CODEC::PCMU, "mulawenc", "mulawdec", "audio/x-mulaw,rate=8000,channels=1"}),
    [](const auto& info) { return info.param.eCodec == SOUND_CODEC::PCMA ? "A" : "Mu"; });

} // namespace
