#pragma once
// The control socket: lets a shell drive and inspect the phone. Off unless the main program opens it.
#include "support/host/api.h"
#include <QHash>
#include <QLocalServer>
#include <QObject>

class QLocalSocket;

// One request is one line, a JSON array of words; the answer is one line, a JSON value. A refusal is an
// object with "error".
class HX_HOST_API controlServer : public QObject
{
    Q_OBJECT
public:
    explicit controlServer(QObject* parent = nullptr);
    ~controlServer() override;
    // path: on this machine. The socket is for its owner alone. False when it cannot be made, or when a
    // live phone has it already.
    bool listen(const QString& path);

private:
    void accept();
    void read(QLocalSocket* client);
    void answer(QLocalSocket* client, const QByteArray& line);
    QLocalServer m_server;
    QHash<QLocalSocket*, QByteArray> m_input;
};
