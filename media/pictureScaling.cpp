#include "media/pictureScaling.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/program.h"
#include "support/host/trace.h"

namespace {

constexpr size_t kCommandRoom = 256; // with the zero at its end
constexpr int kTimeoutMs = 30000;    // the program bounds its own work, but a disk may hang
constexpr size_t kVerdictRoom = 64;
const char* const kProgram = "/mini-boot/bin/imageScale.exx";
const char* const kPlugins = "QT_PLUGIN_PATH=/phone/lib";
const char* const kVerdictFolder = "/tmp";
const char* const kVerdict = "/tmp/imageScale.out";

// One word, which the program splits again although paths may hold blanks.
std::string orderWord(const tagScaleOrder& order)
{
    return "@&@" + order.strSource + " @&@" + std::to_string(order.nWidth) + " @&@" +
           std::to_string(order.nHeight) + " @&@" + order.strTarget + " @&@" + kVerdict;
}

} // namespace

std::string scaleCommand(const tagScaleOrder& order)
{
    const std::string command =
        std::string("export ") + kPlugins + ";" + kProgram + " \"" + orderWord(order) + "\"";
    return command.size() < kCommandRoom ? command : std::string();
}

bool isScaleVerdictGood(const char* file)
{
    std::string text;
    return fileRead(file, text, kVerdictRoom) != FILE_READ_DONE || text != "0";
}

bool scalePicture(const tagScaleOrder& order, const std::atomic<bool>& cancel)
{
    nuxTrace(TRACE_DETAIL, "=========cCommand(%s)", scaleCommand(order).c_str());
    pathMakeDirectories(kVerdictFolder);
    // Neither the verdict on another picture nor one that somebody has put there is taken for this one's.
    if (!fileRemove(kVerdict) && pathFileExist(kVerdict)) {
        nuxTrace(TRACE_NOTE, "%s is somebody else's", kVerdict);
        return false;
    }
    tagProgram program;
    program.strPath = kProgram;
    program.lstArguments = {orderWord(order)};
    program.lstVariables = {kPlugins};
    program.nTimeoutMs = kTimeoutMs;
    program.pCancel = &cancel;
    return sysProgram(program) != PROGRAM_KILLED && isScaleVerdictGood(kVerdict);
}
