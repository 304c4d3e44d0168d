#pragma once
// One connection: it reads a request, has it answered, sends the answer, and waits for the next. No thread
// waits with it, and every step has its time.
#include "tools/signServer/AnswerStream.h"
#include "tools/signServer/ConnectionBook.h"
#include <QElapsedTimer>
#include <array>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/beast/core/basic_stream.hpp>
#include <boost/beast/core/rate_policy.hpp>
#include <chrono>
#include <memory>

class Connection : public BookedConnection, public std::enable_shared_from_this<Connection>
{
public:
    using Strand = boost::asio::strand<boost::asio::io_context::executor_type>;
    using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp, Strand>;

    // service and book outlive it; it enters its end in the book. patienceMs: for a whole request to come.
    Connection(Socket socket, WebService& service, ConnectionBook& book, int patienceMs);
    ~Connection() override;
    // It lives until its last request is answered. Any thread.
    void Start();
    // Ends it at once, also an answer that is held back. Any thread.
    void End() override;

private:
    using Step = void (Connection::*)();

    void AwaitRequest();
    void TakeHead();
    void ReadHeadOf(qsizetype size);
    void TakeBody();
    void Receive(Step next);
    void Serve();
    void Refuse(int status, const QByteArray& why);
    void Send(const WebResponse& response);
    void SendNext();
    void Pause(qint64 ms);
    void WatchForLeaving();
    void Write();
    void Finish(bool sent);
    void Hear(const boost::system::error_code& error);
    void SayGoodbye();
    void Drain();

    boost::beast::basic_stream<boost::asio::ip::tcp, Strand> m_stream;
    boost::asio::steady_timer m_pause;
    WebService& m_service;
    ConnectionBook& m_book;
    const std::chrono::milliseconds m_patience;
    QByteArray m_address;
    QByteArray m_come; // received and not yet read
    qsizetype m_nScanned = 0;
    std::array<char, 8192> m_block;
    WebRequest m_request;
    WebResponse m_response;
    std::unique_ptr<AnswerStream> m_pAnswer;
    AnswerStream::Piece m_piece;
    std::unique_ptr<Served> m_pUnheard; // a file that went out, until the other side is heard again
    qint64 m_nBodyBytes = 0;
    qint64 m_nDrained = 0;
    bool m_bOver = false;
    QElapsedTimer m_time; // of the request
};
