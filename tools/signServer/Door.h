#pragma once
// A port at which connections come in. All but the constructor runs on its strand or before the server runs.
#include "tools/signServer/Connection.h"
#include <boost/asio/io_context.hpp>
#include <functional>

class Door
{
public:
    using Told = std::function<void(bool isTaken)>;

    // service and book outlive it. patienceMs: for a request to come.
    Door(boost::asio::io_context& context, WebService& service, ConnectionBook& book, int patienceMs);

    // port 0 chooses one. The port, or -1 when the address cannot be taken.
    int Bind(const QByteArray& address, int port);
    // As soon as nobody else has the address. told: when it has it, and once if that has to be waited for.
    void BindWhenFree(const QByteArray& address, int port, const Told& told);
    // Takes connections from now on, if it is bound. Any thread.
    void Open();
    // then: when no connection comes in any more. Any thread.
    void Close(const std::function<void()>& then);

private:
    using tcp = boost::asio::ip::tcp;

    void TryToBind(const QByteArray& address, int port, const Told& told, bool isFirst);
    void Accept();
    void TakeAll();
    void Take(Connection::Socket socket);
    void AcceptLater();

    boost::asio::io_context& m_context;
    boost::asio::strand<boost::asio::io_context::executor_type> m_strand; // of all that follows
    tcp::acceptor m_acceptor;
    boost::asio::steady_timer m_breath;
    WebService& m_service;
    ConnectionBook& m_book;
    const int m_nPatienceMs;
    bool m_bClosed = false;
};
