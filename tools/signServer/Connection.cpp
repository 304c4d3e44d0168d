#include "tools/signServer/Connection.h"
#include "tools/signServer/RequestHead.h"
#include <algorithm>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <chrono>
#include <utility>

namespace asio = boost::asio;
using boost::system::error_code;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds kIdle(15000);         // without a request
constexpr milliseconds kWrite(30000);        // for the other side to take a piece
constexpr milliseconds kGoodbye(2000);       // for it to read the last answer
constexpr qsizetype kLargestHead = 32 << 10; // the library holds fields of 64 KB together
constexpr qint64 kLargestBody = 64 << 10;    // of a request
constexpr qint64 kMostDrained = 256 << 10;

// Fresh memory for each answer would cost as much as to read a file into it.
QByteArray& SpareMemory()
{
    static thread_local QByteArray spare;
    return spare;
}

} // namespace

Connection::Connection(Socket socket, WebService& service, ConnectionBook& book, int patienceMs)
    : m_stream(std::move(socket)), m_pause(m_stream.get_executor()), m_service(service), m_book(book),
      m_patience(patienceMs)
{
    error_code error;
    const auto peer = m_stream.socket().remote_endpoint(error);
    if (!error)
        m_address = QByteArray::fromStdString(peer.address().to_string());
    // A small answer does not wait for the one before to be acknowledged.
    m_stream.socket().set_option(asio::ip::tcp::no_delay(true), error);
}

Connection::~Connection()
{
    m_book.Leave(this);
}

void Connection::Start()
{
    asio::dispatch(m_stream.get_executor(), [self = shared_from_this()] { self->AwaitRequest(); });
}

void Connection::End()
{
    asio::post(m_stream.get_executor(), [self = shared_from_this()] {
        self->m_bOver = true;
        self->m_pause.cancel();
        self->m_stream.close();
    });
}

void Connection::AwaitRequest()
{
    if (m_bOver)
        return;
    m_book.Wait(this);
    m_nScanned = 0;
    m_stream.expires_after(m_come.isEmpty() ? kIdle : m_patience);
    TakeHead();
}

void Connection::TakeHead()
{
    const qsizetype end = FindHeadEnd(m_come, m_nScanned);
    if (end < 0)
        Refuse(400, "a line without its end");
    else if (std::max(end, m_nScanned) > kLargestHead)
        Refuse(431, "too large a head");
    else if (end > 0)
        ReadHeadOf(end);
    else
        Receive(&Connection::TakeHead);
}

void Connection::ReadHeadOf(qsizetype size)
{
    m_request = WebRequest();
    const QByteArray wrong = ReadHead(m_come.left(size), m_request);
    m_come.remove(0, size);
    if (!wrong.isEmpty())
        Refuse(400, wrong);
    else if (m_request.length > kLargestBody)
        Refuse(413, "too large a body");
    else
        TakeBody();
}

void Connection::TakeBody()
{
    if (m_come.size() < m_request.length) {
        Receive(&Connection::TakeBody);
        return;
    }
    m_request.body = m_come.left(m_request.length);
    m_come.remove(0, m_request.length);
    Serve();
}

void Connection::Receive(Step next)
{
    m_stream.async_read_some(asio::buffer(m_block),
                             [self = shared_from_this(), next](error_code error, size_t n) {
                                 self->Hear(error);
                                 if (error || self->m_bOver)
                                     return;
                                 // From its first byte on the whole request has one time.
                                 if (self->m_come.isEmpty() && next == &Connection::TakeHead)
                                     self->m_stream.expires_after(self->m_patience);
                                 self->m_come.append(self->m_block.data(), qsizetype(n));
                                 (self.get()->*next)();
                             });
}

void Connection::Serve()
{
    m_book.Work(this);
    m_stream.expires_never();
    m_time.start();
    m_request.address = m_address;
    // The server does not end as long as an answer is on its way.
    const auto busy = asio::make_work_guard(m_stream.get_executor());
    m_service.Answer(m_request, [self = shared_from_this(), busy](const WebResponse& response) {
        asio::dispatch(self->m_stream.get_executor(), [self, response] { self->Send(response); });
    });
}

