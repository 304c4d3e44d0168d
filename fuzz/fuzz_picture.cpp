// Pictures from a person's disk or a signage server. Whatever is in a file, the check comes to one of its
// three answers, and only what starts as a JPEG passes for one.
#include "fuzz/fuzzRoot.h"
#include "media/PhotoFile.h"
#include "support/file/atomicSave.h"
#include <cstdint>
#include <cstring>

namespace {

const char* const kPicture = "/picture.jpg";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FuzzRoot root;
    expect(fileSaveAtomic(kPicture, reinterpret_cast<const char*>(data), size));
    const IMAGE_CHECK check = PhotoFile::GetImageType(kPicture, IMAGE_SIZE_LIMIT);
    expect(check == IMAGE_FINE || check == IMAGE_TOO_LARGE || check == IMAGE_DAMAGED);
    const bool isJpeg = size >= 4 && memcmp(data, "\xff\xd8", 2) == 0;
    expect(isJpeg || check == IMAGE_DAMAGED);
    return 0;
}
