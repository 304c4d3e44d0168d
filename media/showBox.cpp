#include "media/showBox.h"
#include "support/host/box.h"
#include "support/host/language.h"

namespace {

constexpr int kBoxMs = 3000;

} // namespace

void showBoxNoMedia()
{
    xMessageBox(Translate(HX_TR("Error")), Translate(HX_TR("No media found in this phone !")), BOX_NOTE,
                nullptr, kBoxMs);
}
