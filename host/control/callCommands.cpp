#include "host/control/callCommands.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include <QJsonArray>
#include <QJsonObject>

using Reply = ControlReply;

namespace {

const char* const kStates[] = {"ringing", "talking", "ended"};
const char* const kEnds[] = {"",          "hung up",  "missed",    "declined",    "busy",
                             "disturbed", "rejected", "forwarded", "transferred", "failed"};

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
            {"video", call.bVideo},
            {"camera", call.options.bCamera},
            {"microphone", call.options.bMicrophone},
            {"bandwidth", call.options.nBandwidth},
            {"frameRate", call.options.nFrameRate},
            {"wantsVideo", call.options.bVideo},
            {"held", call.bHeld},
            {"remoteHeld", call.bRemoteHeld},
            {"muted", call.bMuted},
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
    bool isId = false;
    const int id = arguments[0].toInt(&isId);
    const QString what = arguments[1];
    if (!isId || !QStringList{"hold", "resume", "hangup"}.contains(what)) {
        reply(controlUsage(CONTROL_OTHER_SIDE_FORM));
        return;
    }
    if (!simulation()) {
        reply(controlOnlySimulated());
        return;
    }
    const bool done = what == "hangup" ? simulation()->hangUpFromOutside(id)
                                       : simulation()->holdFromOutside(id, what == "hold");
    reply(done ? controlDone() : controlError("no such call, or it does not wait for that"));
}
