#include "media/jpegHeader.h"
#include "support/file/chFileStdio.h"
#include "support/host/trace.h"
#include <algorithm>
#include <csetjmp>
#include <cstring>

#include <jpeglib.h>

namespace {

constexpr int kBlock = 64 * 1024;
const unsigned char kStart[] = {0xff, 0xd8};
const unsigned char kEnd[] = {0xff, 0xd9};

struct tagErrorHandler
{
    jpeg_error_mgr base; // the library knows this part only
    jmp_buf back;
};

[[noreturn]] void jumpBack(j_common_ptr info)
{
    char text[JMSG_LENGTH_MAX];
    info->err->format_message(info, text);
    nuxTrace(TRACE_DETAIL, "JPEG: %s", text);
    longjmp(reinterpret_cast<tagErrorHandler*>(info->err)->back, 1);
}

// A picture that the decoder makes do with is good enough; the standard handler would print.
void ignoreWarning(j_common_ptr) {}

bool holdsEnd(const unsigned char* data, int size)
{
    return memmem(data, size_t(size), kEnd, sizeof kEnd) != nullptr;
}

} // namespace

bool jpegHeader::Read(const char* path)
{
    chFileStdio file;
    return file.Open(path, "rb") && isJPGImage(file) && file.Seek(0) && ReadSize(file);
}

// Whatever a camera put behind the picture, the mark of its end is near the end of the file.
bool jpegHeader::isJPGImage(chFileStdio& file)
{
    unsigned char block[kBlock + sizeof kEnd - 1];
    if (file.Read(block, sizeof kStart) != int(sizeof kStart) || memcmp(block, kStart, sizeof kStart) != 0)
        return false;
    file.Seek(0, SEEK_END);
    const long long start = sizeof kStart;
    for (long long end = file.Tell(); end > start; end -= kBlock) {
        // One byte of the block behind this one, for a mark that lies in both.
        const long long from = std::max(start, end - kBlock);
        file.Seek(from);
        if (holdsEnd(block, file.Read(block, int(end - from) + 1)))
            return true;
    }
    return false;
}

// Nothing in here has a destructor: a fatal error jumps out of the library's calls.
bool jpegHeader::ReadSize(chFileStdio& file)
{
    jpeg_decompress_struct info = {};
    tagErrorHandler handler = {};
    info.err = jpeg_std_error(&handler.base);
    handler.base.error_exit = jumpBack;
    handler.base.output_message = ignoreWarning;
    if (setjmp(handler.back)) {
        jpeg_destroy_decompress(&info);
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file.GetStream());
    jpeg_read_header(&info, TRUE);
    jpeg_calc_output_dimensions(&info);
    m_nWidth = info.output_width;
    m_nHeight = info.output_height;
    jpeg_destroy_decompress(&info);
    return true;
}
