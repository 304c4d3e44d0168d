#include "host/web/enginePanel.h"
#include "host/web/engine.h"
#include "host/web/enginePage.h"
#include "host/web/failedTexts.h"
#include "host/web/frameBeat.h"
#include "host/web/rendererWatch.h"
#include <QChildEvent>
#include <QWebEngineView>

namespace {

// The engine passes the text on in an address, and refuses longer ones.
constexpr qsizetype kLongest = 2 * 1024 * 1024 - 1024;
constexpr int kStuckMs = 10000;
constexpr int kLeaveMs = 3000; // for a text that is to go

void makeDeaf(QWidget* widget)
{
    widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    widget->setFocusPolicy(Qt::NoFocus);
    widget->setContextMenuPolicy(Qt::NoContextMenu);
    widget->setAcceptDrops(false);
}

} // namespace

enginePanel::enginePanel(const tagEngine& engine, QWidget* parent, tagWebPanelEvents events)
    : m_engine(engine), m_events(std::move(events)), m_pView(new QWebEngineView(parent)),
      m_pPage(new enginePage(engine.profile, m_pView))
{
    makeDeaf(m_pView);
    m_pView->installEventFilter(this);
    m_pView->setPage(m_pPage);
    m_stuck.setSingleShot(true);
    connect(&m_stuck, &QTimer::timeout, this, &enginePanel::onStuck);
    connect(m_pPage, &enginePage::begun, this, &enginePanel::onBegun);
    connect(m_pPage, &enginePage::laidOut, this, [this] { m_events.loaded(true); });
    connect(m_pPage, &QWebEnginePage::renderProcessTerminated, this, &enginePanel::onEnd);
    connect(&rendererWatch::instance(), &rendererWatch::ending, this, &enginePanel::onEnding);
}

enginePanel::~enginePanel()
{
    rendererWatch::instance().leave(this);
    m_pPage->disconnect(this);
    delete m_pView;
}

QWidget* enginePanel::widget()
{
    return m_pView;
}

bool enginePanel::mayShow(const QString& html) const
{
    const char* why = nullptr;
    if (html.size() > kLongest || html.toUtf8().toPercentEncoding().size() > kLongest)
        why = "rich text is too long for the engine";
    else if (failedTexts::instance().hasFailed(html))
        why = "rich text took too much before, it is shown plainly";
    if (why)
        m_events.say(why);
    return !why;
}

// What cannot be shown takes the place of the text before all the same.
bool enginePanel::setHtml(const QString& html)
{
    const bool isGood = mayShow(html);
    m_strHtml = isGood ? html : QString();
    m_bTriedAgain = false;
    m_engine.setServer(m_events.server());
    load();
    return isGood;
}

// Without a process there is nothing that nothing could take the place of.
void enginePanel::load()
{
    rendererWatch::instance().use(this, m_nProcess, !m_strHtml.isEmpty());
    if (m_strHtml.isEmpty() && m_nProcess == 0 && !m_stuck.isActive())
        return;
    m_bBegun = false;
    m_pPage->setText(m_strHtml);
    m_stuck.start(m_strHtml.isEmpty() ? kLeaveMs : kStuckMs);
}

// The engine does not tell when a page gets a process.
void enginePanel::onBegun()
{
    m_stuck.stop();
    m_bBegun = true;
    m_nProcess = pid_t(m_pPage->renderProcessPid());
    rendererWatch::instance().use(this, m_nProcess, !m_strHtml.isEmpty());
    m_pPage->setZoomFactor(m_fZoom);
    m_events.begun();
}

// The engine forgets it with the next text.
void enginePanel::setZoom(double factor)
{
    m_fZoom = factor;
    m_pPage->setZoomFactor(factor);
}

// The widget that the engine draws into comes with the first text.
bool enginePanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildPolished) {
        QObject* child = static_cast<QChildEvent*>(event)->child();
        if (child->isWidgetType())
            makeDeaf(static_cast<QWidget*>(child));
        if (auto* drawing = qobject_cast<QQuickWidget*>(child))
            frameBeat::instance().pace(drawing);
    }
    return QObject::eventFilter(watched, event);
}

// Those that had begun: one of them took it. Nobody knows which, unless there is one.
void enginePanel::onEnding(pid_t process, int reason)
{
    if (process != m_nProcess)
        return;
    m_nEnding = reason;
    if (reason != rendererWatch::HANGS && m_bBegun && !m_strHtml.isEmpty())
        failedTexts::instance().add(m_strHtml, rendererWatch::instance().texts(process) == 1);
}

// What hangs may be a text that is gone, and one that has not begun took nothing.
bool enginePanel::mayTryAgain() const
{
    return !m_strHtml.isEmpty() && !m_bTriedAgain && (!m_bBegun || m_nEnding == rendererWatch::HANGS);
}

void enginePanel::onEnd(QWebEnginePage::RenderProcessTerminationStatus status, int code)
{
    m_stuck.stop();
    m_nProcess = 0;
    rendererWatch::instance().use(this, 0, false);
    m_events.say(
        qPrintable(QStringLiteral("rich text process ended, status %1, code %2").arg(int(status)).arg(code)));
    const bool again = mayTryAgain();
    if (m_nEnding == NOT_ENDED && m_bBegun && !m_strHtml.isEmpty())
        failedTexts::instance().add(m_strHtml, false);
    m_nEnding = NOT_ENDED;
    if (!again) {
        m_events.died();
        return;
    }
    m_bTriedAgain = true;
    QMetaObject::invokeMethod(this, &enginePanel::load, Qt::QueuedConnection);
}

// A text whose script never ends holds up the texts that come after it.
void enginePanel::onStuck()
{
    const pid_t process = pid_t(m_pPage->renderProcessPid());
    if (process > 0)
        rendererWatch::instance().end(process, rendererWatch::HANGS);
    else
        m_events.died();
}
