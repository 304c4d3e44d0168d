#include "host/desktop/callTexts.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include <QLabel>

namespace {

const char* const kHeldThere = HX_TR("Held by the other side");
const char* const kUnconfirmed = HX_TR("Not confirmed yet");
constexpr int kLeastShare = 3; // of its line, of what stands first
const char* const kNoAnswer = HX_TR("The server does not answer");

bool isPutThrough(const tagCall& call)
{
    return call.eState == CALL_TALKING && !call.strTarget.isEmpty();
}

const char* stateText(const tagCall& call)
{
    switch (call.eState) {
    case CALL_RINGING:
        return call.bIncoming     ? HX_TR("Incoming call")
               : call.bRingsThere ? HX_TR("Ringing...")
                                  : HX_TR("Calling...");
    case CALL_TALKING:
        return isPutThrough(call) ? HX_TR("Transferring...")
               : call.bHeld       ? HX_TR("On hold")
               : call.nJoined     ? HX_TR("Conference")
               : call.bRemoteHeld ? kHeldThere
                                  : HX_TR("In call");
    default:
        return HX_TR("Call ended");
    }
}

// What is not as the state lets one think.
QString furtherText(const tagCall& call)
{
    if (isPutThrough(call))
        return call.strTarget;
    if (call.bUnheard && call.eState != CALL_ENDED)
        return qTranslate(call.eState == CALL_TALKING ? kUnconfirmed : kNoAnswer);
    const bool bothHold = call.eState == CALL_TALKING && call.bHeld && call.bRemoteHeld;
    return bothHold ? qTranslate(kHeldThere) : QString();
}

} // namespace

QString callStateText(const tagCall& call)
{
    if (!call.strReason.isEmpty())
        return qTranslate(call.strReason.toUtf8().constData());
    if (call.eState == CALL_ENDED && !call.strTarget.isEmpty())
        return qTranslate(call.eEnd == CALL_FORWARDED ? HX_TR("Forwarded to %1") : HX_TR("Transferred to %1"))
            .arg(call.strTarget);
    return callJoinedText(qTranslate(stateText(call)), furtherText(call));
}

QString callForwardedText(const tagCall& call)
{
    if (call.forwardedBy.isEmpty() || call.eState != CALL_RINGING)
        return QString();
    return qTranslate(HX_TR("Forwarded by %1")).arg(call.forwardedBy.last());
}

QString callNameOf(const tagCall& call, const tagContact& contact)
{
    if (!call.strName.isEmpty())
        return call.strName;
    if (!contact.strName.isEmpty())
        return contact.strName;
    return callTextOf(phoneService::instance().rules().deviceOf(call).strName);
}

QString callWhoText(const QString& name, const QString& number)
{
    if (name.isEmpty() && number.isEmpty())
        return qTranslate(HX_TR("Anonymous"));
    return name.isEmpty() ? number : name;
}

QString callJoinedText(const QString& one, const QString& other)
{
    return one.isEmpty() || other.isEmpty() ? one + other : one + QStringLiteral(" \u00b7 ") + other;
}

QString callOwnNumber(int line)
{
    tagAccountInfo info;
    if (line < 0 || line >= PHONE_ACCOUNT_COUNT || !phone_GetAccountInfoById(line, &info))
        return QString();
    return QString::fromUtf8(info.szUser);
}

QString callFittingText(const QLabel* label, int smallest, const QString& text, const QString& rest)
{
    QFont font = label->font();
    font.setPixelSize(qMin(font.pixelSize(), smallest));
    const QFontMetrics metrics(font);
    const QString whole = callJoinedText(text, rest);
    if (metrics.horizontalAdvance(whole) <= label->width())
        return whole;
    const int first = metrics.horizontalAdvance(text);
    const int second = metrics.horizontalAdvance(rest);
    const int room = label->width() - (metrics.horizontalAdvance(whole) - first - second);
    // A state without whose it is says nothing.
    const int kept = qMax(room - second, qMin(first, room / kLeastShare));
    const QString end = kept <= room - second ? rest : metrics.elidedText(rest, Qt::ElideRight, room - kept);
    return callJoinedText(metrics.elidedText(text, Qt::ElideRight, kept), end);
}

QStringList callLinesOf(const QLabel* label, const QString& text)
{
    QStringList lines;
    for (const QString& word : text.split(' ')) {
        const QString longer = lines.isEmpty() ? word : lines.last() + ' ' + word;
        if (!lines.isEmpty() && label->fontMetrics().horizontalAdvance(longer) < label->width())
            lines.last() = longer;
        else
            lines.append(word);
    }
    return lines;
}
