#include "tools/signServer/WebServer.h"
#include <boost/asio/post.hpp>
#include <chrono>
#include <thread>
#include <vector>

namespace asio = boost::asio;
using boost::system::error_code;

namespace {

constexpr int kBacklog = 1024;                   // connections that a burst of phones may leave unaccepted
constexpr std::chrono::milliseconds kBreath(50); // when the system has nothing left for another connection

} // namespace

WebServer::WebServer(WebService& service, int connections, int patienceMs)
    : m_book(connections), m_strand(asio::make_strand(m_context)), m_acceptor(m_strand), m_breath(m_strand),
      m_service(service), m_nPatienceMs(patienceMs)
{
}

int WebServer::Bind(const QByteArray& address, int port)
{
    error_code error;
    tcp::resolver resolver(m_context);
    const auto found = resolver.resolve(address.toStdString(), std::to_string(port),
                                        tcp::resolver::passive | tcp::resolver::numeric_service, error);
    if (error || found.empty())
        return -1;
    const tcp::endpoint endpoint = found.begin()->endpoint();
    m_acceptor.open(endpoint.protocol(), error);
    if (!error)
        m_acceptor.set_option(tcp::acceptor::reuse_address(true), error);
    if (!error)
        m_acceptor.bind(endpoint, error);
    if (!error)
        m_acceptor.listen(kBacklog, error);
    if (!error)
        m_acceptor.non_blocking(true, error);
    return error ? -1 : m_acceptor.local_endpoint(error).port();
}

void WebServer::Run(int threads)
{
    asio::post(m_strand, [this] { Accept(); });
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i)
        others.emplace_back([this] { m_context.run(); });
    m_context.run();
    for (std::thread& other : others)
        other.join();
}

void WebServer::Halt()
{
    asio::post(m_strand, [this] {
        m_bHalted = true;
        m_breath.cancel();
        error_code ignored;
        m_acceptor.close(ignored);
        m_book.EndAll();
    });
}

void WebServer::Accept()
{
    if (m_bHalted)
        return;
    m_acceptor.async_wait(tcp::acceptor::wait_read, [this](error_code) { TakeAll(); });
}

// One at a time would wait behind all that the others have to do, and a building of phones would wait for it.
void WebServer::TakeAll()
{
    error_code error;
    for (int i = 0; i < kBacklog && !error && !m_bHalted; ++i) {
        Connection::Socket socket(asio::make_strand(m_context));
        m_acceptor.accept(socket, error);
        if (!error)
            Take(std::move(socket));
        else if (error == asio::error::connection_aborted)
            error.clear();
    }
    if (error && error != asio::error::would_block)
        AcceptLater();
    else
        Accept();
}

// Without room the socket closes here, and whoever asked can ask again.
void WebServer::Take(Connection::Socket socket)
{
    const auto connection = std::make_shared<Connection>(std::move(socket), m_service, m_book, m_nPatienceMs);
    if (m_book.Admit(connection))
        connection->Start();
}

// No descriptor is left: one comes free, and the system is not asked in a circle.
void WebServer::AcceptLater()
{
    m_book.EndLongestWait();
    m_breath.expires_after(kBreath);
    m_breath.async_wait([this](error_code) { Accept(); });
}
