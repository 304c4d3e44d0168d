#include "signage/nDeckCover.h"
#include "support/host/webview.h"
#include <QPainter>

namespace {

constexpr int kPaintMs = 80;          // from a text that is laid out to its first picture, and some more
constexpr int kLongestWaitMs = 10000; // a text that fails does not keep the old picture up for ever

} // namespace

nDeckCover::nDeckCover(QWidget* frame, const QRect& rect) : QWidget(frame), m_picture(frame->grab(rect))
{
    setGeometry(rect);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &nDeckCover::End);
    hide();
}

void nDeckCover::Await(QWebView* view)
{
    m_awaited.append(view);
    connect(view, &QWebView::loadFinished, this, [this, view] { OnLoaded(view); });
    connect(view, &QObject::destroyed, this, [this, view] { OnLoaded(view); });
}

void nDeckCover::Settle()
{
    if (m_awaited.isEmpty()) {
        End();
        return;
    }
    raise();
    show();
    m_limit.start(kLongestWaitMs);
}

void nDeckCover::OnLoaded(QWebView* view)
{
    if (m_awaited.removeAll(view) + m_awaited.removeAll(QPointer<QWebView>()) == 0)
        return;
    if (m_awaited.isEmpty() && isVisible())
        m_limit.start(kPaintMs);
}

void nDeckCover::End()
{
    hide();
    deleteLater();
}

void nDeckCover::paintEvent(QPaintEvent*)
{
    QPainter(this).drawPixmap(0, 0, m_picture);
}
