// hxMedia: the media server, a process of its own. Receives the streams of a session, plays its sound,
// leaves its pictures for the phone, plays the phone's tones, and has the sound of its calls.
#include "players/callService.h"
#include "players/mediaService.h"
#include "players/playerProgram.h"
#include "players/toneService.h"
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    application.setApplicationName("hxMedia");
    if (!playerProgram::begin(application, "app_hxMedia"))
        return 1;
    toneService tones;
    pictureScreen screen;
    callService calls(screen);
    mediaService service(screen);
    if (!screen.open()) {
        fprintf(stderr, "no memory for pictures\n");
        return 1;
    }
    return playerProgram::run(application, PLAYER_MEDIA);
}
