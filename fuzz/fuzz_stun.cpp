// Answers to a question to a STUN server. The first bytes make the head good, so that what is behind it is
// read; what comes out must be a place that a machine can have.
#include "sip/stunMessage.h"
#include <algorithm>
#include <arpa/inet.h>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const stunMessage::Id id = {};
    std::vector<unsigned char> bytes(data + 1, data + size);
    if ((data[0] & 1) != 0 && bytes.size() >= 20) {
        const stunMessage::Request good = stunMessage::request(id);
        std::copy(good.begin() + 4, good.begin() + 20, bytes.begin() + 4);
        bytes[0] = 1;
        bytes[1] = (data[0] & 2) != 0 ? 0x11 : 1;
        bytes.resize(bytes.size() / 4 * 4);
        bytes[2] = static_cast<unsigned char>((bytes.size() - 20) >> 8);
        bytes[3] = static_cast<unsigned char>(bytes.size() - 20);
    }
    tagStunPlace place;
    const auto answer = stunMessage::read(bytes.data(), bytes.size(), id, place);
    in_addr ip = {};
    const bool isPlace = place.nPort != 0 && inet_pton(AF_INET, place.host.c_str(), &ip) == 1 &&
                         ntohl(ip.s_addr) >> 24 != 0 && ntohl(ip.s_addr) >> 24 < 224;
    if (isPlace != (answer == stunMessage::ANSWER::PLACE))
        abort();
    return 0;
}
