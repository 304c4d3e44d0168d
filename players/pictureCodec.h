#pragma once
// The codecs that the pictures of calls may have.
#include <QByteArray>
#include <array>

enum class PICTURE_CODEC { NONE, H264, VP8 };

struct tagPictureCodec
{
    PICTURE_CODEC eCodec;
    const char* pName;  // as in a=rtpmap
    const char* pShown; // for a person
};

enum : int { PICTURE_CLOCK = 90000 }; // of the time stamps, Hz

// In the order of preference.
constexpr std::array<tagPictureCodec, 2> kPictureCodecs = {
    {{PICTURE_CODEC::H264, "H264", "H.264"}, {PICTURE_CODEC::VP8, "VP8", "VP8"}}};

// Null for NONE.
constexpr const tagPictureCodec* pictureCodec(PICTURE_CODEC codec)
{
    for (const tagPictureCodec& known : kPictureCodecs) {
        if (known.eCodec == codec)
            return &known;
    }
    return nullptr;
}
