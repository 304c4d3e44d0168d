#include "tools/sceneRender/scenes.h"
#include <cmath>
#include <random>

namespace {

constexpr double kTurn = 6.283185307179586;

QPainterPath box(double x, double y, double width, double height)
{
    QPainterPath path;
    path.addRect(x, y, width, height);
    return path;
}

QPainterPath polygon(const QPolygonF& points)
{
    QPainterPath path;
    path.addPolygon(points);
    path.closeSubpath();
    return path;
}

// Some of them lit.
void windows(Painting& p, const QRectF& wall, int columns, int rows, unsigned seed)
{
    std::mt19937 dice(seed);
    const double stepX = wall.width() / columns, stepY = wall.height() / rows;
    for (int i = 0; i < columns * rows; ++i) {
        const QColor colour = dice() % 100 < 55 ? QColor("#ffd98c") : QColor("#39466f");
        p.shape(box(wall.x() + (i % columns + 0.25) * stepX, wall.y() + (i / columns + 0.25) * stepY,
                    stepX * 0.5, stepY * 0.5),
                colour);
    }
}

void lake(Painting& p)
{
    p.sky({{0, "#2f78c4"}, {160, "#77b3e4"}, {280, "#d4e9f5"}});
    p.clouds({.top = 20, .bottom = 190, .colour = "#ffffff", .opacity = 0.85, .cover = 0.45, .seed = 14});
    p.ridge({.base = 276,
             .height = 210,
             .wave = 230,
             .sharpness = 0.95,
             .octaves = 6,
             .seed = 52,
             .top = "#6f8aa8",
             .bottom = "#a9c3d6",
             .mist = 190,
             .relief = 0.5,
             .snow = 70});
    p.ridge({.base = 296,
             .height = 120,
             .wave = 260,
             .sharpness = 0.6,
             .octaves = 6,
             .seed = 58,
             .top = "#4b7277",
             .bottom = "#7fa399",
             .mist = 110,
             .relief = 0.25});
    p.ridge({.base = 306,
             .height = 34,
             .wave = 240,
             .octaves = 4,
             .seed = 66,
             .top = "#21513f",
             .bottom = "#2e6148",
             .mist = 30,
             .trees = 120,
             .treeHeight = 34});
    p.water({.line = 304, .colour = "#1b5670", .near = 0.19, .deep = 0.42, .ripple = 0.7, .seed = 2});
    p.ridge({.base = 500,
             .height = 60,
             .wave = 240,
             .octaves = 4,
             .seed = 71,
             .top = "#3d6b3a",
             .bottom = "#25482b",
             .mist = 50,
             .trees = 16,
             .treeHeight = 90});
}

void dunes(Painting& p)
{
    p.sky({{0, "#3d86c6"}, {200, "#a9cfe2"}, {270, "#f3dfbd"}});
    p.glow({170, 120}, 300, "#fff3cf", 0.7);
    p.disc({170, 120}, 24, "#fffbe9");
    p.ridge({.base = 296,
             .height = 80,
             .wave = 260,
             .sharpness = 0.5,
             .octaves = 2,
             .seed = 81,
             .top = "#ecc59b",
             .bottom = "#d9a878",
             .mist = 70});
    p.ridge({.base = 356,
             .height = 130,
             .wave = 330,
             .sharpness = 0.6,
             .octaves = 2,
             .seed = 83,
             .top = "#dca067",
             .bottom = "#a9683a",
             .mist = 110});
    p.ridge({.base = 440,
             .height = 150,
             .wave = 400,
             .sharpness = 0.6,
             .octaves = 2,
             .seed = 92,
             .top = "#f0b673",
             .bottom = "#b06a38",
             .mist = 130});
    p.ridge({.base = 530,
             .height = 150,
             .wave = 440,
             .sharpness = 0.4,
             .octaves = 2,
             .seed = 104,
             .top = "#9c5a30",
             .bottom = "#5f3220",
             .mist = 120});
}

void houses(Painting& p)
{
    const QColor dark("#1f2450");
    p.shape(box(484, 146, 106, 190), QColor("#353b73"));
    p.shape(polygon({{476, 146}, {598, 146}, {580, 112}, {494, 112}}), dark);
    windows(p, {494, 160, 86, 150}, 3, 5, 3);
    p.shape(box(606, 84, 194, 252), QColor("#2a2f63"));
    p.shape(box(598, 76, 202, 14), dark);
    windows(p, {618, 104, 176, 190}, 4, 5, 8);
    p.shape(box(452, 334, 348, 22), QColor("#171a3c"));
    for (int post = 0; post < 6; ++post)
        p.shape(box(474 + post * 62, 354, 9, 54), QColor("#12142f"));
}

void boat(Painting& p, double x, double y)
{
    p.shape(polygon({{x, y - 92}, {x, y - 8}, {x - 44, y - 8}}), QColor("#fdf1df"));
    p.shape(polygon({{x + 7, y - 84}, {x + 7, y - 8}, {x + 40, y - 8}}), QColor("#f6c9a8"));
    QPainterPath hull(QPointF(x - 62, y));
    hull.lineTo(x + 62, y);
    hull.cubicTo(x + 50, y + 22, x + 34, y + 24, x + 22, y + 24);
    hull.lineTo(x - 34, y + 24);
    hull.cubicTo(x - 50, y + 22, x - 58, y + 12, x - 62, y);
    p.shape(hull, QColor("#2b2a52"));
}

void harbour(Painting& p)
{
    p.sky({{0, "#5b5aa0"}, {140, "#a874a2"}, {230, "#f0a889"}, {300, "#ffd598"}});
    p.clouds({.top = 20, .bottom = 190, .colour = "#f6cdb8", .opacity = 0.55, .cover = 0.5, .seed = 33});
    p.glow({300, 262}, 280, "#fff0b8", 0.7);
    p.disc({300, 268}, 34, "#fff4c6");
    p.ridge({.base = 306,
             .height = 56,
             .wave = 230,
             .octaves = 4,
             .seed = 17,
             .top = "#75598f",
             .bottom = "#a8799a",
             .mist = 50});
    p.water({.line = 306, .colour = "#574a86", .near = 0.18, .deep = 0.4, .ripple = 1, .seed = 11});
    p.glitter(300, 306, 50, "#ffe7a8", 0.7);
    houses(p);
    boat(p, 170, 372);
}

void forest(Painting& p)
{
    p.sky({{0, "#aebfc2"}, {180, "#cfd9d3"}, {480, "#e3e6d8"}});
    p.glow({520, 70}, 420, "#fff6d8", 0.6);
    struct Row
    {
        double base, height;
        const char *top, *bottom;
        int trees;
    };
    const Row rows[] = {{230, 60, "#a3b6b5", "#c6d2cb", 40},
                        {290, 84, "#7d9a96", "#b5c6bd", 34},
                        {350, 112, "#567d74", "#9bb3a6", 26},
                        {420, 150, "#345b51", "#7b9a8a", 18},
                        {510, 230, "#17362e", "#3f6354", 11}};
    unsigned seed = 120;
    for (const Row& row : rows)
        p.ridge({.base = row.base,
                 .height = 50,
                 .wave = 300,
                 .octaves = 3,
                 .seed = seed += 7,
                 .top = row.top,
                 .bottom = row.bottom,
                 .mist = 80,
                 .trees = row.trees,
                 .treeHeight = row.height});
}

// A street front of gables against the evening.
void gables(Painting& p, double ground, double size, const QColor& wall, const QColor& roof, unsigned seed)
{
    std::mt19937 dice(seed);
    for (double x = -20; x < 800;) {
        const double width = size * (0.8 + dice() % 60 / 100.0), height = size * (1 + dice() % 90 / 100.0);
        const double top = ground - height;
        p.shape(polygon({{x - 4, top},
                         {x + width / 2, top - size * (0.5 + dice() % 30 / 100.0)},
                         {x + width + 4, top}}),
                roof);
        p.shape(box(x, top, width, height + 200), wall);
        p.shape(box(x + width * 0.7, top - size * 0.5, size * 0.12, size * 0.4), roof);
        windows(p, {x + 4, top + 6, width - 8, height - 4}, 3, 3, unsigned(dice()));
        x += width + 2;
    }
}

void roofs(Painting& p)
{
    p.sky({{0, "#1b2454"}, {170, "#5a4a86"}, {300, "#d9828a"}, {380, "#f5b98a"}});
    p.stars(60, 170, 21);
    p.clouds({.top = 60, .bottom = 260, .colour = "#f3a79b", .opacity = 0.4, .cover = 0.5, .seed = 61});
    p.glow({400, 350}, 380, "#ffd9a0", 0.5);
    gables(p, 372, 52, QColor("#7a5a86"), QColor("#5d4473"), 5);
    gables(p, 440, 78, QColor("#4a3f70"), QColor("#352b58"), 9);
    gables(p, 540, 112, QColor("#2a2850"), QColor("#1c1a3b"), 12);
}

void winter(Painting& p)
{
    p.sky({{0, "#5f8fc7"}, {180, "#a9c6e6"}, {300, "#f6dfe0"}});
    p.glow({600, 250}, 330, "#fff0dc", 0.6);
    p.ridge({.base = 300,
             .height = 170,
             .wave = 230,
             .sharpness = 0.9,
             .octaves = 6,
             .seed = 140,
             .top = "#8fa6c9",
             .bottom = "#cfdcec",
             .mist = 170,
             .relief = 0.35,
             .snow = 130});
    p.ridge({.base = 340,
             .height = 60,
             .wave = 320,
             .octaves = 3,
             .seed = 147,
             .top = "#6d8cab",
             .bottom = "#c3d4e6",
             .mist = 60,
             .trees = 70,
             .treeHeight = 40});
    p.ridge({.base = 400,
             .height = 90,
             .wave = 420,
             .octaves = 2,
             .seed = 153,
             .top = "#f4f8fd",
             .bottom = "#c5d6ea",
             .mist = 110});
    p.ridge({.base = 480,
             .height = 80,
             .wave = 380,
             .octaves = 2,
             .seed = 160,
             .top = "#ffffff",
             .bottom = "#b9cde6",
             .mist = 100});
    p.ridge({.base = 560,
             .height = 70,
             .wave = 300,
             .octaves = 2,
             .seed = 171,
             .top = "#35536b",
             .bottom = "#1f3648",
             .mist = 60,
             .trees = 9,
             .treeHeight = 190});
}

QColor between(const QColor& from, const QColor& to, double share)
{
    const auto part = [share](float a, float b) { return float(a + (b - a) * share); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

} // namespace

const std::vector<Scene>& photoScenes()
{
    static const std::vector<Scene> scenes = {{"Dunes", dunes}, {"Forest", forest}, {"Harbour", harbour},
                                              {"Lake", lake},   {"Roofs", roofs},   {"Winter", winter}};
    return scenes;
}

// The sun comes up while the eye wanders along the ridges, the near ones faster.
void paintMorning(Painting& p, double share)
{
    const auto light = [share](const char* night, const char* day) { return between(night, day, share); };
    const double walk = 180 * share, rise = std::sin(share * kTurn / 4);
    p.sky({{0, light("#141c4a", "#3f86cc")},
           {170, light("#4a4684", "#9cc7e8")},
           {300, light("#d98a78", "#fbe6c4")}});
    p.clouds({.top = 30,
              .bottom = 200,
              .colour = light("#a9789a", "#fff6ec"),
              .opacity = 0.6,
              .cover = 0.45,
              .seed = 201,
              .shift = 60 * share});
    const QPointF sun(520 - 0.1 * walk, 320 - 190 * rise);
    p.glow(sun, 320, light("#ffb070", "#fff2cf"), 0.75);
    p.disc(sun, 25, light("#ffd9a0", "#fffbe8"));
    p.ridge({.base = 310,
             .height = 170,
             .wave = 230,
             .sharpness = 0.9,
             .octaves = 5,
             .seed = 205,
             .top = light("#544a80", "#7f9cbd"),
             .bottom = light("#b4788a", "#d8e2e6"),
             .mist = 150,
             .shift = 0.2 * walk});
    p.ridge({.base = 360,
             .height = 130,
             .wave = 270,
             .sharpness = 0.7,
             .octaves = 5,
             .seed = 213,
             .top = light("#38365f", "#4f7d8c"),
             .bottom = light("#7d5877", "#a9c4b8"),
             .mist = 120,
             .shift = 0.5 * walk});
    p.ridge({.base = 430,
             .height = 110,
             .wave = 330,
             .sharpness = 0.3,
             .octaves = 4,
             .seed = 222,
             .top = light("#222447", "#2f6650"),
             .bottom = light("#3f3758", "#6f9a72"),
             .mist = 110,
             .trees = 44,
             .treeHeight = 24,
             .shift = walk});
    p.ridge({.base = 520,
             .height = 110,
             .wave = 360,
             .sharpness = 0.1,
             .octaves = 3,
             .seed = 230,
             .top = light("#101228", "#1d4630"),
             .bottom = light("#0a0b1c", "#12301f"),
             .mist = 90,
             .trees = 11,
             .treeHeight = 96,
             .shift = 1.8 * walk});
}
