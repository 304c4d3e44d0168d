#include "host/services/phone/callRules.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/doNotDisturb.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include <QTimer>
#include <algorithm>

namespace {

constexpr int kMsInSecond = 1000;

bool isRingingIn(const tagCall& call)
{
    return call.nId && call.bIncoming && call.eState == CALL_RINGING;
}

tagCall shown(tagCall call)
{
    call.strName = callTextOf(call.strName);
    call.strNumber = callTextOf(call.strNumber);
    return call;
}

} // namespace

callRules::callRules(phoneBackend& backend, phoneNews& news) : m_backend(backend), m_news(news) {}

QList<tagCall> callRules::calls() const
{
    QList<tagCall> calls = m_backend.calls();
    for (tagCall& call : calls)
        call = shown(call);
    return calls;
}

tagCall callRules::find(int id) const
{
    for (const tagCall& call : m_backend.calls()) {
        if (call.nId == id)
            return call;
    }
    return tagCall();
}

bool callRules::rings(int id) const
{
    return isRingingIn(find(id));
}

void callRules::callArrived(const tagCall& call)
{
    const int id = call.nId;
    if (call.bAnonymous && m_settings.line(call.nAccount).bRejectAnonymous) {
        m_backend.refuse(id, CALL_REJECTED);
        return;
    }
    if (doNotDisturb::refuses(call.nAccount)) {
        m_backend.refuse(id, CALL_DISTURBED);
        return;
    }
    const bool taken = isTaken(call);
    QString target = targetFor(call, callSettings::forward(FORWARD_ALWAYS));
    if (target.isEmpty() && taken)
        target = targetFor(call, callSettings::forward(FORWARD_BUSY));
    else if (target.isEmpty() && call.bUnfit)
        target = targetFor(call, callSettings::forward(FORWARD_NO_ANSWER));
    if (!target.isEmpty())
        m_backend.deflect(id, target);
    else if (taken)
        m_backend.refuse(id, CALL_BUSY);
    else if (call.bUnfit)
        m_backend.refuse(id, CALL_UNFIT);
    else
        startRinging(call);
}

// There is no room for one more call.
bool callRules::isTaken(const tagCall& call)
{
    int others = 0;
    bool onPstn = false;
    for (const tagCall& other : m_backend.calls()) {
        if (other.nId == call.nId)
            continue;
        if (isRefusedBy(other))
            return true;
        ++others;
        onPstn = onPstn || other.nAccount == PHONE_LINE_PSTN;
    }
    if (others == 0)
        return false;
    // An analogue line carries one call.
    const bool lineTaken = onPstn && call.nAccount == PHONE_LINE_PSTN;
    return lineTaken || others >= CALLS_MAX || !m_settings.isWaiting(call.nAccount);
}

// One that is with a door phone which wants nobody else to come in between.
bool callRules::isRefusedBy(const tagCall& other)
{
    return !isRingingIn(other) && deviceOf(other).bRefusesOthers;
}

// By its number, as it is set or as the dial plan has it.
tagCallDevice callRules::deviceOf(const tagCall& call)
{
    for (const tagCallDevice& device : callDevices()) {
        const QString number = callNumberOf(device.strNumber);
        if (!number.isEmpty() && (callIsSameNumber(number, call.strNumber) ||
                                  callIsSameNumber(m_settings.plan().rewrite(number), call.strNumber)))
            return device;
    }
    return tagCallDevice();
}

tagCallOptions callRules::optionsOf(const tagCall& call)
{
    tagCallOptions options = m_settings.line(call.nAccount).options;
    const tagCallDevice device = deviceOf(call);
    options.bCamera = options.bCamera && !device.bNoVideo;
    options.bMicrophone = !device.bNoAudio;
    return options;
}

tagCallOptions callRules::optionsFor(const QString& number, int account)
{
    tagCall call;
    call.strNumber = number;
    call.nAccount = account;
    tagCallOptions options = optionsOf(call);
    options.bByHand = true;
    return options;
}

// Empty when the call is not forwarded: nobody is there to do it for an analogue line, and what would come
// back is not sent.
QString callRules::targetFor(const tagCall& call, const tagForward& forward) const
{
    const QString target = callNumberOf(forward.strTarget);
    const bool mayLeave = call.nAccount != PHONE_LINE_PSTN && call.forwardedBy.size() < FORWARDS_MAX;
    return mayLeave && !comesFrom(call, target) ? target : QString();
}

