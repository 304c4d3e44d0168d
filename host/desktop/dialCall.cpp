#include "host/desktop/dialCall.h"
#include "host/look/look.h"
#include "support/host/api.h"
#include "support/host/image.h"
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int kGlyphSize = 24;
constexpr int kGap = 12;
constexpr QRgb kTop = 0xff5fcf6c;
constexpr QRgb kBottom = 0xff27a042;
constexpr int kPressed = 115; // per cent of the darkness

} // namespace

dialCall::dialCall(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setFont(look::font(look::kTextSize, true));
}

void dialCall::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient face(0, 0, 0, height());
    face.setColorAt(0, look::colour(kTop).darker(isDown() ? kPressed : 100));
    face.setColorAt(1, look::colour(kBottom).darker(isDown() ? kPressed : 100));
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()), height() / 2.0, height() / 2.0);
    painter.fillPath(shape, face);
    painter.setPen(look::colour(look::kTextOnBar));
    painter.setFont(font());
    const int word = painter.fontMetrics().horizontalAdvance(text());
    const int left = (width() - kGlyphSize - kGap - word) / 2;
    painter.drawPixmap(left, (height() - kGlyphSize) / 2,
                       GetImageManager()->GetImage(HX_THEME("icon/dial_call.png")));
    painter.drawText(QRect(left + kGlyphSize + kGap, 0, word + 2, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
}
