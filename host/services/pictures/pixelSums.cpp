#include "host/services/pictures/pixelSums.h"
#include <algorithm>
#include <array>

namespace {

constexpr uint32_t kOpaque = 255;
constexpr int kAlpha = 3;
constexpr int kMostTogether = 128; // in a direction; the sums hold no more
static_assert(kMostTogether * kOpaque <= UINT16_MAX);
static_assert(kOpaque * kOpaque * kMostTogether <= UINT32_MAX / kMostTogether);

int scaledDown(int size, int by)
{
    return (size + by - 1) / by;
}

// A fixed number of bytes in one go, so that it becomes a few wide instructions.
void addColours(const uchar* __restrict row, size_t count, uint16_t* __restrict sums)
{
    for (size_t at = 0; at < count; at += PixelSums::PADDING) {
        for (size_t i = 0; i < PixelSums::PADDING; ++i)
            sums[at + i] = uint16_t(sums[at + i] + row[at + i]);
    }
}

// With alpha, colours count as much as they can be seen.
void addWeighted(const uchar* __restrict row, size_t count, uint32_t* __restrict sums)
{
    for (size_t at = 0; at < count; at += PixelSums::COLOURS_AND_ALPHA) {
        const uint32_t alpha = row[at + kAlpha];
        const std::array<uint32_t, 4> weights = {alpha, alpha, alpha, 1};
        for (size_t i = 0; i < weights.size(); ++i)
            sums[at + i] += row[at + i] * weights[i];
    }
}

size_t padded(size_t count)
{
    return (count + PixelSums::PADDING - 1) / PixelSums::PADDING * PixelSums::PADDING;
}

// The sum of each channel over some pixels, which are then behind.
template <int CHANNELS, typename SUM>
std::array<uint32_t, CHANNELS> takeSums(const SUM*& columns, int pixels)
{
    std::array<uint32_t, CHANNELS> sums = {};
    for (const SUM* end = columns + ptrdiff_t(pixels) * CHANNELS; columns != end; columns += CHANNELS) {
        for (int i = 0; i < CHANNELS; ++i)
            sums[size_t(i)] += columns[i];
    }
    return sums;
}

} // namespace

void PixelSums::start(const QSize& size, const QSize& together, int channels)
{
    m_size = size;
    m_together = together.expandedTo(QSize(1, 1)).boundedTo(QSize(kMostTogether, kMostTogether));
    m_nChannels = channels;
    m_nAdded = 0;
    const size_t sums = padded(size_t(size.width()) * size_t(channels));
    m_colours.assign(channels == COLOURS ? sums : 0, 0);
    m_weighted.assign(channels == COLOURS ? 0 : sums, 0);
    const QSize made(scaledDown(size.width(), m_together.width()),
                     scaledDown(size.height(), m_together.height()));
    m_image = QImage(made, channels == COLOURS ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
}

void PixelSums::addRow(const uchar* row)
{
    if (m_nChannels == COLOURS)
        addColours(row, m_colours.size(), m_colours.data());
    else
        addWeighted(row, m_weighted.size(), m_weighted.data());
    ++m_nAdded;
    if (m_nAdded % m_together.height() == 0 || m_nAdded == m_size.height())
        finishLine();
}

void PixelSums::finishLine()
{
    const int line = (m_nAdded - 1) / m_together.height();
    const auto rows = uint32_t(m_nAdded - line * m_together.height());
    auto* pixels = reinterpret_cast<QRgb*>(m_image.scanLine(line));
    if (m_nChannels == COLOURS)
        finishColours(m_colours.data(), rows, pixels);
    else
        finishAlpha(m_weighted.data(), rows, pixels);
    std::fill(m_colours.begin(), m_colours.end(), uint16_t(0));
    std::fill(m_weighted.begin(), m_weighted.end(), 0u);
}

void PixelSums::finishColours(const uint16_t* columns, uint32_t rows, QRgb* pixels) const
{
    for (int left = m_size.width(); left > 0; left -= m_together.width()) {
        const int pixelCount = std::min(left, m_together.width());
        const auto sums = takeSums<COLOURS>(columns, pixelCount);
        const uint32_t count = uint32_t(pixelCount) * rows;
        *pixels++ = qRgb(int(sums[0] / count), int(sums[1] / count), int(sums[2] / count));
    }
}

void PixelSums::finishAlpha(const uint32_t* columns, uint32_t rows, QRgb* pixels) const
{
    for (int left = m_size.width(); left > 0; left -= m_together.width()) {
        const int pixelCount = std::min(left, m_together.width());
        const auto sums = takeSums<COLOURS_AND_ALPHA>(columns, pixelCount);
        const uint32_t count = uint32_t(pixelCount) * rows;
        const uint32_t weight = count * kOpaque;
        *pixels++ = qRgba(int(sums[0] / weight), int(sums[1] / weight), int(sums[2] / weight),
                          int(sums[kAlpha] / count));
    }
}
