#include "host/services/players/playerProcesses.h"
#include "host/services/messages/messageBus.h"
#include "host/services/players/filmSound.h"
#include "host/services/players/playerSound.h"
#include "host/services/players/videoFrames.h"
#include "support/file/deviceRoot.h"
#include "support/host/player.h"
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
    : keptProcess(programOf(program), parent)
{
}

void playerProcessesStart()
{
    filmSound::start();
    soundOutput::setInstance(std::make_unique<playerSound>());
    for (const char* program : {"hxMedia", "hxMovie"}) {
        auto* player = new playerProcess(program, QCoreApplication::instance());
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, player,
                         [player] { player->stop(); });
        player->start();
    }
}
