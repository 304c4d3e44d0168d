#include "host/desktop/historyNote.h"
#include "host/services/phone/callHistory.h"
#include "host/services/phone/phoneService.h"
#include "support/host/box.h"
#include "support/host/desktop.h"
#include "support/host/language.h"
#include <QCoreApplication>
#include <QTimer>

namespace {

void tell()
{
    xMessageBox(Translate("Note"), Translate(HX_TR("The call history cannot be saved!")), BOX_NOTE,
                frmDesktop::GetInstance(), -1);
}

} // namespace

void historyNoteInstall()
{
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { phoneService::instance().finish(); });
    callHistoryOnFault([] {
        if (!phoneService::instance().calls().isEmpty())
            return false;
        QTimer::singleShot(0, qApp, tell);
        return true;
    });
}
