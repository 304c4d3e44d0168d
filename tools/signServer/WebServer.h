#pragma once
// Accepts connections and serves them on a few threads, whatever their number.
#include "tools/signServer/Connection.h"
#include <boost/asio/io_context.hpp>

class WebServer
{
public:
    // service outlives it. connections: how many there may be at a time. patienceMs: for a request to come.
    WebServer(WebService& service, int connections, int patienceMs);

    // port 0 chooses one. The port, or -1 when the address cannot be taken.
    int Bind(const QByteArray& address, int port);
    // Serves on so many threads, of which the caller's is one, until Halt.
    void Run(int threads);
    // Any thread; ends also answers that are held back or drip.
    void Halt();

private:
    using tcp = boost::asio::ip::tcp;

    void Accept();
    void TakeAll();
    void Take(Connection::Socket socket);
    void AcceptLater();

    ConnectionBook m_book; // before what holds connections
    boost::asio::io_context m_context;
    boost::asio::strand<boost::asio::io_context::executor_type> m_strand; // of all that follows
    tcp::acceptor m_acceptor;
    boost::asio::steady_timer m_breath;
    WebService& m_service;
    const int m_nPatienceMs;
    bool m_bHalted = false;
};
