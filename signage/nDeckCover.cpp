#include "signage/nDeckCover.h"
#include "signage/nDeckPicture.h"
#include "support/host/webview.h"
#include <QPainter>

namespace {

constexpr int kPaintMs = 80;          // from a text that is laid out to its first picture, and some more
constexpr int kLongestWaitMs = 10000; // what does not come does not keep the old picture up for ever

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

void nDeckCover::AwaitText(QWebView* view)
{
    m_bText = true;
    Await(view);
    connect(view, &QWebView::loadFinished, this, [this, view] { Arrived(view); });
}

void nDeckCover::AwaitPicture(nDeckPicture* picture)
{
    Await(picture);
    connect(picture, &nDeckPicture::settled, this, [this, picture] { Arrived(picture); });
}

void nDeckCover::Await(QObject* what)
{
    m_awaited.append(what);
    connect(what, &QObject::destroyed, this, [this, what] { Arrived(what); });
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

void nDeckCover::Arrived(QObject* what)
{
    if (m_awaited.removeAll(what) == 0 || !m_awaited.isEmpty() || !isVisible())
        return;
    if (m_bText)
        m_limit.start(kPaintMs);
    else
        End();
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
