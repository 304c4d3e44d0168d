#include "players/playerProgram.h"
#include "host/services/messages/messageBus.h"
#include "host/services/system/endOnSignals.h"
#include "support/file/deviceRoot.h"
#include "support/host/message.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>
#include <cstdio>
#include <gst/gst.h>

bool playerProgram::begin(QCoreApplication& application, const char* threadName)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption sysroot("sysroot", "Folder that stands for the device's file system.", "DIR");
    parser.addOption(sysroot);
    parser.process(application.arguments());
    if (parser.isSet(sysroot))
        deviceSetRoot(parser.value(sysroot).toUtf8().constData());
    endOnSignals(); // also while the toolkit is still loading
    GError* error = nullptr;
    if (!gst_init_check(nullptr, nullptr, &error)) {
        fprintf(stderr, "%s\n", error ? error->message : "the media toolkit cannot be started");
        g_clear_error(&error);
        return false;
    }
    if (messageServiceStart(threadName))
        return true;
    fprintf(stderr,
            messageServiceIsTaken(threadName) ? "another %s already runs on this device root\n"
                                              : "%s cannot be reached: the run folder cannot be used\n",
            threadName);
    return false;
}

int playerProgram::run(QCoreApplication& application, PLAYER_PROGRAM program)
{
    msgBroadpostThreadMsg(PLAYER_MSG_UP, program, 0);
    const int result = application.exec();
    messageServiceStop();
    return result;
}
