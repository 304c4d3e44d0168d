#pragma once
// The phone in this process, as its main program starts it, with the simulated lines and their calls or with
// real ones. User-interface thread.
#include "host/services/phone/phoneSimulation.h"
#include <QPoint>
#include <QTemporaryDir>
#include <functional>
#include <memory>

class QApplication;
class TurnWatch;

// The simulation, which also writes down what it has been told to dial.
class NotedSimulation : public phoneSimulation
{
public:
    int dial(const QString& number, int account, const tagCallOptions& options) override
    {
        dialled.append(number);
        return phoneSimulation::dial(number, account, options);
    }
    QStringList dialled;
};

class CallPhone
{
public:
    // argc, argv: of main(). Its folder is in memory where the machine has such a place: what is measured is
    // not its disk.
    CallPhone(int& argc, char** argv);
    ~CallPhone();
    QString root() const { return m_root.path(); }
    // To the home screen, with four registered lines. False when it does not come so far.
    bool boot(TurnWatch& turns);
    // The same with the accounts of its folder, which register at their servers.
    bool bootReal(TurnWatch& turns);
    NotedSimulation& lines() { return *m_pLines; }

private:
    static bool comeUp(TurnWatch& turns);

    QTemporaryDir m_root;
    std::unique_ptr<QApplication> m_application;
    NotedSimulation* m_pLines = nullptr; // the phone service's
};

// The next turn of the event loop does it.
void inNextTurn(const std::function<void()>& work);
// A finger, down and up.
void touchAt(const QPoint& screen);
// Of a row of four, from the left.
void touchSoftKey(int index);
