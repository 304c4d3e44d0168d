#include "host/services/pictures/pngRows.h"
#include "host/services/pictures/pictureSource.h"
#include "host/services/pictures/pngUnpacked.h"
#include <algorithm>

namespace {

constexpr int kChunkLimit = 8 << 20;         // bytes of one that is no picture
constexpr size_t kUnpackedBlock = 64 * 1024; // bytes that are read at a time where nothing is packed

} // namespace

PngRows::~PngRows()
{
    png_destroy_read_struct(&m_pPng, &m_pInfo, nullptr);
}

QImage PngRows::read(const QSize& least)
{
    m_pPng = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, jumpBack, ignoreWarning);
    m_pInfo = m_pPng ? png_create_info_struct(m_pPng) : nullptr;
    return m_pInfo && readAll(least) ? m_sums.image() : QImage();
}

// Nothing in here has a destructor: an error jumps out of the library's calls.
bool PngRows::readAll(const QSize& least)
{
    if (setjmp(m_back))
        return false;
    readHead();
    lookAtSums(false);
    prepare(least);
    if (m_sums.image().isNull())
        return false;
    if (m_rows.empty())
        readRows();
    else
        readInterlaced();
    lookAtSums(true);
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
    const bool isRead = self->m_pUnpacked ? self->m_pUnpacked->read(bytes, count)
                                          : self->m_source.read(reinterpret_cast<char*>(bytes),
                                                                qint64(count)) == qint64(count);
    if (!isRead)
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

// Of data that are unpacked, the checksums were looked at.
void PngRows::lookAtSums(bool isNeeded)
{
    if (!m_pUnpacked)
        return;
    png_set_crc_action(m_pPng, isNeeded ? PNG_CRC_DEFAULT : PNG_CRC_QUIET_USE, PNG_CRC_NO_CHANGE);
    png_set_option(m_pPng, PNG_IGNORE_ADLER32, isNeeded ? PNG_OPTION_OFF : PNG_OPTION_ON);
}

void PngRows::prepare(const QSize& least)
{
    const bool isInterlaced = png_set_interlace_handling(m_pPng) > 1;
    if (m_pUnpacked)
        png_set_compression_buffer_size(m_pPng, kUnpackedBlock);
    png_read_update_info(m_pPng, m_pInfo);
    m_size = QSize(int(png_get_image_width(m_pPng, m_pInfo)), int(png_get_image_height(m_pPng, m_pInfo)));
    const QSize together(m_size.width() / std::max(1, least.width()),
                         m_size.height() / std::max(1, least.height()));
    m_sums.start(m_size, together, png_get_channels(m_pPng, m_pInfo));
    const size_t rowBytes = png_get_rowbytes(m_pPng, m_pInfo);
    m_row.resize((isInterlaced ? rowBytes * size_t(m_size.height()) : rowBytes) + PixelSums::PADDING);
    for (int y = 0; isInterlaced && y < m_size.height(); ++y)
        m_rows.push_back(m_row.data() + size_t(y) * rowBytes);
}

void PngRows::readRows()
{
    for (int y = 0; y < m_size.height(); ++y) {
        png_read_row(m_pPng, m_row.data(), nullptr);
        m_sums.addRow(m_row.data());
    }
}

// Its rows come in several rounds.
void PngRows::readInterlaced()
{
    png_read_image(m_pPng, m_rows.data());
    for (const png_byte* row : m_rows)
        m_sums.addRow(row);
}
