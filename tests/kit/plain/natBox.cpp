#include "tests/kit/plain/natBox.h"
#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <linux/if_tun.h>
#include <net/if.h>
#include <net/route.h>
#include <netinet/ip.h>
#include <netinet/udp.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kLookMs = 20;
constexpr size_t kMostBytes = 2048, kHeads = sizeof(iphdr) + sizeof(udphdr);
constexpr const char* kOwnNetwork = "/proc/thread-self/ns/net";
constexpr const char* kTunnel = "/dev/net/tun";

void setAddress(sockaddr& address, const char* text)
{
    auto& to = reinterpret_cast<sockaddr_in&>(address);
    to.sin_family = AF_INET;
    inet_pton(AF_INET, text, &to.sin_addr);
}

bool raise(const char* name, const char* address, const char* mask)
{
    const int control = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request = {};
    strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    setAddress(request.ifr_addr, address);
    bool isDone = ioctl(control, SIOCSIFADDR, &request) == 0;
    setAddress(request.ifr_netmask, mask);
    isDone = isDone && ioctl(control, SIOCSIFNETMASK, &request) == 0;
    isDone = isDone && ioctl(control, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags |= IFF_UP | IFF_RUNNING;
    isDone = isDone && ioctl(control, SIOCSIFFLAGS, &request) == 0;
    close(control);
    return isDone;
}

bool leadAllTo(const char* name)
{
    const int control = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    rtentry route = {};
    std::vector<char> device(name, name + strlen(name) + 1);
    setAddress(route.rt_dst, "0.0.0.0");
    setAddress(route.rt_genmask, "0.0.0.0");
    route.rt_flags = RTF_UP;
    route.rt_dev = device.data();
    const bool isDone = ioctl(control, SIOCADDRT, &route) == 0;
    close(control);
    return isDone;
}

// A network of its own, kept by the file; -1 when there is none.
int newNetwork(const std::function<bool()>& furnish)
{
    int network = -1;
    std::thread([&] {
        if (unshare(CLONE_NEWNET) == 0 && raise("lo", "127.0.0.1", "255.0.0.0") && furnish())
            network = open(kOwnNetwork, O_RDONLY | O_CLOEXEC);
    }).join();
    return network;
}

int openTunnel(const char* name)
{
    const int tunnel = open(kTunnel, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ifreq request = {};
    request.ifr_flags = IFF_TUN | IFF_NO_PI;
    strncpy(request.ifr_name, name, IFNAMSIZ - 1);
    if (tunnel >= 0 && ioctl(tunnel, TUNSETIFF, &request) == 0)
        return tunnel;
    if (tunnel >= 0)
        close(tunnel);
    return -1;
}

uint16_t checksumOf(const iphdr& head)
{
    uint16_t words[sizeof(iphdr) / 2];
    memcpy(words, &head, sizeof words);
    uint32_t sum = 0;
    for (const uint16_t word : words)
        sum += word;
    while (sum >> 16)
        sum = (sum & 0xffff) + (sum >> 16);
    return uint16_t(~sum);
}

} // namespace

kit::NatBox::Stay::Stay(int network) : m_nHome(open(kOwnNetwork, O_RDONLY | O_CLOEXEC))
{
    setns(network, CLONE_NEWNET);
}

kit::NatBox::Stay::~Stay()
{
    setns(m_nHome, CLONE_NEWNET);
    close(m_nHome);
}

bool kit::NatBox::isPossible()
{
    return geteuid() == 0 && access(kTunnel, R_OK | W_OK) == 0;
}

struct kit::NatBox::tagPacket
{
    char bytes[kMostBytes];
    ssize_t nSize = 0;
    iphdr ip;
    udphdr udp;

    // The next one that is led through; others are dropped.
    bool readFrom(int tunnel)
    {
        while ((nSize = read(tunnel, bytes, sizeof bytes)) > 0) {
            if (size_t(nSize) < kHeads)
                continue;
            memcpy(&ip, bytes, sizeof ip);
            memcpy(&udp, bytes + sizeof ip, sizeof udp);
            if (ip.version == 4 && ip.ihl == 5 && ip.protocol == IPPROTO_UDP)
                return true;
        }
        return false;
    }
    void writeTo(int tunnel)
    {
        ip.check = udp.check = 0;
        ip.check = checksumOf(ip);
        memcpy(bytes, &ip, sizeof ip);
        memcpy(bytes + sizeof ip, &udp, sizeof udp);
        (void)!write(tunnel, bytes, size_t(nSize));
    }
};

kit::NatBox::NatBox(KIND kind) : m_eKind(kind)
{
    m_nOutside = newNetwork([this] {
        m_nTunnelOut = openTunnel("out");
        return m_nTunnelOut >= 0 && raise("out", PEER, "255.255.255.0") &&
               raise("out:1", SERVER, "255.255.255.255") && leadAllTo("out");
    });
    m_nInside = newNetwork([this] {
        m_nTunnelIn = openTunnel("in");
        return m_nTunnelIn >= 0 && raise("in", PHONE, "255.255.255.0") && leadAllTo("in");
    });
    m_bUp = m_nOutside >= 0 && m_nInside >= 0;
    if (m_bUp)
        m_thread = std::thread([this] { run(); });
}

kit::NatBox::~NatBox()
{
    m_bEnds = true;
    if (m_thread.joinable())
        m_thread.join();
    for (const int file : {m_nInside, m_nOutside, m_nTunnelIn, m_nTunnelOut}) {
        if (file >= 0)
            close(file);
    }
}

void kit::NatBox::run()
{
    tagPacket packet;
    while (!m_bEnds) {
        pollfd files[] = {{m_nTunnelIn, POLLIN, 0}, {m_nTunnelOut, POLLIN, 0}};
        poll(files, 2, kLookMs);
        while (packet.readFrom(m_nTunnelIn))
            leadOut(packet);
        while (packet.readFrom(m_nTunnelOut))
            leadIn(packet);
    }
}

uint16_t kit::NatBox::doorFor(const Place& within, const Place& to)
{
    const auto key = std::make_pair(within, m_eKind == KIND::PORT_FOR_EACH ? to : Place());
    const auto found = m_ports.find(key);
    if (found != m_ports.end())
        return found->second;
    m_doors[++m_nLast].within = within;
    return m_ports[key] = m_nLast;
}

void kit::NatBox::leadOut(tagPacket& packet)
{
    const Place to = {packet.ip.daddr, packet.udp.dest};
    const uint16_t door = doorFor({packet.ip.saddr, packet.udp.source}, to);
    m_doors[door].known.insert(to);
    inet_pton(AF_INET, ROUTER, &packet.ip.saddr);
    packet.udp.source = htons(door);
    packet.writeTo(m_nTunnelOut);
}

void kit::NatBox::leadIn(tagPacket& packet)
{
    in_addr router = {};
    inet_pton(AF_INET, ROUTER, &router);
    const auto door = m_doors.find(ntohs(packet.udp.dest));
    if (packet.ip.daddr != router.s_addr || door == m_doors.end() ||
        door->second.known.count({packet.ip.saddr, packet.udp.source}) == 0)
        return;
    packet.ip.daddr = door->second.within.first;
    packet.udp.dest = door->second.within.second;
    packet.writeTo(m_nTunnelIn);
}
