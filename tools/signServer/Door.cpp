#include "tools/signServer/Door.h"
#include <boost/asio/post.hpp>
#include <chrono>

namespace asio = boost::asio;
using boost::system::error_code;

namespace {

constexpr int kBacklog = 1024;                   // connections that a burst of phones may leave unaccepted
constexpr std::chrono::milliseconds kBreath(50); // when the system has nothing left for another connection
constexpr std::chrono::milliseconds kLookAgain(500); // whether an address has become free

} // namespace

Door::Door(asio::io_context& context, WebService& service, ConnectionBook& book, int patienceMs)
    : m_context(context), m_strand(asio::make_strand(context)), m_acceptor(m_strand), m_breath(m_strand),
      m_service(service), m_book(book), m_nPatienceMs(patienceMs)
{
}

int Door::Bind(const QByteArray& address, int port)
{
    error_code error, ignored;
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
    if (error)
        m_acceptor.close(ignored);
    return error ? -1 : m_acceptor.local_endpoint(error).port();
}

void Door::BindWhenFree(const QByteArray& address, int port, const Told& told)
{
    asio::post(m_strand, [this, address, port, told] { TryToBind(address, port, told, true); });
}

void Door::TryToBind(const QByteArray& address, int port, const Told& told, bool isFirst)
{
    if (m_bClosed)
        return;
    if (Bind(address, port) > 0) {
        told(true);
        Accept();
        return;
    }
    if (isFirst)
        told(false);
    m_breath.expires_after(kLookAgain);
    m_breath.async_wait([this, address, port, told](error_code) { TryToBind(address, port, told, false); });
}

void Door::Open()
{
    asio::post(m_strand, [this] {
        if (m_acceptor.is_open())
            Accept();
    });
}

void Door::Close(const std::function<void()>& then)
{
    asio::post(m_strand, [this, then] {
        m_bClosed = true;
        m_breath.cancel();
        error_code ignored;
        m_acceptor.close(ignored);
        then();
    });
}

void Door::Accept()
{
    if (m_bClosed)
        return;
    m_acceptor.async_wait(tcp::acceptor::wait_read, [this](error_code) { TakeAll(); });
}

// One at a time would wait behind all that the others have to do, and a building of phones would wait for it.
void Door::TakeAll()
{
    error_code error;
    for (int i = 0; i < kBacklog && !error && !m_bClosed; ++i) {
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
void Door::Take(Connection::Socket socket)
{
    const auto connection = std::make_shared<Connection>(std::move(socket), m_service, m_book, m_nPatienceMs);
    if (m_book.Admit(connection))
        connection->Start();
}

// No descriptor is left: one comes free, and the system is not asked in a circle.
void Door::AcceptLater()
{
    m_book.EndLongestWait();
    m_breath.expires_after(kBreath);
    m_breath.async_wait([this](error_code) { Accept(); });
}
