// Paints the phone's own pictures and its film: hxSceneRender wallpapers FOLDER | photos FOLDER | film FILE
#include "tools/sceneRender/scenes.h"
#include "tools/signDemo/FilmFile.h"
#include "tools/toneRender/ToneSynth.h"
#include <QFile>
#include <QString>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kWidth = 800;
constexpr int kHeight = 480;
constexpr int kQuality = 97;
// Sides that the encoder takes without padding, of the screen's shape.
constexpr int kFilmWidth = 480;
constexpr int kFilmHeight = 288;
constexpr int kFilmRate = 25;
constexpr int kFilmSeconds = 6;

int complain(const QString& problem)
{
    std::fprintf(stderr, "hxSceneRender: %s\n", qPrintable(problem));
    return 1;
}

int savePictures(const std::vector<Scene>& scenes, const QString& folder)
{
    for (const Scene& scene : scenes) {
        Painting painting(kWidth, kHeight);
        scene.paint(painting);
        const QString file = folder + "/" + scene.name + ".jpg";
        if (!painting.finish().save(file, "JPG", kQuality))
            return complain(file + ": cannot be written");
    }
    return 0;
}

QImage filmPicture(int frame)
{
    Painting painting(kFilmWidth, kFilmHeight);
    paintMorning(painting, double(frame) / (kFilmSeconds * kFilmRate - 1));
    return painting.finish();
}

// A slow rise over two chords, as soft as the light.
std::vector<int16_t> filmSound()
{
    constexpr double kNotes[] = {196.0, 293.7, 392.0, 493.9, 587.3, 784.0,
                                 174.6, 261.6, 349.2, 440.0, 523.3, 698.5};
    constexpr int kCount = int(std::size(kNotes));
    constexpr double kStep = double(kFilmSeconds) / (kCount + 2);
    ToneSynth synth(kFilmSeconds);
    for (int i = 0; i < kCount; ++i) {
        const double at = i * kStep;
        synth.Strike(at, kNotes[i], std::min(2.6, kFilmSeconds - at), 0.12, i % 6 == 0 ? 0.7 : 0.45);
    }
    return synth.Samples();
}

int saveFilm(const QString& file)
{
    FilmSource film;
    film.width = kFilmWidth;
    film.height = kFilmHeight;
    film.frames = kFilmSeconds * kFilmRate;
    film.frameRate = kFilmRate;
    film.frame = filmPicture;
    film.sound = filmSound();
    film.soundRate = ToneSynth::SampleRate;
    return WriteFilm(QFile::encodeName(file), film) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const char* kind = argc == 3 ? argv[1] : "";
    const QString target = argc == 3 ? QFile::decodeName(argv[2]) : QString();
    if (std::strcmp(kind, "wallpapers") == 0)
        return savePictures(wallpaperScenes(), target);
    if (std::strcmp(kind, "photos") == 0)
        return savePictures(photoScenes(), target);
    if (std::strcmp(kind, "film") == 0)
        return saveFilm(target);
    return complain("usage: hxSceneRender wallpapers FOLDER | photos FOLDER | film FILE");
}
