#include "sip/tlsCheck.h"
#include "sip/digestText.h"
#include "sip/ownSockets.h"
#include "support/file/placeLook.h"
#include <algorithm>
#include <arpa/inet.h>
#include <deque>
#include <dlfcn.h>
#include <memory>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>
#include <sofia-sip/tport.h>
#include <utility>

namespace {

constexpr size_t kMaxKept = 16;           // as many servers may fail at the same time
constexpr int64_t kLargestFile = 1 << 20; // the certificates of all known authorities are a quarter of it

struct tagServerProblem
{
    uint64_t nNumber;
    tagSocketEnd end;
    std::string name; // that the certificate should have; empty: not known
    tagTlsProblem problem;
};

struct tagProblems
{
    std::deque<tagServerProblem> kept;
    uint64_t nCount = 0;
    std::function<void()> tell;
    tagSocketEnd checked; // whose certificate is good so far: its name is asked for next
};

tagProblems& problems()
{
    static tagProblems only;
    return only;
}

void note(const tagSocketEnd& end, const std::string& name, SIP_TLS_FAULT fault, const char* text)
{
    tagProblems& all = problems();
    if (end.host.empty())
        return;
    if (all.kept.size() == kMaxKept)
        all.kept.pop_front();
    all.kept.push_back({++all.nCount, end, name, {fault, text ? text : "unknown"}});
    if (all.tell)
        all.tell();
}

SIP_TLS_FAULT faultOfCertificate(long verified)
{
    switch (verified) {
    case X509_V_ERR_CERT_HAS_EXPIRED:
        return SIP_TLS_EXPIRED;
    case X509_V_ERR_CERT_NOT_YET_VALID:
        return SIP_TLS_NOT_YET_VALID;
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_CERT_SIGNATURE_FAILURE: // an authority of the same name
        return SIP_TLS_UNKNOWN_AUTHORITY;
    default:
        return SIP_TLS_OTHER_FAULT;
    }
}

// error: of OpenSSL's queue.
SIP_TLS_FAULT faultOfConnection(unsigned long error)
{
    const int reason = ERR_GET_REASON(error);
    switch (reason) {
    case SSL_R_WRONG_VERSION_NUMBER:
    case SSL_R_HTTP_REQUEST:
    case SSL_R_PACKET_LENGTH_TOO_LONG:
        return SIP_TLS_NOT_SPOKEN;
    case SSL_R_SSLV3_ALERT_NO_CERTIFICATE:
    case SSL_R_SSLV3_ALERT_BAD_CERTIFICATE:
    case SSL_R_SSLV3_ALERT_UNSUPPORTED_CERTIFICATE:
    case SSL_R_SSLV3_ALERT_CERTIFICATE_REVOKED:
    case SSL_R_SSLV3_ALERT_CERTIFICATE_EXPIRED:
    case SSL_R_SSLV3_ALERT_CERTIFICATE_UNKNOWN:
    case SSL_R_TLSV1_ALERT_UNKNOWN_CA:
    case SSL_R_TLSV13_ALERT_CERTIFICATE_REQUIRED:
        return SIP_TLS_OWN_CERTIFICATE;
    default:
        return reason > SSL_AD_REASON_OFFSET ? SIP_TLS_REFUSED : SIP_TLS_OTHER_FAULT;
    }
}

// None of a connection that came from there.
tagSocketEnd serverOf(const SSL* tls)
{
    return SSL_is_server(tls) ? tagSocketEnd() : ownSockets::otherEnd(SSL_get_fd(tls));
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

void noteConnection(const SSL* tls)
{
    const unsigned long error = ERR_peek_error();
    note(serverOf(tls), "", faultOfConnection(error), ERR_reason_error_string(error));
}

// The stack waits for ever at a pipe, and for minutes for thousands of certificates.
std::string problemOfFile(const std::string& folder, const std::string& name)
{
    const tagPlaceLook look = placeLook((folder + "/" + name).c_str());
    if (look.bIsThere && !look.bIsFile)
        return name + " is not a file";
    return look.nSize > kLargestFile ? name + " is larger than 1 MB" : "";
}

// Instead of OpenSSL's own, which waits at the terminal for somebody to type it.
int giveNoPassword(char*, int, int, void* isAsked)
{
    *static_cast<bool*>(isAsked) = true;
    return -1;
}

struct tagOwnTrial
{
    std::string problem;
    bool bIsAsked = false; // for a password
};

// As the stack reads it, which takes the key even when it has no certificate, and says nothing of either.
tagOwnTrial tryOwn(const std::string& folder)
{
    const std::string path = folder + "/agent.pem";
    tagOwnTrial trial;
    const std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> context(SSL_CTX_new(TLS_method()), SSL_CTX_free);
    if (!context)
        return trial;
    SSL_CTX_set_default_passwd_cb(context.get(), giveNoPassword);
    SSL_CTX_set_default_passwd_cb_userdata(context.get(), &trial.bIsAsked);
    ERR_clear_error();
    const int certificate = SSL_CTX_use_certificate_file(context.get(), path.c_str(), SSL_FILETYPE_PEM);
    const int key = SSL_CTX_use_PrivateKey_file(context.get(), path.c_str(), SSL_FILETYPE_PEM);
    const bool isUsed = certificate == 1 && key == 1 && SSL_CTX_check_private_key(context.get()) == 1;
    const char* reason = ERR_reason_error_string(ERR_peek_error());
    if (!isUsed)
        trial.problem = reason ? reason : "unknown";
    ERR_clear_error(); // else the stack would take it for its own
    return trial;
}

} // namespace

std::string tlsCheck::problemOf(const std::string& folder)
{
    for (const char* name : {"cafile.pem", "agent.pem"}) {
        if (!placeLook((folder + "/" + name).c_str()).bIsThere)
            return "There are no certificates for TLS";
    }
    for (const char* name : {"cafile.pem", "agent.pem", "tls_seed.dat"}) {
        const std::string problem = problemOfFile(folder, name);
        if (!problem.empty())
            return problem;
    }
    const std::unique_ptr<X509_STORE, void (*)(X509_STORE*)> store(X509_STORE_new(), X509_STORE_free);
    const bool isRead =
        store && X509_STORE_load_locations(store.get(), (folder + "/cafile.pem").c_str(), nullptr) == 1;
    ERR_clear_error(); // else the stack would take it for its own
    if (!isRead)
        return "The certificates of cafile.pem cannot be read";
    return tryOwn(folder).bIsAsked ? "The key of agent.pem has a password" : "";
}

std::string tlsCheck::signOf(const std::string& folder)
{
    std::string all = problemOfFile(folder, "tls_seed.dat");
    for (const char* name : {"cafile.pem", "agent.pem"})
        all += '\n' + problemOfFile(folder, name) + '\n' +
               placeText((folder + "/" + name).c_str(), size_t(kLargestFile));
    return digestText::hash(true, all);
}

std::string tlsCheck::problemOfOwn(const std::string& folder)
{
    return tryOwn(folder).problem;
}

void tlsCheck::onProblem(std::function<void()> tell)
{
    problems().tell = std::move(tell);
}

uint64_t tlsCheck::count()
{
    return problems().nCount;
}

// Of a name the address is not known here: who is at the same port may be it, unless another name was wanted
// of him.
tagTlsProblem tlsCheck::problemWith(const std::string& host, uint32_t port, uint64_t beyond)
{
    const auto& kept = problems().kept;
    const bool isName = !isNumeric(host);
    const auto found = std::find_if(kept.rbegin(), kept.rend(), [&](const tagServerProblem& each) {
        const bool isAt = port == 0 || each.end.nPort == port;
        const bool isNamed = isName && (each.name.empty() || each.name == host);
        return each.nNumber > beyond && isAt && (each.end.host == host || isNamed);
    });
    return found == kept.rend() ? tagTlsProblem() : found->problem;
}

// What the stack asks of a connection that it has made, it closes without a word when it does not like the
// answer: its questions are heard here.
extern "C" __attribute__((visibility("default"))) long SSL_get_verify_result(const SSL* tls)
{
    const long result = resultOf(tls);
    problems().checked = result == X509_V_OK ? serverOf(tls) : tagSocketEnd();
    if (result != X509_V_OK)
        note(serverOf(tls), "", faultOfCertificate(result), X509_verify_cert_error_string(result));
    return result;
}

extern "C" __attribute__((visibility("default"))) int SSL_connect(SSL* tls)
{
    static const auto own = ownOf<int (*)(SSL*)>("SSL_connect");
    const int result = own(tls);
    if (result > 0 || SSL_get_error(tls, result) != SSL_ERROR_SSL)
        return result;
    const long verified = resultOf(tls);
    if (verified == X509_V_OK)
        noteConnection(tls);
    else
        note(serverOf(tls), "", faultOfCertificate(verified), X509_verify_cert_error_string(verified));
    return result;
}

// A server of TLS 1.3 says what it thinks of the phone's certificate when for the phone all is done.
extern "C" __attribute__((visibility("default"))) int SSL_read(SSL* tls, void* bytes, int size)
{
    static const auto own = ownOf<int (*)(SSL*, void*, int)>("SSL_read");
    const int result = own(tls, bytes, size);
    if (result <= 0 && SSL_get_error(tls, result) == SSL_ERROR_SSL)
        noteConnection(tls);
    return result;
}

extern "C" __attribute__((visibility("default"))) int tport_subject_search(const char* subject,
                                                                           const su_strlst_t* names)
{
    static const auto own = ownOf<int (*)(const char*, const su_strlst_t*)>("tport_subject_search");
    const int isThere = own(subject, names);
    // Asked of other connections too, which are not used for that name then.
    const tagSocketEnd end = std::exchange(problems().checked, {});
    if (!isThere && subject)
        note(end, subject, SIP_TLS_OTHER_NAME, "the certificate is for another name");
    return isThere;
}
