#include "host/services/phone/tagCall.h"
#include "host/services/phone/callNumber.h"
#include "support/host/net.h"

bool callIsMissed(const tagCall& call)
{
    return call.eEnd == CALL_MISSED || call.eEnd == CALL_BUSY || call.eEnd == CALL_DISTURBED ||
           call.eEnd == CALL_UNFIT;
}

const QString& callReached(const tagCall& call)
{
    return call.strReached.isEmpty() ? call.strNumber : call.strReached;
}

bool callIsMutual(const tagCall& one, const tagCall& other)
{
    return one.bIncoming != other.bIncoming && one.nAccount == other.nAccount &&
           callIsSameNumber(one.strNumber, other.strNumber);
}

int callNewId()
{
    static int last = 0;
    return ++last;
}

tagCall callNew(const QString& number, int account)
{
    tagCall call;
    call.nId = callNewId();
    call.strNumber = number;
    call.nAccount = account;
    call.nStartTime = netGetLocalTime();
    return call;
}
