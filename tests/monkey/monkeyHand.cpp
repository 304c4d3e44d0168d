#include "tests/monkey/monkeyHand.h"

namespace {

const QStringList kKeys = {"Up",     "Down",      "Left",   "Right",  "Return", "Enter",    "F1",   "F2",
                           "F3",     "F4",        "Escape", "Delete", "Space",  "Tab",      "Home", "End",
                           "PageUp", "Backspace", "Back",   "Select", "Hangup", "VolumeUp", "1",    "2",
                           "5",      "9",         "0",      "*",      "#"};
const QStringList kTexts = {"a", "4711", "192.168.1.10", "Zoë Müller", "255", "%s%n<&>\"'", "  ", "你好"};
const QStringList kLanguages = {"English", "Chinese", "German", "French", "Spanish"};
constexpr int kWidth = 800;
constexpr int kHeight = 480;

} // namespace

MonkeyHand::MonkeyHand(quint64 seed, const QStringList& names, const QStringList& menus)
    : m_random(seed), m_names(names), m_menus(menus)
{
}

MonkeyHand::Action MonkeyHand::next()
{
    const int dice = below(100);
    if (dice < 36)
        return touch();
    if (dice < 44)
        return drag();
    if (dice < 74)
        return key();
    if (dice < 77)
        return text();
    return dice < 92 ? entry() : world();
}

MonkeyHand::Action MonkeyHand::touch()
{
    return {{"touch", number(0, kWidth - 1), number(0, kHeight - 1)}};
}

MonkeyHand::Action MonkeyHand::drag()
{
    Action action{{"touch", number(0, kWidth - 1), number(0, kHeight - 1), "down"}};
    for (int moves = 1 + below(4); moves > 0; --moves)
        action.append({"touch", number(0, kWidth - 1), number(0, kHeight - 1), "move"});
    // A finger may leave the screen without a word: the next touch begins anew.
    if (below(10) != 0)
        action.append({"touch", number(0, kWidth - 1), number(0, kHeight - 1), "up"});
    return action;
}

MonkeyHand::Action MonkeyHand::key()
{
    const QString name = oneOf(kKeys);
    return below(12) ? Action{{"key", name}} : Action{{"key", name, "press"}};
}

MonkeyHand::Action MonkeyHand::text()
{
    return {{"type", oneOf(kTexts)}};
}

MonkeyHand::Action MonkeyHand::entry()
{
    switch (below(10)) {
    case 0:
    case 1:
        return {{"menu", oneOf(m_menus)}};
    case 2:
        return {{"refresh", oneOf(m_menus)}};
    case 3:
        return {{"frame", below(4) ? "Directory" : "Nowhere"}};
    case 4:
        return {{"open-info", oneOf(m_names), "", oneOf(m_names)}};
    case 5:
        return {{"cache", number(-1, 8)}};
    default:
        return {{"open", oneOf(m_names)}};
    }
}

MonkeyHand::Action MonkeyHand::world()
{
    switch (below(10)) {
    case 0:
    case 1:
        return line();
    case 2:
    case 3:
        return net();
    case 4:
        return {{"ring", number(1, 9999), number(0, 3)}};
    case 5:
        return {{"set", "calls", "total=" + number(0, 2), "talk=" + number(0, 1)}};
    case 6:
        return {{"set", "upgrading", number(0, 1)}};
    case 7:
        return {{"set", "pstn", number(0, 1)}};
    case 8:
        return {{"set", "idle", number(0, 100)}};
    default:
        return {{"set", "language", oneOf(kLanguages)}};
    }
}

MonkeyHand::Action MonkeyHand::line()
{
    return {{"set", "line", number(0, 3), "state=" + number(0, 6), "user=" + number(1000, 9999), "server=pbx",
             "new=" + number(0, 9), "old=" + number(0, 9)}};
}

MonkeyHand::Action MonkeyHand::net()
{
    return {{"set", "net", "state=" + number(0, 2), "type=" + number(0, 2), "cable=" + number(0, 1),
             "conflict=" + number(0, 1)}};
}
