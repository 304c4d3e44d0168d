#include "host/desktop/dialKey.h"
#include "host/look/look.h"
#include <QPainter>

namespace {

constexpr int kSignSize = 26;
constexpr int kLetterSize = 12;
constexpr int kCorner = 12;
constexpr qreal kSignShare = 0.62; // of the height
constexpr QRgb kSign = 0xff14304d;
constexpr QRgb kLetters = 0xff7f93a6;

} // namespace

dialKey::dialKey(QChar sign, const QString& letters, QWidget* parent)
    : QAbstractButton(parent), m_sign(sign), m_strLetters(letters)
{
    setObjectName("key" + QString(sign == '*' ? "Star" : sign == '#' ? "Hash" : QString(sign)));
    setFocusPolicy(Qt::NoFocus);
    setText(sign);
}

void dialKey::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect face = rect().adjusted(0, 0, 0, -1);
    look::paintBox(painter, rect(), kCorner, look::kPanelLine);
    look::paintBox(painter, face, kCorner, isDown() ? look::kSelection : look::kField, look::kPanelLine);
    const int middle = int(height() * kSignShare);
    painter.setPen(look::colour(kSign));
    painter.setFont(look::font(kSignSize));
    painter.drawText(
        QRect(0, m_strLetters.isEmpty() ? 0 : 4, width(), m_strLetters.isEmpty() ? height() - 4 : middle),
        Qt::AlignCenter, m_sign);
    painter.setPen(look::colour(kLetters));
    painter.setFont(look::font(kLetterSize));
    painter.drawText(QRect(0, middle, width(), height() - middle - 6), Qt::AlignHCenter | Qt::AlignTop,
                     m_strLetters);
}
