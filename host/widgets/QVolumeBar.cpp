#include "host/look/look.h"
#include "support/host/volumebar.h"
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int kLevels = 100;
constexpr int kStep = 5;
constexpr int kHandle = 26;
constexpr int kGroove = 10;
constexpr int kNumberWidth = 44; // the level as a number, right of the bar

int grooveWidth(const QWidget* bar)
{
    return qMax(1, bar->width() - kHandle - kNumberWidth);
}

int levelAt(const QWidget* bar, qreal x)
{
    return QStyle::sliderValueFromPosition(0, kLevels, qRound(x) - kHandle / 2, grooveWidth(bar));
}

} // namespace

QVolumeBar::QVolumeBar(QWidget* parent) : QSlider(Qt::Horizontal, parent)
{
    setRange(0, kLevels);
    setSingleStep(kStep);
    setPageStep(2 * kStep);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QVolumeBar::valueChanged, this, &QVolumeBar::value_changed);
}

void QVolumeBar::AddValue()
{
    setValue(value() + singleStep());
}

void QVolumeBar::MinusValue()
{
    setValue(value() - singleStep());
}

void QVolumeBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRgb on = isEnabled() ? look::kBlue : look::kFieldLine;
    const int span = maximum() - minimum();
    const qreal at = span > 0 ? grooveWidth(this) * qreal(value() - minimum()) / span : 0;
    const qreal middle = height() / 2.0;
    const QRectF groove(kHandle / 2.0, middle - kGroove / 2.0, grooveWidth(this), kGroove);
    look::paintBox(painter, groove, kGroove / 2.0, look::kFieldLine);
    look::paintBox(painter, QRectF(groove.left(), groove.top(), at, kGroove), kGroove / 2.0, on);
    look::paintBox(painter, QRectF(at, middle - kHandle / 2.0, kHandle, kHandle), kHandle / 2.0, look::kField,
                   on, 2);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    look::paintFitted(painter, QRect(width() - kNumberWidth, 0, kNumberWidth - 4, height()),
                      Qt::AlignRight | Qt::AlignVCenter, QString::number(value()),
                      look::font(look::kTextSize));
}

void QVolumeBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setValue(levelAt(this, event->position().x()));
}

void QVolumeBar::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        setValue(levelAt(this, event->position().x()));
}
