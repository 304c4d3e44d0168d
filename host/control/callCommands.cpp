#include "host/control/callCommands.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <functional>

using Reply = ControlReply;

namespace {

const char* const kStates[] = {"ringing", "talking", "ended"};
const char* const kEnds[] = {"",         "hung up",   "missed",      "declined", "busy", "disturbed",
                             "rejected", "forwarded", "transferred", "failed",   "unfit"};

phoneSimulation* simulation()
{
    phoneService::instance().backend();
    return phoneSimulation::instance();
}

// The words behind the number: a line and a name in their order, and what is known by its word.
bool parseCaller(const QStringList& arguments, tagCaller& caller)
{
    caller.strNumber = arguments[0];
    QStringList rest = arguments.mid(1);
    caller.bAnonymous = rest.removeAll("anonymous") > 0;
    caller.bVideo = rest.removeAll("video") > 0;
    while (!rest.isEmpty() && rest.last().startsWith("by="))
        caller.forwardedBy.prepend(rest.takeLast().mid(int(qstrlen("by="))));
    bool isLine = true;
    const QString line = rest.value(0, "0");
    caller.nLine = line == "pstn" ? int(PHONE_LINE_PSTN) : line.toInt(&isLine);
    caller.strName = rest.value(1);
    return rest.size() <= 2 && (isLine || line == "pstn");
}

QJsonObject factsOf(const tagCall& call)
{
    return {{"id", call.nId},
            {"number", call.strNumber},
            {"name", call.strName},
            {"line", call.nAccount},
            {"incoming", call.bIncoming},
            {"anonymous", call.bAnonymous},
            {"forwardedBy", QJsonArray::fromStringList(call.forwardedBy)},
            {"reached", callReached(call)},
            {"video", call.bVideo},
            {"camera", call.options.bCamera},
            {"microphone", call.options.bMicrophone},
            {"bandwidth", call.options.nBandwidth},
            {"frameRate", call.options.nFrameRate},
            {"wantsVideo", call.options.bVideo},
            {"held", call.bHeld},
            {"remoteHeld", call.bRemoteHeld},
            {"unheard", call.bUnheard},
            {"muted", call.bMuted},
            {"joined", call.nJoined},
            {"sound", call.streams.strSound},
            {"picture", call.streams.strPicture},
            {"quality", call.streams.nQuality},
            {"encrypted", call.streams.bEncrypted},
            {"tones", call.strTones},
            {"state", kStates[call.eState]},
            {"end", kEnds[call.eEnd]},
            {"target", call.strTarget},
            {"seconds", call.nSeconds},
            {"reason", call.strReason}};
}

QJsonArray factsOf(const QList<tagCall>& calls)
{
    QJsonArray all;
    for (const tagCall& call : calls)
        all.append(factsOf(call));
    return all;
}

QJsonValue doneOrNot(bool done)
{
    return done ? controlDone() : controlError("no such call, or it does not wait for that");
}

bool takeId(const QString& word, int& id)
{
    bool isId = false;
    id = word.toInt(&isId);
    return isId;
}

// One "name=value"; false when it is none of a call's streams.
bool takeStream(const QString& word, tagCallStreams& streams)
{
    const QString value = word.mid(word.indexOf('=') + 1);
    if (word.startsWith("sound=")) {
        streams.strSound = value;
    } else if (word.startsWith("picture=")) {
        streams.strPicture = value;
    } else if (word.startsWith("encrypted=") && (value == "0" || value == "1")) {
        streams.bEncrypted = value == "1";
    } else if (word.startsWith("quality=")) {
        bool isNumber = false;
        streams.nQuality = value.toInt(&isNumber);
        return isNumber && streams.nQuality >= -1 && streams.nQuality <= 4;
    } else {
        return false;
    }
    return true;
}

// Both calls by their ids.
void withTwo(const QStringList& arguments, const char* form, const Reply& reply,
             const std::function<bool(int id, int other)>& act)
{
    int id = 0;
    int other = 0;
    if (takeId(arguments[0], id) && takeId(arguments[1], other))
        reply(doneOrNot(act(id, other)));
    else
        reply(controlUsage(form));
}

} // namespace

void controlRing(const QStringList& arguments, const Reply& reply)
{
    tagCaller caller;
    if (!parseCaller(arguments, caller))
        reply(controlUsage(CONTROL_RING_FORM));
    else if (!simulation())
        reply(controlOnlySimulated());
    else if (!simulation()->ringFrom(caller))
        reply(controlError("no such line or number"));
    else
        reply(controlDone());
}

void controlCalls(const QStringList&, const Reply& reply)
{
    reply(QJsonObject{{"calls", factsOf(phoneService::instance().calls())},
                      {"ended", factsOf(phoneService::instance().backend().endedCalls())}});
}

void controlOtherSide(const QStringList& arguments, const Reply& reply)
{
    using Act = bool (*)(phoneSimulation & world, int id);
    static const QMap<QString, Act> acts = {
        {"hold", [](phoneSimulation& world, int id) { return world.holdFromOutside(id, true); }},
        {"resume", [](phoneSimulation& world, int id) { return world.holdFromOutside(id, false); }},
        {"hangup", [](phoneSimulation& world, int id) { return world.hangUpFromOutside(id); }},
        {"refuse", [](phoneSimulation& world, int id) { return world.refuseFromOutside(id, true); }},
        {"accept", [](phoneSimulation& world, int id) { return world.refuseFromOutside(id, false); }}};
    int id = 0;
    const Act act = acts.value(arguments[1]);
    if (!takeId(arguments[0], id) || !act)
        reply(controlUsage(CONTROL_OTHER_SIDE_FORM));
    else if (!simulation())
        reply(controlOnlySimulated());
    else
        reply(doneOrNot(act(*simulation(), id)));
}

void controlStreams(const QStringList& arguments, const Reply& reply)
{
    int id = 0;
    tagCallStreams streams;
    bool isForm = takeId(arguments[0], id);
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nId == id)
            streams = call.streams;
    }
    for (const QString& word : arguments.mid(1))
        isForm = isForm && takeStream(word, streams);
    if (!isForm)
        reply(controlUsage(CONTROL_STREAMS_FORM));
    else if (!simulation())
        reply(controlOnlySimulated());
    else
        reply(doneOrNot(simulation()->setStreams(id, streams)));
}

void controlConnect(const QStringList& arguments, const Reply& reply)
{
    withTwo(arguments, CONTROL_CONNECT_FORM, reply,
            [](int id, int other) { return phoneService::instance().rules().connect(id, other); });
}

void controlJoin(const QStringList& arguments, const Reply& reply)
{
    withTwo(arguments, CONTROL_JOIN_FORM, reply,
            [](int id, int other) { return phoneService::instance().rules().join(id, other); });
}

void controlSplit(const QStringList& arguments, const Reply& reply)
{
    int id = 0;
    if (takeId(arguments[0], id))
        reply(doneOrNot(phoneService::instance().rules().split(id)));
    else
        reply(controlUsage(CONTROL_SPLIT_FORM));
}
