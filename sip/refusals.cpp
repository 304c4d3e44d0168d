#include "sip/refusals.h"
#include <dlfcn.h>
#include <sofia-sip/sip.h>
#include <sofia-sip/sip_util.h>

namespace {

constexpr int kUsageEnds = 1;

using Table = int (*)(int, sip_method_t, int*);

Table ownTable()
{
    static const Table table = reinterpret_cast<Table>(dlsym(RTLD_NEXT, "sip_response_terminates_dialog"));
    return table;
}

} // namespace

bool refusals::endCallOfReferrer(int status)
{
    return ownTable()(status, sip_method_refer, nullptr) != 0;
}

// The stack has a table of its own (RFC 5057), by which a hold that a server cannot lead through ends the
// call, with half of the numbers without a BYE. It cannot be told otherwise, so its function is replaced
// here: only a peer that knows nothing of the call, or says nothing, ends it (RFC 3261, 12.2.1.2), and by a
// BYE.
extern "C" __attribute__((visibility("default"))) int
sip_response_terminates_dialog(int status, sip_method_t method, int* graceful)
{
    int unused = 0;
    int& ends = graceful ? *graceful : unused;
    const bool isGone = status == 408 || status == 481;
    switch (method) {
    case sip_method_invite:
    case sip_method_update:
    case sip_method_info:
    case sip_method_prack:
        ends = isGone;
        return 0;
    case sip_method_refer:
        ends = 0;
        return isGone ? kUsageEnds : 0;
    default:
        return ownTable()(status, method, &ends);
    }
}