bool callRules::comesFrom(const tagCall& call, const QString& number) const
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        const tagAccountInfo info = m_backend.account(index);
        const QString user = QString::fromUtf8(info.szUser);
        if (!user.isEmpty() && callIsSameNumber(user + '@' + QString::fromUtf8(info.szServer), number))
            return true;
    }
    const auto isSame = [&](const QString& other) { return callIsSameNumber(other, number); };
    return isSame(call.strNumber) || std::any_of(call.forwardedBy.begin(), call.forwardedBy.end(), isSame);
}

// Of two that are up at once the answer comes first.
void callRules::startRinging(const tagCall& call)
{
    std::optional<int> answerAfter = callSettings::autoAnswer(call.nAccount);
    const bool isAsked = call.bAsksAnswer && callSettings::answersWhoAsks(call.nAccount);
    if (isAsked)
        answerAfter = 0;
    const tagForward forward = callSettings::forward(FORWARD_NO_ANSWER);
    const QString target = targetFor(call, forward);
    if (!m_backend.ring(call.nId))
        return;
    // Who is at the door is seen before he is let in.
    tagCallOptions options = optionsOf(call);
    options.bCamera = options.bCamera && !isAsked;
    if (!deviceOf(call).strNumber.isEmpty() && options.bVideo)
        m_backend.preview(call.nId, options);
    if (answerAfter)
        after(*answerAfter, call.nId, isAsked ? &callRules::answerAsAsked : &callRules::answerByItself);
    if (target.isEmpty())
        return;
    QTimer::singleShot(forward.nSeconds * kMsInSecond, Qt::PreciseTimer, this, [this, id = call.nId, target] {
        if (rings(id))
            m_backend.deflect(id, target);
    });
}

void callRules::after(int seconds, int id, void (callRules::*then)(int id))
{
    QTimer::singleShot(seconds * kMsInSecond, Qt::PreciseTimer, this,
                       [this, then, id] { (this->*then)(id); });
}

// Nobody who talks, or waits for somebody to answer, is interrupted.
bool callRules::isQuietBut(int id) const
{
    const QList<tagCall> calls = m_backend.calls();
    return std::all_of(calls.begin(), calls.end(),
                       [id](const tagCall& call) { return call.nId == id || isRingingIn(call); });
}

void callRules::answerByItself(int id)
{
    if (isQuietBut(id))
        answer(id);
}

// A caller's words let him be heard; they open no camera.
void callRules::answerAsAsked(int id)
{
    tagCallOptions options = optionsOf(find(id));
    options.bCamera = false;
    if (isQuietBut(id))
        answerWith(id, options);
}

bool callRules::answer(int id)
{
    return answerWith(id, optionsOf(find(id)));
}

bool callRules::answerWith(int id, const tagCallOptions& options)
{
    const tagCall call = find(id);
    if (!isRingingIn(call))
        return false;
    m_heldFor[id] = holdOthers(id);
    if (!m_backend.answer(id, options)) {
        takeBackHeldFor(id);
        return false;
    }
    endOwnCallTo(call);
    return true;
}

// Two who call each other at once need one call.
void callRules::endOwnCallTo(const tagCall& caller)
{
    for (const tagCall& other : m_backend.calls()) {
        if (other.eState == CALL_RINGING && callIsMutual(other, caller))
            m_backend.hangUp(other.nId);
    }
}

bool callRules::decline(int id)
{
    return rings(id) && m_backend.refuse(id, CALL_DECLINED);
}

bool callRules::hangUp(int id)
{
    return rings(id) ? decline(id) : m_backend.hangUp(id);
}

bool callRules::forward(int id, const QString& number)
{
    const QString target = callNumberOf(m_settings.plan().rewrite(callNumberOf(number)));
    return rings(id) && !target.isEmpty() && m_backend.deflect(id, target);
}

bool callRules::setHeld(int id, bool held)
{
    const tagCall call = find(id);
    if (call.eState != CALL_TALKING)
        return false;
    if (!held)
        holdOthers(id);
    // It is the user who holds it from here on.
    for (QList<int>& others : m_heldFor)
        others.removeIf([&](int each) { return each == id || each == call.nJoined; });
    const bool done = m_backend.setHeld(id, held);
    if (call.nJoined && find(call.nJoined).bHeld != held)
        m_backend.setHeld(call.nJoined, held);
    return done;
}

