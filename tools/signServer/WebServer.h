#pragma once
// Accepts connections and serves them on a few threads, whatever their number.
#include "tools/signServer/Door.h"
#include <memory>

class WebServer
{
public:
    // service outlives it. connections: how many there may be at a time. patienceMs: for a request to come.
    WebServer(WebService& service, int connections, int patienceMs);

    // port 0 chooses one. The port, or -1 when the address cannot be taken.
    int Bind(const QByteArray& address, int port);
    // A second address, at which another service answers, as soon as nobody else has it. Before Run.
    void BindWhenFree(const QByteArray& address, int port, WebService& service, const Door::Told& told);
    // Serves on so many threads, of which the caller's is one, until Halt.
    void Run(int threads);
    // Any thread; ends also answers that are held back or drip.
    void Halt();

private:
    ConnectionBook m_book; // before what holds connections
    boost::asio::io_context m_context;
    const int m_nPatienceMs;
    Door m_door;
    std::unique_ptr<Door> m_pSecond;
};
