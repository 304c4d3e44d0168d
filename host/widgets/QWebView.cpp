#include "host/widgets/textPanel.h"
#include "host/widgets/webPlugin.h"
#include "support/host/webview.h"
#include <QResizeEvent>
#include <QTimer>
#include <memory>

namespace {
constexpr double kSmallestZoom = 0.25;
constexpr double kLargestZoom = 5;
// A text that nobody has seen for so long is not the next one soon.
constexpr int kUnloadMs = 1000;
} // namespace

struct QWebView::Private
{
    explicit Private(QWebView* view) : view(view) {}

    void show();
    void showPlain();
    void hideAll();
    void unload();
    bool startPanel();
    tagWebPanelEvents events();
    bool isWanted() const { return !html.isEmpty() && isLoaded; }

    QWebView* view;
    QString html;
    double zoom = 1;
    std::unique_ptr<webPanel> panel;
    textPanel* plain = nullptr;
    bool isLoaded = true; // false: the text was taken from the engine, because nobody saw it
    QTimer unseen;
};

// The engine's events are taken up from the event loop: whoever hears of them may delete the view.
tagWebPanelEvents QWebView::Private::events()
{
    const auto later = [view = view](auto work) {
        QMetaObject::invokeMethod(view, work, Qt::QueuedConnection);
    };
    tagWebPanelEvents events;
    events.begun = [this, later] {
        later([this] {
            if (isWanted() && panel)
                panel->widget()->show();
        });
    };
    events.loaded = [this, later](bool ok) {
        later([this, ok] {
            if (isWanted())
                emit view->loadFinished(ok);
        });
    };
    events.died = [this, later] {
        later([this] {
            if (isWanted())
                showPlain();
        });
    };
    return events;
}

bool QWebView::Private::startPanel()
{
    panel.reset(webPlugin::instance().makePanel(view, events()));
    if (panel) {
        panel->widget()->hide();
        panel->widget()->setGeometry(view->rect());
        panel->setZoom(zoom);
    }
    return panel != nullptr;
}

void QWebView::Private::hideAll()
{
    if (plain)
        plain->hide();
    if (panel)
        panel->widget()->hide();
}

void QWebView::Private::show()
{
    switch (webPlugin::instance().state()) {
    case webPlugin::IDLE:
        webPlugin::instance().load();
        break;
    case webPlugin::LOADING:
        break;
    case webPlugin::READY:
        if ((panel || startPanel()) && panel->setHtml(html)) {
            if (plain)
                plain->hide();
            break;
        }
        [[fallthrough]];
    case webPlugin::MISSING:
        showPlain();
        break;
    }
}

void QWebView::Private::showPlain()
{
    hideAll();
    if (!plain)
        plain = new textPanel(view);
    plain->setGeometry(view->rect());
    plain->setZoom(zoom);
    plain->setHtml(html);
    plain->show();
    QMetaObject::invokeMethod(
        view, [this] { emit view->loadFinished(false); }, Qt::QueuedConnection);
}

// Its scripts end, and what they hold is free. An engine that is still to come is not given the text.
void QWebView::Private::unload()
{
    const bool isEngines = panel || webPlugin::instance().state() == webPlugin::LOADING;
    if (html.isEmpty() || !isEngines || view->isVisible())
        return;
    isLoaded = false;
    hideAll();
    if (panel)
        panel->setHtml(QString());
}

QWebView::QWebView(QWidget* parent) : QWidget(parent), m_p(new Private(this))
{
    connect(&webPlugin::instance(), &webPlugin::finished, this, [this] {
        if (m_p->isWanted())
            m_p->show();
    });
    m_p->unseen.setSingleShot(true);
    m_p->unseen.setInterval(kUnloadMs);
    connect(&m_p->unseen, &QTimer::timeout, this, [this] { m_p->unload(); });
}

QWebView::~QWebView()
{
    delete m_p;
}

void QWebView::setHtml(const QString& html, const QUrl&)
{
    m_p->html = html;
    m_p->isLoaded = true;
    if (html.isEmpty()) {
        m_p->hideAll();
        if (m_p->panel)
            m_p->panel->setHtml(html);
        return;
    }
    m_p->show();
    if (!isVisible())
        m_p->unseen.start();
}

bool QWebView::isLoaded() const
{
    return m_p->isLoaded;
}

QString QWebView::html() const
{
    return m_p->html;
}

void QWebView::setZoomFactor(double factor)
{
    m_p->zoom = qBound(kSmallestZoom, factor, kLargestZoom);
    if (m_p->panel)
        m_p->panel->setZoom(m_p->zoom);
    if (m_p->plain)
        m_p->plain->setZoom(m_p->zoom);
}

double QWebView::zoomFactor() const
{
    return m_p->zoom;
}

// Links lead nowhere under any policy: there is nothing to go back with.
void QWebView::setLinkDelegationPolicy(LINK_DELEGATION) {}

void QWebView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_p->panel)
        m_p->panel->widget()->setGeometry(rect());
    if (m_p->plain)
        m_p->plain->setGeometry(rect());
}

void QWebView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_p->unseen.stop();
    if (m_p->isLoaded)
        return;
    m_p->isLoaded = true;
    m_p->show();
}

void QWebView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_p->unseen.start();
}
