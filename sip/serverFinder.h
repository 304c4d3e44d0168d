#pragma once
// Where a server can be reached, best first: by its service records (RFC 3263) where no port is given, else
// by the addresses of its name, of which the machine's own list goes first. Never waits; tells an empty list
// when nothing is found.
#include "sip/sipStack.h"
#include <string>
#include <vector>

struct tagServerAddress
{
    std::string host; // numeric; in brackets where it is IPv6
    uint32_t nPort = 0;
};

class ServerFinder
{
public:
    using Found = std::function<void(const std::vector<tagServerAddress>& addresses)>;

    explicit ServerFinder(sres_resolver_t* dns) : m_pDns(dns) {}
    ~ServerFinder() { stop(); }
    ServerFinder(const ServerFinder&) = delete;
    ServerFinder& operator=(const ServerFinder&) = delete;

    // port: 0 for that of the service records. May tell before it returns.
    void find(const std::string& host, uint32_t port, SIP_TRANSPORT transport, Found found);
    // The service records are not waited for any more. False where the machine does not know the name itself.
    bool skipServices();
    void stop();

private:
    enum STEP { STEP_SERVICE, STEP_IPV4, STEP_IPV6 };

    static void onAnswer(sres_context_t* self, sres_query_t*, sres_record_t** answers);
    void ask(STEP step, const std::string& name);
    void takeServices(sres_record_t** answers);
    bool takeAddresses(sres_record_t** answers);
    bool takeKnown();
    void nextTarget();

    sres_resolver_t* m_pDns;
    sres_query_t* m_pQuery = nullptr;
    STEP m_eStep = STEP_SERVICE;
    std::vector<tagServerAddress> m_targets; // names that are still to be looked up
    std::vector<tagServerAddress> m_addresses;
    Found m_found;
};
