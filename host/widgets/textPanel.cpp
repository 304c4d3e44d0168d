#include "host/widgets/textPanel.h"
#include "host/look/look.h"
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPixmap>

namespace {
constexpr qreal kMargin = 8; // as the engine's own
// Characters; a panel has room for far less, and laying out more would be felt.
constexpr int kLongest = 16384;
} // namespace

QVariant textPanel::Document::loadResource(int, const QUrl&)
{
    QPixmap nothing(1, 1);
    nothing.fill(Qt::transparent);
    return nothing;
}

textPanel::textPanel(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_document.setDefaultFont(look::font(look::kSmallSize));
    m_document.setDocumentMargin(kMargin);
}

void textPanel::setHtml(const QString& html)
{
    m_document.setHtml(html.left(kLongest));
    update();
}

void textPanel::setZoom(double factor)
{
    m_fZoom = factor;
    update();
}

void textPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_document.setTextWidth(width() / m_fZoom);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    context.clip = QRectF(0, 0, width() / m_fZoom, height() / m_fZoom);
    painter.setClipRect(rect());
    painter.scale(m_fZoom, m_fZoom);
    m_document.documentLayout()->draw(&painter, context);
}
