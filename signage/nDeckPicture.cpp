#include "signage/nDeckPicture.h"
#include "signage/nDeckFrame.h"
#include <QPaintEvent>
#include <QPainter>

void nDeckPicture::paintEvent(QPaintEvent* event)
{
    if (width() <= NDECK_WIDTH && height() <= NDECK_HEIGHT) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(rect(), pixmap());
}
