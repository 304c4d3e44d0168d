#include "host/control/worldCommands.h"
#include "host/control/keyCommands.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/storage/storageWorld.h"
#include "host/services/system/netWorld.h"
#include "support/host/clock.h"
#include "support/host/language.h"
#include "support/host/upgrade.h"
#include <QDateTime>
#include <QMap>

using Reply = ControlReply;

namespace {

constexpr int kMsInSecond = 1000;

using Settings = QMap<QString, QString>;

// The words as "name=value"; false when one is not of that form, or is not among the names.
bool parseSettings(const QStringList& words, const QStringList& names, Settings& settings)
{
    for (const QString& word : words) {
        const qsizetype equals = word.indexOf('=');
        if (equals < 0 || !names.contains(word.left(equals)))
            return false;
        settings[word.left(equals)] = word.mid(equals + 1);
    }
    return !settings.isEmpty();
}

// Takes the number over where the name is given; false when it is no number.
bool takeNumber(const Settings& settings, const QString& name, std::optional<int>& target)
{
    if (!settings.contains(name))
        return true;
    bool isNumber = false;
    target = settings[name].toInt(&isNumber);
    return isNumber;
}

void takeText(const Settings& settings, const QString& name, std::optional<QString>& target)
{
    if (settings.contains(name))
        target = settings[name];
}

phoneSimulation* simulation()
{
    phoneService::instance().backend();
    return phoneSimulation::instance();
}

QJsonValue setLine(const QStringList& words)
{
    const QString form = "set line I [state=] [user=] [server=] [name=] [new=] [old=] [why=TEXT]";
    Settings settings;
    tagLineSetting line;
    bool isIndex = false;
    const int index = words[0].toInt(&isIndex);
    if (!isIndex ||
        !parseSettings(words.mid(1), {"state", "user", "server", "name", "new", "old", "why"}, settings) ||
        !takeNumber(settings, "state", line.state) || !takeNumber(settings, "new", line.newMessages) ||
        !takeNumber(settings, "old", line.oldMessages))
        return controlUsage(form);
    takeText(settings, "user", line.user);
    takeText(settings, "server", line.server);
    takeText(settings, "name", line.name);
    takeText(settings, "why", line.whyNot);
    if (!simulation())
        return controlOnlySimulated();
    return simulation()->setLine(index, line) ? controlDone() : controlError("no such line or state");
}

QJsonValue setNet(const QStringList& words)
{
    Settings settings;
    tagNetWorld world = netWorld();
    if (!parseSettings(words, {"state", "type", "cable", "conflict", "used"}, settings) ||
        !takeNumber(settings, "state", world.state) || !takeNumber(settings, "type", world.type) ||
        !takeNumber(settings, "cable", world.cable) || !takeNumber(settings, "conflict", world.conflict))
        return controlUsage("set net [state=] [type=] [cable=] [conflict=] [used=IP]");
    if (settings.contains("used"))
        world.usedAddresses = settings["used"].split(',', Qt::SkipEmptyParts);
    netWorld() = world;
    return controlDone();
}

QJsonValue setCalls(const QStringList& words)
{
    Settings settings;
    std::optional<int> total;
    std::optional<int> talk;
    if (!parseSettings(words, {"total", "talk"}, settings) || !takeNumber(settings, "total", total) ||
        !takeNumber(settings, "talk", talk))
        return controlUsage("set calls [total=] [talk=]");
    if (!simulation())
        return controlOnlySimulated();
    simulation()->setCalls(total.value_or(0), talk.value_or(0));
    return controlDone();
}

QJsonValue setPstn(const QStringList& words)
{
    bool isNumber = false;
    const int pstn = words[0].toInt(&isNumber);
    if (!isNumber)
        return controlUsage("set pstn N");
    if (!simulation())
        return controlOnlySimulated();
    simulation()->setPstn(pstn);
    return controlDone();
}

QJsonValue setUpgrading(const QStringList& words)
{
    bool isNumber = false;
    const int upgrading = words[0].toInt(&isNumber);
    if (!isNumber)
        return controlUsage("set upgrading N");
    CAutoUpgrade::GetInstance()->SetUpgrading(upgrading);
    return controlDone();
}

QJsonValue setClock(const QStringList& words)
{
    QDateTime time = QDateTime::fromString(words.join(' '), "yyyy-MM-dd hh:mm:ss");
    if (!time.isValid())
        return controlUsage("set clock \"YYYY-MM-DD hh:mm:ss\"");
    // The phone's seconds are those of local time, without a zone.
    time.setTimeSpec(Qt::UTC);
    netWorldSetClock(long(time.toSecsSinceEpoch()));
    return controlDone();
}

QJsonValue setIdle(const QStringList& words)
{
    bool isNumber = false;
    const int seconds = words[0].toInt(&isNumber);
    if (!isNumber || seconds < 0)
        return controlUsage("set idle SECONDS");
    screenState::instance().setIdle(seconds * qint64(kMsInSecond));
    return controlDone();
}

QJsonValue setLanguage(const QStringList& words)
{
    return GetLanguageHelper()->SetLanguage(words[0].toUtf8().constData())
               ? controlDone()
               : controlError("no such language: " + words[0]);
}

QJsonValue setStorage(const QStringList& words)
{
    if (words.size() == 3 && words[0] == "plug" && (words[1] == "usb" || words[1] == "sd")) {
        const QString path = storageWorldPlug(words[1] == "usb" ? STORAGE_USB : STORAGE_SD, words[2]);
        return path.isEmpty() ? controlError("cannot plug " + words[2]) : QJsonValue(path);
    }
    if (words.size() == 2 && words[0] == "unplug")
        return storageWorldUnplug(words[1]) ? controlDone() : controlError("no such storage: " + words[1]);
    return controlUsage("set storage plug usb|sd DIR | set storage unplug DIR");
}

struct WorldPart
{
    const char* name;
    QJsonValue (*set)(const QStringList& words);
};

const WorldPart kParts[] = {{"line", setLine},           {"list", controlSetList}, {"net", setNet},
                            {"pstn", setPstn},           {"calls", setCalls},      {"clock", setClock},
                            {"upgrading", setUpgrading}, {"storage", setStorage},  {"idle", setIdle},
                            {"language", setLanguage}};

} // namespace

void controlSet(const QStringList& arguments, const Reply& reply)
{
    for (const WorldPart& part : kParts) {
        if (arguments[0] == QLatin1String(part.name)) {
            reply(part.set(arguments.mid(1)));
            return;
        }
    }
    reply(controlUsage("set line|list|net|pstn|calls|upgrading|clock|storage|idle|language ..."));
}
