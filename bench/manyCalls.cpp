#include "bench/manyCalls.h"
#include "bench/sipUsers.h"
#include "support/host/phone.h"
#include "tests/kit/plain/processes.h"
#include <QFile>
#include <QJsonArray>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int kCallsAtMost = 3; // of the four that the phone takes: none fails
constexpr int kSpeedDials = 16;
constexpr int kKeys = 20;
constexpr int kLogEntries = 2000; // that are kept
constexpr int kRestMs = 63000;    // nobody waits for a caller any more, and no thread for work
constexpr int kSoftKeyWidth = 200;
constexpr int kSoftKeyY = 460;
const char* const kCall = "frmCall";
const char* const kDial = "frmDial";
const char* const kHistory = "/rundata/data/callHistory.xml";

// Speed dials on all lines, and some keys that watch extensions.
bool putKeys(const QString& root)
{
    QByteArray items;
    for (int key = 0; key < kKeys; ++key) {
        const QByteArray number = QByteArray::number(8000 + key);
        const QByteArray line = QByteArray::number(key % PHONE_ACCOUNT_COUNT);
        items += key < kSpeedDials ? "<Item Type=\"Speed Dial\"><ItemData Line=\"" + line +
                                         "\" Label=\"\" Extension=\"\" Value=\"" + number + "\"/></Item>"
                                   : "<Item Type=\"BLF\"><ItemData Line=\"0\" Label=\"\" Extension=\"" +
                                         number + "\" Value=\"" + number + "\"/></Item>";
    }
    QFile file(root + "/rundata/data/dsskey.xml");
    return file.open(QIODevice::WriteOnly) && file.write("<DssKey>" + items + "</DssKey>") > 0;
}

} // namespace

bool ManyCalls::start()
{
    askNoWeather(m_phone.root());
    if (!putKeys(m_phone.root()) || !m_phone.start())
        return false;
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line)
        ask({"set", "line", QString::number(line), "state=2", QString("user=100%1").arg(line + 1),
             "server=pbx.test"});
    fillLog();
    return true;
}

// What the phone did, it keeps until there is no room for more: the tones of one call take it all.
void ManyCalls::fillLog()
{
    ask({"ring", drawNumber()});
    key("Return");
    for (int tone = 0; tone < kLogEntries; ++tone)
        key("5");
    key("F4");
}

void ManyCalls::touch(int x, int y)
{
    ask({"touch", QString::number(x), QString::number(y)});
}

void ManyCalls::touchOrKey(int x, int y, const char* name)
{
    if (chance(50))
        touch(x, y);
    else
        key(name);
}

void ManyCalls::softKey(int index)
{
    const QByteArray name = "F" + QByteArray::number(index + 1);
    touchOrKey(index * kSoftKeyWidth + kSoftKeyWidth / 2, kSoftKeyY, name.constData());
}

void ManyCalls::goHome()
{
    if (!m_phone.goHome())
        qFatal("the phone does not come home");
}

void ManyCalls::see()
{
    const QJsonObject told = ask({"calls"});
    QList<tagSeen> now;
    m_bAnswered = false;
    for (const QJsonValue& value : told["calls"].toArray()) {
        const QJsonObject call = value.toObject();
        now.append({call["id"].toInt(), call["number"].toString(), call["incoming"].toBool(),
                    call["state"] == "talking", call["held"].toBool(), call["muted"].toBool(),
                    call["joined"].toInt()});
        const tagSeen before = seen(now.last().nId);
        m_bAnswered = m_bAnswered || (!before.bIncoming && before.nId && !before.bTalks && now.last().bTalks);
    }
    m_calls = now;
    m_ended.clear();
    for (const QJsonValue& value : told["ended"].toArray()) {
        const QJsonObject call = value.toObject();
        m_ended[call["id"].toInt()] = {call["end"].toString(), call["target"].toString()};
    }
    m_nShown = shown().nId;
}

ManyCalls::tagSeen ManyCalls::seen(int id) const
{
    for (const tagSeen& call : m_calls) {
        if (call.nId == id)
            return call;
    }
    return tagSeen();
}

