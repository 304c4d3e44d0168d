#include "host/desktop/idleSaver.h"
#include "host/desktop/displayClient.h"
#include "host/screen/screenState.h"
#include "host/screen/windowStack.h"
#include "host/services/phone/phoneService.h"
#include "host/services/system/backlight.h"
#include "support/host/desktop.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/storage.h"
#include <QApplication>
#include <QKeyEvent>
#include <algorithm>
#include <climits>

namespace {

constexpr qint64 kMsInSecond = 1000;
constexpr int kFilms = 1; // the other kind of saver is photos
const char* const kUserIni = "/rundata/config/user/user.ini";
const char* const kStorages = "/storage";
// Pages that a person works on without touching the phone: crosses that a raw reader waits at, and files on
// their way.
const char* const kCalibration = "dlgCalibration";
const char* const kImport = "dlgMediaImport";

qint64 secondsOf(const char* section)
{
    return qMax(nuxGetRegistryInt(kUserIni, section, "nTimeout", 0), 0) * kMsInSecond;
}

qint64 sleepMs()
{
    return secondsOf("Sleep");
}

bool isFilmSaver()
{
    return nuxGetRegistryInt(kUserIni, "ScreenSaver", "eType", 0) == kFilms;
}

QWidget* topWindow()
{
    return QWSServer::clientWindows().value(0);
}

bool isOnTop(const char* className)
{
    const QWidget* top = topWindow();
    return top && top->inherits(className);
}

// Whoever has the phone, or has to see it.
bool isScreenNeeded()
{
    return !topWindow() || phone_GetCallTotal() > 0 || screenState::instance().isSaverSuspended() ||
           QGuiApplication::mouseButtons() != Qt::NoButton || frmDesktop::GetInstance()->m_pLoading ||
           isOnTop(kCalibration);
}

// A box would be answered by what covers it.
bool isPageNeeded()
{
    return QApplication::activeModalWidget() || isOnTop(kImport);
}

void call(void (*entry)())
{
    if (entry)
        entry();
}

} // namespace

idleSaver::idleSaver(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &idleSaver::onTime);
    const screenState& screen = screenState::instance();
    connect(&screen, &screenState::awake, this, &idleSaver::onAwake);
    connect(&screen, &screenState::saverSuspended, this, &idleSaver::plan);
    connect(&windowStack::instance(), &windowStack::changed, this, &idleSaver::onWindows);
    connect(&displayClient::instance(), &displayClient::enabledChanged, this, &idleSaver::onSettings);
    // Before the call screen: a film gives up its surface, and there is light to see who calls.
    m_nCallListener = phoneService::instance().addCallListener([this](const tagCall&) { onCall(); });
    backlightSwitch(true); // the phone may have ended in the dark
    plan();
}

idleSaver::~idleSaver()
{
    phoneService::instance().removeCallListener(m_nCallListener);
}

qint64 idleSaver::saverMs()
{
    return secondsOf("ScreenSaver");
}

int idleSaver::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_WALLPAPER)
        onSettings();
    if (msg.message != DEVICE_MSG_EVENT)
        return 0;
    if (msg.wParam == DEVICE_EVENT_REMOVE)
        onStorageGone();
    return 1;
}

void idleSaver::onAwake()
{
    m_nNotBefore = 0;
    plan();
}

// What plays, or sleeps, by settings that are no more, ends; what is due by the new ones comes at once.
void idleSaver::onSettings()
{
    m_nNotBefore = 0;
    const bool isSaver = saverMs() > 0 && !displayClient::instance().isEnabled() && isFilmSaver() == m_bFilms;
    if ((m_eState == SAVER && !isSaver) || (m_eState == ASLEEP && sleepMs() == 0))
        end();
    plan();
}

// Whoever took it, or hung up, is there; one that was missed is to be seen for a while.
void idleSaver::onCall()
{
    end();
    screenState::instance().restartIdle();
}

// With what is left; what was on the storage would stay on the screen for ever.
void idleSaver::onStorageGone()
{
    if (m_eState != SAVER)
        return;
    endSaver();
    startSaver();
    plan();
}

