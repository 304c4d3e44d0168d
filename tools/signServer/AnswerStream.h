#pragma once
// An answer as the bytes that go out, piece by piece, as they should be or as a fault wants them.
#include "tools/signServer/WebExchange.h"

class AnswerStream
{
public:
    struct Piece
    {
        qint64 pauseMs = 0; // before it
        QByteArray bytes;
        qsizetype headBytes = 0; // of them
    };

    // headOnly: the answer to HEAD. keeps: what the head promises about the connection.
    AnswerStream(const WebResponse& response, bool headOnly, bool keeps);

    // As many bytes as a piece that is none of a fault may have, with a usual head.
    static constexpr qsizetype PIECE = (64 << 10) + 1024;

    // False when there is nothing more to send. The piece's memory is used again.
    bool Next(Piece& piece);
    // Everything was given out, and as it should be.
    bool IsWhole() const { return m_sent >= m_end && !m_spoilt; }
    // The other side can tell where the next answer begins.
    bool Keeps() const { return m_keeps && IsWhole(); }

private:
    QByteArray Head(qint64 length) const;
    void PlanBody();
    void AppendBlock(QByteArray& bytes, qint64 most);
    void AppendPlain(QByteArray& bytes, qint64 most);
    void AppendBody(QByteArray& bytes);
    qint64 FaultOffset() const;
    QByteArray Garbage() const;
    void Spoil(char* bytes, qsizetype size) const;

    WebResponse m_response;
    const bool m_headOnly;
    const bool m_keeps;
    const qint64 m_size; // of body or file
    qint64 m_read = 0;   // of it
    QByteArray m_framed; // a chunk that has not gone out
    qint64 m_sent = 0;   // of the body, as it goes out
    qint64 m_end = 0;    // where it ends
    bool m_begun = false;
    bool m_stalled = false;
    bool m_spoilt = false;
};
