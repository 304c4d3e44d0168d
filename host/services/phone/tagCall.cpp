#include "host/services/phone/tagCall.h"

bool callIsMissed(const tagCall& call)
{
    return call.eEnd == CALL_MISSED || call.eEnd == CALL_BUSY || call.eEnd == CALL_DISTURBED;
}

int callNewId()
{
    static int last = 0;
    return ++last;
}
