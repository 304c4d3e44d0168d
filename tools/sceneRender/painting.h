#pragma once
// A landscape, painted from back to front. Places and lengths are those of a screen of 800 by 480, whatever
// the size of the picture; colours are kept finer than a screen has them, so that no step shows in a soft
// gradient.
#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <vector>

struct ColourStop
{
    double y;
    QColor colour;
};

// Mountains or hills: a rough line, and everything below it.
struct Ridge
{
    double base = 300;    // of its valleys
    double height = 100;  // of its highest peak above that
    double wave = 200;    // from hill to hill
    double sharpness = 0; // 0 round hills, 1 peaks
    int octaves = 5;
    unsigned seed = 1;
    QColor top, bottom;    // of its heights, and where the mist lies
    double mist = 120;     // how far it rises from the valleys
    double relief = 0;     // light and shade of its faces, 0 to 1
    double snow = 0;       // how far it lies down from the line
    int trees = 0;         // firs along the line
    double treeHeight = 0; // of the highest
    double shift = 0;      // along the line
};

struct Clouds
{
    double top = 40, bottom = 180;
    QColor colour;
    double opacity = 0.5;
    double cover = 0.5; // 0 none, 1 all
    unsigned seed = 1;
    double shift = 0;
};

struct Water
{
    double line = 300; // where it begins
    QColor colour;
    double near = 0.27; // share of its own colour at the line
    double deep = 0.6;  // and at the lower edge
    double ripple = 1;
    unsigned seed = 1;
    double shift = 0;
};

class Painting
{
public:
    Painting(int width, int height);

    void sky(const std::vector<ColourStop>& stops);
    void stars(int count, double bottom, unsigned seed);
    // Light that is added, brightest in the middle.
    void glow(QPointF centre, double radius, const QColor& colour, double strength);
    void disc(QPointF centre, double radius, const QColor& colour);
    void clouds(const Clouds& clouds);
    // A curtain of light that hangs down to a wandering line.
    void aurora(double line, double height, const QColor& low, const QColor& high, double strength,
                unsigned seed);
    void ridge(const Ridge& ridge);
    // Mirrors what is above it.
    void water(const Water& water);
    // Light on the water under what shines at x.
    void glitter(double x, double line, double width, const QColor& colour, double strength);
    void shape(const QPainterPath& path, const QColor& colour);
    // Folds of cloth in the light, over everything.
    void silk(const std::vector<QColor>& colours, unsigned seed);

    QImage finish() const;

private:
    struct Tone
    {
        float red, green, blue;
    };
    static Tone toneOf(const QColor& colour);
    static void mix(Tone& tone, const Tone& other, double share);
    static void add(Tone& tone, const Tone& light, double share);
    template <class Paint>
    void each(double top, double bottom, Paint paint);
    double lineOf(const Ridge& ridge, double x) const;
    QPainterPath treesOf(const Ridge& ridge) const;
    Tone at(double x, double y) const;

    int m_nWidth;
    int m_nHeight;
    double m_scale; // pixels of one of the 800
    std::vector<Tone> m_tones;
};
