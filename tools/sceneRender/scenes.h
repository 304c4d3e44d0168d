#pragma once
// What the phone's own pictures show.
#include "tools/sceneRender/painting.h"

struct Scene
{
    const char* name; // of its file, without suffix
    void (*paint)(Painting& painting);
};

// Dark enough for the white texts of the home screen.
const std::vector<Scene>& wallpaperScenes();
const std::vector<Scene>& photoScenes();
// The film, from 0 at its beginning to 1 at its end: a morning in the mountains.
void paintMorning(Painting& painting, double share);
