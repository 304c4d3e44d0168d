#include "host/look/buttonLook.h"

namespace {
const char kProperty[] = "hxButtonLook";
using Held = std::shared_ptr<ButtonLook>;
} // namespace

Q_DECLARE_METATYPE(std::shared_ptr<ButtonLook>)

const ButtonLook* ButtonLook::of(const QWidget* button)
{
    return button ? button->property(kProperty).value<Held>().get() : nullptr;
}

ButtonLook& ButtonLook::change(QPushButton* button)
{
    Held held = button->property(kProperty).value<Held>();
    if (!held) {
        held = std::make_shared<ButtonLook>();
        button->setProperty(kProperty, QVariant::fromValue(held));
    }
    for (QPixmap& scaled : held->m_scaled)
        scaled = QPixmap();
    button->update();
    return *held;
}

const QPixmap& ButtonLook::face(int state, const QSize& size) const
{
    const int shown = pictures[state].isNull() ? int(Normal) : state;
    const QPixmap& whole = pictures[shown];
    if (whole.size() == size)
        return whole;
    if (m_scaled[shown].size() != size)
        m_scaled[shown] = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return m_scaled[shown];
}
