// hxMovie: the movie player, a process of its own. Streams film files to loopback ports.
#include "players/movieService.h"
#include "players/playerProgram.h"
#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    application.setApplicationName("hxMovie");
    if (!playerProgram::begin(application, "app_hxMovie"))
        return 1;
    movieService service;
    return playerProgram::run(application, PLAYER_MOVIE);
}
