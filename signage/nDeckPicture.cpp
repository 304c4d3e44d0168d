#include "signage/nDeckPicture.h"
#include "media/PhotoFile.h"
#include "signage/nDeckScreen.h"
#include <QPaintEvent>
#include <QPainter>

namespace {

constexpr unsigned kPictureLimit = 0x1e0000; // bytes

} // namespace

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

bool IsImageValid(const chString& path)
{
    return PhotoFile().IsOk(path, kPictureLimit);
}
