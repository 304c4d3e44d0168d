// hxMedia: the media server, a process of its own. Receives the streams of a session, plays its sound, and
// leaves its pictures for the phone.
#include "players/mediaService.h"
#include "players/playerProgram.h"
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    application.setApplicationName("hxMedia");
    if (!playerProgram::begin(application, "app_hxMedia"))
        return 1;
    mediaService service;
    if (!service.open()) {
        fprintf(stderr, "no memory for pictures\n");
        return 1;
    }
    return playerProgram::run(application, PLAYER_MEDIA);
}