// Where the next request begins is not known then: the connection ends.
void Connection::Refuse(int status, const QByteArray& why)
{
    const bool headOnly = m_request.method == "HEAD";
    m_request = WebRequest();
    m_request.address = m_address;
    m_time.start();
    m_book.Work(this);
    WebResponse response;
    response.status = status;
    response.type = "text/plain";
    response.body = headOnly ? QByteArray() : why + "\n";
    response.refused = why;
    Send(response);
}

void Connection::Send(const WebResponse& response)
{
    m_pAnswer = std::make_unique<AnswerStream>(response, m_request.method == "HEAD", m_request.keeps);
    m_response = response;
    m_response.body.clear();
    m_response.file.reset();
    m_nBodyBytes = 0;
    m_piece.bytes = std::exchange(SpareMemory(), QByteArray());
    m_piece.bytes.reserve(AnswerStream::PIECE);
    if (m_bOver)
        Finish(false);
    else
        SendNext();
}

void Connection::SendNext()
{
    if (!m_pAnswer->Next(m_piece))
        Finish(true);
    else if (m_piece.pauseMs > 0)
        Pause(m_piece.pauseMs);
    else
        Write();
}

void Connection::Pause(qint64 ms)
{
    m_pause.expires_after(milliseconds(ms));
    m_pause.async_wait([self = shared_from_this()](error_code) {
        error_code ignored;
        self->m_stream.socket().cancel(ignored);
        if (self->m_bOver)
            self->Finish(false);
        else
            self->Write();
    });
    WatchForLeaving();
}

// Who goes while an answer is held back does not leave his connection behind.
void Connection::WatchForLeaving()
{
    m_stream.socket().async_wait(asio::socket_base::wait_read, [self = shared_from_this()](error_code error) {
        error_code failed;
        const bool left = !error && self->m_stream.socket().available(failed) == 0;
        if (!left && !failed)
            return;
        self->m_bOver = true;
        self->m_pause.cancel();
    });
}

void Connection::Write()
{
    m_stream.expires_after(kWrite);
    asio::async_write(m_stream, asio::buffer(m_piece.bytes.constData(), size_t(m_piece.bytes.size())),
                      [self = shared_from_this()](error_code error, size_t n) {
                          self->m_nBodyBytes += std::max<qint64>(qint64(n) - self->m_piece.headBytes, 0);
                          if (error || self->m_bOver)
                              self->Finish(false);
                          else
                              self->SendNext();
                      });
}

void Connection::Finish(bool sent)
{
    const bool whole = sent && m_pAnswer->IsWhole();
    const bool keeps = sent && m_pAnswer->Keeps();
    const Served served = {m_request, m_response, m_nBodyBytes, whole, m_time.elapsed()};
    m_service.Finish(served);
    m_pUnheard = whole && !m_response.sum.isEmpty() ? std::make_unique<Served>(served) : nullptr;
    m_pAnswer.reset();
    if (m_piece.bytes.capacity() <= 2 * AnswerStream::PIECE)
        SpareMemory() = std::move(m_piece.bytes);
    m_piece = AnswerStream::Piece();
    if (keeps)
        AwaitRequest();
    else if (sent)
        SayGoodbye();
}

// A small file lies in the systems' memory when it has gone out: who ends the connection without reading it
// makes a reset of it, and who goes on or ends it well has read it.
void Connection::Hear(const error_code& error)
{
    if (m_pUnheard && error == asio::error::connection_reset)
        m_service.Lose(*m_pUnheard);
    m_pUnheard.reset();
}

// What has come and was not read would make the system throw the answer away with the connection.
void Connection::SayGoodbye()
{
    m_book.Wait(this);
    error_code ignored;
    m_stream.socket().shutdown(asio::socket_base::shutdown_send, ignored);
    m_stream.expires_after(kGoodbye);
    Drain();
}

void Connection::Drain()
{
    m_stream.async_read_some(asio::buffer(m_block), [self = shared_from_this()](error_code error, size_t n) {
        self->Hear(error);
        self->m_nDrained += qint64(n);
        if (!error && !self->m_bOver && self->m_nDrained < kMostDrained)
            self->Drain();
    });
}
