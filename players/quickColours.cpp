// Written so that the compiler makes vector code of the loop: sixteen bits suffice for everything.
#include "players/quickColours.h"
#include <cmath>

namespace {

constexpr double kPart = 32;           // parts of a step of brightness that are reckoned with
constexpr double kHigh = 65536;        // only the upper half of a product is kept
constexpr double kLumaStep = 257;      // a byte as sixteen bits
constexpr double kChromaStep = 256;    // a signed byte as sixteen bits
constexpr unsigned int kOpaque = 0xff; // the fourth byte

int16_t factor(double value)
{
    return int16_t(std::lround(value));
}

inline int16_t product(int16_t colour, int16_t factor)
{
    return int16_t(int32_t(colour) * factor >> 16);
}

inline int16_t brightness(unsigned int luma, uint16_t factor)
{
    return int16_t(luma * 0x101u * factor >> 16);
}

inline uint16_t inByte(int sum)
{
    int16_t value = int16_t(int16_t(sum) >> 5);
    value = value < 0 ? int16_t(0) : value;
    return uint16_t(value > 255 ? int16_t(255) : value);
}

inline uint16_t pairOf(unsigned int low, unsigned int high)
{
    return uint16_t(low | high << 8);
}

// Two pixels at a time, which share their colour. All memory is apart from each other.
void paintLine(const uint16_t* __restrict luma, const uint8_t* __restrict u, const uint8_t* __restrict v,
               uint16_t* __restrict pixels, int pairs, const quickColours::tagFactors by)
{
    for (int i = 0; i < pairs; ++i) {
        const int16_t blueness = int16_t((u[i] ^ 0x80) << 8);
        const int16_t redness = int16_t((v[i] ^ 0x80) << 8);
        const int16_t red = product(redness, by.nRedOfV);
        const int16_t green = int16_t(product(blueness, by.nGreenOfU) + product(redness, by.nGreenOfV));
        const int16_t blue = product(blueness, by.nBlueOfU);
        const int16_t left = int16_t(brightness(luma[i] & 0xff, by.nLuma) + by.nBase);
        const int16_t right = int16_t(brightness(luma[i] >> 8, by.nLuma) + by.nBase);
        pixels[4 * i] = pairOf(inByte(left + blue), inByte(left + green));
        pixels[4 * i + 1] = pairOf(inByte(left + red), kOpaque);
        pixels[4 * i + 2] = pairOf(inByte(right + blue), inByte(right + green));
        pixels[4 * i + 3] = pairOf(inByte(right + red), kOpaque);
    }
}

bool isPaired(const void* line, int stride)
{
    return reinterpret_cast<uintptr_t>(line) % 2 == 0 && stride % 2 == 0;
}

} // namespace

bool quickColours::prepare(const GstVideoInfo& from)
{
    double red = 0;
    double blue = 0;
    if (GST_VIDEO_INFO_FORMAT(&from) != GST_VIDEO_FORMAT_I420 || from.width % 2 ||
        GST_VIDEO_INFO_IS_INTERLACED(&from) ||
        !gst_video_color_matrix_get_Kr_Kb(from.colorimetry.matrix, &red, &blue))
        return false;
    gint offset[GST_VIDEO_MAX_COMPONENTS];
    gint scale[GST_VIDEO_MAX_COMPONENTS];
    gst_video_color_range_offsets(from.colorimetry.range, from.finfo, offset, scale);
    const double stretch = 255.0 / scale[0];
    const double colour = 255.0 / scale[1] * kPart * kHigh / kChromaStep;
    const double green = 1 - red - blue;
    m_factors.nLuma = uint16_t(std::lround(stretch * kPart * kHigh / kLumaStep));
    m_factors.nBase = factor(kPart / 2 - offset[0] * stretch * kPart);
    m_factors.nRedOfV = factor(2 * (1 - red) * colour);
    m_factors.nGreenOfU = factor(-2 * (1 - blue) * blue / green * colour);
    m_factors.nGreenOfV = factor(-2 * (1 - red) * red / green * colour);
    m_factors.nBlueOfU = factor(2 * (1 - blue) * colour);
    return true;
}

bool quickColours::paint(const GstVideoFrame& from, unsigned char* pixels) const
{
    const auto* luma = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&from, 0));
    const auto* u = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&from, 1));
    const auto* v = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&from, 2));
    if (!isPaired(luma, GST_VIDEO_FRAME_PLANE_STRIDE(&from, 0)) || !isPaired(pixels, 0))
        return false;
    const int width = from.info.width;
    for (int y = 0; y < from.info.height; ++y) {
        const uint8_t* line = luma + ptrdiff_t(y) * GST_VIDEO_FRAME_PLANE_STRIDE(&from, 0);
        paintLine(reinterpret_cast<const uint16_t*>(line),
                  u + ptrdiff_t(y / 2) * GST_VIDEO_FRAME_PLANE_STRIDE(&from, 1),
                  v + ptrdiff_t(y / 2) * GST_VIDEO_FRAME_PLANE_STRIDE(&from, 2),
                  reinterpret_cast<uint16_t*>(pixels + ptrdiff_t(y) * width * 4), width / 2, m_factors);
    }
    return true;
}
