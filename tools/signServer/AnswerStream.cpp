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
    piece.pauseMs = piece.headBytes = 0;
    piece.bytes.resize(0);
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
        piece.bytes += Head(m_size);
        piece.headBytes = piece.bytes.size();
        // Head and first block go out together, unless the block is to wait.
        if (fault.kind != FaultKind::Drip && fault.kind != FaultKind::Stall)
            AppendBody(piece.bytes);
        return true;
    }
    if (fault.kind == FaultKind::Drip)
        piece.pauseMs = fault.pause;
    if (!m_stalled && stallMs > 0 && m_sent == FaultOffset()) {
        m_stalled = true;
        piece.pauseMs = stallMs;
    }
    AppendBody(piece.bytes);
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
void AnswerStream::AppendBlock(QByteArray& bytes, qint64 most)
{
    if (!m_response.chunked) {
        AppendPlain(bytes, most);
        return;
    }
    if (m_framed.isEmpty()) {
        QByteArray block;
        AppendPlain(block, kBlock);
        m_framed = QByteArray::number(block.size(), 16) + "\r\n" + block + "\r\n";
        if (block.isEmpty() && m_end == kUnknown)
            m_end = m_sent + m_framed.size();
    }
    const QByteArray framed = m_framed.left(most);
    m_framed.remove(0, framed.size());
    bytes += framed;
}

void AnswerStream::AppendPlain(QByteArray& bytes, qint64 most)
{
    const qint64 want = std::min(most, std::max<qint64>(m_size - m_read, 0));
    if (m_response.file) {
        m_read += m_response.file->Append(bytes, m_read, want);
    } else {
        bytes.append(m_response.body.constData() + m_read, want);
        m_read += want;
    }
}

void AnswerStream::AppendBody(QByteArray& bytes)
{
    const Fault& fault = m_response.fault;
    qint64 most = std::min(kBlock, m_end - m_sent);
    if (fault.kind == FaultKind::Drip)
        most = std::min<qint64>(most, fault.bytes);
    if (fault.kind == FaultKind::Stall && !m_stalled && m_sent < FaultOffset())
        most = std::min(most, FaultOffset() - m_sent);
    if (most <= 0)
        return;
    const qsizetype before = bytes.size();
    AppendBlock(bytes, most);
    const qsizetype size = bytes.size() - before;
    if (fault.kind == FaultKind::Corrupt)
        Spoil(bytes.data() + before, size);
    m_sent += size;
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

void AnswerStream::Spoil(char* bytes, qsizetype size) const
{
    const qint64 from = std::max<qint64>(FaultOffset() - m_sent, 0);
    const qint64 to = std::min<qint64>(FaultOffset() + m_response.fault.bytes - m_sent, size);
    for (qint64 i = from; i < to; ++i)
        bytes[i] = char(bytes[i] ^ 0x55);
}
