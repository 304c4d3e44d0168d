#include "host/desktop/callCorner.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include "support/host/player.h"
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr QRgb kTop = 0xff9fb6ce;
constexpr QRgb kBottom = 0xff5b7389;
constexpr QRgb kEdge = 0xccffffff;
constexpr int kEdgeWidth = 2;

} // namespace

callCorner::callCorner(QWidget* parent)
    : QWidget(parent), m_person(GetImageManager()->GetImage(HX_THEME("icon/talk_person.png")))
{
}

void callCorner::setPictured(bool pictured)
{
    if (pictured == m_bPictured)
        return;
    m_bPictured = pictured;
    update();
}

void callCorner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_bPictured) {
        look::paintBox(painter, rect(), CALL_OWN_CORNER, 0, kEdge, kEdgeWidth);
        return;
    }
    QPainterPath inside;
    inside.addRoundedRect(rect().adjusted(1, 1, -1, -1), CALL_OWN_CORNER, CALL_OWN_CORNER);
    QLinearGradient fill(0, 0, 0, height());
    fill.setColorAt(0, look::colour(kTop));
    fill.setColorAt(1, look::colour(kBottom));
    painter.fillPath(inside, fill);
    painter.drawPixmap((width() - m_person.width()) / 2, (height() - m_person.height()) / 2, m_person);
    look::paintBox(painter, rect(), CALL_OWN_CORNER, 0, kEdge, kEdgeWidth);
}
