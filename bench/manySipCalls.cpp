#include "bench/manySipCalls.h"
#include "bench/sipUsers.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include <QElapsedTimer>
#include <QJsonArray>
#include <QThread>
#include <cstdio>

namespace {

constexpr int kSeconds = 30; // that a registration and a subscription last
constexpr int kWaitMs = 15000;
constexpr int kRestMs = 75000; // nobody waits for a caller any more, and the stack for no repetition
constexpr int kLookMs = 2;
constexpr int kHoldMs = 60;
constexpr int kCallsOfARun = 450;
constexpr int kOutOfARun = 50;
constexpr int kMostComplaints = 20;
const char* const kDial = "frmDial";
const char* const kTarget = "555";

// What becomes of a hundred calls.
struct tagShare
{
    const char* what;
    int percent;
};
constexpr tagShare kShares[] = {{"talk", 30},    {"left", 16},    {"hold", 12},  {"held", 8},
                                {"decline", 12}, {"forward", 10}, {"cancel", 12}};

// Who does the next thing when the call rings, or talks.
QByteArray actorOf(const QByteArray& act)
{
    if (act == "decline" || act == "forward")
        return "refused";
    return act == "left" || act == "hold" ? "phone" : "caller";
}

} // namespace

ManySipCalls::ManySipCalls(unsigned seed)
    : m_random(seed), m_nCallers(kit::freePort()), m_nCalled(kit::freePort()), m_exchange(kSeconds, m_nCalled)
{
}

bool ManySipCalls::start()
{
    putSipAccount(m_phone.root(), 0, {"1001", m_exchange.port()});
    askNoWeather(m_phone.root());
    if (!m_phone.start({"--sip"}) || !m_exchange.waitForPhones(1, kWaitMs))
        return false;
    m_called.start("sipCalled.xml", m_nCalled, m_exchange.port(), 0, peerWords());
    return true;
}

// No number comes twice: an end is that of its own call.
QByteArray ManySipCalls::nextNumber(char first)
{
    return first + QByteArray::number(100000 + ++m_nNumbers);
}

QStringList ManySipCalls::peerWords() const
{
    return {"-key", "contact", m_exchange.contactOf("1001"),
            "-key", "sound",   QString::number(m_sound.port())};
}

ManySipCalls::tagAct ManySipCalls::drawAct()
{
    int left = draw(100);
    const tagShare* share = kShares;
    while ((left -= share->percent) >= 0)
        ++share;
    return {nextNumber('2'), share->what};
}

void ManySipCalls::complain(const char* what)
{
    if (++m_nWrongs <= kMostComplaints)
        printf("call %d: %s\n", m_nBegun, what);
}

void ManySipCalls::note(const QByteArray& what, const QByteArray& number, bool isRight)
{
    ++m_acts[what];
    if (!isRight)
        complain((what + " of " + number + " has not done that").constData());
}

QJsonObject ManySipCalls::waitForCall(const QByteArray& number, const char* state)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kWaitMs) {
        const QJsonArray calls = ask({"calls"})["calls"].toArray();
        for (const QJsonValue& value : calls) {
            const QJsonObject call = value.toObject();
            if (call["number"].toString().toUtf8() == number && call["state"] == QLatin1String(state))
                return call;
        }
        QThread::msleep(kLookMs);
    }
    return {};
}

// It talks as soon as somebody has answered; from here on it does so for the other side, too.
bool ManySipCalls::waitForSound(const QByteArray& number)
{
    return kit::waits([&] { return !waitForCall(number, "talking")["sound"].toString().isEmpty(); }, kWaitMs);
}

bool ManySipCalls::waitForEnd(const QByteArray& number, const QString& end)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kWaitMs) {
        for (const QJsonValue& value : ask({"calls"})["ended"].toArray()) {
            const QJsonObject call = value.toObject();
            if (call["number"].toString().toUtf8() == number)
                return call["end"] == end;
        }
        QThread::msleep(kLookMs);
    }
    return false;
}

void ManySipCalls::play(int count)
{
    const int goal = m_nBegun + count;
    while (m_nBegun < goal) {
        callIn(qMin(int(kCallsOfARun), goal - m_nBegun));
        for (int i = 0; i < kOutOfARun && m_nBegun < goal; ++i)
            callOut();
        printf("%d calls\n", m_nBegun);
        fflush(stdout);
    }
}

void ManySipCalls::callIn(int count)
{
    QList<tagAct> acts;
    QList<QByteArray> lines;
    for (int i = 0; i < count; ++i) {
        acts.append(drawAct());
        lines.append(acts.last().number + ';' + acts.last().what + ";0;" + actorOf(acts.last().what) + ';');
    }
    SippCallers callers;
    callers.start("sipCallers.xml", m_nCallers, m_exchange.port(), count,
                  peerWords() + callers.list(lines) + QStringList{"-l", "1", "-r", "1000"});
    for (const tagAct& act : acts) {
        ++m_nBegun;
        actOn(act);
    }
    m_nFailedRuns += !callers.waitForDone(kWaitMs);
}

