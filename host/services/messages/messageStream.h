#pragma once
// One connection between two processes: what is still to be written, and what was read but is no whole
// frame yet. One thread at a time; never waits.
#include "host/services/messages/messageWire.h"
#include <QList>

class messageStream
{
public:
    enum : int { MAX_OUTPUT = 4 << 20 }; // bytes kept for a peer that does not read

    // Owns the socket.
    explicit messageStream(int socket) : m_nSocket(socket) {}
    ~messageStream();
    messageStream(const messageStream&) = delete;
    messageStream& operator=(const messageStream&) = delete;

    int socket() const { return m_nSocket; }
    // False when there is no room.
    bool append(const messageWire::tagFrame& frame);
    bool hasOutput() const { return m_nWritten < m_output.size(); }
    // Writes what the peer takes. False when the peer is gone.
    bool flush();
    // Reads some of what is there. False when the peer has closed or does not speak our language; the
    // frames before that are in the list.
    bool receive(QList<messageWire::tagFrame>& frames);

private:
    bool takeFrames(QList<messageWire::tagFrame>& frames);

    int m_nSocket;
    QByteArray m_output;
    qsizetype m_nWritten = 0; // of m_output
    QByteArray m_input;
};
