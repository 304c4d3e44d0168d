#include "host/desktop/callPicture.h"
#include "host/look/look.h"
#include <QPaintEvent>
#include <QPainter>

namespace {

constexpr int kLeastAbove = 92; // of the shade above, below which it goes
constexpr int kFade = 76;
constexpr int kActions = 100;  // of the deep part of the one below
constexpr int kRise = 110;     // above that, until it is gone
constexpr int kQuestion = 132; // height of the deep part for what asks
constexpr int kQuestionRise = 100;
constexpr QRgb kShade = 0xc80a172a;
constexpr QRgb kUnderTexts = 0xa60a172a; // white upon white has a contrast of 4.5 there
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

void callPicture::setTextsAbove(int bottom)
{
    if (m_nTexts == bottom)
        return;
    m_nTexts = bottom;
    update();
}

void callPicture::paintEvent(QPaintEvent* event)
{
    QVideoViewer::paintEvent(event);
    if (m_eShade == SHADE_NONE)
        return;
    QPainter painter(this);
    const int texts = qMax(kLeastAbove, m_nTexts);
    look::paintGradient(painter, QRect(0, 0, width(), texts), kShade, kUnderTexts);
    look::paintGradient(painter, QRect(0, texts, width(), kFade), kUnderTexts, kNone);
    int deep = height() - kActions;
    look::paintGradient(painter, QRect(0, deep, width(), kActions), kShade, kDeep);
    if (m_eShade == SHADE_QUESTION) {
        look::paintGradient(painter, QRect(0, deep - kQuestion, width(), kQuestion), kUnderTexts, kShade);
        deep -= kQuestion;
        look::paintGradient(painter, QRect(0, deep - kQuestionRise, width(), kQuestionRise), kNone,
                            kUnderTexts);
    } else {
        look::paintGradient(painter, QRect(0, deep - kRise, width(), kRise), kNone, kShade);
    }
}
