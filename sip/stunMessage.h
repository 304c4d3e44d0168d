#pragma once
// Questions by which address others see a socket, and the answers to them (STUN, RFC 5389; answers of servers
// that are older, RFC 3489, are understood). No socket and no clock is here. Any thread.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

// Where packets of a socket come from, as somebody beyond the routers sees them.
struct tagStunPlace
{
    std::string host; // IPv4 with dots
    uint16_t nPort = 0;
};

namespace stunMessage {

enum : size_t { REQUEST_BYTES = 28, MAX_BYTES = 1024, ID_BYTES = 12 };
using Id = std::array<unsigned char, ID_BYTES>;
using Request = std::array<unsigned char, REQUEST_BYTES>;

enum class ANSWER {
    NONE,    // no answer to this question
    REFUSED, // the server cannot say, or in a way that is not understood
    PLACE
};

// A number that nobody guesses: who knows it has seen the question. False when the system has none.
bool newId(Id& id);
Request request(const Id& id);
// Wants no answer, and says nothing: that a packet goes is what it is for.
Request indication(const Id& id);
// Looks like one of these messages, whoever it is for; nothing of SIP, RTP or RTCP does.
bool isMessage(const unsigned char* bytes, size_t size);
// The answer to the question with that number. A place is one that a machine can have.
ANSWER read(const unsigned char* bytes, size_t size, const Id& id, tagStunPlace& place);

} // namespace stunMessage
