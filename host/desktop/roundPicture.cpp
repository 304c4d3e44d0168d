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
    QBrush brush(m_picture);
    brush.setTransform(
        QTransform::fromTranslate((width() - m_picture.width()) / 2, (height() - m_picture.height()) / 2));
    painter.setBrush(brush);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(rect());
}
