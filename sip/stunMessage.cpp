#include "sip/stunMessage.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/random.h>

namespace {

constexpr size_t kHeadBytes = 20, kIdAt = 8, kAttributeHead = 4;
constexpr unsigned kQuestion = 0x0001, kIndication = 0x0011, kSuccess = 0x0101, kFailure = 0x0111;
constexpr uint32_t kCookie = 0x2112a442;
constexpr unsigned kMapped = 0x0001, kXorMapped = 0x0020, kFingerprint = 0x8028;
constexpr unsigned kFirstOptional = 0x8000;
constexpr uint32_t kFingerprintMask = 0x5354554e;
constexpr unsigned kIPv4 = 1;

unsigned twoAt(const unsigned char* bytes)
{
    return unsigned(bytes[0]) << 8 | bytes[1];
}

uint32_t fourAt(const unsigned char* bytes)
{
    return uint32_t(twoAt(bytes)) << 16 | twoAt(bytes + 2);
}

void putTwo(unsigned char* bytes, unsigned number)
{
    bytes[0] = static_cast<unsigned char>(number >> 8);
    bytes[1] = static_cast<unsigned char>(number);
}

void putFour(unsigned char* bytes, uint32_t number)
{
    putTwo(bytes, number >> 16);
    putTwo(bytes + 2, number & 0xffff);
}

// Of Ethernet, and of this.
uint32_t checksum(const unsigned char* bytes, size_t size)
{
    uint32_t sum = 0xffffffff;
    for (size_t i = 0; i < size; ++i) {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
}

// Those that say nothing of use here, and are no reason not to believe the rest: of RFC 3489 and 5389.
bool isKnown(unsigned kind)
{
    static const unsigned known[] = {0x0002, 0x0003, 0x0004, 0x0005, 0x0006, 0x0007,
                                     0x0008, 0x0009, 0x000a, 0x000b, 0x0014, 0x0015};
    return kind >= kFirstOptional || kind == kMapped || kind == kXorMapped ||
           std::find(std::begin(known), std::end(known), kind) != std::end(known);
}

stunMessage::Request messageOf(unsigned kind, const stunMessage::Id& id)
{
    stunMessage::Request request = {};
    putTwo(request.data(), kind);
    putTwo(request.data() + 2, stunMessage::REQUEST_BYTES - kHeadBytes);
    putFour(request.data() + 4, kCookie);
    std::copy(id.begin(), id.end(), request.begin() + kIdAt);
    unsigned char* last = request.data() + kHeadBytes;
    putTwo(last, kFingerprint);
    putTwo(last + 2, 4);
    putFour(last + kAttributeHead, checksum(request.data(), kHeadBytes) ^ kFingerprintMask);
    return request;
}

// An address of one machine: none of this network, of many machines or reserved.
bool readPlace(const unsigned char* value, size_t size, bool isMasked, tagStunPlace& place)
{
    if (size != 8 || value[1] != kIPv4)
        return false;
    const unsigned port = twoAt(value + 2) ^ (isMasked ? kCookie >> 16 : 0);
    const uint32_t ip = fourAt(value + 4) ^ (isMasked ? kCookie : 0);
    const uint32_t first = ip >> 24;
    if (port == 0 || first == 0 || first >= 224)
        return false;
    place.nPort = uint16_t(port);
    place.host = std::to_string(first) + '.' + std::to_string(ip >> 16 & 255) + '.' +
                 std::to_string(ip >> 8 & 255) + '.' + std::to_string(ip & 255);
    return true;
}

} // namespace

bool stunMessage::newId(Id& id)
{
    size_t done = 0;
    while (done < id.size()) {
        const ssize_t count = getrandom(id.data() + done, id.size() - done, 0);
        if (count < 0 && errno != EINTR)
            return false;
        done += size_t(std::max<ssize_t>(count, 0));
    }
    return true;
}

stunMessage::Request stunMessage::request(const Id& id)
{
    return messageOf(kQuestion, id);
}

stunMessage::Request stunMessage::indication(const Id& id)
{
    return messageOf(kIndication, id);
}

bool stunMessage::isMessage(const unsigned char* bytes, size_t size)
{
    return size >= kHeadBytes && bytes[0] < 2;
}

stunMessage::ANSWER stunMessage::read(const unsigned char* bytes, size_t size, const Id& id,
                                      tagStunPlace& place)
{
    if (size < kHeadBytes || size > MAX_BYTES || size % 4 != 0 || twoAt(bytes + 2) != size - kHeadBytes ||
        fourAt(bytes + 4) != kCookie || memcmp(bytes + kIdAt, id.data(), id.size()) != 0)
        return ANSWER::NONE;
    const unsigned kind = twoAt(bytes);
    if (kind != kSuccess)
        return kind == kFailure ? ANSWER::REFUSED : ANSWER::NONE;
    tagStunPlace plain, masked;
    bool hasPlain = false, hasMasked = false;
    for (size_t at = kHeadBytes; at < size;) {
        const unsigned attribute = twoAt(bytes + at);
        const size_t length = twoAt(bytes + at + 2), begin = at + kAttributeHead;
        const size_t next = begin + (length + 3) / 4 * 4;
        if (next > size || !isKnown(attribute))
            return ANSWER::REFUSED;
        const unsigned char* value = bytes + begin;
        // Of several the first one counts.
        if (attribute == kMapped && !hasPlain)
            hasPlain = readPlace(value, length, false, plain);
        if (attribute == kXorMapped && !hasMasked)
            hasMasked = readPlace(value, length, true, masked);
        if (attribute == kFingerprint &&
            (length != 4 || fourAt(value) != (checksum(bytes, at) ^ kFingerprintMask)))
            return ANSWER::REFUSED;
        at = next;
    }
    if (!hasPlain && !hasMasked)
        return ANSWER::REFUSED;
    // Some routers change addresses that stand in packets; the masked one they do not know.
    place = hasMasked ? masked : plain;
    return ANSWER::PLACE;
}
