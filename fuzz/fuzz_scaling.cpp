// The verdict of the program that scales pictures, which any process may write, and the order that it is
// given, with names of any disk in it. Whatever is in the file, only the text "0" refuses; whatever a picture
// is called, the program reads the order that was written.
#include "fuzz/fuzzRoot.h"
#include "media/pictureScaling.h"
#include "support/file/atomicSave.h"
#include "tools/imageScale/ScaleOrder.h"
#include <algorithm>
#include <cstdint>

namespace {

const char* const kVerdict = "/verdict";

// As the word stands in the command.
void checkOrder(const std::string& name)
{
    const tagScaleOrder given = {"/storage/uDisk1/" + name, "/rundata/media/t.jpg", 126, 90};
    const std::string command = scaleCommand(given);
    expect(command.size() < 256);
    if (command.empty())
        return;
    const size_t first = command.find('"');
    ScaleOrder read;
    expect(read.parse(command.substr(first + 1, command.size() - first - 2)));
    expect(read.strSource == given.strSource && read.strTarget == given.strTarget);
    expect(read.nWidth == given.nWidth && read.nHeight == given.nHeight);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static FuzzRoot root;
    const std::string text(reinterpret_cast<const char*>(data), size);
    expect(fileSaveAtomic(kVerdict, text.data(), text.size()));
    expect(isScaleVerdictGood(kVerdict) == (text != "0"));
    checkOrder(text);
    ScaleOrder any;
    if (any.parse(text))
        expect(!any.strSource.empty() && !any.strTarget.empty() && any.nWidth >= 1 && any.nHeight >= 1);
    return 0;
}
