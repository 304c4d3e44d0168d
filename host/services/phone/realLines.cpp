#include "host/services/phone/realLines.h"
#include "host/services/phone/mediaSessions.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/silentMedia.h"
#include "host/services/phone/sipBackend.h"
#include <QCoreApplication>

namespace {

// The one place that says where the sound of real calls comes from.
std::unique_ptr<sipMedia> mediaOfCalls(bool hasPlayers)
{
    if (hasPlayers)
        return std::make_unique<mediaSessions>();
    return std::make_unique<silentMedia>();
}

} // namespace

void realLinesStart(bool hasPlayers)
{
    phoneService::instance().setBackend(std::make_unique<sipBackend>(mediaOfCalls(hasPlayers)));
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, [] {
        if (auto* lines = dynamic_cast<sipBackend*>(&phoneService::instance().backend()))
            lines->stop();
    });
}
