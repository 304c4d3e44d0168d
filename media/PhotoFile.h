#pragma once
// Is a picture file fit to be shown: by its extension and, for JPEG, by what is in it. Any thread.
#include "support/host/api.h"
#include "support/host/picture.h"
#include "support/text/chString.h"

enum IMAGE_CHECK { IMAGE_FINE = 0, IMAGE_TOO_LARGE = 1, IMAGE_DAMAGED = 2 };
enum : unsigned { IMAGE_SIZE_LIMIT = 1966080 }; // bytes

// Keys for the translator.
inline constexpr char PHOTO_OVERSIZED[] = HX_TR("Image is oversized!");
inline constexpr char PHOTO_ERROR[] = HX_TR("Image is error!");

// PhotoFile::IsOk as the check of a wish for a picture: PICTURE_READ, PICTURE_TOO_LARGE or PICTURE_DAMAGED.
PICTURE_RESULT photoCheck(const char* path);

class PhotoFile
{
public:
    // path: device path; limit: bytes of a picture that is no JPEG, at most IMAGE_SIZE_LIMIT.
    bool IsOk(const char* path, unsigned limit);
    // Why the last picture was refused, a key for the translator; not changed by a good one.
    const chString& GetErrorInfo() const { return m_strError; }

    static IMAGE_CHECK GetImageType(const char* path, unsigned limit);

private:
    static IMAGE_CHECK GetJpgInfo(const char* path, unsigned limit);
    static IMAGE_CHECK GetBmpInfo(const char* path, unsigned limit);
    static IMAGE_CHECK GetGIFInfo(const char* path, unsigned limit);
    static IMAGE_CHECK GetPngInfo(const char* path, unsigned limit);
    static IMAGE_CHECK GetTIFInfo(const char* path, unsigned limit);

    chString m_strError;
};
