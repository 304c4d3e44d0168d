#pragma once
// A SIP server or phone of the loopback interface that says what a test has it say, message by message.
#include <QByteArray>
#include <cstdint>

class UdpPeer
{
public:
    // port: 0 for any. host: an address of the loopback network.
    explicit UdpPeer(const char* host = "127.0.0.1", uint32_t port = 0);
    ~UdpPeer();
    UdpPeer(const UdpPeer&) = delete;
    UdpPeer& operator=(const UdpPeer&) = delete;

    // Somebody takes connections there.
    static bool isListening(uint32_t port);
    uint32_t port() const { return m_nPort; }
    // The header line by which a number is reached here.
    QByteArray contactLine(const QByteArray& number = "300") const;
    // The same, of a message with a description.
    QByteArray linesWithSdp(const QByteArray& number = "300") const;
    // The next message; empty when none comes.
    QByteArray receive(int ms = 15000);
    // The next one that begins so; others before it are dropped.
    QByteArray receive(const QByteArray& start, int ms = 15000);
    void send(const QByteArray& message, uint32_t port);
    // Of whoever has sent the last one.
    uint32_t lastPort() const { return m_nLast; }
    // To whoever has sent the last one.
    void answer(const QByteArray& message) { send(message, m_nLast); }
    // lines: whole header lines, without their ends.
    static QByteArray replyTo(const QByteArray& request, const QByteArray& status,
                              const QByteArray& lines = {}, const QByteArray& body = {});
    void reply(const QByteArray& request, const QByteArray& status, const QByteArray& lines = {},
               const QByteArray& body = {});

private:
    int m_nSocket;
    uint32_t m_nPort = 0;
    uint32_t m_nLast = 0;
};

// The value of a header line; empty where there is none.
QByteArray headerOf(const QByteArray& message, const QByteArray& name);
// A parameter of it: name=value or name="value".
QByteArray paramOf(const QByteArray& header, const QByteArray& name);
// The response of a digest answer as the standard has it, in hex.
QByteArray digestOf(const QByteArray& method, const QByteArray& answer, const QByteArray& user,
                    const QByteArray& password);
