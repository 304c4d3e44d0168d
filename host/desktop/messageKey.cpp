#include "host/desktop/messageKey.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "support/host/module.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace {

// Boxes want an answer, and calls, players and the calibration have the screen for themselves. A saver that
// the key has ended is not seen any more.
bool isFree(const QWidget* window)
{
    return window->isVisible() && !QApplication::activeModalWidget() && QWSServer::isMouseOpen() &&
           !screenState::instance().isSaverSuspended() && phoneService::instance().calls().isEmpty();
}

} // namespace

messageKey::messageKey(QObject* parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool messageKey::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const QKeyEvent* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_F9)
        return false;
    const bool opens = !key->isAutoRepeat() && isFree(static_cast<QWidget*>(watched)->window());
    const auto openPage = hostModule().openPage;
    if (opens && NUX_ASSERT(openPage != nullptr, "module.openPage != NULL"))
        openPage(chString("Message"), nullptr);
    return true;
}
