#include "sip/tlsCheck.h"
#include "sip/ownSockets.h"
#include <algorithm>
#include <arpa/inet.h>
#include <deque>
#include <dlfcn.h>
#include <memory>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>
#include <sofia-sip/tport.h>

namespace {

constexpr size_t kMaxKept = 16; // as many servers may fail at the same time

struct tagProblem
{
    uint64_t nNumber;
    std::string host;
    uint32_t nPort; // 0: the host is the name that the certificate should have
    std::string text;
};

struct tagProblems
{
    std::deque<tagProblem> kept;
    uint64_t nCount = 0;
};

tagProblems& problems()
{
    static tagProblems only;
    return only;
}

void note(const std::string& host, uint32_t port, const char* text)
{
    tagProblems& all = problems();
    if (all.kept.size() == kMaxKept)
        all.kept.pop_front();
    all.kept.push_back({++all.nCount, host, port, text ? text : "unknown"});
}

void noteOf(const SSL* tls, const char* text)
{
    const tagSocketEnd end = ownSockets::otherEnd(SSL_get_fd(tls));
    if (!SSL_is_server(tls) && !end.host.empty())
        note(end.host, end.nPort, text);
}

bool isNumeric(const std::string& host)
{
    unsigned char address[sizeof(in6_addr)];
    return inet_pton(AF_INET, host.c_str(), address) == 1 || inet_pton(AF_INET6, host.c_str(), address) == 1;
}

template <typename Function>
Function ownOf(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

long resultOf(const SSL* tls)
{
    static const auto own = ownOf<long (*)(const SSL*)>("SSL_get_verify_result");
    return own(tls);
}

} // namespace

std::string tlsCheck::problemOf(const std::string& folder)
{
    const std::unique_ptr<X509_STORE, void (*)(X509_STORE*)> store(X509_STORE_new(), X509_STORE_free);
    const bool isRead =
        store && X509_STORE_load_locations(store.get(), (folder + "/cafile.pem").c_str(), nullptr) == 1;
    ERR_clear_error(); // else the stack would take it for its own
    return isRead ? "" : "The certificates of cafile.pem cannot be read";
}

uint64_t tlsCheck::count()
{
    return problems().nCount;
}

// Of a name the address is not known here: who is at the same port may be it.
std::string tlsCheck::problemWith(const std::string& host, uint32_t port, uint64_t beyond)
{
    const auto& kept = problems().kept;
    const bool isName = !isNumeric(host);
    const auto found = std::find_if(kept.rbegin(), kept.rend(), [&](const tagProblem& each) {
        const bool isAt = each.nPort != 0 && (port == 0 || each.nPort == port);
        return each.nNumber > beyond && (each.host == host ? isAt || each.nPort == 0 : isName && isAt);
    });
    return found == kept.rend() ? "" : found->text;
}

// What the stack asks of a connection that it has made, it closes without a word when it does not like the
// answer: its questions are heard here.
extern "C" __attribute__((visibility("default"))) long SSL_get_verify_result(const SSL* tls)
{
    const long result = resultOf(tls);
    if (result != X509_V_OK)
        noteOf(tls, X509_verify_cert_error_string(result));
    return result;
}

extern "C" __attribute__((visibility("default"))) int SSL_connect(SSL* tls)
{
    static const auto own = ownOf<int (*)(SSL*)>("SSL_connect");
    const int result = own(tls);
    if (result > 0 || SSL_get_error(tls, result) != SSL_ERROR_SSL)
        return result;
    const long verified = resultOf(tls);
    noteOf(tls, verified == X509_V_OK ? ERR_reason_error_string(ERR_peek_error())
                                      : X509_verify_cert_error_string(verified));
    return result;
}

extern "C" __attribute__((visibility("default"))) int tport_subject_search(const char* subject,
                                                                           const su_strlst_t* names)
{
    static const auto own = ownOf<int (*)(const char*, const su_strlst_t*)>("tport_subject_search");
    const int isThere = own(subject, names);
    if (!isThere && subject)
        note(subject, 0, "the certificate is for another name");
    return isThere;
}
