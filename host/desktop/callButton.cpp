#include "host/desktop/callButton.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include <QPainter>

namespace {

constexpr int kWordTop = 76;
constexpr int kWordMargin = 4;
constexpr int kShadow = 6;
constexpr int kShadowDown = 3;
constexpr QRgb kShadowColour = 0x14000000; // of each of its rings

// A little darker towards the disc.
void paintRoundShadow(QPainter& painter, const QRect& disc)
{
    for (int out = 0; out < kShadow; out += 2) {
        const QRect ring = disc.translated(0, kShadowDown).adjusted(-out, -out, out, out);
        look::paintBox(painter, ring, ring.height() / 2.0, kShadowColour);
    }
}

} // namespace

callButton::callButton(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setFont(look::font(look::kSmallSize));
}

void callButton::setDisc(const char* normal, const char* pressed)
{
    m_normal = GetImageManager()->GetImage(normal);
    m_pressed = GetImageManager()->GetImage(pressed);
    update();
}

void callButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect disc(QPoint((width() - m_normal.width()) / 2, 0), m_normal.size());
    paintRoundShadow(painter, disc);
    painter.drawPixmap(disc.topLeft(), isDown() ? m_pressed : m_normal);
    if (text().isEmpty())
        return;
    painter.setPen(look::colour(look::kTextOnBar));
    look::paintFitted(painter, rect().adjusted(kWordMargin, kWordTop, -kWordMargin, 0), Qt::AlignCenter,
                      text(), font());
}
