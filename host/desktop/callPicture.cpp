#include "host/desktop/callPicture.h"
#include "host/look/look.h"
#include <QPaintEvent>
#include <QPainter>

namespace {

constexpr int kTop = 168;     // height of the shade above
constexpr int kActions = 100; // of the deep part of the one below
constexpr int kRise = 110;    // above that, until it is gone
constexpr int kQuestionRise = 230;
constexpr QRgb kShade = 0xc80a172a;
constexpr QRgb kDeep = 0xdc0a172a;
constexpr QRgb kNone = 0x000a172a;

} // namespace

callPicture::callPicture(QWidget* parent) : QVideoViewer(parent)
{
    ShowBackground(0); // black until the first picture
}

void callPicture::setShade(SHADE shade)
{
    m_eShade = shade;
    update();
}

void callPicture::paintEvent(QPaintEvent* event)
{
    QVideoViewer::paintEvent(event);
    if (m_eShade == SHADE_NONE)
        return;
    QPainter painter(this);
    const int rise = m_eShade == SHADE_QUESTION ? kQuestionRise : kRise;
    const int deep = height() - kActions;
    look::paintGradient(painter, QRect(0, 0, width(), kTop), kShade, kNone);
    look::paintGradient(painter, QRect(0, deep - rise, width(), rise), kNone, kShade);
    look::paintGradient(painter, QRect(0, deep, width(), kActions), kShade, kDeep);
}
