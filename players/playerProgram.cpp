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

namespace {

// The phone asks from time to time whether its players go on.
class lifeSign : public chMsgProcesser
{
public:
    explicit lifeSign(PLAYER_PROGRAM program) : m_eProgram(program) {}
    int TryThreadMessage(msgObject& msg) override
    {
        if (msg.message != PLAYER_MSG_ALIVE)
            return 0;
        msgPostMsgToThread(msgGetThreadByName("app_hxPhone"), PLAYER_MSG_ALIVE, m_eProgram, 0);
        return 1;
    }

private:
    PLAYER_PROGRAM m_eProgram;
};

} // namespace

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
    lifeSign sign(program);
    msgBroadpostThreadMsg(PLAYER_MSG_UP, program, 0);
    const int result = application.exec();
    messageServiceStop();
    return result;
}
