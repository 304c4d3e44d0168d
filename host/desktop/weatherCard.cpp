#include "host/desktop/weatherCard.h"
#include "host/look/look.h"
#include <QPainter>

namespace {

constexpr int kTextLeft = 96;
constexpr int kMargin = 16;
constexpr int kTemperatureSize = 34;
constexpr int kLineSize = 16;
constexpr int kSmallLine = 12;
constexpr int kLongestPart = 160; // pixels of a city or a condition in that size
constexpr int kLines = 3;
constexpr QRgb kFill = 0x26ffffff;
constexpr QRgb kPressed = 0x4dffffff;

// All of them together have room.
QString part(const QString& text)
{
    return QFontMetrics(look::font(kSmallLine)).elidedText(text, Qt::ElideRight, kLongestPart);
}

} // namespace

weatherCard::weatherCard(QWidget* home) : QAbstractButton(home)
{
    setObjectName("weatherCard");
    setFocusPolicy(Qt::NoFocus);
}

void weatherCard::setContent(const tagWeatherCard& content)
{
    QStringList parts;
    for (const QString& text : {part(content.strCity), content.strRange, part(content.strCondition)}) {
        if (!text.isEmpty())
            parts.append(text);
    }
    m_strTemperature = content.strTemperature;
    m_strLine = parts.join(QString::fromUtf8(" \u00b7 "));
    setText(m_strTemperature + ' ' + m_strLine);
    update();
}

void weatherCard::setPicture(const QPixmap& picture)
{
    m_picture = picture;
    update();
}

void weatherCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    look::paintBox(painter, rect(), look::kBoxCorner, isDown() ? kPressed : kFill);
    const QRect room(kMargin, 0, PICTURE_SIZE, height());
    QRect place(QPoint(), m_picture.size());
    place.moveCenter(room.center());
    painter.drawPixmap(place.topLeft(), m_picture);
    painter.setPen(look::colour(look::kTextOnBar));
    const int width = this->width() - kTextLeft - kMargin;
    look::paintFitted(painter, QRect(kTextLeft, 10, width, 44), Qt::AlignLeft | Qt::AlignVCenter,
                      m_strTemperature, look::font(kTemperatureSize));
    look::paintFitted(painter, QRect(kTextLeft, 54, width, height() - 62), Qt::AlignLeft | Qt::AlignVCenter,
                      m_strLine, look::font(kLineSize), kLines);
}
