#include "tools/sceneRender/painting.h"
#include "tools/sceneRender/noise.h"
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kWidth = 800;
constexpr double kHeight = 480;
constexpr double kBeyond = 60; // where what wanders out of the picture comes in again
constexpr double kRound = kWidth + 2 * kBeyond;
constexpr double kTurn = 6.283185307179586;

QPainterPath fir(QPointF foot, double height)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    constexpr int kTiers = 4;
    for (int i = 0; i < kTiers; ++i) {
        const double top = foot.y() - height * (1 - 0.2 * i);
        const double bottom = foot.y() - height * (0.62 - 0.2 * i);
        const double half = height * (0.09 + 0.045 * i);
        path.addPolygon(QPolygonF({{foot.x(), top}, {foot.x() + half, bottom}, {foot.x() - half, bottom}}));
        path.closeSubpath();
    }
    return path;
}

} // namespace

Painting::Painting(int width, int height)
    : m_nWidth(width), m_nHeight(height), m_scale(width / kWidth), m_tones(size_t(width) * size_t(height))
{
}

Painting::Tone Painting::toneOf(const QColor& colour)
{
    return {colour.redF(), colour.greenF(), colour.blueF()};
}

void Painting::mix(Tone& tone, const Tone& other, double share)
{
    const float part = float(share);
    tone.red += (other.red - tone.red) * part;
    tone.green += (other.green - tone.green) * part;
    tone.blue += (other.blue - tone.blue) * part;
}

// As one light on another, which never is more than white.
void Painting::add(Tone& tone, const Tone& light, double share)
{
    const float part = float(share);
    tone.red += (1 - tone.red) * light.red * part;
    tone.green += (1 - tone.green) * light.green * part;
    tone.blue += (1 - tone.blue) * light.blue * part;
}

template <class Paint>
void Painting::each(double top, double bottom, Paint paint)
{
    const int first = std::clamp(int(top * m_scale), 0, m_nHeight);
    const int last = std::clamp(int(bottom * m_scale) + 1, first, m_nHeight);
    Tone* tone = m_tones.data() + size_t(first) * size_t(m_nWidth);
    for (int y = first; y < last; ++y) {
        for (int x = 0; x < m_nWidth; ++x, ++tone)
            paint((x + 0.5) / m_scale, (y + 0.5) / m_scale, *tone);
    }
}

void Painting::sky(const std::vector<ColourStop>& stops)
{
    each(0, kHeight, [&](double, double y, Tone& tone) {
        size_t next = 1;
        while (next + 1 < stops.size() && stops[next].y < y)
            ++next;
        tone = toneOf(stops[next - 1].colour);
        mix(tone, toneOf(stops[next].colour), smoothStep(stops[next - 1].y, stops[next].y, y));
    });
}

void Painting::stars(int count, double bottom, unsigned seed)
{
    std::mt19937 dice(seed);
    const auto chance = [&dice] { return double(dice() % 10000) / 10000; };
    for (int i = 0; i < count; ++i) {
        const double x = chance() * kWidth, y = chance() * bottom;
        const double bright = std::pow(chance(), 3);
        QPainterPath star;
        star.addEllipse(QPointF(x, y), 0.5 + 0.8 * bright, 0.5 + 0.8 * bright);
        shape(star, QColor::fromRgbF(1, 1, 1, float((0.25 + 0.65 * bright) * (1 - y / bottom))));
    }
}

void Painting::glow(QPointF centre, double radius, const QColor& colour, double strength)
{
    const Tone light = toneOf(colour);
    each(centre.y() - radius, centre.y() + radius, [&](double x, double y, Tone& tone) {
        const double off = std::hypot(x - centre.x(), y - centre.y()) / radius;
        if (off < 1)
            add(tone, light, strength * (1 - off) * (1 - off) / (1 + 6 * off * off));
    });
}

void Painting::disc(QPointF centre, double radius, const QColor& colour)
{
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    shape(path, colour);
}

void Painting::clouds(const Clouds& clouds)
{
    const Tone colour = toneOf(clouds.colour);
    each(clouds.top, clouds.bottom, [&](double x, double y, Tone& tone) {
        const double height = (y - clouds.top) / (clouds.bottom - clouds.top);
        const double dense = fractalNoise((x + clouds.shift) / 210, y / 34 + x / 900, clouds.seed, 5) *
                             std::sin(height * kTurn / 2);
        mix(tone, colour,
            clouds.opacity * smoothStep(0.62 - 0.5 * clouds.cover, 0.95 - 0.3 * clouds.cover, dense));
    });
}