void ManySipCalls::actOn(const tagAct& act)
{
    if (act.what == "cancel") { // which may be sooner than anybody looks
        note(act.what, act.number, waitForEnd(act.number, "missed"));
        return;
    }
    if (waitForCall(act.number, "ringing").isEmpty()) {
        complain((act.what + ": the call of " + act.number + " is lost").constData());
        return;
    }
    QString end = "hung up";
    if (act.what == "decline") {
        key("F4");
        end = "declined";
    } else if (act.what == "forward") {
        key("F2");
        m_phone.waitPage(kDial);
        m_phone.type(kTarget);
        key("Return");
        end = "forwarded";
    } else {
        key("Return");
    }
    // What the caller does next may be sooner than anybody looks.
    if (actorOf(act.what) == "phone")
        note("answered", act.number, waitForSound(act.number));
    if (act.what == "left") {
        key("F4");
    } else if (act.what == "hold") {
        QThread::msleep(kHoldMs);
        key("F2");
        note("hold by the phone", act.number, waitForCall(act.number, "talking")["held"].toBool());
        QThread::msleep(kHoldMs);
        key("F2");
    }
    note(act.what, act.number, waitForEnd(act.number, end));
}

void ManySipCalls::callOut()
{
    ++m_nBegun;
    const char first = "789"[draw(3)];
    const QByteArray number = nextNumber(first);
    if (!m_phone.goHome()) {
        complain("the phone does not come home");
        return;
    }
    m_phone.type(number.left(1));
    m_phone.waitPage(kDial);
    m_phone.type(number.mid(1));
    key("Return");
    if (first == '8') {
        note("out, busy", number, waitForEnd(number, "failed"));
        return;
    }
    if (first == '7') {
        note("out, answered", number, waitForSound(number));
        key("F4");
    }
    note(first == '7' ? "out, hung up here" : "out, hung up there", number, waitForEnd(number, "hung up"));
}

int ManySipCalls::refuseOthers(int perSecond, int seconds)
{
    SippCallers talkers, others;
    const QByteArray first = nextNumber('2'), second = nextNumber('2');
    const QByteArray ms = ';' + QByteArray::number((seconds + 5) * 1000) + ';';
    talkers.start("sipCallers.xml", m_nCallers, m_exchange.port(), 2,
                  peerWords() +
                      talkers.list({first + ";wait" + ms + "phone;", second + ";stay" + ms + "caller;"}) +
                      QStringList{"-l", "2", "-r", "2"});
    for (const QByteArray& number : {first, second}) {
        ++m_nBegun;
        waitForCall(number, "ringing");
        key("Return");
        note("two talk", number, waitForSound(number));
    }
    const int count = perSecond * seconds;
    others.start("sipBusyCallers.xml", kit::freePort(), m_exchange.port(), count,
                 peerWords() + QStringList{"-r", QString::number(perSecond)});
    m_nFailedRuns += !others.waitForDone((seconds + 60) * 1000);
    const QJsonObject told = ask({"calls"});
    note("two talk on", second, told["calls"].toArray().size() == 2);
    const QString last = told["ended"].toArray().first().toObject()["number"].toString();
    note("the phone is not asked about others", last.toUtf8(), !last.startsWith('3'));
    m_nFailedRuns += !talkers.waitForDone((seconds + 60) * 1000);
    const auto isOver = [&] { return ask({"calls"})["calls"].toArray().isEmpty(); };
    note("two have ended", first, kit::waits(isOver, kWaitMs));
    return count;
}

void ManySipCalls::rest()
{
    m_phone.goHome();
    m_phone.rest(kRestMs);
    for (int process = 0; process < PROCESSES; ++process)
        printHeld(m_nBegun, nameOf(PROCESS(process)), held(PROCESS(process)));
}

const char* ManySipCalls::nameOf(PROCESS process)
{
    static const char* const names[] = {"hxPhone", "hxSip", "hxMedia"};
    return names[process];
}

tagHeld ManySipCalls::held(PROCESS process) const
{
    const qint64 pid = process == PHONE ? m_phone.pid() : kit::childOf(m_phone.pid(), nameOf(process));
    if (pid == 0)
        qFatal("%s does not run", nameOf(process));
    return heldBy(pid, m_heaps.usedKiB(pid));
}

void ManySipCalls::printActs() const
{
    for (auto act = m_acts.begin(); act != m_acts.end(); ++act)
        printf("%5d %s\n", act.value(), act.key().constData());
    printf("%5d registrations and subscriptions\n", renewals());
}
