// GUI tests see the phone's own fonts and style.
#include "host/look/look.h"
#include "places.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/phoneTest.h"
#include <QApplication>

namespace {

void prepareFonts()
{
    deviceSetRoot(HX_BUILD_DIR "/rootfs");
    hostPrepareFonts();
}

void applyLook()
{
    hostApplyLook(*static_cast<QApplication*>(QCoreApplication::instance()));
}

const bool registered = [] {
    kit::guiHooks() = {prepareFonts, applyLook};
    return true;
}();

} // namespace
