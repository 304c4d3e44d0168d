#include "tools/signDemo/DayScene.h"
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kHorizon = 226; // of the sea
constexpr int kStars = 110;

struct SkyHour
{
    double turn;
    QRgb top, bottom;
};

const SkyHour Hours[] = {
    {0.00, 0xff4a63a8, 0xffffc59a}, {0.10, 0xff4f93d8, 0xffd9e8f2}, {0.28, 0xff3787de, 0xffbfe2fb},
    {0.42, 0xff4a88cf, 0xfff3ddb8}, {0.50, 0xff414f9b, 0xffffab68}, {0.58, 0xff232c68, 0xffb0628b},
    {0.66, 0xff0a1334, 0xff263467}, {0.86, 0xff080f2b, 0xff1e2b5c}, {0.94, 0xff1d2c66, 0xff85719f},
    {1.00, 0xff4a63a8, 0xffffc59a},
};

double Between(double from, double to, double share)
{
    return from + (to - from) * share;
}

QColor Mix(const QColor& a, const QColor& b, double share)
{
    return QColor::fromRgbF(float(Between(a.redF(), b.redF(), share)),
                            float(Between(a.greenF(), b.greenF(), share)),
                            float(Between(a.blueF(), b.blueF(), share)));
}

QColor Faded(QColor colour, double alpha)
{
    colour.setAlphaF(float(std::clamp(alpha, 0.0, 1.0)));
    return colour;
}

double Smooth(double from, double to, double value)
{
    const double share = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return share * share * (3 - 2 * share);
}

} // namespace