// Whom the call screen shows: who asks, then the newest that is not held, then the one it has shown before.
ManyCalls::tagSeen ManyCalls::shown() const
{
    tagSeen active;
    for (const tagSeen& call : m_calls) {
        if (call.asks())
            return call;
        if (!call.bHeld)
            active = call;
    }
    if (active.nId)
        return active;
    const tagSeen before = seen(m_nShown);
    return before.nId ? before : m_calls.value(0);
}

int ManyCalls::talking() const
{
    int count = 0;
    for (const tagSeen& call : m_calls)
        count += call.bTalks;
    return count;
}

template <typename Holds>
void ManyCalls::expect(const char* act, Holds holds)
{
    ++m_acts[act];
    see();
    if (holds())
        return;
    if (m_bAnswered) {
        ++m_nUnsure;
        return;
    }
    ++m_nWrongs;
    printf("%s, call %d: it has not done that\n", act, m_nBegun);
}

void ManyCalls::expectEnd(const char* act, int id, const char* end, const QString& target)
{
    expect(act, [&] {
        return !seen(id).nId && m_ended.value(id).strHow == end && m_ended.value(id).strTarget == target;
    });
}

void ManyCalls::play(int count)
{
    const int goal = m_nBegun + count;
    see();
    while (m_nBegun < goal) {
        const tagSeen call = shown();
        const bool hasRoom = m_calls.size() < kCallsAtMost && !call.asks();
        if (m_calls.isEmpty() || (hasRoom && chance(40)))
            begin();
        else if (call.asks())
            actOnRinging(call);
        else if (call.bTalks)
            actOnTalking(call);
        else
            actOnDialled(call);
    }
}

void ManyCalls::begin()
{
    ++m_nBegun;
    if (chance(60))
        callIn();
    else
        callOut();
}

void ManyCalls::callIn()
{
    const QString number = drawNumber();
    const int before = int(m_calls.size());
    ask({"ring", number, QString::number(draw(PHONE_ACCOUNT_COUNT)), chance(50) ? "Caller " + number : ""});
    expect("call in", [&] {
        return m_calls.size() == before + 1 && m_calls.last().asks() && m_calls.last().strNumber == number;
    });
}

// By a key of its own, which also another call leaves free; else typed on the home screen.
void ManyCalls::callOut()
{
    const int before = int(m_calls.size());
    QString number = drawNumber();
    if (before > 0 || chance(60)) {
        const int place = draw(kSpeedDials);
        number = QString::number(8000 + place);
        ask({"dsskey", QString::number(place + 1)});
    } else {
        goHome();
        m_phone.type(number.left(1));
        m_phone.waitPage(kDial);
        m_phone.type(number.mid(1));
        key("Return");
    }
    m_phone.waitPage(kCall);
    expect("call out", [&] {
        return m_calls.size() == before + 1 && !m_calls.last().bIncoming &&
               m_calls.last().strNumber == number;
    });
}

// To a number, on the dial screen that has been asked for.
void ManyCalls::sendAway(const tagSeen& call, const char* act, const char* end)
{
    const QString target = drawNumber();
    m_phone.waitPage(kDial);
    m_phone.type(target);
    key("Return");
    expectEnd(act, call.nId, end, target);
}

void ManyCalls::actOnRinging(const tagSeen& call)
{
    const int chosen = draw(100);
    if (chosen < 45) {
        touchOrKey(632, 370, "Return");
        expect("answer", [&] { return seen(call.nId).bTalks && !seen(call.nId).bHeld; });
    } else if (chosen < 70) {
        touchOrKey(169, 370, "F4");
        expectEnd("decline", call.nId, "declined");
    } else if (chosen < 80) {
        touchOrKey(400, 370, "F2");
        sendAway(call, "forward", "forwarded");
    } else {
        ask({"other-side", QString::number(call.nId), "hangup"});
        expectEnd("missed", call.nId, "missed");
    }
}

void ManyCalls::hangUp(const tagSeen& call, const char* act)
{
    softKey(3);
    expectEnd(act, call.nId, "hung up");
}

void ManyCalls::waitForAnswer(const tagSeen& call)
{
    kit::waits(
        [&] {
            see();
            return seen(call.nId).bTalks;
        },
        SteeredPhone::WAIT_MS);
    expect("answered by the other side", [&] { return seen(call.nId).bTalks; });
}

