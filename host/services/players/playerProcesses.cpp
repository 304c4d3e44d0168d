#include "host/services/players/playerProcesses.h"
#include "host/services/messages/messageBus.h"
#include "host/services/players/filmSound.h"
#include "host/services/players/playerSound.h"
#include "host/services/players/videoFrames.h"
#include "support/file/deviceRoot.h"
#include "support/host/player.h"
#include "support/host/trace.h"
#include <QCoreApplication>

namespace {

// The picture of a film that nobody sends any more would stand still for ever.
void dropPicture()
{
    const PLAYER_STREAMS nothing = {};
    videoFrames::instance().forget();
    msgPostMsgToThreadEx(msgGetThreadByName("app_hxMedia"), MEDIA_MSG_STREAMS, 0, 0, sizeof nothing,
                         &nothing);
}

tagKeptProgram programOf(const QString& name)
{
    tagKeptProgram program;
    program.strName = name;
    const QString root = QString::fromUtf8(deviceGetRoot().GetText());
    if (!root.isEmpty())
        program.arguments = QStringList{"--sysroot", root};
    program.died = dropPicture;
    program.killed = [name] { messageServiceRemoveDead(("app_" + name.toUtf8()).constData()); };
    return program;
}

} // namespace

playerProcess::playerProcess(const QString& program, QObject* parent)
    : keptProcess(programOf(program), parent), m_strThread("app_" + program)
{
    connect(&m_ping, &QTimer::timeout, this, [this] { ping(); });
}

void playerProcess::watch(PLAYER_PROGRAM program)
{
    m_eProgram = program;
    m_ping.start(PING_MS);
}

int playerProcess::TryThreadMessage(msgObject& msg)
{
    const bool isIts = m_ping.isActive() && msg.wParam == m_eProgram;
    if (isIts && (msg.message == PLAYER_MSG_UP || msg.message == PLAYER_MSG_ALIVE))
        m_nPings = 0;
    if (isIts && msg.message == PLAYER_MSG_UP)
        m_nUp = pid();
    return isIts && msg.message == PLAYER_MSG_ALIVE;
}

// Questions are counted, not seconds: a phone that slept, or was busy itself, has asked nothing meanwhile.
void playerProcess::ping()
{
    if (pid() == 0 || pid() != m_nUp)
        return;
    if (m_nPings >= PINGS_LOST_MAX) {
        m_nUp = 0;
        nuxTrace(TRACE_NOTE, "%s is not alive any more", qPrintable(m_strThread));
        discard();
        return;
    }
    ++m_nPings;
    msgPostMsgToThread(msgGetThreadByName(m_strThread.toUtf8().constData()), PLAYER_MSG_ALIVE, m_eProgram, 0);
}

void playerProcessesStart()
{
    filmSound::start();
    soundOutput::setInstance(std::make_unique<playerSound>());
    // The movie player may be with a file for long; calls need the other one.
    const QString server = "hxMedia";
    for (const QString& program : {server, QString("hxMovie")}) {
        auto* player = new playerProcess(program, QCoreApplication::instance());
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, player,
                         [player] { player->stop(); });
        if (program == server)
            player->watch(PLAYER_MEDIA);
        player->start();
    }
}
