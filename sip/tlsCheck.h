#pragma once
// Why there is no TLS with a server: the stack closes the connection, and says nothing of it.
#include "sip/sipRecords.h"
#include <cstdint>
#include <functional>
#include <string>

struct tagTlsProblem
{
    SIP_TLS_FAULT eFault = SIP_TLS_NO_FAULT;
    std::string text = {}; // for a person
};

namespace tlsCheck {

// Why there is no TLS with the folder of certificates, for a person; empty: there is.
std::string problemOf(const std::string& folder);
// Another one when a file of the folder is another.
std::string signOf(const std::string& folder);
// Why the phone's own certificate in it cannot be used, for a person; empty: it can. TLS goes on without it.
std::string problemOfOwn(const std::string& folder);
// How many problems with servers there were.
uint64_t count();
// Tells that there is one more. Null: nobody is told any more.
void onProblem(std::function<void()> tell);
// The last one with a server of that name or numeric address, beyond the first so many. port 0: any.
tagTlsProblem problemWith(const std::string& host, uint32_t port, uint64_t beyond);

} // namespace tlsCheck
