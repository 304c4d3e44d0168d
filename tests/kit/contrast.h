#pragma once
// How well white texts are read upon what lies below them.
#include <QColor>
#include <cmath>

namespace kit {

// As people see it, 0 black and 1 white.
inline double brightness(const QColor& colour)
{
    const auto part = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

inline double contrastOfWhite(const QColor& ground)
{
    return 1.05 / (brightness(ground) + 0.05);
}

} // namespace kit
