#include "host/desktop/restart.h"
#include "host/services/system/folderWatch.h"
#include "host/services/system/netWorld.h"
#include "host/services/system/shellCommand.h"
#include "host/services/system/thisDevice.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include "support/host/box.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/trace.h"
#include <QCoreApplication>
#include <QTimer>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kNoteMs = 3000;
const char* const kRunFolder = "/rundata/run";
const char* const kMark = "/rundata/run/restart"; // left by the script
const char* const kScript = "/phone/scripts/factory.sh";
const char* const kFinish = "/phone/scripts/factory.sh finish";
const char* const kCopy = "/rundata/.factory"; // there while the script runs

void restart()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    if (isThisDevice())
        sysreboot(1);
    QCoreApplication::exit(HOST_START_ANEW);
}

// The old settings' signage must not write its files any more. The clock runs beside the box: another one
// that lies upon it would keep it waiting.
void tellAndRestart()
{
    if (hostModule().unLaunchDisplay)
        hostModule().unLaunchDisplay();
    QTimer::singleShot(kNoteMs, Qt::PreciseTimer, QCoreApplication::instance(), restart);
    xMessageBox(Translate("Note"), Translate("The phone restarts with its factory settings."), BOX_NOTE,
                nullptr, kNoteMs);
    restart();
}

void lookForMark()
{
    static bool restarting = false;
    if (restarting || !pathFileExist(kMark))
        return;
    restarting = true;
    tellAndRestart();
}

} // namespace

void hostFollowFactoryReset()
{
    if (pathFileExist(kCopy))
        shellCommand::run(kFinish);
    // A phone that only starts has the new settings.
    unlink(devicePath(kMark).GetText());
    auto* watch = new folderWatch(QCoreApplication::instance());
    watch->SetCall(lookForMark);
    watch->Add(devicePath(kRunFolder).GetText());
}

void hostFollowRestarts()
{
    netWorldSetRestart([] { QCoreApplication::exit(HOST_START_AGAIN); });
}

void hostStartAnew(const QStringList& arguments, int result)
{
    if (result != HOST_START_ANEW && result != HOST_START_AGAIN)
        return;
    // What the phone has written since it was reset is none of the factory's.
    if (result == HOST_START_ANEW)
        shellCommand::run(kScript);
    const QByteArray program = QCoreApplication::applicationFilePath().toLocal8Bit();
    QList<QByteArray> texts;
    for (const QString& argument : arguments)
        texts.append(argument.toLocal8Bit());
    std::vector<char*> words;
    for (QByteArray& text : texts)
        words.push_back(text.data());
    words.push_back(nullptr);
    fflush(nullptr);
    execv(program.constData(), words.data());
    nuxTrace(TRACE_NOTE, "The phone cannot be started anew: %s", strerror(errno));
}
