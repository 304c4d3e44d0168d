#include "host/desktop/dssKeyButton.h"
#include "host/look/look.h"
#include "support/host/api.h"
#include "support/host/image.h"
#include <QPainter>

namespace {

constexpr int kCorner = 12;
constexpr int kGlyph = 20;
constexpr int kGlyphLeft = 10;
constexpr int kLabelLeft = 35;
constexpr int kLabelGap = 2; // above and below
constexpr int kLabelLines = 2;
constexpr int kLabelRight = 24; // from the right edge: the lamp's
constexpr int kNoLampRight = 8;
constexpr int kSmallestLine = 13;
constexpr int kLampRight = 14; // its middle
constexpr qreal kLamp = 4.5;
constexpr qreal kGlow = 8;
constexpr QRgb kFill = 0x26ffffff;
constexpr QRgb kPressed = 0x4dffffff;
constexpr QRgb kRings = 0x59ffb04a;
constexpr QRgb kFocusLine = 0xd9ffffff;
constexpr int kGlowAlpha = 90;
constexpr qreal kFreeOpacity = 0.6;

const char* glyphOf(tagDssKey::TYPE type)
{
    switch (type) {
    case tagDssKey::LINE:
        return HX_THEME("icon/key_line.png");
    case tagDssKey::SPEED_DIAL:
        return HX_THEME("icon/key_dial.png");
    case tagDssKey::BLF:
        return HX_THEME("icon/key_watch.png");
    case tagDssKey::BLF_LIST:
        return HX_THEME("icon/key_list.png");
    default:
        return HX_THEME("icon/key_free.png");
    }
}

QColor lampColour(LAMP_STATE state)
{
    switch (state) {
    case LAMP_IDLE:
        return QColor(0x5f, 0xcf, 0x6c);
    case LAMP_RINGING:
        return QColor(0xff, 0xb0, 0x4a);
    case LAMP_BUSY:
        return QColor(0xff, 0x5a, 0x4d);
    default:
        return QColor(0xff, 0xff, 0xff, 0xb3);
    }
}

void paintLamp(QPainter& painter, const QPointF& at, LAMP_STATE state)
{
    const QColor colour = lampColour(state);
    if (state == LAMP_UNKNOWN) {
        painter.setPen(QPen(colour, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(at, kLamp - 0.5, kLamp - 0.5);
        return;
    }
    QColor glow = colour;
    glow.setAlpha(kGlowAlpha);
    painter.setPen(Qt::NoPen);
    if (state != LAMP_IDLE) {
        painter.setBrush(glow);
        painter.drawEllipse(at, kGlow, kGlow);
    }
    painter.setBrush(colour);
    painter.drawEllipse(at, kLamp, kLamp);
}

// In one line as long as that can be read well.
look::FittedText fitLabel(const QString& label, const QSize& room)
{
    for (int pixels = look::kSmallSize - 1; pixels >= kSmallestLine; --pixels) {
        const QFont font = look::font(pixels);
        if (QFontMetrics(font).horizontalAdvance(label) <= room.width())
            return look::fitText(label, font, room, 1);
    }
    look::FittedText lines = look::fitText(label, look::font(look::kSmallSize - 1), room, kLabelLines);
    look::cutToRoom(lines, room, kLabelLines);
    return lines;
}

} // namespace

dssKeyButton::dssKeyButton(QWidget* parent) : homeButton(QuickKey, parent) {}

void dssKeyButton::setLook(const tagDssKeyLook& look)
{
    if (look == m_look)
        return;
    m_look = look;
    setText(look.strLabel);
    update();
}

// It has no picture of somebody to read.
void dssKeyButton::showEvent(QShowEvent* event)
{
    QAbstractButton::showEvent(event);
}

void dssKeyButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool rings = m_look.bLamp && m_look.eLamp == LAMP_RINGING;
    look::paintBox(painter, rect(), kCorner,
                   isDown() ? kPressed
                   : rings  ? kRings
                            : kFill,
                   hasFocus() ? kFocusLine : 0, 2);
    const bool isFree = m_look.eType == tagDssKey::FREE;
    const QPixmap glyph = GetImageManager()->GetImageByScale(glyphOf(m_look.eType), kGlyph, kGlyph);
    painter.setOpacity(isFree ? kFreeOpacity : 1);
    painter.drawPixmap(isFree ? (width() - kGlyph) / 2 : kGlyphLeft, (height() - kGlyph) / 2, glyph);
    painter.setOpacity(1);
    if (isFree)
        return;
    painter.setPen(QColor(look::kTextOnBar));
    const int right = m_look.bLamp ? kLabelRight : kNoLampRight;
    const QRect place(kLabelLeft, kLabelGap, width() - kLabelLeft - right, height() - 2 * kLabelGap);
    look::paintFitted(painter, place, Qt::AlignLeft | Qt::AlignVCenter,
                      fitLabel(m_look.strLabel, place.size()));
    if (m_look.bLamp)
        paintLamp(painter, QPointF(width() - kLampRight, height() / 2.0), m_look.eLamp);
}
