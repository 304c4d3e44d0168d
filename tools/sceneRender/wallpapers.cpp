#include "tools/sceneRender/scenes.h"

namespace {

void meadow(Painting& p)
{
    p.sky({{0, "#0f3146"}, {150, "#1f5a70"}, {290, "#5b9a93"}});
    p.glow({610, 236}, 360, "#ffe7b0", 0.42);
    p.clouds({.top = 30, .bottom = 190, .colour = "#cfe6dd", .opacity = 0.20, .cover = 0.5, .seed = 4});
    p.ridge({.base = 290,
             .height = 84,
             .wave = 250,
             .sharpness = 0.3,
             .octaves = 4,
             .seed = 3,
             .top = "#3b7c7e",
             .bottom = "#559688",
             .mist = 60});
    p.ridge({.base = 326,
             .height = 92,
             .wave = 300,
             .octaves = 3,
             .seed = 12,
             .top = "#27675f",
             .bottom = "#3c8068",
             .mist = 80,
             .trees = 46,
             .treeHeight = 19});
    p.ridge({.base = 396,
             .height = 96,
             .wave = 420,
             .octaves = 2,
             .seed = 8,
             .top = "#22604a",
             .bottom = "#174a39",
             .mist = 110});
    p.ridge({.base = 470,
             .height = 92,
             .wave = 360,
             .octaves = 2,
             .seed = 21,
             .top = "#164534",
             .bottom = "#0a261f",
             .mist = 120,
             .trees = 9,
             .treeHeight = 64});
}

void sunset(Painting& p)
{
    p.sky({{0, "#1c1a3d"}, {130, "#4b2a5c"}, {220, "#8c3f5c"}, {286, "#d9794a"}, {306, "#e89a52"}});
    p.clouds({.top = 60, .bottom = 240, .colour = "#e88a62", .opacity = 0.42, .cover = 0.5, .seed = 9});
    p.clouds({.top = 10, .bottom = 130, .colour = "#2a2148", .opacity = 0.5, .cover = 0.55, .seed = 15});
    p.glow({656, 282}, 330, "#ffcf7d", 0.62);
    p.disc({656, 284}, 27, "#ffe9b8");
    p.ridge({.base = 306,
             .height = 52,
             .wave = 230,
             .sharpness = 0.4,
             .seed = 31,
             .top = "#6a3558",
             .bottom = "#94505a",
             .mist = 40,
             .shift = 90});
    p.water({.line = 304, .colour = "#2e1a42", .near = 0.78, .deep = 0.97, .ripple = 1.1, .seed = 6});
    p.glitter(656, 304, 24, "#ffb27a", 0.30);
    p.ridge({.base = 520,
             .height = 130,
             .wave = 330,
             .octaves = 4,
             .seed = 5,
             .top = "#1b1230",
             .bottom = "#0e0a1d",
             .mist = 60,
             .trees = 0,
             .shift = 300});
}

void twilight(Painting& p)
{
    p.sky({{0, "#0c1030"}, {170, "#2a2a66"}, {300, "#6a5192"}, {360, "#8f6a9a"}});
    p.stars(170, 250, 3);
    p.glow({640, 112}, 120, "#dfe4ff", 0.30);
    QPainterPath moon, shade;
    moon.addEllipse(QPointF(640, 112), 20, 20);
    shade.addEllipse(QPointF(649, 106), 18, 18);
    p.shape(moon - shade, "#eef0ff");
    p.ridge({.base = 330,
             .height = 150,
             .wave = 190,
             .sharpness = 0.9,
             .octaves = 6,
             .seed = 7,
             .top = "#54478a",
             .bottom = "#7f6096",
             .mist = 110,
             .relief = 0.18});
    p.ridge({.base = 386,
             .height = 140,
             .wave = 240,
             .sharpness = 0.8,
             .octaves = 6,
             .seed = 18,
             .top = "#38336f",
             .bottom = "#5e4c85",
             .mist = 110,
             .relief = 0.16});
    p.ridge({.base = 440,
             .height = 120,
             .wave = 300,
             .sharpness = 0.5,
             .octaves = 5,
             .seed = 27,
             .top = "#25234f",
             .bottom = "#3b3468",
             .mist = 100});
    p.ridge({.base = 500,
             .height = 90,
             .wave = 300,
             .sharpness = 0.2,
             .octaves = 4,
             .seed = 33,
             .top = "#14152f",
             .bottom = "#0b0c1e",
             .mist = 70,
             .trees = 54,
             .treeHeight = 44});
}

void aurora(Painting& p)
{
    p.sky({{0, "#040c1f"}, {200, "#0a2338"}, {330, "#123a4a"}});
    p.stars(230, 300, 8);
    p.aurora(196, 62, "#3fe0a0", "#6a4ad0", 0.62, 5);
    p.aurora(250, 46, "#2fc7a8", "#3b6fd0", 0.42, 23);
    p.ridge({.base = 322,
             .height = 92,
             .wave = 210,
             .sharpness = 0.8,
             .octaves = 6,
             .seed = 41,
             .top = "#0d2735",
             .bottom = "#123a48",
             .mist = 90,
             .relief = 0.12});
    p.ridge({.base = 338,
             .height = 36,
             .wave = 260,
             .sharpness = 0.3,
             .seed = 46,
             .top = "#071820",
             .bottom = "#0a222c",
             .mist = 40,
             .trees = 92,
             .treeHeight = 26});
    p.water({.line = 336, .colour = "#061522", .near = 0.22, .deep = 0.5, .ripple = 0.8, .seed = 3});
}

void silk(Painting& p)
{
    p.silk({"#0a2240", "#0e365f", "#144e80", "#195b89", "#1d6490"}, 6);
}

} // namespace

const std::vector<Scene>& wallpaperScenes()
{
    static const std::vector<Scene> scenes = {
        {"Meadow", meadow}, {"Sunset", sunset}, {"Twilight", twilight}, {"Aurora", aurora}, {"Silk", silk}};
    return scenes;
}
