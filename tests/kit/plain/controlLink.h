#pragma once
// One connection to a phone's control socket, kept open: a command costs what the phone takes for it, and no
// process of its own.
#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

class ControlLink
{
public:
    ControlLink() = default;
    ~ControlLink();
    ControlLink(const ControlLink&) = delete;
    ControlLink& operator=(const ControlLink&) = delete;

    // Waits for a phone that is just starting. False when ms went by.
    bool open(const QString& socket, int ms);
    void close();
    bool isOpen() const { return m_nSocket >= 0; }
    // Open, and the phone at the other end is still there.
    bool isAlive() const;
    // The command's value. The link is closed when the phone is gone, or gives no answer for ms.
    QJsonValue ask(const QStringList& words, int ms = ANSWER_MS);
    // What the last command took, in milliseconds.
    double tookMs() const { return m_tookMs; }

    enum { ANSWER_MS = 20000 };

private:
    bool send(const QByteArray& line);
    // One line, without its end.
    QByteArray receive(int ms);

    int m_nSocket = -1;
    QByteArray m_input;
    double m_tookMs = 0;
};
