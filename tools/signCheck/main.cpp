// hxSignCheck: says what no phone would show of a picture or a film. The server starts it for each file that
// is new; on a shell it tells the same.
#include "tools/signCheck/FilmCheck.h"
#include "tools/signCheck/PictureCheck.h"
#include <QCoreApplication>
#include <cstdio>
#include <cstring>
#include <gst/gst.h>

int main(int argc, char** argv)
{
    const bool isFilm = argc == 3 && strcmp(argv[1], "film") == 0;
    if (!isFilm && !(argc == 3 && strcmp(argv[1], "picture") == 0)) {
        std::fprintf(stderr, "usage: hxSignCheck film|picture FILE\n"
                             "Prints why no phone shows the file, and ends with 1; with 0 when phones do.\n");
        return 2;
    }
    QCoreApplication application(argc, argv);
    if (isFilm)
        gst_init(nullptr, nullptr);
    const QStringList faults = isFilm ? filmFaults(argv[2]) : pictureFaults(argv[2]);
    for (const QString& fault : faults)
        std::printf("%s\n", fault.toUtf8().constData());
    return faults.isEmpty() ? 0 : 1;
}