// Of calls that talk together neither is held for the other.
QList<int> callRules::holdOthers(int id)
{
    QList<int> held;
    for (const tagCall& call : m_backend.calls()) {
        const bool isWith = call.nId == id || (call.nJoined && call.nJoined == id);
        if (!isWith && call.eState == CALL_TALKING && !call.bHeld)
            held.append(call.nId);
    }
    for (const int each : held)
        m_backend.setHeld(each, true);
    return held;
}

// Nobody is taken back into what the user does by now.
void callRules::takeBackHeldFor(int id)
{
    const QList<int> held = m_heldFor.take(id);
    const QList<tagCall> calls = m_backend.calls();
    const bool isQuiet = std::all_of(calls.begin(), calls.end(),
                                     [](const tagCall& call) { return call.bHeld || isRingingIn(call); });
    for (const int each : held) {
        if (isQuiet && find(each).bHeld)
            m_backend.setHeld(each, false);
    }
}

bool callRules::resume(int id)
{
    return !find(id).bHeld || m_backend.setHeld(id, false);
}

// The call, and the one that it is joined with; none when it does not talk.
QList<int> callRules::talkingWith(int id) const
{
    const tagCall call = find(id);
    if (call.eState != CALL_TALKING)
        return {};
    return call.nJoined ? QList<int>{id, call.nJoined} : QList<int>{id};
}

bool callRules::setMuted(int id, bool muted)
{
    bool done = false;
    for (const int each : talkingWith(id))
        done = m_backend.setMuted(each, muted) || done;
    return done;
}

bool callRules::setCamera(int id, bool on)
{
    bool done = false;
    for (const int each : talkingWith(id))
        done = m_backend.setCamera(each, on) || done;
    return done;
}

bool callRules::connect(int id, int other)
{
    return id != other && talks(id) && talks(other) && m_backend.connect(id, other);
}

bool callRules::join(int id, int other)
{
    const bool canJoin =
        id != other && talks(id) && talks(other) && !find(id).nJoined && !find(other).nJoined;
    if (!canJoin || !m_backend.join(id, other))
        return false;
    holdOthers(id);
    if (!resume(id) || !resume(other)) {
        split(id);
        return false;
    }
    const bool muted = find(id).bMuted;
    if (find(other).bMuted != muted)
        m_backend.setMuted(other, muted);
    return true;
}

// The other one is held before the two are apart: who would be told of first would hold the other one.
bool callRules::split(int id)
{
    const tagCall call = find(id);
    if (!call.nJoined)
        return false;
    if (!call.bHeld && !find(call.nJoined).bHeld)
        m_backend.setHeld(call.nJoined, true);
    return m_backend.split(id);
}

bool callRules::transfer(int id, const QString& number)
{
    const QString target = callNumberOf(m_settings.plan().rewrite(callNumberOf(number)));
    return find(id).eState == CALL_TALKING && !target.isEmpty() && m_backend.transfer(id, target);
}

bool callRules::isTones(const QString& tones)
{
    const auto isTone = [](QChar tone) { return QStringLiteral("0123456789*#ABCD").contains(tone); };
    return !tones.isEmpty() && std::all_of(tones.begin(), tones.end(), isTone);
}

bool callRules::sendTones(int id, const QString& tones)
{
    const QList<int> calls = talkingWith(id);
    const auto send = [&](QChar tone) {
        return std::all_of(calls.begin(), calls.end(),
                           [&](int each) { return m_backend.sendTone(each, tone, false); });
    };
    return !calls.isEmpty() && isTones(tones) && std::all_of(tones.begin(), tones.end(), send);
}

bool callRules::openDoor(int id)
{
    const tagCall call = find(id);
    const QString pin = deviceOf(call).strUnlockPin;
    return call.eState == CALL_TALKING && isTones(pin) &&
           std::all_of(pin.begin(), pin.end(),
                       [&](QChar tone) { return m_backend.sendTone(id, tone, true); });
}

