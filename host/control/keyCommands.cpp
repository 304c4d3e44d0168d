#include "host/control/keyCommands.h"
#include "host/desktop/dssKeyBoard.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include <QJsonObject>
#include <iterator>

using Reply = ControlReply;

namespace {

const char* const kTypes[] = {"N/A", "Line", "Speed Dial", "BLF", "BLF List"};
const char* const kLamps[] = {"unknown", "idle", "ringing", "busy"};

phoneSimulation* simulation()
{
    phoneService::instance().backend();
    return phoneSimulation::instance();
}

QJsonObject factsOf(int index)
{
    const DssKeyBoard& board = DssKeyBoard::instance();
    const tagDssKeyLook look = board.look(index);
    return {{"key", index + 1},
            {"type", kTypes[look.eType]},
            {"label", look.strLabel},
            {"line", board.lineOf(index)},
            {"number", board.numberOf(index)},
            {"lamp", look.bLamp ? kLamps[look.eLamp] : ""}};
}

int stateNamed(const QString& name)
{
    for (int state = 0; state < int(std::size(kLamps)); ++state) {
        if (name == QLatin1String(kLamps[state]))
            return state;
    }
    return -1;
}

} // namespace

void controlDssKey(const QStringList& arguments, const Reply& reply)
{
    bool isNumber = false;
    const int index = arguments[0].toInt(&isNumber) - 1;
    const QString how = arguments.value(1, "press");
    if (!isNumber || (how != "press" && how != "long" && how != "show")) {
        reply(controlUsage("dsskey N [press|long|show]"));
    } else if (index < 0 || index >= DSS_KEYS_MAX) {
        reply(controlError("there is no such key"));
    } else if (how == "show") {
        reply(factsOf(index));
    } else {
        controlRunLater(
            [index, how] {
                DssKeyBoard& board = DssKeyBoard::instance();
                how == "press" ? board.press(index) : board.edit(index);
            },
            reply);
    }
}

void controlLamp(const QStringList& arguments, const Reply& reply)
{
    const QString number = callNumberOf(arguments[0]);
    const int state = stateNamed(arguments.value(1, kLamps[LAMP_UNKNOWN]));
    if (state < 0) {
        reply(controlUsage("lamp NUMBER [idle|ringing|busy|unknown]"));
    } else if (!simulation()) {
        reply(controlOnlySimulated());
    } else if (number.isEmpty()) {
        reply(controlError("no number: " + arguments[0]));
    } else if (arguments.size() > 1) {
        simulation()->extensions().set(number, LAMP_STATE(state));
        reply(controlDone());
    } else {
        const simulatedLamps& lamps = simulation()->extensions();
        reply(
            QJsonObject{{"lamp", kLamps[lamps.stateOf({-1, number})]}, {"watched", lamps.isWatched(number)}});
    }
}

QJsonValue controlSetList(const QStringList& words)
{
    bool isIndex = false;
    const int line = words[0].toInt(&isIndex);
    if (!isIndex || words.size() > 2)
        return controlUsage("set list LINE [NUMBER[=NAME],...]");
    if (!simulation())
        return controlOnlySimulated();
    if (line < 0 || line >= PHONE_ACCOUNT_COUNT)
        return controlError("no such line");
    simulation()->extensions().setList(line, words.value(1));
    return controlDone();
}
