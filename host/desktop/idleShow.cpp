#include "host/desktop/idleShow.h"
#include "host/desktop/displayClient.h"
#include "host/desktop/idleSaver.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include <QEvent>
#include <QWidget>
#include <climits>

namespace {

constexpr QRect kCorner(514, 48, 230, 138);
constexpr QRect kScreen(0, 0, look::kScreenWidth, look::kScreenHeight);

} // namespace

idleShow::idleShow(QWidget* home)
    : QObject(home), m_pHome(home), m_corner(NDECK_WINDOW_IDLE, home, kCorner),
      m_full(NDECK_WINDOW_IDLE, nullptr, kScreen)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &idleShow::onTime);
    home->installEventFilter(this);
    screenState& screen = screenState::instance();
    connect(&screen, &screenState::touched, this, &idleShow::onTouch);
    connect(&screen, &screenState::awake, this, &idleShow::plan);
    connect(&screen, &screenState::saverSuspended, this, &idleShow::plan);
    connect(&displayClient::instance(), &displayClient::enabledChanged, this, [this](bool enabled) {
        if (!enabled)
            onHomeLeft();
        plan();
    });
    // Before the call screen, which may show the frame itself.
    phoneService::instance().addCallListener([this](const tagCall& call) {
        if (call.eState != CALL_ENDED)
            onHomeLeft();
    });
}

int idleShow::fullMs()
{
    const auto isSaver = hostModule().isDisplaySaverEnabled;
    if (!isSaver || !isSaver())
        return -1;
    const qint64 saver = idleSaver::saverMs();
    return saver > 0 ? int(qMin<qint64>(saver, INT_MAX)) : int(FULL_MS);
}

int idleShow::dueMs() const
{
    const int full = fullMs();
    if (m_eState == CORNER)
        return full;
    return full >= 0 ? qMin(full, int(CORNER_MS)) : int(CORNER_MS);
}

bool idleShow::mayShow() const
{
    return displayClient::instance().isEnabled() && !screenState::instance().isSaverSuspended() &&
           phone_GetCallTotal() == 0 && QWSServer::clientWindows().value(0) == m_pHome;
}

// No timer runs while there is nothing to wait for: whatever changes that comes here.
void idleShow::plan()
{
    m_timer.stop();
    if (m_eState == FULL || !displayClient::instance().isEnabled() || !m_pHome->isActiveWindow() ||
        screenState::instance().isSaverSuspended())
        return;
    const int due = dueMs();
    if (due >= 0)
        m_timer.start(int(qMax<qint64>(due - screenState::instance().idleMs(), 1)));
}

void idleShow::onTime()
{
    if (mayShow() && showNext())
        plan();
    else
        m_timer.start(RETRY_MS);
}

// False when the client shows nothing.
bool idleShow::showNext()
{
    const qint64 idle = screenState::instance().idleMs();
    const int full = fullMs();
    if (full >= 0 && idle >= full)
        return showFull();
    return m_eState == CORNER || idle < CORNER_MS || showCorner();
}

bool idleShow::showCorner()
{
    if (!m_corner.show())
        return false;
    m_eState = CORNER;
    emit changed();
    return true;
}

// The window ends itself at a touch or a key, which it keeps from the home screen.
bool idleShow::showFull()
{
    endCorner();
    m_eState = FULL;
    if (m_full.show())
        return true;
    m_eState = AWAY;
    return false;
}

void idleShow::endCorner()
{
    if (m_eState != CORNER)
        return;
    m_eState = AWAY;
    m_corner.hide();
    emit changed();
}

void idleShow::onTouch()
{
    endCorner();
}

void idleShow::onHomeLeft()
{
    endCorner();
    if (m_eState != FULL)
        return;
    m_eState = AWAY;
    m_full.hide();
}

void idleShow::onHomeActive()
{
    if (m_eState == FULL) {
        m_eState = AWAY;
        m_full.windowLeft();
    }
    if (m_eState == AWAY)
        m_corner.hide();
    plan();
}

bool idleShow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_pHome->isActiveWindow())
                    onHomeActive();
            },
            Qt::QueuedConnection);
    else if (event->type() == QEvent::WindowDeactivate && m_eState == CORNER)
        endCorner();
    return QObject::eventFilter(watched, event);
}
