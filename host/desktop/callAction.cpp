#include "host/desktop/callAction.h"
#include "host/look/look.h"
#include "support/host/image.h"
#include <QPainter>

namespace {

constexpr int kDisc = 52;
constexpr int kRing = 2;
constexpr int kWordSize = 15;
constexpr int kWordMargin = 4; // the next one's word may be right beside it
constexpr QRgb kPale = 0x33ffffff;
constexpr QRgb kPressed = 0x66ffffff;
constexpr QRgb kOn = 0xffffffff;
constexpr QRgb kDark = 0xff1d4b79;

} // namespace

callAction::callAction(QWidget* parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setFont(look::font(kWordSize));
}

void callAction::setGlyph(const char* path)
{
    m_glyph = GetImageManager()->GetImage(path);
    m_darkGlyph = m_glyph;
    QPainter painter(&m_darkGlyph);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(m_darkGlyph.rect(), look::colour(kDark));
}

void callAction::setOn(bool on)
{
    m_bOn = on;
    update();
}

void callAction::setChosen(bool chosen)
{
    m_bChosen = chosen;
    update();
}

void callAction::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect disc((width() - kDisc) / 2, kRing, kDisc, kDisc);
    if (m_bChosen)
        look::paintBox(painter, disc.adjusted(-kRing, -kRing, kRing, kRing), kDisc / 2.0 + kRing, 0, kOn,
                       kRing);
    look::paintBox(painter, disc.adjusted(kRing, kRing, -kRing, -kRing), kDisc / 2.0 - kRing,
                   m_bOn      ? kOn
                   : isDown() ? kPressed
                              : kPale);
    const QPixmap& glyph = m_bOn ? m_darkGlyph : m_glyph;
    painter.drawPixmap(disc.center() - QPoint(glyph.width() / 2 - 1, glyph.height() / 2 - 1), glyph);
    painter.setPen(look::colour(look::kTextOnBar));
    look::paintFitted(painter, rect().adjusted(kWordMargin, kDisc + 2 * kRing, -kWordMargin, 0),
                      Qt::AlignCenter, text(), font());
}
