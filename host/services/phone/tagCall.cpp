#include "host/services/phone/tagCall.h"
#include "support/host/net.h"

bool callIsMissed(const tagCall& call)
{
    return call.eEnd == CALL_MISSED || call.eEnd == CALL_BUSY || call.eEnd == CALL_DISTURBED;
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
