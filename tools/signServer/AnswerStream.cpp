#include "tools/signServer/AnswerStream.h"
#include "tools/signServer/ReplyText.h"
#include <QDateTime>
#include <algorithm>
#include <limits>
#include <ostream>

// It takes the streams for granted.
#include <boost/beast/http/status.hpp>

namespace {

constexpr qint64 kBlock = 64 << 10;
constexpr qint64 kUnknown = std::numeric_limits<qint64>::max();

QByteArray ReasonOf(int status)
{
    const auto reason = boost::beast::http::obsolete_reason(boost::beast::http::status(status));
    return QByteArray(reason.data(), qsizetype(reason.size()));
}

bool HasBody(int status)
{
    return status != 304 && status != 204;
}

} // namespace

AnswerStream::AnswerStream(const WebResponse& response, bool headOnly, bool keeps)
    : m_response(response), m_headOnly(headOnly), m_keeps(keeps),
      m_size(response.file ? response.file->Size() : response.body.size())
{
    PlanBody();
}

void AnswerStream::PlanBody()
{
    const Fault& fault = m_response.fault;
    m_end = m_headOnly || !HasBody(m_response.status) ? 0 : m_response.chunked ? kUnknown : m_size;
    m_spoilt = fault.kind == FaultKind::Longer || fault.kind == FaultKind::Shorter ||
               fault.kind == FaultKind::Garbage || fault.kind == FaultKind::BrokenXml;
    if (fault.kind == FaultKind::Cut && m_end > 0) {
        m_end = FaultOffset();
        m_spoilt = true;
    }
    m_spoilt = m_spoilt || (fault.kind == FaultKind::Corrupt && m_end > 0);
}

bool AnswerStream::Next(Piece& piece)
{
    piece = Piece();
    const Fault& fault = m_response.fault;
    const qint64 stallMs = fault.kind == FaultKind::Stall ? fault.seconds * 1000LL : 0;
    if (!m_begun) {
        m_begun = true;
        piece.pauseMs = fault.after < 0 ? stallMs : 0;
        m_stalled = fault.after < 0;
        if (fault.kind == FaultKind::Garbage) {
            piece.bytes = Garbage();
            m_sent = m_end = piece.bytes.size();
            return true;
        }
        piece.bytes = Head(m_size);
        piece.headBytes = piece.bytes.size();
        // Head and first block go out together, unless the block is to wait.
        if (fault.kind != FaultKind::Drip && fault.kind != FaultKind::Stall)
            piece.bytes += BodyPiece();
        return true;
    }
    if (fault.kind == FaultKind::Drip)
        piece.pauseMs = fault.pause;
    if (!m_stalled && stallMs > 0 && m_sent == FaultOffset()) {
        m_stalled = true;
        piece.pauseMs = stallMs;
    }
    piece.bytes = BodyPiece();
    return !piece.bytes.isEmpty();
}

QByteArray AnswerStream::Head(qint64 length) const
{
    const Fault& fault = m_response.fault;
    if (fault.kind == FaultKind::Longer)
        length += fault.by;
    else if (fault.kind == FaultKind::Shorter)
        length -= std::min(fault.by, length);
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_response.status) + " " +
                      ReasonOf(m_response.status) + "\r\nDate: " + HttpTime(QDateTime::currentDateTimeUtc()) +
                      "\r\n";
    for (const auto& [name, value] : m_response.fields)
        head += name + ": " + value + "\r\n";
    if (!m_response.type.isEmpty())
        head += "Content-Type: " + m_response.type + "\r\n";
    if (m_response.chunked)
        head += "Transfer-Encoding: chunked\r\n";
    else if (HasBody(m_response.status))
        head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    return head + (m_keeps ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n");
}

// As it goes out: in chunks each block has a frame, and the last one is empty.
QByteArray AnswerStream::Block(qint64 most)
{
    if (m_response.chunked && !m_framed.isEmpty()) {
        const QByteArray block = m_framed.left(most);
        m_framed.remove(0, block.size());
        return block;
    }
    const qint64 want = m_response.chunked ? kBlock : most;
    const QByteArray block =
        m_response.file ? m_response.file->Read(m_read, std::min(want, std::max<qint64>(m_size - m_read, 0)))
                        : m_response.body.mid(m_read, want);
    m_read += block.size();
    if (!m_response.chunked)
        return block;
    m_framed = QByteArray::number(block.size(), 16) + "\r\n" + block + "\r\n";
    if (block.isEmpty() && m_end == kUnknown)
        m_end = m_sent + m_framed.size();
    return Block(most);
}

QByteArray AnswerStream::BodyPiece()
{
    const Fault& fault = m_response.fault;
    qint64 most = std::min(kBlock, m_end - m_sent);
    if (fault.kind == FaultKind::Drip)
        most = std::min<qint64>(most, fault.bytes);
    if (fault.kind == FaultKind::Stall && !m_stalled && m_sent < FaultOffset())
        most = std::min(most, FaultOffset() - m_sent);
    if (most <= 0)
        return QByteArray();
    QByteArray bytes = Block(most);
    if (fault.kind == FaultKind::Corrupt)
        Spoil(bytes);
    m_sent += bytes.size();
    return bytes;
}

qint64 AnswerStream::FaultOffset() const
{
    const Fault& fault = m_response.fault;
    const qint64 wanted = fault.after < 0 ? m_size / 2 : fault.after;
    return std::max<qint64>(std::min(wanted, m_size - 1), 0);
}

QByteArray AnswerStream::Garbage() const
{
    std::mt19937 dice(m_response.fault.seed);
    QByteArray bytes(m_response.fault.bytes, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(dice() & 0xff);
    return bytes;
}

void AnswerStream::Spoil(QByteArray& bytes) const
{
    const qint64 from = std::max<qint64>(FaultOffset() - m_sent, 0);
    const qint64 to = std::min<qint64>(FaultOffset() + m_response.fault.bytes - m_sent, bytes.size());
    for (qint64 i = from; i < to; ++i)
        bytes[i] = char(bytes[i] ^ 0x55);
}
