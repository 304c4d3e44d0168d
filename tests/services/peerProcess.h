#pragma once
// A second process of the phone, for tests: this test program started again, with another part to play.
#include <QByteArray>
#include <QProcess>
#include <QString>

// Messages that a peer answers.
enum PEER_MESSAGE : unsigned int {
    PEER_SAY = 1,       // prints "said WPARAM LPARAM EXTRA"
    PEER_COUNT = 2,     // expects wParam 0, 1, 2, ...
    PEER_REPORT = 3,    // result: how many were counted, -1 when one was out of order
    PEER_ADD = 4,       // result: wParam + lParam + size of the extra data
    PEER_DIE = 5,       // is killed while it handles this
    PEER_HANG = 6,      // never ends handling this
    PEER_ASK_BACK = 7,  // sends PEER_ADD to "app_test"; result: its result + 1
    PEER_POST_BACK = 8, // posts wParam messages PEER_COUNT to "app_test"
    PEER_BROADCAST = 9, // broadcasts CONFIG_MSG_BCAST_CHANGED with wParam and lParam
    PEER_BLOCK = 10     // reply: a block of wParam times the letter lParam
};

class peerProcess
{
public:
    // A process that listens as name, in the device root in force.
    explicit peerProcess(const QString& name);
    // Kills it.
    ~peerProcess();
    // It said "ready".
    bool isReady();
    // A process of the name that could not listen says "refused".
    bool isRefused();
    bool hasSaid(const QByteArray& line);
    void kill();
    void stop();
    void resume();
    qint64 pid() const { return m_process.processId(); }

private:
    void signal(int number);

    QProcess m_process;
    QByteArray m_said;
};
