#include "host/services/pictures/pngRows.h"
#include "host/services/pictures/pictureSource.h"
#include <algorithm>

namespace {

constexpr int kColour = 3;
constexpr int kColourAndAlpha = 4;
constexpr uint32_t kOpaque = 255;
constexpr int kMostTogether = 128;   // in a direction; the sums hold no more
constexpr int kChunkLimit = 8 << 20; // bytes of one that is no picture

int scaledDown(int size, int by)
{
    return (size + by - 1) / by;
}

// Adds the pixels of one row up, columns of them at a time.
template <int CHANNELS>
void addPixels(const png_byte* row, int width, int columns, uint32_t* sums)
{
    for (int x = 0; x < width; sums += CHANNELS) {
        const int end = std::min(x + columns, width);
        uint32_t red = 0, green = 0, blue = 0, alpha = 0;
        for (; x < end; ++x, row += CHANNELS) {
            // With alpha, colours count as much as they can be seen.
            const uint32_t weight = CHANNELS == kColourAndAlpha ? row[kColour] : 1;
            red += row[0] * weight;
            green += row[1] * weight;
            blue += row[2] * weight;
            alpha += weight;
        }
        sums[0] += red;
        sums[1] += green;
        sums[2] += blue;
        if (CHANNELS == kColourAndAlpha)
            sums[kColour] += alpha;
    }
}

} // namespace

PngRows::~PngRows()
{
    png_destroy_read_struct(&m_pPng, &m_pInfo, nullptr);
}

QImage PngRows::read(const QSize& least)
{
    m_pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, jumpBack, ignoreWarning);
    m_pInfo = m_pPng ? png_create_info_struct(m_pPng) : nullptr;
    return m_pInfo && readAll(least) ? m_image : QImage();
}

// Nothing in here has a destructor: an error jumps out of the library's calls.
bool PngRows::readAll(const QSize& least)
{
    if (setjmp(m_back))
        return false;
    readHead();
    prepare(least);
    if (m_image.isNull())
        return false;
    if (m_rows.empty())
        readRows();
    else
        readInterlaced();
    png_read_end(m_pPng, nullptr);
    return !m_source.isGivenUp();
}

void PngRows::jumpBack(png_structp png, png_const_charp)
{
    longjmp(static_cast<PngRows*>(png_get_error_ptr(png))->m_back, 1);
}

void PngRows::takeBytes(png_structp png, png_bytep bytes, size_t count)
{
    auto* self = static_cast<PngRows*>(png_get_io_ptr(png));
    if (self->m_source.read(reinterpret_cast<char*>(bytes), qint64(count)) != qint64(count))
        png_error(png, "cut short");
}

void PngRows::readHead()
{
    png_set_read_fn(m_pPng, this, takeBytes);
    png_set_chunk_malloc_max(m_pPng, kChunkLimit);
    png_set_keep_unknown_chunks(m_pPng, PNG_HANDLE_CHUNK_NEVER, nullptr, 0);
    png_read_info(m_pPng, m_pInfo);
    png_set_expand(m_pPng);
    png_set_scale_16(m_pPng);
    png_set_gray_to_rgb(m_pPng);
}

void PngRows::prepare(const QSize& least)
{
    const bool isInterlaced = png_set_interlace_handling(m_pPng) > 1;
    png_read_update_info(m_pPng, m_pInfo);
    m_nChannels = png_get_channels(m_pPng, m_pInfo);
    m_size = QSize(int(png_get_image_width(m_pPng, m_pInfo)), int(png_get_image_height(m_pPng, m_pInfo)));
    m_nColumns = std::clamp(m_size.width() / std::max(1, least.width()), 1, kMostTogether);
    m_nRows = std::clamp(m_size.height() / std::max(1, least.height()), 1, kMostTogether);
    const size_t rowBytes = png_get_rowbytes(m_pPng, m_pInfo);
    m_row.resize(isInterlaced ? rowBytes * size_t(m_size.height()) : rowBytes);
    for (int y = 0; isInterlaced && y < m_size.height(); ++y)
        m_rows.push_back(m_row.data() + size_t(y) * rowBytes);
    const QSize made(scaledDown(m_size.width(), m_nColumns), scaledDown(m_size.height(), m_nRows));
    m_sums.assign(size_t(made.width()) * size_t(m_nChannels), 0);
    m_image =
        QImage(made, m_nChannels == kColour ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
}

void PngRows::readRows()
{
    for (int y = 0; y < m_size.height(); ++y) {
        png_read_row(m_pPng, m_row.data(), nullptr);
        addRow(y, m_row.data());
    }
}

// Its rows come in several rounds.
void PngRows::readInterlaced()
{
    png_read_image(m_pPng, m_rows.data());
    for (int y = 0; y < m_size.height(); ++y)
        addRow(y, m_rows[size_t(y)]);
}

void PngRows::addRow(int y, const png_byte* row)
{
    if (m_nChannels == kColour)
        addPixels<kColour>(row, m_size.width(), m_nColumns, m_sums.data());
    else
        addPixels<kColourAndAlpha>(row, m_size.width(), m_nColumns, m_sums.data());
    const int rows = y % m_nRows + 1;
    if (rows == m_nRows || y + 1 == m_size.height())
        finishLine(y / m_nRows, rows);
}

// rows: how many have been added up.
void PngRows::finishLine(int line, int rows)
{
    auto* pixels = reinterpret_cast<QRgb*>(m_image.scanLine(line));
    const uint32_t* sums = m_sums.data();
    for (int left = m_size.width(); left > 0; left -= m_nColumns, sums += m_nChannels) {
        const uint32_t count = uint32_t(std::min(left, m_nColumns) * rows);
        if (m_nChannels == kColour) {
            *pixels++ = qRgb(int(sums[0] / count), int(sums[1] / count), int(sums[2] / count));
            continue;
        }
        const uint32_t weight = count * kOpaque;
        *pixels++ = qRgba(int(sums[0] / weight), int(sums[1] / weight), int(sums[2] / weight),
                          int(sums[kColour] / count));
    }
    std::fill(m_sums.begin(), m_sums.end(), 0);
}