int callRules::fail(const QString& number, int account, const char* reason)
{
    tagCall call;
    call.nId = callNewId();
    call.strNumber = number;
    call.nAccount = account;
    call.nStartTime = netGetLocalTime();
    call.eState = CALL_ENDED;
    call.eEnd = CALL_FAILED;
    call.strReason = reason;
    m_news.callChanged(shown(call));
    return 0;
}

// The one that the settings make of the one that was asked for.
int callRules::lineFor(int account) const
{
    const int line = account == -1 ? m_backend.defaultAccount() : account;
    const bool wantsPstn = line == -1 || m_settings.line(line).eMode == CALL_MODE_PSTN;
    return wantsPstn && m_backend.hasPstn() ? int(PHONE_LINE_PSTN) : line;
}

int callRules::dial(const QString& number, int account)
{
    if (number.trimmed().isEmpty())
        return 0;
    const QString dialled = callNumberOf(m_settings.plan().rewrite(callNumberOf(number)));
    const int line = lineFor(account);
    if (dialled.isEmpty())
        return fail(number, line, HX_TR("This cannot be dialled"));
    const QList<tagCall> calls = m_backend.calls();
    const bool lineTaken = line == PHONE_LINE_PSTN &&
                           std::any_of(calls.begin(), calls.end(),
                                       [](const tagCall& call) { return call.nAccount == PHONE_LINE_PSTN; });
    if (lineTaken || calls.size() >= CALLS_MAX)
        return fail(dialled, line, HX_TR("No line is free"));
    holdOthers(0);
    return m_backend.dial(dialled, line, optionsFor(dialled, line));
}

void callRules::callChanged(const tagCall& call)
{
    if (call.eState == CALL_TALKING && !call.bHeld)
        holdOthers(call.nId);
    const bool hasSound = !call.streams.strSound.isEmpty();
    const bool hasFailed = call.eEnd == CALL_FAILED || call.eEnd == CALL_MISSED;
    if (hasSound || (call.eState == CALL_ENDED && !hasFailed))
        m_heldFor.remove(call.nId);
    m_news.callChanged(shown(call));
    if (call.eState == CALL_ENDED)
        takeBackHeldFor(call.nId);
    if (call.nId == m_nCodeCall && call.eState == CALL_TALKING)
        QTimer::singleShot(CODE_TALK_MS, Qt::PreciseTimer, this,
                           [this, id = call.nId] { m_backend.hangUp(id); });
    if (call.eState == CALL_ENDED && !m_codes.isEmpty())
        QTimer::singleShot(0, this, &callRules::dialCodes);
}

int callRules::TryThreadMessage(msgObject& msg)
{
    if (msg.message != CONFIG_MSG_BCAST_CHANGED)
        return 0;
    if (msg.wParam == CONFIG_CHANGED_ACCOUNT && msg.lParam < PHONE_ACCOUNT_COUNT)
        lineChanged(int(msg.lParam));
    else
        m_settings.readAgain(msg.wParam);
    return 0;
}

// The exchange is told as well, by the codes that are set.
void callRules::lineChanged(int line)
{
    const tagLineCalls before = m_settings.readLineAgain(line);
    const tagLineCalls& now = m_settings.line(line);
    if (now.bAnonymous != before.bAnonymous)
        putCode({line, false, now.bAnonymous ? now.strAnonymousOn : now.strAnonymousOff});
    if (now.bRejectAnonymous != before.bRejectAnonymous)
        putCode({line, true, now.bRejectAnonymous ? now.strRejectOn : now.strRejectOff});
    dialCodes();
}

// In the place of one that still waits for the same.
void callRules::putCode(const tagCode& code)
{
    m_codes.removeIf(
        [&](const tagCode& old) { return old.nLine == code.nLine && old.bReject == code.bReject; });
    if (!code.strNumber.trimmed().isEmpty())
        m_codes.append(code);
}

// As they are set: the dial plan is for what people dial.
void callRules::dialCodes()
{
    while (!m_codes.isEmpty() && m_backend.calls().isEmpty()) {
        const tagCode code = m_codes.takeFirst();
        const QString number = callNumberOf(code.strNumber);
        if (number.isEmpty())
            fail(code.strNumber, code.nLine, HX_TR("This cannot be dialled"));
        else
            m_nCodeCall = m_backend.dial(number, code.nLine, tagCallOptions());
    }
}
