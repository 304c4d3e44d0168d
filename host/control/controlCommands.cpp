#include "host/control/controlCommands.h"
#include "host/control/callCommands.h"
#include "host/control/inputInjector.h"
#include "host/control/keyCommands.h"
#include "host/control/screenTree.h"
#include "host/control/waiting.h"
#include "host/control/worldCommands.h"
#include "host/screen/screenState.h"
#include "host/screen/windowStack.h"
#include "host/services/pictures/imageCache.h"
#include "host/services/system/hostLog.h"
#include "support/host/message.h"
#include "support/host/module.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include <QApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QPixmapCache>
#include <QTimer>
#include <QWidget>
#include <ctime>
#include <malloc.h>

using Reply = ControlReply;

namespace {

void open(const QStringList& arguments, const Reply& reply)
{
    const QString name = arguments[0];
    controlRunLater([name] { hostModule().openPage(fromQString(name), nullptr); }, reply);
}

void openInfo(const QStringList& arguments, const Reply& reply)
{
    const QString name = arguments[0];
    const tagLeftBarInfo info{arguments[1], arguments[2]};
    controlRunLater([name, info] { hostModule().openPageWithInfo(fromQString(name), info, nullptr); }, reply);
}

void menu(const QStringList& arguments, const Reply& reply)
{
    const QString file = arguments[0];
    controlRunLater([file] { hostModule().openMenu(fromQString(file)); }, reply);
}

void frame(const QStringList& arguments, const Reply& reply)
{
    reply(hostModule().openFrame(fromQString(arguments[0])));
}

void refresh(const QStringList& arguments, const Reply& reply)
{
    if (arguments[0] == "stockData.xml")
        return reply(hostModule().updateStockData());
    hostModule().refreshMenu(fromQString(arguments[0]));
    reply(controlDone());
}

void cache(const QStringList& arguments, const Reply& reply)
{
    bool isNumber = false;
    const int index = arguments[0].toInt(&isNumber);
    reply(isNumber ? QJsonValue(hostModule().cacheWindows(index)) : controlUsage("cache INDEX"));
}

void tree(const QStringList&, const Reply& reply)
{
    reply(screenTree());
}

// Processor time of this thread so far.
double busyMs()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

QString topClass()
{
    const QWidget* top = QWSServer::clientWindows().value(0);
    return top ? QString(top->metaObject()->className()) : QString();
}

void screen(const QStringList&, const Reply& reply)
{
    const screenState& state = screenState::instance();
    reply(QJsonObject{{"idle", state.idleMs()},
                      {"saverHeld", state.isSaverSuspended()},
                      {"lamp", state.isLampLit()},
                      {"backlight", state.isBacklightOn()},
                      {"top", topClass()},
                      {"widgets", int(QApplication::allWidgets().size())},
                      {"busy", busyMs()}});
}

// What the phone holds, without what the allocator keeps for the next; 0 under a sanitizer, which has its
// own. The pictures are those that were read before, a part of it. What the toolkit has drawn before and
// would draw again, within a limit of its own, goes first.
void memory(const QStringList&, const Reply& reply)
{
    QPixmapCache::clear();
    const struct mallinfo2 heap = mallinfo2();
    reply(QJsonObject{{"heap", double(heap.uordblks + heap.hblkhd)},
                      {"pictures", double(ImageCache::instance().bytes())}});
}

// Whoever looks again and again saves the phone the work of packing the picture.
const char* pictureFormat(const QString& file)
{
    return file.endsWith(".ppm") ? "PPM" : "PNG";
}

void shot(const QStringList& arguments, const Reply& reply)
{
    const bool saved = screenGrab().save(arguments[0], pictureFormat(arguments[0]));
    reply(saved ? controlDone() : controlError("cannot write " + arguments[0]));
}

void log(const QStringList& arguments, const Reply& reply)
{
    QJsonArray entries;
    for (const tagLogEntry& entry : hostLogFrom(arguments.value(0, "1").toInt()))
        entries.append(QJsonObject{{"n", entry.nNumber}, {"kind", entry.strKind}, {"text", entry.strText}});
    reply(QJsonObject{{"log", entries}});
}

// Decimal, or hexadecimal with 0x.
bool parseWord(const QString& text, unsigned int& value)
{
    bool isNumber = false;
    value = text.toUInt(&isNumber, 0);
    return isNumber;
}

void post(const QStringList& arguments, const Reply& reply)
{
    unsigned int message = 0;
    unsigned int wParam = 0;
    unsigned int lParam = 0;
    if (!parseWord(arguments[1], message) || !parseWord(arguments[2], wParam) ||
        !parseWord(arguments[3], lParam)) {
        reply(controlUsage("post THREAD MESSAGE WPARAM LPARAM [HEX]"));
        return;
    }
    chThreadBase* thread = msgGetThreadByName(arguments[0].toUtf8().constData());
    if (!thread) {
        reply(controlError("no thread is named " + arguments[0]));
        return;
    }
    const QByteArray extra = QByteArray::fromHex(arguments.value(4).toLatin1());
    const int posted =
        msgPostMsgToThreadEx(thread, message, wParam, lParam, int(extra.size()), extra.constData());
    reply(posted ? controlDone() : controlError("the message could not be posted"));
}

void config(const QStringList& arguments, const Reply& reply)
{
    const QByteArray file = arguments[0].toUtf8();
    const QByteArray section = arguments[1].toUtf8();
    const QByteArray key = arguments[2].toUtf8();
    if (arguments.size() == 3) {
        reply(toQString(NUX_SubClass::nuxGetRegistryString(file, section, key, "")));
        return;
    }
    const int stored = nuxSetRegistryString(file, section, key, arguments[3].toUtf8());
    reply(stored ? controlDone() : controlError("cannot write " + arguments[0]));
}

void quit(const QStringList&, const Reply& reply)
{
    reply(controlDone());
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

struct Command
{
    const char* name;
    int fewest;
    int most;
    ControlHandler run;
    const char* form;
};

const Command kCommands[] = {
    {"open", 1, 1, open, "open NAME"},
    {"open-info", 3, 3, openInfo, "open-info NAME ICON TITLE"},
    {"menu", 1, 1, menu, "menu FILE"},
    {"frame", 1, 1, frame, "frame NAME"},
    {"refresh", 1, 1, refresh, "refresh FILE"},
    {"cache", 1, 1, cache, "cache INDEX"},
    {"tree", 0, 0, tree, "tree"},
    {"touch", 2, 3, controlTouch, "touch X Y [down|move|up]"},
    {"touch-raw", 1, 3, controlTouchRaw, "touch-raw X Y [PRESSURE] | touch-raw up"},
    {"key", 1, 2, controlKey, "key NAME [press|release]"},
    {"type", 1, 1, controlType, "type TEXT"},
    {"screen", 0, 0, screen, "screen"},
    {"memory", 0, 0, memory, "memory"},
    {"shot", 1, 1, shot, "shot FILE"},
    {"log", 0, 1, log, "log [N]"},
    {"set", 2, 8, controlSet, "set line|list|net|pstn|calls|upgrading|clock|storage|idle|language ..."},
    {"ring", 1, 12, controlRing, CONTROL_RING_FORM},
    {"calls", 0, 0, controlCalls, "calls"},
    {"other-side", 2, 2, controlOtherSide, CONTROL_OTHER_SIDE_FORM},
    {"streams", 2, 5, controlStreams, CONTROL_STREAMS_FORM},
    {"connect", 2, 2, controlConnect, CONTROL_CONNECT_FORM},
    {"join", 2, 2, controlJoin, CONTROL_JOIN_FORM},
    {"split", 1, 1, controlSplit, CONTROL_SPLIT_FORM},
    {"dsskey", 1, 2, controlDssKey, "dsskey N [press|long|show]"},
    {"lamp", 1, 2, controlLamp, "lamp NUMBER [idle|ringing|busy|unknown]"},
    {"post", 4, 5, post, "post THREAD MESSAGE WPARAM LPARAM [HEX]"},
    {"config", 3, 4, config, "config FILE SECTION KEY [VALUE]"},
    {"wait", 2, 3, controlWait, "wait page CLASS MS | wait idle MS"},
    {"quit", 0, 0, quit, "quit"},
};

} // namespace

void controlRun(const QStringList& words, const Reply& reply)
{
    const QStringList arguments = words.mid(1);
    for (const Command& command : kCommands) {
        if (words.value(0) != QLatin1String(command.name))
            continue;
        if (arguments.size() < command.fewest || arguments.size() > command.most)
            reply(controlUsage(command.form));
        else
            command.run(arguments, reply);
        return;
    }
    reply(controlUsage("no such command: " + words.value(0)));
}
