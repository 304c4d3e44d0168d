#define SOFIA_EXTEND_AUTH_CLIENT 1
#include "sip/digest.h"
#include "sip/digestText.h"
#include <algorithm>
#include <cstdio>
#include <map>
#include <openssl/crypto.h>
#include <openssl/rand.h>
#include <sofia-sip/auth_client_plugin.h>
#include <sofia-sip/msg_header.h>
#include <sofia-sip/msg_parser.h>
#include <sofia-sip/su_string.h>
#include <sofia-sip/url.h>
#include <vector>

namespace {

using digestText::hexOf;
using digestText::lower;
using digestText::quoted;
using digestText::unquoted;

struct tagSecret
{
    std::string user;
    std::string password;
};

std::map<std::string, tagSecret>& secrets()
{
    static std::map<std::string, tagSecret> book;
    return book;
}

// Begins as the stack's own; made and cleared by the stack, its texts live in the stack's home.
struct tagClient
{
    auth_client_t client;
    char* szNonce;
    char* szOpaque;
    char* szAlgorithm; // as the server has written it; null where it has not
    bool bSha256;
    bool bSession;
    bool bQop;
    unsigned nCount;
};

std::string newClientNonce()
{
    unsigned char bytes[16];
    return RAND_bytes(bytes, sizeof bytes) == 1 ? hexOf(bytes, sizeof bytes) : "";
}

bool hasQop(const std::string& list, const char* name)
{
    const std::string all = "," + lower(list) + ",";
    std::string bare;
    for (char c : all) {
        if (c != ' ' && c != '\t')
            bare += c;
    }
    return bare.find(std::string(",") + name + ",") != std::string::npos;
}

// 2: there is something new to answer; 1: it is left as it is.
int takeChallenge(auth_client_t* ca, const msg_auth_t* challenge)
{
    auto* client = reinterpret_cast<tagClient*>(ca);
    const std::string algorithm = lower(digest::param(challenge, "algorithm="));
    const bool isSha256 = digest::isSha256(challenge);
    // The better one of those that the server offers, and never a weaker one afterwards.
    if (!digest::isKnown(challenge) || (client->bSha256 && !isSha256))
        return 1;
    const std::string nonce = digest::param(challenge, "nonce=");
    const std::string opaque = digest::param(challenge, "opaque=");
    su_home_t* home = ca->ca_home;
    // Another nonce alone does not say that the password was right.
    const bool isNew = !client->szNonce || client->nCount == 0 || digest::isStale(challenge);
    for (char* text : {client->szNonce, client->szOpaque, client->szAlgorithm})
        su_free(home, text);
    client->szNonce = su_strdup(home, nonce.c_str());
    client->szOpaque = opaque.empty() ? nullptr : su_strdup(home, opaque.c_str());
    client->szAlgorithm =
        algorithm.empty() ? nullptr : su_strdup(home, digest::param(challenge, "algorithm=").c_str());
    client->bSha256 = isSha256;
    client->bSession = algorithm.size() > 5 && algorithm.compare(algorithm.size() - 5, 5, "-sess") == 0;
    client->bQop = !digest::param(challenge, "qop=").empty();
    client->nCount = 0;
    return isNew ? 2 : 1;
}

std::string headerOf(const tagClient& client, const digestText::tagAnswer& answer)
{
    std::string header = "Digest username=" + quoted(answer.user) + ", realm=" + quoted(answer.realm) +
                         ", nonce=" + quoted(answer.nonce) + ", uri=\"" + answer.uri + "\", response=\"" +
                         digestText::response(answer) + '"';
    if (client.szAlgorithm)
        header += std::string(", algorithm=") + client.szAlgorithm;
    if (answer.bQop)
        header += ", qop=auth, nc=" + answer.count;
    if (answer.bQop || answer.bSession)
        header += ", cnonce=\"" + answer.ownNonce + '"';
    if (client.szOpaque)
        header += ", opaque=" + quoted(client.szOpaque);
    return header;
}

int authorize(auth_client_t* ca, su_home_t* home, const char* method, const url_t* url, const msg_payload_t*,
              msg_header_t** headers)
{
    auto* client = reinterpret_cast<tagClient*>(ca);
    *headers = nullptr;
    if (!client->szNonce || !ca->ca_user || !ca->ca_credential_class)
        return 0;
    const auto secret = secrets().find(ca->ca_user);
    const char* uri = url_as_string(home, url);
    if (secret == secrets().end() || !uri)
        return 0;
    char count[16];
    snprintf(count, sizeof count, "%08x", ++client->nCount);
    digestText::tagAnswer answer;
    answer.bSha256 = client->bSha256;
    answer.bSession = client->bSession;
    answer.bQop = client->bQop;
    answer.user = secret->second.user;
    answer.realm = unquoted(ca->ca_realm);
    answer.password = secret->second.password;
    answer.method = method;
    answer.uri = uri;
    answer.nonce = client->szNonce;
    answer.ownNonce = newClientNonce();
    answer.count = count;
    const std::string value = headerOf(*client, answer);
    OPENSSL_cleanse(&answer.password[0], answer.password.size());
    *headers = msg_header_make(home, ca->ca_credential_class, value.c_str());
    return *headers ? 1 : -1;
}

int authorizeNever(auth_client_t*, su_home_t*, const char*, const url_t*, const msg_payload_t*,
                   msg_header_t**)
{
    return 0;
}

auth_client_plugin_t plugin(const char* name, size_t size)
{
    auth_client_plugin_t entry = {};
    entry.auc_plugin_size = sizeof entry;
    entry.auc_size = int(size);
    entry.auc_name = name;
    return entry;
}

} // namespace

bool digest::install()
{
    static auth_client_plugin_t nobody = plugin("-", sizeof(auth_client_t));
    nobody.auc_authorize = authorizeNever;
    static auth_client_plugin_t ours = plugin("Digest", sizeof(tagClient));
    ours.auc_challenge = takeChallenge;
    ours.auc_authorize = authorize;
    // The stack takes the place of an entry whose name is another one: its own "Digest" goes with the first.
    return auc_register_plugin(&nobody) == 0 && auc_register_plugin(&ours) == 0;
}

void digest::remember(const std::string& key, const std::string& user, const std::string& password)
{
    secrets()[key] = {user, password};
}

void digest::forget(const std::string& key)
{
    const auto secret = secrets().find(key);
    if (secret == secrets().end())
        return;
    std::string& password = secret->second.password;
    OPENSSL_cleanse(&password[0], password.size());
    secrets().erase(secret);
}

std::string digest::param(const msg_auth_t* challenge, const char* name)
{
    return digestText::param(challenge, name);
}

bool digest::isKnown(const msg_auth_t* challenge)
{
    if (!challenge->au_scheme || lower(challenge->au_scheme) != "digest")
        return false;
    const std::string algorithm = lower(param(challenge, "algorithm="));
    static const std::vector<std::string> known = {"", "md5", "md5-sess", "sha-256", "sha-256-sess"};
    const std::string qop = param(challenge, "qop=");
    return std::find(known.begin(), known.end(), algorithm) != known.end() &&
           (qop.empty() || hasQop(qop, "auth")) && !param(challenge, "nonce=").empty();
}

bool digest::isSha256(const msg_auth_t* challenge)
{
    return lower(param(challenge, "algorithm=")).rfind("sha-256", 0) == 0;
}

bool digest::isStale(const msg_auth_t* challenge)
{
    return lower(param(challenge, "stale=")) == "true";
}
