#include "host/desktop/boot.h"
#include "host/desktop/callMedia.h"
#include "host/desktop/deviceCalls.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/historyNote.h"
#include "host/desktop/messageKey.h"
#include "host/desktop/textWarmUp.h"
#include "host/screen/windowStack.h"
#include "host/services/clock/networkTime.h"
#include "host/services/keyfiles/deviceFiles.h"
#include "support/host/box.h"
#include "support/host/desktop.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include <QCoreApplication>
#include <QTimer>
#include <malloc.h>

namespace {

constexpr int kQuietMs = 1000;

void tellNothingIsStored()
{
    xMessageBox(Translate("Note"),
                Translate("Settings cannot be stored. Changes last until the phone is switched off."),
                BOX_NOTE, frmDesktop::GetInstance(), -1);
}

// The allocator keeps the room of pictures that windows have given back. It serves the next window at once,
// and goes back to the system when none has come or gone for a while.
void giveMemoryBackWhenQuiet()
{
    QTimer* quiet = new QTimer(qApp);
    quiet->setSingleShot(true);
    quiet->setInterval(kQuietMs);
    QObject::connect(quiet, &QTimer::timeout, quiet, [] { malloc_trim(0); });
    QObject::connect(&windowStack::instance(), &windowStack::changed, quiet, qOverload<>(&QTimer::start));
}

// One step a turn of the event loop, so that the loading screen moves on between them.
void bootStep(int index)
{
    const auto cacheWindows = hostModule().cacheWindows;
    if (cacheWindows && cacheWindows(index)) {
        QTimer::singleShot(0, qApp, [index] { bootStep(index + 1); });
        return;
    }
    frmDesktop::GetInstance()->FinishLoading();
    displayClient::instance().start();
    networkTime::instance().start();
    new textWarmUp(qApp);
    if (!deviceFilesAreStored())
        QTimer::singleShot(0, qApp, tellNothingIsStored);
}

} // namespace

void hostBoot()
{
    // In this order they hear of a call: the home screen lets go of the signage frame, the call screen takes
    // it.
    deviceCallsInstall();
    callMediaInstall();
    frmDesktop* desktop = frmDesktop::GetInstance();
    callScreenInstall();
    historyNoteInstall();
    new messageKey(qApp);
    giveMemoryBackWhenQuiet();
    desktop->m_pLoading = new frmLoading;
    desktop->m_pLoading->show();
    QTimer::singleShot(0, qApp, [] { bootStep(0); });
}
