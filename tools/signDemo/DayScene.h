#pragma once
// The demonstration film's pictures: a day at a harbour, seen from one place. Its end is its beginning.
#include <QColor>
#include <QImage>
#include <QPainter>

class DayScene
{
public:
    static constexpr int Width = 640, Height = 352; // pixels; multiples of 16, as the phone's video wants

    // turn: 0 is dawn, 0.5 dusk, 1 dawn again.
    QImage Frame(double turn);

private:
    void PaintSky(QPainter& painter) const;
    void PaintStars(QPainter& painter) const;
    void PaintDisc(QPainter& painter, QPointF centre, double radius, const QColor& colour, double halo) const;
    void PaintClouds(QPainter& painter) const;
    void PaintHills(QPainter& painter, double top, double swell, double waves, double dark) const;
    void PaintSea(QPainter& painter) const;
    void PaintGlitter(QPainter& painter, double x, const QColor& colour, double strength) const;
    void PaintQuay(QPainter& painter) const;
    void PaintHouse(QPainter& painter, const QRectF& body, int columns, int rows, int seed) const;
    void PaintLighthouse(QPainter& painter) const;
    void PaintBoat(QPainter& painter) const;
    void PaintGulls(QPainter& painter) const;

    QColor SkyAt(bool top) const;
    QColor Shade(const QColor& day) const; // as it looks at this time
    QPointF SunAt() const;
    QPointF MoonAt() const;

    double m_turn = 0;
    double m_night = 0; // 0 by day, 1 in the dark
};
