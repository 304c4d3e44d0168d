#include "calibration/cross.h"
#include <QPainter>

namespace {

constexpr int kBar = 3;

} // namespace

Cross::Cross(QWidget* parent) : QFrame(parent)
{
    Point(SIDE, SIDE);
}

void Cross::Point(int x, int y)
{
    setGeometry(QRect(QPoint(x - HALF, y - HALF), QPoint(x + HALF - 1, y + HALF - 1)));
}

void Cross::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.fillRect(0, height() / 2 - kBar / 2, SIDE, kBar, Qt::black);
    painter.fillRect(width() / 2 - kBar / 2, 0, kBar, SIDE, Qt::black);
}