QImage DayScene::Frame(double turn)
{
    m_turn = turn - std::floor(turn);
    m_night = Smooth(0.50, 0.66, m_turn) * (1 - Smooth(0.86, 0.99, m_turn));
    QImage image(Width, Height, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    PaintSky(painter);
    PaintStars(painter);
    PaintDisc(painter, SunAt(), 21, QColor("#fff3cd"), 1);
    PaintDisc(painter, MoonAt(), 14, QColor("#e9efff"), 0.5 * m_night);
    PaintClouds(painter);
    PaintHills(painter, 168, 15, 1.7, 0.35);
    PaintHills(painter, 192, 12, 2.6, 0.6);
    PaintSea(painter);
    PaintLighthouse(painter);
    PaintBoat(painter);
    PaintQuay(painter);
    PaintGulls(painter);
    return image;
}

QColor DayScene::SkyAt(bool top) const
{
    for (size_t i = 1; i < std::size(Hours); ++i) {
        const SkyHour &from = Hours[i - 1], &to = Hours[i];
        if (m_turn <= to.turn)
            return Mix(QColor(top ? from.top : from.bottom), QColor(top ? to.top : to.bottom),
                       (m_turn - from.turn) / (to.turn - from.turn));
    }
    return QColor(Hours[0].top);
}

QColor DayScene::Shade(const QColor& day) const
{
    const QColor evening = Mix(day, SkyAt(false), 0.22);
    return Mix(evening, Mix(QColor("#050a1c"), day, 0.16), m_night);
}

QPointF DayScene::SunAt() const
{
    const double way = (m_turn < 0.75 ? m_turn : m_turn - 1) / 0.5;
    return {Between(70, 590, way), kHorizon - 4 - 178 * std::sin(way * kTurn / 2)};
}

QPointF DayScene::MoonAt() const
{
    const double way = (m_turn - 0.58) / 0.36;
    return {Between(60, 520, way), kHorizon + 10 - 176 * std::sin(std::clamp(way, -0.2, 1.2) * kTurn / 2)};
}

void DayScene::PaintSky(QPainter& painter) const
{
    QLinearGradient sky(0, 0, 0, kHorizon);
    sky.setColorAt(0, SkyAt(true));
    sky.setColorAt(1, SkyAt(false));
    painter.fillRect(QRectF(0, 0, Width, kHorizon + 1), sky);
}

void DayScene::PaintStars(QPainter& painter) const
{
    std::mt19937 dice(11);
    for (int i = 0; i < kStars; ++i) {
        const QPointF at(dice() % Width, dice() % 190);
        const double size = 0.6 + dice() % 100 / 90.0;
        const double twinkle = 0.65 + 0.35 * std::sin(kTurn * (m_turn * (5 + int(dice() % 6)) + i * 0.13));
        painter.setBrush(Faded(Qt::white, m_night * twinkle * (1 - at.y() / 230)));
        painter.drawEllipse(at, size, size);
    }
}

void DayScene::PaintDisc(QPainter& painter, QPointF centre, double radius, const QColor& colour,
                         double halo) const
{
    QRadialGradient glow(centre, radius * 6);
    glow.setColorAt(0, Faded(colour, 0.75 * halo));
    glow.setColorAt(0.25, Faded(colour, 0.28 * halo));
    glow.setColorAt(1, Faded(colour, 0));
    painter.setBrush(glow);
    painter.drawEllipse(centre, radius * 6, radius * 6);
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

void DayScene::PaintClouds(QPainter& painter) const
{
    struct Cloud
    {
        double start, y, size;
    };
    const Cloud clouds[] = {{40, 66, 1.0}, {330, 44, 0.75}, {520, 92, 1.15}, {760, 58, 0.85}};
    const double round = Width + 320; // a cloud's way, until it comes in again
    for (const Cloud& cloud : clouds) {
        const double x = std::fmod(cloud.start + m_turn * round, round) - 160;
        const QColor white =
            Mix(Mix(QColor("#ffffff"), SkyAt(false), 0.25), QColor("#1b2750"), m_night * 0.9);
        painter.setBrush(Faded(white, 0.62 - 0.3 * m_night));
        QPainterPath shape;
        shape.setFillRule(Qt::WindingFill);
        shape.addRoundedRect(QRectF(x, cloud.y, 104 * cloud.size, 20 * cloud.size), 10 * cloud.size,
                             10 * cloud.size);
        shape.addEllipse(QPointF(x + 36 * cloud.size, cloud.y + 3), 19 * cloud.size, 17 * cloud.size);
        shape.addEllipse(QPointF(x + 64 * cloud.size, cloud.y), 25 * cloud.size, 22 * cloud.size);
        painter.drawPath(shape.simplified());
    }
}

void DayScene::PaintHills(QPainter& painter, double top, double swell, double waves, double dark) const
{
    QPainterPath path(QPointF(0, kHorizon + 2));
    for (int x = 0; x <= Width; x += 4) {
        const double at = double(x) / Width * kTurn;
        const double y =
            top + swell * std::sin(at * waves + top) + swell * 0.5 * std::sin(at * waves * 2.3 + 1);
        path.lineTo(x, y);
    }
    path.lineTo(Width, kHorizon + 2);
    painter.setBrush(Mix(SkyAt(false), Shade(QColor("#2f5f7d")), dark));
    painter.drawPath(path);
}

void DayScene::PaintSea(QPainter& painter) const
{
    QLinearGradient sea(0, kHorizon, 0, Height);
    sea.setColorAt(0, Mix(SkyAt(false), Shade(QColor("#2f7fae")), 0.4));
    sea.setColorAt(1, Shade(QColor("#12466f")));
    painter.fillRect(QRectF(0, kHorizon, Width, Height - kHorizon), sea);
    PaintGlitter(painter, SunAt().x(), QColor("#fff0c4"), Smooth(kHorizon + 20, kHorizon - 40, SunAt().y()));
    PaintGlitter(painter, MoonAt().x(), QColor("#dfe8ff"), m_night * 0.8);

    std::mt19937 dice(5);
    for (int i = 0; i < 44; ++i) {
        const double y = kHorizon + 6 + dice() % 116;
        const double width = 12 + (y - kHorizon) * 0.5;
        const double x = double(dice() % Width) + 14 * std::sin(kTurn * (m_turn * (2 + i % 3) + i * 0.17));
        painter.setBrush(Faded(SkyAt(false), 0.12 + 0.12 * std::sin(kTurn * (m_turn * 5 + i * 0.29))));
        painter.drawRoundedRect(QRectF(x, y, width, 1.8), 0.9, 0.9);
    }
}

void DayScene::PaintGlitter(QPainter& painter, double x, const QColor& colour, double strength) const
{
    if (strength <= 0)
        return;
    for (int i = 0; i < 15; ++i) {
        const double y = kHorizon + 4 + i * 7.5;
        const double width = (18 + i * 3) * (0.75 + 0.25 * std::sin(kTurn * (m_turn * 9 + i * 0.37)));
        const double sway = 5 * std::sin(kTurn * (m_turn * 6 + i * 0.21));
        painter.setBrush(Faded(colour, strength * (0.75 - i * 0.045)));
        painter.drawRoundedRect(QRectF(x - width / 2 + sway, y, width, 2.6), 1.3, 1.3);
    }
}

void DayScene::PaintHouse(QPainter& painter, const QRectF& body, int columns, int rows, int seed) const
{
    static const QColor walls[] = {QColor("#c96f58"), QColor("#e3b56d"), QColor("#6f93b8"),
                                   QColor("#d8d2c6")};
    painter.setBrush(Shade(walls[seed % 4]));
    painter.drawRect(body);
    QPainterPath roof(body.topLeft() + QPointF(-4, 0));
    roof.lineTo(body.center().x(), body.top() - 20);
    roof.lineTo(body.right() + 4, body.top());
    painter.setBrush(Shade(QColor("#4a3542")));
    painter.drawPath(roof);

    std::mt19937 dice{unsigned(seed)};
    const double stepX = body.width() / columns, stepY = body.height() / (rows + 0.4);
    for (int i = 0; i < columns * rows; ++i) {
        // Lights come on one after the other, and some people sleep early.
        const double on = 0.50 + dice() % 100 / 800.0, off = 0.74 + dice() % 100 / 450.0;
        const double lit = Smooth(on, on + 0.01, m_turn) * (1 - Smooth(off, off + 0.01, m_turn));
        const QRectF pane(body.left() + (i % columns + 0.27) * stepX,
                          body.top() + (i / columns + 0.3) * stepY, stepX * 0.46, stepY * 0.56);
        painter.setBrush(Mix(Shade(QColor("#3b5574")), QColor("#ffd887"), lit));
        painter.drawRect(pane);
    }
}

void DayScene::PaintQuay(QPainter& painter) const
{
    PaintHouse(painter, QRectF(-14, 142, 66, 120), 3, 5, 1);
    PaintHouse(painter, QRectF(56, 164, 52, 98), 2, 4, 2);
    PaintHouse(painter, QRectF(112, 150, 58, 112), 3, 4, 3);
    PaintHouse(painter, QRectF(174, 178, 46, 84), 2, 3, 4);
    painter.setBrush(Shade(QColor("#5d5a63")));
    painter.drawRect(QRectF(0, 260, 246, 14));
    painter.setBrush(Shade(QColor("#3e3d47")));
    painter.drawRect(QRectF(0, 272, 246, 26));
    painter.setBrush(Faded(Shade(QColor("#20303f")), 0.5));
    painter.drawRect(QRectF(0, 298, 246, 12));
    for (int x : {24, 92, 160, 228}) {
        const QPointF lamp(x, 236);
        painter.setBrush(Shade(QColor("#2d2f3a")));
        painter.drawRect(QRectF(x - 1, 236, 2.4, 26));
        QRadialGradient glow(lamp, 26);
        glow.setColorAt(0, Faded(QColor("#ffe0a0"), 0.9 * m_night));
        glow.setColorAt(1, Faded(QColor("#ffe0a0"), 0));
        painter.setBrush(glow);
        painter.drawEllipse(lamp, 26, 26);
        painter.setBrush(Mix(Shade(QColor("#c9c4b8")), QColor("#fff2cf"), m_night));
        painter.drawEllipse(lamp, 3.4, 3.4);
    }
}

void DayScene::PaintLighthouse(QPainter& painter) const
{
    QPainterPath rock(QPointF(520, 244));
    rock.cubicTo(536, 226, 556, 218, 576, 220);
    rock.cubicTo(604, 218, 622, 232, 640, 230);
    rock.lineTo(640, 250);
    rock.lineTo(520, 250);
    painter.setBrush(Shade(QColor("#4d4a55")));
    painter.drawPath(rock);

    const QPointF lantern(574, 128);
    for (int side : {0, 1}) {
        const double angle = kTurn * (m_turn * 4 + side * 0.5);
        const double reach = 300 * std::cos(angle);
        QPainterPath beam(lantern);
        beam.lineTo(lantern + QPointF(reach, -22 - 10 * std::sin(angle)));
        beam.lineTo(lantern + QPointF(reach, 16 - 10 * std::sin(angle)));
        QLinearGradient light(lantern, lantern + QPointF(reach, 0));
        light.setColorAt(0, Faded(QColor("#fff3c8"), 0.6 * m_night));
        light.setColorAt(1, Faded(QColor("#fff3c8"), 0));
        painter.setBrush(light);
        painter.drawPath(beam);
    }
    const QColor bands[] = {QColor("#f4efe6"), QColor("#d24b40")};
    for (int i = 0; i < 5; ++i) {
        const double top = 138 + i * 17, wide = 8.5 + i * 1.5;
        QPainterPath band(QPointF(574 - wide, top));
        band.lineTo(574 + wide, top);
        band.lineTo(574 + wide + 1.5, top + 17);
        band.lineTo(574 - wide - 1.5, top + 17);
        painter.setBrush(Shade(bands[i % 2]));
        painter.drawPath(band);
    }
    painter.setBrush(Shade(QColor("#2d2f3a")));
    painter.drawRect(QRectF(563, 135, 22, 4));
    painter.drawPie(QRectF(565, 114, 18, 16), 0, 180 * 16);
    painter.setBrush(Mix(Shade(QColor("#b9d3df")), QColor("#fff6d6"), m_night));
    painter.drawRect(QRectF(567, 122, 14, 13));
}

void DayScene::PaintBoat(QPainter& painter) const
{
    painter.save();
    const double bob = std::sin(kTurn * m_turn * 5);
    painter.translate(Between(200, 720, std::fmod(m_turn + 0.1, 1.0)), 284 + 2 * bob);
    painter.rotate(1.6 * std::sin(kTurn * (m_turn * 5 + 0.2)));
    painter.setBrush(Shade(QColor("#fbf4e8")));
    painter.drawPolygon(QPolygonF({{2, -6}, {2, -78}, {-36, -10}}));
    painter.setBrush(Shade(QColor("#e5704f")));
    painter.drawPolygon(QPolygonF({{6, -6}, {6, -66}, {34, -10}}));
    painter.setBrush(Shade(QColor("#2b3c5c")));
    QPainterPath hull(QPointF(-44, -4));
    hull.lineTo(44, -4);
    hull.cubicTo(40, 10, 30, 13, 20, 13);
    hull.lineTo(-24, 13);
    hull.cubicTo(-34, 13, -42, 8, -44, -4);
    painter.drawPath(hull);
    painter.setBrush(Faded(QColor("#fff1c0"), m_night));
    painter.drawEllipse(QPointF(4, -80), 2.6, 2.6);
    painter.setBrush(Faded(SkyAt(false), 0.3));
    painter.drawRoundedRect(QRectF(-52, 14, 104, 2.4), 1.2, 1.2);
    painter.restore();
}

void DayScene::PaintGulls(QPainter& painter) const
{
    const double shown = Smooth(0.04, 0.10, m_turn) * (1 - Smooth(0.40, 0.46, m_turn));
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Faded(QColor("#2b3c5c"), shown * 0.8), 2, Qt::SolidLine, Qt::RoundCap));
    for (int i = 0; i < 4; ++i) {
        const QPointF at(Between(560, 180, m_turn * 2) + i * 27,
                         96 + 16 * std::sin(kTurn * m_turn * 3 + i) + i * 7);
        const double wing = 5 * std::sin(kTurn * (m_turn * 22 + i * 0.3));
        QPainterPath bird(at + QPointF(-9, -wing));
        bird.quadTo(at + QPointF(-4, -4), at);
        bird.quadTo(at + QPointF(4, -4), at + QPointF(9, -wing));
        painter.drawPath(bird);
    }
    painter.restore();
}
