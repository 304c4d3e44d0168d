// The stack sends a request again by itself, four times at once, through wherever "Use Proxy" says, and a
// REGISTER for as long as "Interval Too Brief" says. One of its functions is replaced here by itself, so that
// a line hears of both and does either once, and a call takes no way that the other side names.
#include <dlfcn.h>
#include <sofia-sip/sip.h>

// Whether the request was sent again.
extern "C" __attribute__((visibility("default"))) int
nua_base_client_check_restart(void* request, int status, const char* phrase, const sip_t* reply)
{
    using Checker = int (*)(void*, int, const char*, const sip_t*);
    static const auto check = reinterpret_cast<Checker>(dlsym(RTLD_NEXT, "nua_base_client_check_restart"));
    const bool isRegistration = reply->sip_cseq && reply->sip_cseq->cs_method == sip_method_register;
    if (status == 305 || (isRegistration && status == 423))
        return 0;
    return check(request, status, phrase, reply);
}
