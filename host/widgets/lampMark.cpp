#include "host/widgets/lampMark.h"
#include "host/screen/screenState.h"
#include <QPainter>
#include <QRadialGradient>

namespace {

constexpr qreal kLight = 5;
constexpr QRgb kGlow = 0x99ff5a4d;
constexpr QRgb kEdge = 0x00ff5a4d;
constexpr QRgb kRed = 0xffff5a4d;
constexpr QRgb kHot = 0xffffb3a8;

void paintDisc(QPainter& painter, QPointF centre, qreal radius, QRgb inner, QRgb outer)
{
    QRadialGradient gradient(centre, radius);
    gradient.setColorAt(0, QColor::fromRgba(inner));
    gradient.setColorAt(1, QColor::fromRgba(outer));
    painter.setBrush(gradient);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace

void paintLampMark(QPainter& painter, QPoint centre)
{
    if (!screenState::instance().isLampLit())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    paintDisc(painter, centre, kLampMarkSize / 2.0, kGlow, kEdge);
    paintDisc(painter, centre, kLight, kHot, kRed);
    painter.restore();
}
