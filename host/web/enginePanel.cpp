#include "host/web/enginePanel.h"
#include "host/web/enginePage.h"
#include "host/web/frameBeat.h"
#include <QChildEvent>
#include <QWebEngineView>
#include <csignal>

namespace {

// The engine passes the text on in an address, and refuses longer ones.
constexpr qsizetype kLongest = 2 * 1024 * 1024 - 1024;
constexpr int kStuckMs = 10000;

void makeDeaf(QWidget* widget)
{
    widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    widget->setFocusPolicy(Qt::NoFocus);
    widget->setContextMenuPolicy(Qt::NoContextMenu);
    widget->setAcceptDrops(false);
}

} // namespace

enginePanel::enginePanel(QWebEngineProfile* profile, QWidget* parent, tagWebPanelEvents events)
    : m_events(std::move(events)), m_pView(new QWebEngineView(parent)),
      m_pPage(new enginePage(profile, m_pView))
{
    makeDeaf(m_pView);
    m_pView->installEventFilter(this);
    m_pView->setPage(m_pPage);
    m_stuck.setInterval(kStuckMs);
    m_stuck.setSingleShot(true);
    connect(&m_stuck, &QTimer::timeout, this, &enginePanel::onStuck);
    connect(m_pPage, &enginePage::begun, this, [this] {
        m_stuck.stop();
        m_pPage->setZoomFactor(m_fZoom);
        m_events.begun();
    });
    connect(m_pPage, &enginePage::laidOut, this, [this] { m_events.loaded(true); });
    connect(m_pPage, &QWebEnginePage::renderProcessTerminated, this, &enginePanel::onEnd);
}

enginePanel::~enginePanel()
{
    m_pPage->disconnect(this);
    delete m_pView;
}

QWidget* enginePanel::widget()
{
    return m_pView;
}

bool enginePanel::setHtml(const QString& html)
{
    if (html.size() > kLongest || html.toUtf8().toPercentEncoding().size() > kLongest) {
        m_events.say("rich text is too long for the engine");
        return false;
    }
    m_pPage->setHtml(html);
    m_stuck.start();
    return true;
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

void enginePanel::onEnd(QWebEnginePage::RenderProcessTerminationStatus status, int code)
{
    m_stuck.stop();
    m_events.say(
        qPrintable(QStringLiteral("rich text process ended, status %1, code %2").arg(int(status)).arg(code)));
    m_events.died();
}

// A text whose script never ends holds up the texts that come after it.
void enginePanel::onStuck()
{
    m_events.say("rich text process hangs, it is ended");
    const qint64 process = m_pPage->renderProcessPid();
    if (process > 0)
        kill(pid_t(process), SIGKILL);
    else
        m_events.died();
}
