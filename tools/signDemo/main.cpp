// Makes what the demonstration folder cannot hold as source: hxSignDemo film FILE.mp4, hxSignDemo gif PNG GIF
#include "tools/signDemo/DayScene.h"
#include "tools/signDemo/FilmFile.h"
#include "tools/signDemo/GifFile.h"
#include "tools/toneRender/ToneSynth.h"
#include <QFile>
#include <cstdio>

namespace {

constexpr int kFrameRate = 25, kFrames = 240;
constexpr QRgb kPanel = 0xff38648f;
constexpr int kFaintest = 40; // alpha that is drawn
constexpr double kSeconds = double(kFrames) / kFrameRate;

int Complain(const QString& text)
{
    std::fprintf(stderr, "hxSignDemo: %s\n", qPrintable(text));
    return 1;
}

// Four broken chords, each with its bass, as soft as a music box in the next room.
std::vector<int16_t> Music()
{
    const double chords[4][5] = {{130.8, 392.0, 523.3, 659.3, 784.0},
                                 {110.0, 392.0, 523.3, 659.3, 880.0},
                                 {87.3, 349.2, 523.3, 698.5, 880.0},
                                 {98.0, 392.0, 493.9, 587.3, 784.0}};
    const int order[8] = {1, 2, 3, 4, 3, 2, 3, 2};
    ToneSynth synth(kSeconds);
    const double bar = kSeconds / 4, step = bar / 8;
    for (int chord = 0; chord < 4; ++chord) {
        synth.Strike(chord * bar, chords[chord][0], 2.3, 0.1, 0.5);
        for (int note = 0; note < 8; ++note) {
            // The last notes of the film die away before its end.
            const double at = chord * bar + note * step;
            const double decay = std::min(1.3, kSeconds - at);
            synth.Strike(at, chords[chord][order[note]], decay, 0.15, note % 4 == 0 ? 0.5 : 0.36);
        }
    }
    return synth.Samples();
}

int MakeFilm(const QString& file)
{
    DayScene scene;
    FilmSource film;
    film.width = DayScene::Width;
    film.height = DayScene::Height;
    film.frames = kFrames;
    film.frameRate = kFrameRate;
    film.frame = [&](int i) { return scene.Frame(double(i) / kFrames); };
    film.sound = Music();
    film.soundRate = ToneSynth::SampleRate;
    return WriteFilm(QFile::encodeName(file), film) ? 0 : 1;
}

// The format knows no half transparent edge: drawn on the blue of the phone's panels it looks smooth there.
QImage OnPanel(const QImage& picture)
{
    QImage flat = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < flat.height(); ++y) {
        for (int x = 0; x < flat.width(); ++x) {
            const QRgb ink = flat.pixel(x, y);
            const auto mix = [&](int over, int under) {
                return (over * qAlpha(ink) + under * (255 - qAlpha(ink))) / 255;
            };
            const QRgb seen = qRgb(mix(qRed(ink), qRed(kPanel)), mix(qGreen(ink), qGreen(kPanel)),
                                   mix(qBlue(ink), qBlue(kPanel)));
            flat.setPixel(x, y, qAlpha(ink) < kFaintest ? qRgba(0, 0, 0, 0) : seen);
        }
    }
    return flat;
}

int MakeGif(const QString& from, const QString& to)
{
    const QImage picture(from);
    QFile out(to);
    if (picture.isNull())
        return Complain(from + " is no picture");
    if (!out.open(QIODevice::WriteOnly) || out.write(GifFile(OnPanel(picture))) < 0 || !out.flush())
        return Complain(to + ": " + out.errorString());
    return 0;
}

// For a look at the film without a player.
int MakeStill(const QString& turn, const QString& file)
{
    return DayScene().Frame(turn.toDouble()).save(file) ? 0 : Complain(file + " cannot be written");
}

} // namespace

int main(int argc, char** argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QFile::decodeName(argv[i]));
    if (words.size() == 2 && words[0] == "film")
        return MakeFilm(words[1]);
    if (words.size() == 3 && words[0] == "gif")
        return MakeGif(words[1], words[2]);
    if (words.size() == 3 && words[0] == "still")
        return MakeStill(words[1], words[2]);
    return Complain("usage: hxSignDemo film FILE | gif PNG FILE | still TURN FILE");
}