void Painting::aurora(double line, double height, const QColor& low, const QColor& high, double strength,
                      unsigned seed)
{
    each(0, line + 80, [&](double x, double y, Tone& tone) {
        const double edge = line + 90 * (fractalNoise(x / 230, seed, 3) - 0.5) + 16 * std::sin(x / 60 + seed);
        const double up = edge - y;
        if (up < -18)
            return;
        const double rays =
            0.35 + 0.65 * noiseAt(x / 7 + y / 90, seed + 7) * fractalNoise(x / 60, seed + 9, 3) * 1.6;
        const double reach = height * (0.5 + noiseAt(x / 80, seed + 3));
        const double light = smoothStep(-18, 10, up) * std::exp(-std::max(up, 0.0) / reach) * rays * strength;
        Tone colour = toneOf(low);
        mix(colour, toneOf(high), smoothStep(0, 1.7 * reach, up));
        add(tone, colour, std::min(light, 1.0));
    });
}

double Painting::lineOf(const Ridge& ridge, double x) const
{
    const double noise =
        fractalNoise((x + ridge.shift) / ridge.wave + ridge.seed * 7.31, ridge.seed, ridge.octaves);
    const double peak = 1 - std::fabs(2 * noise - 1);
    return ridge.base - ridge.height * ((1 - ridge.sharpness) * noise + ridge.sharpness * peak * peak);
}

QPainterPath Painting::treesOf(const Ridge& ridge) const
{
    std::mt19937 dice(ridge.seed * 31 + 5);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (int i = 0; i < ridge.trees; ++i) {
        const double place = (i + 0.5 + (dice() % 100 / 100.0 - 0.5) * 1.6) * kWidth / ridge.trees;
        const double x = ridge.shift > 0 ? std::fmod(place + kRound - ridge.shift, kRound) - kBeyond : place;
        const double height = ridge.treeHeight * (0.45 + 0.55 * (dice() % 100 / 100.0));
        path.addPath(fir(QPointF(x, lineOf(ridge, x) + 0.12 * height), height));
    }
    return path;
}

void Painting::ridge(const Ridge& ridge)
{
    std::vector<double> line(static_cast<size_t>(m_nWidth));
    for (int x = 0; x < m_nWidth; ++x)
        line[size_t(x)] = lineOf(ridge, (x + 0.5) / m_scale);
    const Tone top = toneOf(ridge.top), bottom = toneOf(ridge.bottom), white = {0.93f, 0.96f, 1.0f};
    if (ridge.trees > 0)
        shape(treesOf(ridge), ridge.top);
    const double highest = *std::min_element(line.begin(), line.end());
    each(highest - 1, kHeight, [&](double x, double y, Tone& tone) {
        const double edge = line[std::min(size_t(x * m_scale), line.size() - 1)];
        const double cover = std::clamp((y - edge) * m_scale + 0.5, 0.0, 1.0);
        if (cover <= 0)
            return;
        const double down = y - edge;
        Tone colour = top;
        if (ridge.relief > 0) {
            const double face = fractalNoise(x / 46 + y / 70, y / 60 - x / 90, ridge.seed + 40, 4) - 0.5;
            const Tone shade = face > 0 ? white : Tone{0.02f, 0.03f, 0.08f};
            const double lies = ridge.snow * (0.5 + fractalNoise(x / 24, ridge.seed + 60, 3));
            mix(colour, white, 0.8 * smoothStep(lies, 0.4 * lies, down + 90 * face) * (ridge.snow > 0));
            mix(colour, shade, std::fabs(face) * ridge.relief);
        }
        mix(colour, bottom, smoothStep(ridge.base - ridge.mist, ridge.base + ridge.mist / 4, y));
        mix(tone, colour, cover);
    });
}

Painting::Tone Painting::at(double x, double y) const
{
    const int column = std::clamp(int(x * m_scale), 0, m_nWidth - 1);
    const double row = std::clamp(y * m_scale - 0.5, 0.0, m_nHeight - 1.001);
    Tone tone = m_tones[size_t(int(row)) * size_t(m_nWidth) + size_t(column)];
    mix(tone, m_tones[size_t(int(row) + 1) * size_t(m_nWidth) + size_t(column)], row - std::floor(row));
    return tone;
}

