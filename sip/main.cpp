// The SIP user agent of the phone: "hxSip SOCKET" serves the phone that listens there, by the records of
// sipRecords.h, and ends with it.
#include "sip/digest.h"
#include "sip/floodGuard.h"
#include "sip/sipAgent.h"
#include <cstdio>
#include <cstdlib>
#include <sofia-sip/su_log.h>

int main(int argc, char** argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: hxSip SOCKET\n");
        return 2;
    }
    // The stack would print whole messages, digests and numbers among them, to whoever reads the log.
    for (const char* name :
         {"TPORT_LOG", "TPORT_DUMP", "TPORT_DEBUG", "NUA_DEBUG", "NTA_DEBUG", "SOFIA_DEBUG"})
        unsetenv(name);
    su_init();
    su_log_set_level(nullptr, 0);
    int code = 1;
    if (digest::install() && floodGuard::install()) {
        SipAgent agent;
        code = agent.run(argv[1]);
    }
    return code;
}
