#pragma once
// A port of the loopback interface where somebody answers on a thread of his own.
#include "tests/sip/udpPeer.h"
#include <atomic>
#include <functional>
#include <thread>

class AnsweringServer
{
public:
    // answer: is called on that thread, with each message.
    using Answer = std::function<void(UdpPeer& socket, const QByteArray& message)>;
    explicit AnsweringServer(Answer answer)
        : m_answer(std::move(answer)), m_thread([this] {
              while (!m_bEnds) {
                  const QByteArray message = m_socket.receive(LOOK_MS);
                  if (!message.isEmpty())
                      m_answer(m_socket, message);
              }
          })
    {
    }
    ~AnsweringServer()
    {
        m_bEnds = true;
        m_thread.join();
    }
    uint32_t port() const { return m_socket.port(); }

private:
    enum { LOOK_MS = 20 };

    Answer m_answer;
    UdpPeer m_socket;
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
