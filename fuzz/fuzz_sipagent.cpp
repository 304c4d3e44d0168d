// The whole user agent between a phone and a server that say anything. An input is steps with a zero between
// them: what its first letter says is done with the rest. Bytes below a blank stand for what only this run
// knows, as the names of a call. Whatever comes, the agent lives, and tells the phone what the phone takes.
//
// d  a message of the server's         r  its reply to the agent's last request: status and phrase, header
// a  the phone answers the last call      lines, body
// p  it rings      f  is refused       h  is hung up       m  has an offer, or an answer
// n  has none now  e  is deflected     t  is transferred   c  with the one before    k  a key of it
// i  a call from here                  v  one that the last referral asks for
// w  an extension is watched           l  a list           u  a call is picked up
#include "sip/digest.h"
#include "sip/floodGuard.h"
#include "sip/sipAgent.h"
#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <poll.h>
#include <sofia-sip/su_log.h>
#include <string>
#include <strings.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kAnswerMs = 20000; // of a living agent, under the sanitizers, beside others
constexpr size_t kMaxSteps = 24;
constexpr int kMaxRounds = 50; // until all that an input began has ended

void demand(bool holds)
{
    if (!holds)
        abort();
}

sockaddr_in loopback(uint32_t port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(uint16_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// Of a message whose lines end as the agent's do; empty where it is not there.
std::string headerOf(const std::string& message, const char* name)
{
    size_t at = message.find("\r\n");
    while (at != std::string::npos && message.compare(at, 4, "\r\n\r\n") != 0) {
        const size_t begin = at + 2;
        at = message.find("\r\n", begin);
        const size_t length = strlen(name);
        if (strncasecmp(message.c_str() + begin, name, length) == 0 && message[begin + length] == ':')
            return message.substr(begin + length + 2, at - begin - length - 2);
    }
    return "";
}

std::string upTo(const std::string& text, const char* ends)
{
    return text.substr(0, text.find_first_of(ends));
}

std::string paramOf(const std::string& header, const std::string& name)
{
    const size_t at = header.find(name + "=");
    return at == std::string::npos ? "" : upTo(header.substr(at + name.size() + 1), ";>, \r\n");
}

class Stand
{
public:
    Stand()
    {
        su_init();
        su_log_set_level(nullptr, 0);
        demand(digest::install() && floodGuard::install());
        m_nSocket = udpSocket(m_nPort);
        close(udpSocket(m_nAgentPort)); // nobody else wants it at once
        startAgent();
        auto account = sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0);
        sipWire::setText(account.szUser, "100");
        sipWire::setText(account.szPassword, "secret");
        sipWire::setText(account.szServer, "127.0.0.1");
        sipWire::setText(account.szPickUp, "*8");
        account.nPort = m_nPort;
        account.nExpires = 86400;
        tell(account);
        waitUntil([&] { return m_bRegistered; });
    }
    ~Stand()
    {
        tell(sipWire::make<tagSipHead>(SIP_END, 0));
        while (!m_bEnded)
            serve(10);
        m_agent.join();
        close(m_nLink);
        close(m_nSocket);
    }
    void play(const std::string& script)
    {
        ++m_nRun;
        m_request.clear();
        m_tag.clear();
        size_t at = 0;
        for (size_t i = 0; i < kMaxSteps && at < script.size(); ++i) {
            const size_t end = std::min(script.find('\0', at), script.size());
            if (end > at)
                step(script[at], filled(script.substr(at + 1, end - at - 1)));
            at = end + 1;
            settle();
        }
        clear();
    }

private:
    static int udpSocket(uint32_t& port)
    {
        const int number = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        demand(bind(number, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
               getsockname(number, reinterpret_cast<sockaddr*>(&address), &size) == 0);
        port = ntohs(address.sin_port);
        return number;
    }
    void startAgent()
    {
        char folder[] = "/tmp/hxFuzzXXXXXX";
        demand(mkdtemp(folder) != nullptr);
        const std::string path = std::string(folder) + "/phone";
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        memcpy(address.sun_path, path.data(), path.size());
        const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        demand(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
               listen(listener, 1) == 0);
        m_agent = std::thread([this, path] {
            SipAgent agent;
            demand(agent.run(path) == 0);
            m_bEnded = true;
        });
        m_nLink = accept(listener, nullptr, nullptr);
        demand(m_nLink >= 0);
        close(listener);
        unlink(path.c_str());
        rmdir(folder);
        auto setup = sipWire::make<tagSipSetup>(SIP_SETUP, 0);
        sipWire::setText(setup.szAddress, "127.0.0.1");
        sipWire::setText(setup.szAgent, "Fuzz");
        setup.nPort = m_nAgentPort;
        setup.nSilentMs = 5000;
        setup.nRetryMs = 200;
        setup.nRetryLastMs = 800;
        setup.nRingSeconds = 60;
        setup.nOfferMs = 2000;
        tell(setup);
        waitUntil([&] { return m_bThere; });
    }
    template <typename Record>
    void tell(const Record& record)
    {
        if (sipWire::isSound(&record, sizeof record))
            demand(send(m_nLink, &record, sizeof record, MSG_NOSIGNAL) == ssize_t(sizeof record));
    }
    void tellMedia(SIP_RECORD kind, const std::string& sdp)
    {
        auto media = sipWire::make<tagSipMedia>(kind, m_nCall);
        sipWire::setText(media.szSdp, sdp);
        tell(media);
    }
    void tellTarget(SIP_RECORD kind, uint32_t id, const std::string& text)
    {
        auto target = sipWire::make<tagSipTarget>(kind, id);
        sipWire::setText(target.szTarget, text);
        tell(target);
    }
    // Below the first call there is room for those from here.
    void dial(const std::string& target, uint32_t referrer)
    {
        auto call = sipWire::make<tagSipDial>(SIP_DIAL, ++m_nDialled);
        call.nReferrer = referrer;
        sipWire::setText(call.szTarget, upTo(target, "\n"));
        sipWire::setText(call.szSdp, "v=0\r\ns=offer\r\n");
        tell(call);
        begun(m_nDialled);
    }
    void begun(uint32_t id)
    {
        m_nBefore = m_nCall;
        m_nCall = id;
        m_calls.push_back(id);
    }
    void step(char kind, const std::string& text)
    {
        if (kind == 'd')
            sendTo(text);
        else if (kind == 'r')
            reply(m_request, text);
        else if (kind == 'i' || kind == 'v')
            dial(text, kind == 'v' ? m_nReferrer : 0);
        else
            stepOfCall(kind, text);
    }
    void stepOfCall(char kind, const std::string& text)
    {
        static const std::map<char, SIP_RECORD> media = {
            {'a', SIP_ANSWER}, {'p', SIP_RING}, {'m', SIP_MEDIA}};
        static const std::map<char, SIP_RECORD> targets = {{'e', SIP_DEFLECT}, {'t', SIP_TRANSFER}};
        if (const auto found = media.find(kind); found != media.end()) {
            tellMedia(found->second, text);
        } else if (const auto target = targets.find(kind); target != targets.end()) {
            tellTarget(target->second, m_nCall, text);
        } else if (kind == 'f') {
            auto refusal = sipWire::make<tagSipStatus>(SIP_REFUSE, m_nCall);
            refusal.nStatus = uint32_t(atoi(text.c_str()));
            tell(refusal);
        } else if (kind == 'h') {
            tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, m_nCall));
        } else if (kind == 'n') {
            tell(sipWire::make<tagSipHead>(SIP_NO_MEDIA, m_nCall));
        } else if (kind == 'c') {
            auto connect = sipWire::make<tagSipConnect>(SIP_CONNECT, m_nCall);
            connect.nOther = m_nBefore;
            tell(connect);
        } else if (kind == 'k') {
            auto tone = sipWire::make<tagSipTone>(SIP_TONE, m_nCall);
            tone.nTone = text.empty() ? '1' : uint32_t(text[0]);
            tone.nMs = 100;
            tell(tone);
        } else {
            stepOfLamp(kind, text);
        }
    }
    void stepOfLamp(char kind, const std::string& text)
    {
        if (kind == 'w') {
            auto watch = sipWire::make<tagSipWatch>(SIP_WATCH, ++m_nWatch);
            sipWire::setText(watch.szNumber, text);
            tell(watch);
        } else if (kind == 'l') {
            tellTarget(SIP_WATCH_LIST, 0, text);
        } else if (kind == 'u') {
            auto taken = sipWire::make<tagSipPickUp>(SIP_PICK_UP, ++m_nDialled);
            sipWire::setText(taken.szNumber, text);
            tell(taken);
            begun(m_nDialled);
        }
    }
    std::string filled(const std::string& text) const
    {
        const std::string own = "fuzz" + std::to_string(m_nRun);
        const std::string known[] = {"",
                                     m_contact,
                                     own,
                                     m_tag,
                                     std::to_string(m_nAgentPort),
                                     std::to_string(m_nPort),
                                     headerOf(m_request, "Via"),
                                     headerOf(m_request, "Call-ID"),
                                     paramOf(headerOf(m_request, "From"), "tag")};
        std::string full;
        for (const char c : text) {
            if (c > 0 && size_t(c) < std::size(known))
                full += known[size_t(c)];
            else
                full += c;
        }
        return full;
    }
    void sendTo(const std::string& message) const
    {
        const sockaddr_in to = loopback(m_nAgentPort);
        sendto(m_nSocket, message.data(), message.size(), 0, reinterpret_cast<const sockaddr*>(&to),
               sizeof to);
    }
    void reply(const std::string& request, const std::string& text) const
    {
        if (request.empty())
            return;
        const std::string first = upTo(text, "\n");
        const std::string to = headerOf(request, "To");
        std::string message = "SIP/2.0 " + first + "\r\n";
        for (const char* name : {"Via", "From", "Call-ID", "CSeq"})
            message += std::string(name) + ": " + headerOf(request, name) + "\r\n";
        message += "To: " + to + (to.find(";tag=") == std::string::npos ? ";tag=peer\r\n" : "\r\n");
        const std::string rest = first.size() < text.size() ? text.substr(first.size() + 1) : "";
        sendTo(message + (rest.empty() ? "\r\n" : rest));
    }
    // What ends every call, and keeps the line.
    void serveRequest(const std::string& request, bool isEnding)
    {
        const std::string contact = headerOf(request, "Contact");
        if (request.rfind("REGISTER ", 0) == 0) {
            const size_t user = contact.find("sip:");
            if (user != std::string::npos)
                m_contact = upTo(contact.substr(user + 4), "@;>");
            reply(request, "200 OK\nContact: " + contact + "\r\nExpires: 86400\r\n\r\n");
            return;
        }
        m_request = request;
        m_tag = paramOf(headerOf(request, "From"), "tag");
        if (isEnding && request.rfind("ACK ", 0) != 0)
            reply(request, request.rfind("INVITE ", 0) == 0 ? "486 Busy\n\r\n" : "200 OK\n\r\n");
    }
    void serveReply(const std::string& message, bool isEnding)
    {
        m_tag = paramOf(headerOf(message, "To"), "tag");
        const std::string number = headerOf(message, "CSeq");
        const int status = atoi(message.c_str() + 8);
        if (!isEnding || status < 200 || number.find("INVITE") == std::string::npos)
            return;
        std::string ack = "ACK sip:" + m_contact + "@127.0.0.1 SIP/2.0\r\n";
        for (const char* name : {"Via", "From", "To", "Call-ID"})
            ack += std::string(name) + ": " + headerOf(message, name) + "\r\n";
        sendTo(ack + "CSeq: " + upTo(number, " ") + " ACK\r\nMax-Forwards: 70\r\n\r\n");
    }
    // Whether anything was there.
    bool serveSocket(bool isEnding)
    {
        static char bytes[1 << 16];
        const ssize_t count = recv(m_nSocket, bytes, sizeof bytes, MSG_DONTWAIT);
        if (count < 0)
            return false;
        const std::string message(bytes, size_t(count));
        if (message.rfind("SIP/2.0 ", 0) == 0)
            serveReply(message, isEnding);
        else
            serveRequest(message, isEnding);
        return true;
    }
    void take()
    {
        const tagSipHead& head = m_reader.head();
        if (head.eKind == SIP_HELLO)
            m_bThere = true;
        else if (head.eKind == SIP_LINE)
            m_bRegistered = m_reader.as<tagSipLine>().eState == SIP_LINE_REGISTERED;
        else if (head.eKind == SIP_PONG)
            ++m_nPongs;
        else if (head.eKind == SIP_ARRIVED)
            begun(head.nId);
        else if (head.eKind == SIP_REFERRED)
            m_nReferrer = head.nId;
    }
    bool serveLink()
    {
        static char bytes[1 << 16];
        const ssize_t count = recv(m_nLink, bytes, sizeof bytes, MSG_DONTWAIT);
        if (count <= 0)
            return false;
        m_reader.add(bytes, size_t(count));
        sipWire::TAKEN taken;
        while ((taken = m_reader.take()) == sipWire::TAKEN::RECORD)
            take();
        demand(taken == sipWire::TAKEN::NEED_MORE);
        return true;
    }
    bool serve(int ms, bool isEnding = true)
    {
        pollfd entries[] = {{m_nSocket, POLLIN, 0}, {m_nLink, POLLIN, 0}};
        int count;
        while ((count = poll(entries, 2, ms)) < 0 && errno == EINTR) { // the fuzzer's own alarm
        }
        if (count <= 0)
            return false;
        const bool isSaid = serveSocket(isEnding);
        return serveLink() || isSaid;
    }
    template <typename Check>
    void waitUntil(const Check& holds)
    {
        while (!holds())
            demand(serve(kAnswerMs) && !m_bEnded);
    }
    // The agent has taken all that it was sent: what came before the first question at the latest by the
    // second.
    void settle(bool isEnding = false)
    {
        for (int i = 0; i < 2; ++i) {
            const unsigned before = m_nPongs;
            tell(sipWire::make<tagSipHead>(SIP_PING, 0));
            while (m_nPongs == before)
                demand(serve(kAnswerMs, isEnding) && !m_bEnded);
        }
        while (serveSocket(isEnding)) {
        }
    }
    void clear()
    {
        for (const uint32_t id : m_calls)
            tell(sipWire::make<tagSipStatus>(SIP_HANG_UP, id));
        m_calls.clear();
        for (; m_nWatchLeft < m_nWatch; ++m_nWatchLeft)
            tell(sipWire::make<tagSipHead>(SIP_UNWATCH, m_nWatchLeft + 1));
        if (!m_request.empty())
            serveRequest(m_request, true);
        for (int i = 0; i < kMaxRounds; ++i) {
            m_request.clear();
            settle(true);
            if (m_request.empty())
                break;
        }
    }

    int m_nSocket = -1;
    int m_nLink = -1;
    uint32_t m_nPort = 0;
    uint32_t m_nAgentPort = 0;
    std::thread m_agent;
    std::atomic<bool> m_bEnded{false};
    sipWire::Reader m_reader;
    bool m_bThere = false;
    bool m_bRegistered = false;
    unsigned m_nPongs = 0;
    unsigned m_nRun = 0;
    std::string m_contact;
    std::string m_request; // the agent's last
    std::string m_tag;     // of the agent, in what it said last
    std::vector<uint32_t> m_calls;
    uint32_t m_nCall = SIP_CALL_FIRST;
    uint32_t m_nBefore = SIP_CALL_FIRST;
    uint32_t m_nReferrer = 0;
    uint32_t m_nDialled = SIP_CALL_FIRST;
    uint32_t m_nWatch = 0;
    uint32_t m_nWatchLeft = 0;
};

} // namespace

// The guard against floods would hear the first few alone: here each look at the clock is a second later.
std::chrono::steady_clock::time_point laterEachTime() __asm__("__wrap__ZNSt6chrono3_V212steady_clock3nowEv");
std::chrono::steady_clock::time_point laterEachTime()
{
    static std::atomic<int64_t> seconds;
    return std::chrono::steady_clock::time_point(std::chrono::seconds(++seconds));
}

// A stack that has not ended in the agent's time goes with the process; what grows is seen by the limit of
// memory.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libsofia-sip-ua\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Stand stand;
    stand.play(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