void Painting::water(const Water& water)
{
    const Tone own = toneOf(water.colour);
    each(water.line, kHeight, [&](double x, double y, Tone& tone) {
        const double down = y - water.line;
        if (down < 0)
            return;
        // Waves are long from the side and look flatter the farther they are.
        const double row = 60 * std::log1p(down / 26);
        const double wave =
            fractalNoise((x + water.shift) / (26 + 0.5 * down), row / 2.2, water.seed, 3) - 0.5;
        tone = at(x + water.ripple * wave * down * 0.10,
                  water.line - 1 - std::max(down * 0.94 + water.ripple * wave * (6 + down * 0.35), 0.0));
        mix(tone, own, water.near + (water.deep - water.near) * smoothStep(0, kHeight - water.line, down));
        if (wave > 0)
            add(tone, {1, 1, 1}, 0.10 * wave * water.ripple);
    });
}

void Painting::glitter(double x, double line, double width, const QColor& colour, double strength)
{
    const Tone light = toneOf(colour);
    each(line, kHeight, [&](double px, double y, Tone& tone) {
        const double down = y - line;
        if (down < 0)
            return;
        const double row = 60 * std::log1p(down / 26);
        const double spark = smoothStep(0.5, 0.8, fractalNoise(px / (20 + 0.4 * down), row / 1.7, 77, 2));
        const double off = (px - x) / (width * (0.5 + down / 110));
        add(tone, light, strength * spark * std::exp(-off * off) * (1 - 0.5 * down / (kHeight - line)));
    });
}

void Painting::shape(const QPainterPath& path, const QColor& colour)
{
    const QRect all(0, 0, m_nWidth, m_nHeight);
    const QTransform toPixels = QTransform::fromScale(m_scale, m_scale);
    const QRect place = toPixels.mapRect(path.boundingRect()).toAlignedRect().adjusted(-1, -1, 1, 1) & all;
    if (place.isEmpty())
        return;
    QImage mask(place.size(), QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-place.topLeft());
    painter.setTransform(toPixels, true);
    painter.fillPath(path, Qt::white);
    painter.end();
    const Tone tone = toneOf(colour);
    for (int y = 0; y < place.height(); ++y) {
        Tone* row = &m_tones[size_t(place.y() + y) * size_t(m_nWidth) + size_t(place.x())];
        for (int x = 0; x < place.width(); ++x)
            mix(row[x], tone, colour.alphaF() * qAlpha(mask.pixel(x, y)) / 255.0);
    }
}

void Painting::silk(const std::vector<QColor>& colours, unsigned seed)
{
    each(0, kHeight, [&](double x, double y, Tone& tone) {
        const double bend = 120 * fractalNoise(x / 330, y / 300, seed, 2) + 46 * std::sin(x / 190 + 0.6);
        const double slope = 0.5 + 0.5 * std::sin((y * 0.9 + x * 0.42 + 1.9 * bend) / 27);
        const double fine = 0.5 + 0.5 * std::sin((y * 0.55 - x * 0.3 + 1.3 * bend) / 21);
        const double fold = (0.72 * std::pow(slope, 1.5) + 0.28 * slope * fine) *
                            (0.45 + 0.55 * noiseAt(x / 230, y / 190, seed + 5));
        const double place = std::clamp(fold, 0.0, 0.999) * double(colours.size() - 1);
        const size_t index = size_t(place);
        tone = toneOf(colours[index]);
        mix(tone, toneOf(colours[index + 1]), place - double(index));
    });
}

// What lies between two steps of a screen's colours is scattered over both.
QImage Painting::finish() const
{
    QImage image(m_nWidth, m_nHeight, QImage::Format_RGB32);
    std::mt19937 dice(1);
    const auto step = [&dice](float value) {
        const double grain = double(dice() % 1024) / 1024;
        return int(std::clamp(double(value) * 255 + grain, 0.0, 255.0));
    };
    const Tone* tone = m_tones.data();
    for (int y = 0; y < m_nHeight; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < m_nWidth; ++x, ++tone) {
            const int red = step(tone->red), green = step(tone->green);
            line[x] = qRgb(red, green, step(tone->blue));
        }
    }
    return image;
}
