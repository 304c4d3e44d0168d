#include "tests/services/callModel.h"
#include <QRegularExpression>
#include <algorithm>

namespace kit {

QString modelNumber(const QString& typed)
{
    static const QRegularExpression plain("^[-0-9+*#. ()]*$");
    static const QRegularExpression address("^[\\w+*#.\\-~!()&=,;:@%?\\[\\]$]{1,128}$");
    QString number = typed.trimmed();
    if (plain.match(number).hasMatch())
        number.remove(QRegularExpression("[- ()]"));
    return address.match(number).hasMatch() ? number : QString();
}

bool modelSame(const QString& one, const QString& other)
{
    static const QRegularExpression parts("^(?:sips?:)?([^@;]+)(?:@([^:;]*))?",
                                          QRegularExpression::CaseInsensitiveOption);
    const auto a = parts.match(one);
    const auto b = parts.match(other);
    if (!a.hasMatch() || !b.hasMatch() || a.captured(1) != b.captured(1))
        return false;
    return a.captured(2).isEmpty() || b.captured(2).isEmpty() || a.captured(2) == b.captured(2);
}

void CallModel::tellLine(int line)
{
    const tagLine before = m_told[line];
    const tagLine& now = m_told[line] = set.lines[line];
    const auto put = [&](bool reject, const QString& code) {
        m_codes.removeIf([&](const tagCode& old) { return old.nLine == line && old.bReject == reject; });
        if (!code.isEmpty())
            m_codes.append({line, reject, code});
    };
    if (before.bAnonymous != now.bAnonymous)
        put(false, now.bAnonymous ? now.strOnCode : now.strOffCode);
    if (before.bReject != now.bReject)
        put(true, now.bReject ? now.strRejectOn : now.strRejectOff);
    codes();
}

void CallModel::tellWaiting()
{
    m_bToldWaiting = set.bWaiting;
    m_bToldWaitingPstn = set.bWaitingPstn;
}

void CallModel::tellPlan()
{
    m_toldPlan = set.plan;
}

CallModel::tagCall* CallModel::find(int id)
{
    const auto found =
        std::find_if(calls.begin(), calls.end(), [id](const tagCall& call) { return call.nId == id; });
    return found == calls.end() ? nullptr : &*found;
}

CallModel::tagCall* CallModel::ringing(int id)
{
    tagCall* call = find(id);
    return call && call->bIncoming && !call->bTalks ? call : nullptr;
}

CallModel::tagCall* CallModel::talking(int id)
{
    tagCall* call = find(id);
    return call && call->bTalks ? call : nullptr;
}

void CallModel::holdAllBut(int id)
{
    for (tagCall& call : calls) {
        if (call.nId == id || !call.bTalks || call.bHeld || (call.nJoined != 0 && call.nJoined == id))
            continue;
        call.bHeld = true;
        order("hold", call.nId);
    }
}

void CallModel::talk(tagCall& call)
{
    call.bTalks = true;
    if (call.nId == m_nCodeCall)
        m_due.append({m_nNow + 2000, CODE_IS_HEARD, call.nId, QString()});
}

void CallModel::end(int id)
{
    calls.removeIf([id](const tagCall& call) { return call.nId == id; });
    for (tagCall& call : calls)
        call.nJoined = call.nJoined == id ? 0 : call.nJoined;
    m_due.removeIf([id](const tagDue& late) { return late.nCall == id; });
}

bool CallModel::isBusyFor(const tagCall& call) const
{
    if (calls.isEmpty())
        return false;
    const bool pstnTaken =
        std::any_of(calls.begin(), calls.end(), [](const tagCall& other) { return other.nLine == PSTN; });
    if (call.nLine == PSTN)
        return pstnTaken || calls.size() >= 4 || !m_bToldWaiting || !m_bToldWaitingPstn;
    return calls.size() >= 4 || !m_bToldWaiting;
}

QString CallModel::target(const tagForward& forward, const tagCall& call) const
{
    const QString number = forward.bOn ? modelNumber(forward.strTarget) : QString();
    if (number.isEmpty() || call.nLine == PSTN || call.by.size() >= 5 || modelSame(number, call.strNumber))
        return QString();
    for (const QString& one : call.by) {
        if (modelSame(number, one))
            return QString();
    }
    for (const tagLine& line : set.lines) {
        if (!line.strOwn.isEmpty() && modelSame(number, line.strOwn))
            return QString();
    }
    return number;
}

void CallModel::arrive(const QString& number, int line, bool anonymous, const QStringList& by)
{
    tagCall call;
    call.nId = m_nNextId++;
    call.strNumber = number;
    call.nLine = line;
    call.bIncoming = true;
    call.by = by;
    const bool isBusy = isBusyFor(call);
    const QString always = target(set.always, call);
    const QString busy = isBusy ? target(set.busy, call) : QString();
    if (anonymous && line < LINES && m_told[line].bReject)
        order("refuse 6", call.nId);
    else if (set.bDisturb && (line != PSTN || set.bDisturbPstn))
        order("refuse 5", call.nId);
    else if (!always.isEmpty())
        order("deflect " + always, call.nId);
    else if (!busy.isEmpty())
        order("deflect " + busy, call.nId);
    else if (isBusy)
        order("refuse 4", call.nId);
    else {
        order("ring", call.nId);
        calls.append(call);
        if (line < LINES && set.lines[line].bAnswers)
            m_due.append({m_nNow + 1000 * set.lines[line].nAnswerAfter, ANSWERS, call.nId, QString()});
        const QString late = target(set.noAnswer, call);
        const int seconds = set.noAnswer.nSeconds;
        if (!late.isEmpty())
            m_due.append(
                {m_nNow + 1000 * (seconds < 1 || seconds > 100 ? 20 : seconds), FORWARDS, call.nId, late});
    }
}

QString CallModel::planned(const QString& number) const
{
    const QString typed = modelNumber(number);
    if (typed.contains('@') || typed.contains(':'))
        return typed;
    QPair<QString, QString> best;
    for (const auto& rule : m_toldPlan) {
        if (typed.startsWith(rule.first) && rule.first.size() > best.first.size())
            best = rule;
    }
    return modelNumber(best.second + typed.mid(best.first.size()));
}

bool CallModel::place(const QString& number, int line)
{
    m_orders.append(QString("dial %1 on %2").arg(number).arg(line));
    tagCall call;
    call.nId = m_nNextId++;
    call.strNumber = number;
    call.nLine = line;
    calls.append(call);
    return true;
}

void CallModel::dial(const QString& number, int account)
{
    if (number.trimmed().isEmpty())
        return;
    int line = account == -1 ? nDefault : account;
    const bool analogue = line == -1 || (line >= 0 && line < LINES && m_told[line].nMode == 2);
    if (analogue && hasPstn)
        line = PSTN;
    const QString dialled = planned(number);
    const bool taken = line == PSTN && std::any_of(calls.begin(), calls.end(),
                                                   [](const tagCall& call) { return call.nLine == PSTN; });
    if (dialled.isEmpty()) {
        fail("This cannot be dialled");
    } else if (taken || calls.size() >= 4) {
        fail("No line is free");
    } else {
        holdAllBut(0);
        place(dialled, line);
    }
}

void CallModel::answer(int id)
{
    tagCall* call = ringing(id);
    if (!call)
        return;
    holdAllBut(id);
    order("answer", id);
    const tagCall answered = *call;
    talk(*call);
    // Who is called by the one he calls needs one call.
    const QList<tagCall> others = calls;
    for (const tagCall& other : others) {
        if (!other.bIncoming && !other.bTalks && other.nLine == answered.nLine &&
            other.strNumber == answered.strNumber)
            hangUp(other.nId);
    }
}

void CallModel::decline(int id)
{
    if (!ringing(id))
        return;
    order("refuse 3", id);
    end(id);
}

void CallModel::forward(int id, const QString& number)
{
    const QString target = planned(number);
    if (!ringing(id) || target.isEmpty())
        return;
    order("deflect " + target, id);
    end(id);
}

void CallModel::hangUp(int id)
{
    if (ringing(id))
        return decline(id);
    if (!find(id))
        return;
    order("hang up", id);
    end(id);
}

void CallModel::hold(int id, bool held)
{
    tagCall* call = talking(id);
    if (!call)
        return;
    if (!held)
        holdAllBut(id);
    order(held ? "hold" : "resume", id);
    call->bHeld = held;
    tagCall* other = talking(call->nJoined);
    if (!other || other->bHeld == held)
        return;
    order(held ? "hold" : "resume", other->nId);
    other->bHeld = held;
}

void CallModel::mute(int id, bool muted)
{
    for (int each = id; tagCall* call = talking(each); each = call->nJoined == id ? 0 : call->nJoined) {
        order(muted ? "mute" : "unmute", each);
        call->bMuted = muted;
    }
}

bool CallModel::canMeet(int id, int other)
{
    return id != other && talking(id) && talking(other);
}

void CallModel::connect(int id, int other, bool can)
{
    if (!can || !canMeet(id, other))
        return;
    order(QString("connect with %1").arg(other), id);
    end(id);
    end(other);
}

void CallModel::join(int id, int other, bool can)
{
    if (!can || !canMeet(id, other) || talking(id)->nJoined || talking(other)->nJoined)
        return;
    order(QString("join %1").arg(other), id);
    talking(id)->nJoined = other;
    talking(other)->nJoined = id;
    holdAllBut(id);
    for (const int each : {id, other}) {
        if (!talking(each)->bHeld)
            continue;
        order("resume", each);
        talking(each)->bHeld = false;
    }
    const bool muted = talking(id)->bMuted;
    if (talking(other)->bMuted == muted)
        return;
    order(muted ? "mute" : "unmute", other);
    talking(other)->bMuted = muted;
}

void CallModel::split(int id)
{
    tagCall* call = talking(id);
    tagCall* other = call ? talking(call->nJoined) : nullptr;
    if (!other)
        return;
    if (!call->bHeld && !other->bHeld) {
        order("hold", other->nId);
        other->bHeld = true;
    }
    order("split", id);
    call->nJoined = other->nJoined = 0;
}

void CallModel::transfer(int id, const QString& number)
{
    const QString target = planned(number);
    if (!talking(id) || target.isEmpty())
        return;
    order("transfer " + target, id);
    end(id);
}

void CallModel::tones(int id, const QString& tones)
{
    static const QRegularExpression good("^[0-9*#A-D]+$");
    if (!talking(id) || !good.match(tones).hasMatch())
        return;
    const int other = talking(id)->nJoined;
    for (const QChar tone : tones) {
        order(QString("tone ") + tone, id);
        if (other)
            order(QString("tone ") + tone, other);
    }
}

void CallModel::answerFromOutside(int id)
{
    tagCall* call = find(id);
    if (!call || call->bIncoming || call->bTalks)
        return;
    talk(*call);
    holdAllBut(id);
}

void CallModel::endFromOutside(int id)
{
    end(id);
}

void CallModel::codes()
{
    while (calls.isEmpty() && !m_codes.isEmpty()) {
        const tagCode code = m_codes.takeFirst();
        const QString number = modelNumber(code.strNumber);
        if (number.isEmpty()) {
            fail("This cannot be dialled");
            continue;
        }
        m_nCodeCall = m_nNextId;
        place(number, code.nLine);
    }
}

void CallModel::due(const tagDue& now)
{
    switch (now.eWhat) {
    case ANSWERS:
        for (const tagCall& call : calls) {
            if (call.nId != now.nCall && (call.bTalks || !call.bIncoming))
                return;
        }
        answer(now.nCall);
        break;
    case FORWARDS:
        if (ringing(now.nCall)) {
            order("deflect " + now.strTarget, now.nCall);
            end(now.nCall);
        }
        break;
    case CODE_IS_HEARD:
        if (find(now.nCall)) {
            order("hang up", now.nCall);
            end(now.nCall);
        }
    }
}

// What is due at the same time comes in the order in which it began.
void CallModel::pass(int ms)
{
    codes();
    const qint64 until = m_nNow + ms;
    for (;;) {
        auto first = std::min_element(m_due.begin(), m_due.end(),
                                      [](const tagDue& a, const tagDue& b) { return a.nAt < b.nAt; });
        if (first == m_due.end() || first->nAt > until)
            break;
        const tagDue now = *first;
        m_due.erase(first);
        m_nNow = std::max(m_nNow, now.nAt);
        due(now);
        codes();
    }
    m_nNow = until;
}

} // namespace kit
