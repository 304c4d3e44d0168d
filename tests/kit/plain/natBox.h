#pragma once
// A router that translates addresses, between two networks of its own: in one a phone has a private address,
// in the other are all others. It wants the superuser.
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <utility>

namespace kit {

class NatBox
{
public:
    enum class KIND {
        ONE_PORT,     // a port inside is one outside, open to whom it has sent something
        PORT_FOR_EACH // a port inside is another one outside for each that it sends to
    };
    static constexpr const char* PHONE = "10.7.0.2";
    static constexpr const char* ROUTER = "203.0.113.1";
    static constexpr const char* SERVER = "203.0.113.3";
    static constexpr const char* PEER = "203.0.113.9";

    // There are such networks here.
    static bool isPossible();
    explicit NatBox(KIND kind);
    ~NatBox();
    NatBox(const NatBox&) = delete;
    NatBox& operator=(const NatBox&) = delete;

    // What the calling thread opens while it lives is in that network.
    class Stay
    {
    public:
        explicit Stay(int network);
        ~Stay();
        Stay(const Stay&) = delete;

    private:
        int m_nHome;
    };
    std::unique_ptr<Stay> inside() const { return std::make_unique<Stay>(m_nInside); }
    std::unique_ptr<Stay> outside() const { return std::make_unique<Stay>(m_nOutside); }
    // It is up and leads through.
    bool isUp() const { return m_bUp; }

private:
    using Place = std::pair<uint32_t, uint16_t>; // as they are on the wire
    struct tagDoor
    {
        Place within;
        std::set<Place> known; // to whom something was sent
    };
    struct tagPacket;

    void run();
    void leadOut(tagPacket& packet);
    void leadIn(tagPacket& packet);
    uint16_t doorFor(const Place& within, const Place& to);

    const KIND m_eKind;
    int m_nInside = -1;
    int m_nOutside = -1;
    int m_nTunnelIn = -1;
    int m_nTunnelOut = -1;
    bool m_bUp = false;
    uint16_t m_nLast = 50000;            // port that was given
    std::map<uint16_t, tagDoor> m_doors; // by their ports
    std::map<std::pair<Place, Place>, uint16_t> m_ports;
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};

} // namespace kit
