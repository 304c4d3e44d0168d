#include "media/PhotoFile.h"
#include "media/jpegHeader.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/api.h"
#include "support/host/trace.h"
#include <algorithm>
#include <strings.h>

namespace {

constexpr unsigned kMaxWidth = 1920; // pixels
constexpr unsigned kMaxHeight = 1024;

IMAGE_CHECK checkSize(const char* path, unsigned limit)
{
    const long long size = fileSize(path);
    if (size < 0)
        return IMAGE_DAMAGED;
    return size > static_cast<long long>(limit) ? IMAGE_TOO_LARGE : IMAGE_FINE;
}

} // namespace

bool PhotoFile::IsOk(const char* path, unsigned limit)
{
    const IMAGE_CHECK check = GetImageType(path, limit);
    if (check == IMAGE_TOO_LARGE)
        m_strError = PHOTO_OVERSIZED;
    else if (check == IMAGE_DAMAGED)
        m_strError = PHOTO_ERROR;
    nuxTrace(TRACE_DETAIL, "PhotoFile::IsOk info(%s)", m_strError.GetText());
    return check == IMAGE_FINE;
}

PICTURE_RESULT photoCheck(const char* path)
{
    PhotoFile file;
    if (file.IsOk(path, IMAGE_SIZE_LIMIT))
        return PICTURE_READ;
    return file.GetErrorInfo() == PHOTO_OVERSIZED ? PICTURE_TOO_LARGE : PICTURE_DAMAGED;
}

IMAGE_CHECK PhotoFile::GetImageType(const char* path, unsigned limit)
{
    static const struct
    {
        const char* extension;
        IMAGE_CHECK (*check)(const char* path, unsigned limit);
    } kinds[] = {{".jpg", GetJpgInfo},  {".jpeg", GetJpgInfo}, {".jpe", GetJpgInfo},
                 {".jfif", GetJpgInfo}, {".bmp", GetBmpInfo},  {".gif", GetGIFInfo},
                 {".png", GetPngInfo},  {".tif", GetTIFInfo},  {".tiff", GetTIFInfo}};
    const char* extension = pathGetFileExtensionPos(path);
    for (const auto& kind : kinds) {
        if (strcasecmp(extension, kind.extension) == 0)
            return kind.check(path, std::min<unsigned>(limit, IMAGE_SIZE_LIMIT));
    }
    return IMAGE_TOO_LARGE;
}

// However large the file is: what counts is the picture in memory.
IMAGE_CHECK PhotoFile::GetJpgInfo(const char* path, unsigned)
{
    jpegHeader header;
    if (!header.Read(path))
        return IMAGE_DAMAGED;
    return header.GetWidth() > kMaxWidth || header.GetHeight() > kMaxHeight ? IMAGE_TOO_LARGE : IMAGE_FINE;
}

IMAGE_CHECK PhotoFile::GetBmpInfo(const char* path, unsigned limit)
{
    return checkSize(path, limit);
}

IMAGE_CHECK PhotoFile::GetGIFInfo(const char*, unsigned)
{
    return IMAGE_FINE;
}

IMAGE_CHECK PhotoFile::GetPngInfo(const char* path, unsigned limit)
{
    return checkSize(path, limit);
}

IMAGE_CHECK PhotoFile::GetTIFInfo(const char* path, unsigned limit)
{
    return checkSize(path, limit);
}
