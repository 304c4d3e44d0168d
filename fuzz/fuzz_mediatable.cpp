// The table of media types: whatever is in it, its readers come to an end, name files of its folders alone,
// and agree about them.
#include "fuzz/fuzzRoot.h"
#include "media/mediaTable.h"
#include "support/file/atomicSave.h"
#include "support/file/path.h"
#include "support/host/xmlcache.h"
#include <cstring>

namespace {

const char* const kTable = "/phone/resource/mediafile.xml";
const char* const kTypes[] = {"image",     "ephoto",        "video", "ad",   "sound",
                              "wallpaper", "contact-image", "",      nullptr};

// Some files to be found, and a folder that leads back to itself.
struct Root : FuzzRoot
{
    Root()
    {
        for (const char* file :
             {"/rundata/media/a.png", "/rundata/media/b.wav", "/rundata/media/below/c.mp4"}) {
            chString folder = file;
            pathRemoveFileSpec(folder);
            expect(pathMakeDirectories(folder));
            expect(fileSaveAtomic(file, "x", 1));
        }
        expect(pathMakeDirectories("/phone/resource"));
    }
};

void checkFile(const tagMediaFile& file)
{
    const char* name = pathGetFileNamePos(file.strPath);
    expect(pathFileExist(file.strPath) && !pathIsDirectory(file.strPath));
    expect(file.nShortName >= 0 && file.nShortName <= file.strName.GetLength());
    expect(strcmp(file.strName.GetText() + file.nShortName, name) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static Root root;
    expect(fileSaveAtomic(kTable, reinterpret_cast<const char*>(data), size));
    for (const char* type : kTypes) {
        std::vector<tagMediaFile> files;
        const bool hasType = mediaFilesRead(type, files);
        expect(hasType || files.empty());
        expect(files.size() <= MEDIA_FILE_LIMIT);
        for (const tagMediaFile& file : files)
            checkFile(file);
    }
    qMyXmlCache cache;
    for (const tagRingFile& ring : cache.ringFiles())
        expect(pathFileExist(ring.strPath));
    return 0;
}
