#include "host/desktop/pagerButton.h"
#include "host/look/look.h"
#include "support/host/ui.h"
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int kCorner = 12;
constexpr qreal kDot = 3.5;
constexpr int kStep = 14;
constexpr int kChevron = 18; // from the right edge
constexpr QRgb kFill = 0x26ffffff;
constexpr QRgb kPressed = 0x4dffffff;
constexpr QRgb kFocusLine = 0xd9ffffff;
constexpr QRgb kDotOn = 0xffffffff;
constexpr QRgb kDotOff = 0x66ffffff;

} // namespace

pagerButton::pagerButton(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

void pagerButton::setPage(int page, int pages)
{
    m_nPage = page;
    m_nPages = pages;
    setText(QString("%1/%2").arg(page + 1).arg(pages));
    update();
}

void pagerButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    look::paintBox(painter, rect(), kCorner, isDown() ? kPressed : kFill, hasFocus() ? kFocusLine : 0, 2);
    painter.setPen(Qt::NoPen);
    const qreal middle = height() / 2.0;
    const qreal left = (width() - kChevron) / 2.0 - (m_nPages - 1) * kStep / 2.0;
    for (int page = 0; page < m_nPages; ++page) {
        painter.setBrush(QColor::fromRgba(page == m_nPage ? kDotOn : kDotOff));
        painter.drawEllipse(QPointF(left + page * kStep, middle), kDot, kDot);
    }
    QPainterPath chevron(QPointF(width() - kChevron - 3, middle - 6));
    chevron.lineTo(width() - kChevron + 3, middle);
    chevron.lineTo(width() - kChevron - 3, middle + 6);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgba(kDotOn), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron);
}

void pagerButton::keyPressEvent(QKeyEvent* event)
{
    if (!qIsOkKey(event->key()))
        event->ignore(); // the arrows move over the whole screen, which the home screen knows
    else if (!event->isAutoRepeat())
        click();
}
