#include "host/desktop/callTexts.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/phoneService.h"
#include "support/host/api.h"
#include "support/host/language.h"
#include "support/host/phone.h"

namespace {

const char* stateText(const tagCall& call)
{
    switch (call.eState) {
    case CALL_RINGING:
        return call.bIncoming ? HX_TR("Incoming call") : HX_TR("Calling...");
    case CALL_TALKING:
        return call.bHeld         ? HX_TR("On hold")
               : call.nJoined     ? HX_TR("Conference")
               : call.bRemoteHeld ? HX_TR("Held by the other side")
                                  : HX_TR("In call");
    default:
        return HX_TR("Call ended");
    }
}

} // namespace

QString callStateText(const tagCall& call)
{
    return qTranslate(!call.strReason.isEmpty() ? call.strReason.toUtf8().constData() : stateText(call));
}

QString callNameOf(const tagCall& call, const tagContact& contact)
{
    if (!call.strName.isEmpty())
        return call.strName;
    if (!contact.strName.isEmpty())
        return contact.strName;
    return callTextOf(phoneService::instance().rules().deviceOf(call).strName);
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
