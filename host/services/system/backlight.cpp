#include "host/services/system/backlight.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <QDir>
#include <QFile>

namespace {

const char* const kLights = "/sys/class/backlight";
const char* const kOn = "0"; // the kernel counts how far the power is down
const char* const kOff = "4";

} // namespace

void backlightSwitch(bool on)
{
    const QDir lights(devicePath(kLights).GetText());
    for (const QString& name : lights.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile power(lights.filePath(name + "/bl_power"));
        if (!power.open(QIODevice::WriteOnly | QIODevice::ExistingOnly) || power.write(on ? kOn : kOff) < 0)
            nuxTrace(TRACE_NOTE, "The backlight %s cannot be switched", qPrintable(name));
    }
}
