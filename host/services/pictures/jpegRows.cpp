#include "host/services/pictures/jpegRows.h"
#include "host/services/pictures/pictureSource.h"
#include <QtEndian>
#include <algorithm>
#include <cmath>

#include <jerror.h>

namespace {

constexpr size_t kBlock = 32 * 1024; // bytes that are read at a time
constexpr int kWhole = 8;            // the decoder makes so many eighths of the size
constexpr int kInks = 4;
constexpr int kBlack = 3;
constexpr J_COLOR_SPACE kPixels = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;

// The decoder goes on with grey or noise. Of bytes too many, as cameras leave them, it says something else.
bool isLoss(int warning)
{
    static const int losses[] = {JWRN_HIT_MARKER, JWRN_JPEG_EOF, JWRN_HUFF_BAD_CODE, JWRN_ARITH_BAD_CODE,
                                 JWRN_MUST_RESYNC};
    return std::find(std::begin(losses), std::end(losses), warning) != std::end(losses);
}

bool isInked(const jpeg_decompress_struct& info)
{
    return info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
}

// Whoever writes inks into a JPEG writes how much light they leave.
void mixInks(const JSAMPLE* row, int width, QRgb* pixels)
{
    for (int x = 0; x < width; ++x, row += kInks) {
        const int light = row[kBlack];
        pixels[x] =
            qRgb(light * row[0] / MAXJSAMPLE, light * row[1] / MAXJSAMPLE, light * row[2] / MAXJSAMPLE);
    }
}

} // namespace

JpegRows::~JpegRows()
{
    jpeg_destroy_decompress(&m_info);
}

QImage JpegRows::read(const QSize& least)
{
    m_block.resize(kBlock);
    return readAll(least) ? m_image : QImage();
}

// Nothing in here has a destructor: an error jumps out of the library's calls.
bool JpegRows::readAll(const QSize& least)
{
    m_info.err = jpeg_std_error(&m_errors);
    m_errors.error_exit = jumpBack;
    m_errors.emit_message = judgeWarning;
    m_info.client_data = this;
    if (setjmp(m_back))
        return false;
    prepare(least);
    if (m_image.isNull())
        return false;
    readRows();
    const bool isWhole = hasAllRounds();
    jpeg_finish_decompress(&m_info);
    return isWhole && !m_source.isGivenUp();
}

void JpegRows::jumpBack(j_common_ptr info)
{
    longjmp(of(info)->m_back, 1);
}

void JpegRows::judgeWarning(j_common_ptr info, int level)
{
    const bool isWarning = level < 0;
    if (isWarning && isLoss(info->err->msg_code))
        jumpBack(info);
}

// A few bytes may stand for many rounds over the whole picture.
void JpegRows::lookAtTime(j_common_ptr info)
{
    if (of(info)->m_source.isGivenUp())
        jumpBack(info);
}

boolean JpegRows::takeBytes(j_decompress_ptr info)
{
    JpegRows* self = of(reinterpret_cast<j_common_ptr>(info));
    const qint64 count = self->m_source.read(reinterpret_cast<char*>(self->m_block.data()), kBlock);
    if (count <= 0)
        ERREXIT(info, JERR_INPUT_EOF);
    self->m_bytes.next_input_byte = self->m_block.data();
    self->m_bytes.bytes_in_buffer = size_t(count);
    return TRUE;
}

void JpegRows::skipBytes(j_decompress_ptr info, long count)
{
    jpeg_source_mgr& bytes = of(reinterpret_cast<j_common_ptr>(info))->m_bytes;
    size_t left = size_t(std::max(count, 0L));
    for (; left > bytes.bytes_in_buffer; takeBytes(info))
        left -= bytes.bytes_in_buffer;
    bytes.next_input_byte += left;
    bytes.bytes_in_buffer -= left;
}

void JpegRows::prepare(const QSize& least)
{
    jpeg_create_decompress(&m_info);
    m_bytes.init_source = m_bytes.term_source = [](j_decompress_ptr) {};
    m_bytes.fill_input_buffer = takeBytes;
    m_bytes.skip_input_data = skipBytes;
    m_bytes.resync_to_restart = jpeg_resync_to_restart;
    m_info.src = &m_bytes;
    m_progress.progress_monitor = lookAtTime;
    m_info.progress = &m_progress;
    jpeg_read_header(&m_info, TRUE);
    if (m_info.arith_code)
        return; // at an early end its decoder goes on with zeros, and says nothing
    const double larger = std::min(double(m_info.image_width) / std::max(1, least.width()),
                                   double(m_info.image_height) / std::max(1, least.height()));
    m_info.scale_num = unsigned(std::clamp(int(std::ceil(kWhole / larger)), 1, kWhole));
    m_info.scale_denom = kWhole;
    m_info.out_color_space = isInked(m_info) ? JCS_CMYK : kPixels;
    jpeg_start_decompress(&m_info);
    m_row.resize(isInked(m_info) ? size_t(m_info.output_width) * kInks : 0);
    m_image = QImage(int(m_info.output_width), int(m_info.output_height), QImage::Format_RGB32);
}

void JpegRows::readRows()
{
    while (m_info.output_scanline < m_info.output_height) {
        uchar* line = m_image.scanLine(int(m_info.output_scanline));
        JSAMPROW row = m_row.empty() ? line : m_row.data();
        jpeg_read_scanlines(&m_info, &row, 1);
        if (!m_row.empty())
            mixInks(row, m_image.width(), reinterpret_cast<QRgb*>(line));
    }
}

// Of one that comes in several rounds, whole ones may be missing, which is no warning.
bool JpegRows::hasAllRounds() const
{
    const int count = m_info.num_components;
    const bool isSeen =
        std::all_of(m_info.comp_info, m_info.comp_info + count,
                    [](const jpeg_component_info& component) { return component.quant_table; });
    if (!isSeen || !m_info.progressive_mode)
        return isSeen;
    const int* const missing = m_info.coef_bits[0]; // of each number: how many bits, or -1 for all
    return std::all_of(missing, missing + count * DCTSIZE2, [](int bits) { return bits == 0; });
}
