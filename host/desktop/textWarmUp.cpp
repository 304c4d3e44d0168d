#include "host/desktop/textWarmUp.h"
#include "host/desktop/displayClient.h"
#include "host/screen/screenState.h"
#include "host/widgets/webPlugin.h"
#include "support/host/phone.h"

textWarmUp::textWarmUp(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &textWarmUp::step);
    connect(&displayClient::instance(), &displayClient::enabledChanged, this, &textWarmUp::plan);
    connect(&screenState::instance(), &screenState::awake, this, &textWarmUp::plan);
    connect(&webPlugin::instance(), &webPlugin::cooled, this, [this] {
        m_bDone = false;
        plan();
    });
    plan();
}

// No timer runs when there is nothing to do.
void textWarmUp::plan()
{
    m_timer.stop();
    if (!m_bDone && displayClient::instance().isEnabled())
        m_timer.start(int(qMax<qint64>(IDLE_MS - screenState::instance().idleMs(), STEP_MS)));
}

void textWarmUp::step()
{
    if (screenState::instance().idleMs() < IDLE_MS) {
        plan();
        return;
    }
    if (phone_GetCallTotal() > 0) {
        m_timer.start(IDLE_MS);
        return;
    }
    m_bDone = !webPlugin::instance().warmStep();
    if (!m_bDone)
        m_timer.start(STEP_MS);
}