// Now and then nobody does anything, and another call begins meanwhile.
void ManyCalls::actOnDialled(const tagSeen& call)
{
    const int chosen = draw(100);
    if (chosen < 8)
        waitForAnswer(call);
    else if (chosen < 60 || m_calls.size() == kCallsAtMost)
        hangUp(call, "hang up before the answer");
}

ManyCalls::tagSeen ManyCalls::beside(const tagSeen& call) const
{
    for (const tagSeen& other : m_calls) {
        if (other.bTalks && other.nId != call.nId && other.nId != call.nJoined)
            return other;
    }
    return tagSeen();
}

bool ManyCalls::canJoin(const tagSeen& call) const
{
    return !call.nJoined && beside(call).nId && !beside(call).nJoined;
}

// The last of the row, which is seven wide with the conference.
void ManyCalls::swap(const tagSeen& call)
{
    touch(call.nJoined || canJoin(call) ? 730 : 675, 400);
    expect("swap", [&] {
        const auto hasTaken = [](const tagSeen& other) { return other.bTalks && !other.bHeld; };
        return seen(call.nId).bHeld && std::any_of(m_calls.begin(), m_calls.end(), hasTaken);
    });
}

void ManyCalls::join(const tagSeen& call)
{
    touch(beside(call).nId ? 620 : 675, 400);
    if (call.nJoined) {
        expect("split", [&] {
            return !seen(call.nId).nJoined && seen(call.nId).bHeld == call.bHeld && seen(call.nJoined).bHeld;
        });
        return;
    }
    expect("join", [&] {
        const tagSeen now = seen(call.nId);
        return now.nJoined && seen(now.nJoined).nJoined == call.nId && !now.bHeld && !seen(now.nJoined).bHeld;
    });
}

// The first row of the dial screen is the first other call.
void ManyCalls::connectBoth(const tagSeen& call)
{
    softKey(2);
    m_phone.waitPage(kDial);
    key("Down");
    key("Return");
    expect("connect", [&] {
        const tagEnd end = m_ended.value(call.nId);
        return !seen(call.nId).nId && end.strHow == "transferred";
    });
}

void ManyCalls::actOnTalking(const tagSeen& call)
{
    const QString id = QString::number(call.nId);
    const int chosen = draw(100);
    if (chosen < 20) {
        softKey(1);
        expect("hold or resume", [&] { return seen(call.nId).bHeld != call.bHeld; });
    } else if (chosen < 30) {
        softKey(0);
        expect("mute or unmute", [&] { return seen(call.nId).bMuted != call.bMuted; });
    } else if (chosen < 40) {
        m_phone.type(drawNumber());
        expect("tones", [&] { return seen(call.nId).bTalks; });
    } else if (chosen < 50) {
        softKey(2);
        sendAway(call, "transfer", "transferred");
    } else if (chosen < 54 && talking() > 1) {
        connectBoth(call);
    } else if (chosen < 62 && (call.nJoined || canJoin(call))) {
        join(call);
    } else if (chosen < 70 && beside(call).nId && !call.bHeld) {
        swap(call);
    } else if (chosen < 80) {
        ask({"other-side", id, "hangup"});
        expectEnd("hung up by the other side", call.nId, "hung up");
    } else {
        hangUp(call, "hang up");
    }
}

tagHeld ManyCalls::look()
{
    for (see(); !m_calls.isEmpty(); see())
        ask({"other-side", QString::number(m_calls.first().nId), "hangup"});
    goHome();
    m_phone.rest(kRestMs);
    const tagHeld held = heldBy(m_phone.pid(), ask({"memory"})["heap"].toDouble() / 1024);
    printHeld(m_nBegun, "hxPhone", held);
    return held;
}

int ManyCalls::files() const
{
    return filesBelow(m_phone.root(), kHistory);
}

void ManyCalls::printActs() const
{
    for (auto act = m_acts.begin(); act != m_acts.end(); ++act)
        printf("%5d %s\n", act.value(), qPrintable(act.key()));
    printf("%5d acts that an answer may have got in between\n", m_nUnsure);
}
