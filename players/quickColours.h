#pragma once
// Planar pictures of the usual kind to the phone's pixels, size for size: several times quicker than the
// toolkit's converter, which does everything else. One thread.
#include <cstdint>
#include <gst/video/video.h>

class quickColours
{
public:
    // False when such pictures are for the converter.
    bool prepare(const GstVideoInfo& from);
    // from: of that kind. pixels: room for as many as the picture has, as for pictureScaler. False, with
    // nothing painted, when its lines do not begin at even addresses.
    bool paint(const GstVideoFrame& from, unsigned char* pixels) const;

    // In fixed point; of sixteen bits times sixteen bits the upper half is kept, in 1/32 of a step.
    struct tagFactors
    {
        uint16_t nLuma;
        int16_t nBase;
        int16_t nRedOfV;
        int16_t nGreenOfU;
        int16_t nGreenOfV;
        int16_t nBlueOfU;
    };

private:
    tagFactors m_factors = {};
};