// A saver that ends without a person had nothing to show, or gave way to what is to be seen for a while.
void idleSaver::onWindows()
{
    if (m_eState == AWAKE || topWindow() == m_pWindow)
        return;
    if (m_eState == SAVER && screenState::instance().idleMs() >= saverMs())
        m_nNotBefore = screenState::instance().idleMs() + AGAIN_MS;
    end();
}

// No timer runs while there is nothing to wait for: whatever changes that comes here.
void idleSaver::plan()
{
    m_timer.stop();
    if (m_eState == ASLEEP || screenState::instance().isSaverSuspended())
        return;
    qint64 due = sleepMs() > 0 ? sleepMs() : LLONG_MAX;
    if (m_eState == AWAKE && saverMs() > 0 && !displayClient::instance().isEnabled())
        due = qMin(due, qMax(saverMs(), m_nNotBefore));
    if (due < LLONG_MAX)
        m_timer.start(int(std::clamp<qint64>(due - screenState::instance().idleMs(), 1, INT_MAX)));
}

void idleSaver::onTime()
{
    const qint64 idle = screenState::instance().idleMs();
    bool isDone = true;
    if (sleepMs() > 0 && idle >= sleepMs())
        isDone = trySleep();
    else if (m_eState == AWAKE && saverMs() > 0 && idle >= qMax(saverMs(), m_nNotBefore))
        isDone = trySaver();
    if (isDone)
        plan();
    else
        m_timer.start(RETRY_MS);
}

template <class Entry>
QWidget* idleSaver::broughtUpBy(Entry entry)
{
    const QWidget* below = topWindow();
    if (entry)
        entry();
    QWidget* top = topWindow();
    return top == below ? nullptr : top;
}

bool idleSaver::trySaver()
{
    if (isScreenNeeded() || isPageNeeded())
        return false;
    startSaver();
    return true;
}

void idleSaver::startSaver()
{
    const tagModuleEntries& module = hostModule();
    m_bFilms = isFilmSaver();
    m_pWindow = broughtUpBy(m_bFilms ? module.startFilmSaver : module.startPhotoSaver);
    if (!m_pWindow) {
        m_nNotBefore = screenState::instance().idleMs() + AGAIN_MS;
        return;
    }
    m_eState = SAVER;
    device_RegisterNotify(this, kStorages);
}

// The dark window lies upon a box and answers it with nothing; a saver ends below it.
bool idleSaver::trySleep()
{
    if (isScreenNeeded())
        return false;
    QWidget* window = broughtUpBy(hostModule().openSleep);
    if (!window)
        return false;
    m_pWindow = window;
    m_eState = ASLEEP;
    screenState::instance().setBacklight(false);
    return true;
}

void idleSaver::end()
{
    if (m_eState == AWAKE)
        return;
    swallowHeldKey(true);
    if (m_eState == SAVER)
        endSaver();
    else
        endSleep();
    plan();
}

void idleSaver::endSaver()
{
    m_eState = AWAKE;
    m_pWindow = nullptr;
    device_UnRegisterNotify(this, kStorages);
    call(m_bFilms ? hostModule().stopFilmSaver : hostModule().stopPhotoSaver);
}

void idleSaver::endSleep()
{
    m_eState = AWAKE;
    m_pWindow = nullptr;
    screenState::instance().setBacklight(true);
    call(hostModule().closeSleep);
}

// A key that ended it, and is held, would go on to press what lies below.
void idleSaver::swallowHeldKey(bool on)
{
    if (on && !m_bSwallowsKey)
        qApp->installEventFilter(this);
    else if (!on && m_bSwallowsKey)
        qApp->removeEventFilter(this);
    m_bSwallowsKey = on;
}

bool idleSaver::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isKey || !watched->isWindowType())
        return false;
    if (static_cast<QKeyEvent*>(event)->isAutoRepeat())
        return true;
    swallowHeldKey(false);
    return false;
}
