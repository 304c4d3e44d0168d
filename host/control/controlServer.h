#pragma once
// The control socket: lets a shell drive and inspect the phone. Off unless the main program opens it.
#include "support/host/api.h"
#include <QHash>
#include <QObject>

class QLocalSocket;
class QSocketNotifier;

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
    void acceptAll();
    void serve(int descriptor);
    void read(QLocalSocket* client);
    void answer(QLocalSocket* client, const QByteArray& line);
    int m_nListener = -1;
    QByteArray m_path;
    QSocketNotifier* m_pNotifier = nullptr;
    QHash<QLocalSocket*, QByteArray> m_input;
};
