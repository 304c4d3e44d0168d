#pragma once
// The socket to the phone. Whatever ends it, a damaged record too, is told once as its end.
#include "sip/sipStack.h"
#include "sip/sipWire.h"
#include <string>

class PhoneLink
{
public:
    enum : size_t { MAX_WAITING = 4 << 20 }; // bytes that a phone may leave unread

    using Ender = std::function<void(bool isDamaged)>;
    using Taker = std::function<void(const sipWire::Reader& record)>;

    // End is told from the event loop, at the latest when nothing can be sent any more.
    PhoneLink(su_root_t* root, Taker taker, Ender end);
    ~PhoneLink();
    PhoneLink(const PhoneLink&) = delete;
    PhoneLink& operator=(const PhoneLink&) = delete;

    // Bytes that the phone has not taken yet.
    size_t waiting() const { return m_waiting.size(); }
    // False when nobody listens at the path.
    bool open(const std::string& path);
    template <typename Record>
    void tell(const Record& record)
    {
        send(&record, sizeof record);
    }

private:
    static int onReady(su_root_magic_t*, su_wait_t* wait, su_wakeup_arg_t* self);
    void send(const void* record, size_t size);
    void receive();
    void flush();
    void watch();
    void fail(bool isDamaged);

    su_root_t* m_pRoot;
    Taker m_taker;
    Ender m_end;
    su_socket_t m_nSocket = INVALID_SOCKET;
    int m_nWait = -1;
    sipWire::Reader m_reader;
    std::string m_waiting;
};
