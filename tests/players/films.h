#pragma once
// Real films, made by the media toolkit: pictures of one colour, 25 a second, or pictures that bear numbers.
#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

enum FILM_COLOUR : QRgb { RED = 0xffff0000, GREEN = 0xff00ff00, BLUE = 0xff0000ff, BLACK = 0xff000000 };

struct tagColours
{
    QList<QRgb> colours = {RED};
    int nFrames = 50; // of each
    QSize size = QSize(320, 240);
};

// pipeline: "%1" stands for the source of the pictures, and the sink is "filesink name=out". Fails the test
// when the film, a file of this machine, cannot be made.
void makeFilm(const QString& file, const QString& pipeline, const tagColours& colours);

// H.264 and AAC in MP4, MPEG-4 part 2 and AAC in MP4, H.263 and PCMA in AVI.
void makeH264(const QString& file, const tagColours& colours = {});
void makeMpeg4(const QString& file, const tagColours& colours = {});
void makeH263(const QString& file, const tagColours& colours = {});

struct tagNumbered
{
    int nFrames = 50; // picture k bears the number k; at most 256
    QSize size = QSize(320, 240);
    int nRate = 25;   // pictures
    int nSeconds = 1; // in so many seconds
};

// As makeFilm, of numbered pictures.
void makeNumberedFilm(const QString& file, const QString& pipeline, const tagNumbered& numbered = {});
QImage numberedPicture(QSize size, int number);
// The number in a picture of any size; -1 when it bears none.
int numberIn(const QImage& picture);
