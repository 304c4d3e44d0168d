#pragma once
// One connection to a phone. It reads whole request heads, so that what phones send raw can be put in order
// before it is parsed, and writes answers, as they are or as a fault wants them. One thread.
#include "tools/signServer/FaultPlan.h"
#include <atomic>
#include <functional>
#include <httplib.h>

class WireStream : public httplib::Stream
{
public:
    // Does not own the socket. stopping: ends every wait when it becomes true.
    WireStream(int socket, const std::atomic<bool>& stopping) : m_socket(socket), m_stopping(stopping) {}

    // Waits for the head of the next request; false when none comes. isWanted: asked while nothing has come;
    // false ends the wait, because another connection needs the thread.
    bool AwaitRequest(int idleMs, const std::function<bool()>& isWanted);
    void SetFault(const Fault& fault) { m_fault = fault; }
    const Fault& GetFault() const { return m_fault; }
    // Of the last answer.
    int Status() const { return m_status; }
    qint64 BodyBytes() const { return m_bodySent; }
    // The connection cannot carry another answer.
    bool IsOver() const { return m_over; }

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, size_t size) override;
    ssize_t write(const char* bytes, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return m_socket; }

private:
    int Receive(int timeoutMs);
    void TidyHead(qsizetype lineEnd);
    bool WriteHead();
    void ChangeLength(qint64 by);
    bool WriteBody(QByteArray bytes);
    bool WriteDripping(const QByteArray& bytes);
    bool WriteGarbage();
    void Spoil(QByteArray& bytes) const;
    qint64 FaultOffset() const;
    bool SendAll(const char* bytes, qint64 size);
    bool Pause(qint64 ms) const;

    int m_socket;
    const std::atomic<bool>& m_stopping;
    QByteArray m_in; // received and not yet read
    Fault m_fault;
    QByteArray m_head; // of the answer, until it is complete
    bool m_headSent = false;
    bool m_over = false;
    bool m_stalled = false;
    int m_status = 0;
    qint64 m_length = 0; // of the body, as the answer's head gave it
    qint64 m_bodySent = 0;
};
