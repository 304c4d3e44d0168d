#include "host/desktop/roundPicture.h"
#include <QPainter>

void roundPicture::setPicture(const QPixmap& picture)
{
    m_picture = picture;
    update();
}

void roundPicture::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_picture.isNull())
        return;
    const QSizeF shown = QSizeF(m_picture.size()).scaled(size(), Qt::KeepAspectRatioByExpanding);
    const qreal scale = shown.width() / m_picture.width();
    QBrush brush(m_picture);
    brush.setTransform(
        QTransform::fromTranslate((width() - shown.width()) / 2, (height() - shown.height()) / 2)
            .scale(scale, scale));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setBrush(brush);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(rect());
}
