#include "tests/kit/plain/ports.h"
#include <array>
#include <cstddef>
#include <cstdio>
#include <netinet/in.h>
#include <random>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Even ones below those that the system gives to whoever names none: nobody is given them by chance before
// the program that they are for has started.
constexpr uint32_t kFirst = 10000;
constexpr uint32_t kPairs = 11000;
constexpr size_t kKept = 64; // a program that runs many tests does not keep them all

bool isFree(int type, uint32_t port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int number = socket(AF_INET, type | SOCK_CLOEXEC, 0);
    const bool is = bind(number, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(number);
    return is;
}

// A name that only one process of the machine has, until it ends; below 0 when another one has it.
int keep(uint32_t port)
{
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    const int length = snprintf(name.sun_path + 1, sizeof name.sun_path - 1, "hxTestPort-%u", unsigned(port));
    const int number = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + 1 + size_t(length));
    if (bind(number, reinterpret_cast<const sockaddr*>(&name), size) == 0)
        return number;
    close(number);
    return -1;
}

} // namespace

uint32_t kit::freePort()
{
    static std::mt19937 chance{std::random_device{}()};
    static std::array<int, kKept> kept = [] {
        std::array<int, kKept> none;
        none.fill(-1);
        return none;
    }();
    static size_t next = 0;
    for (;;) {
        const uint32_t port = kFirst + 2 * (chance() % kPairs);
        if (!isFree(SOCK_DGRAM, port) || !isFree(SOCK_STREAM, port) || !isFree(SOCK_DGRAM, port + 1) ||
            !isFree(SOCK_STREAM, port + 1))
            continue;
        const int number = keep(port);
        if (number < 0)
            continue;
        int& oldest = kept[next++ % kKept];
        if (oldest >= 0)
            close(oldest);
        oldest = number;
        return port;
    }
}
