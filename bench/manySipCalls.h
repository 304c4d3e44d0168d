#pragma once
// Calls of SIPp with the running phone over its real line, one after another: who calls, what becomes of a
// call and who ends it is drawn at random, done by keys, and what the phone says of it is looked at. What
// goes by time and not by calls is renewed every half minute: an hour of the bench has more of that than a
// day of a phone.
#include "bench/heapFolder.h"
#include "bench/heldThings.h"
#include "bench/sipExchange.h"
#include "bench/sippCallers.h"
#include "bench/steeredPhone.h"
#include <QMap>
#include <random>

class ManySipCalls
{
public:
    enum PROCESS { PHONE, AGENT, MEDIA, PROCESSES };

    explicit ManySipCalls(unsigned seed);
    // False when the phone does not come up, or does not register.
    bool start();
    // So many more calls, in and out.
    void play(int count);
    // Two calls talk, and others call at a rate for some seconds: how many have called.
    int refuseOthers(int perSecond, int seconds);
    // Waits until the phone, and what its stack still keeps of calls, is at rest.
    void rest();
    tagHeld held(PROCESS process) const;
    static const char* nameOf(PROCESS process);
    // Calls that the phone has lost, or of which it says something else than was done.
    int wrongs() const { return m_nWrongs; }
    // Runs of SIPp in which a call has not gone as it is written there.
    int failedRuns() const { return m_nFailedRuns; }
    int begun() const { return m_nBegun; }
    int renewals() const { return m_exchange.renewals(); }
    void printActs() const;

private:
    struct tagAct
    {
        QByteArray number;
        QByteArray what;
    };

    int draw(int below) { return int(m_random() % unsigned(below)); }
    QByteArray nextNumber(char first);
    tagAct drawAct();
    QJsonObject ask(const QStringList& words) { return m_phone.ask(words); }
    void key(const char* name) { m_phone.key(name); }
    QStringList peerWords() const;

    void callIn(int count);
    void actOn(const tagAct& act);
    void callOut();
    // The only call there is, when it has come so far; without a number when it does not come.
    QJsonObject waitForCall(const QByteArray& number, const char* state);
    bool waitForSound(const QByteArray& number);
    bool waitForEnd(const QByteArray& number, const QString& end);
    void note(const QByteArray& what, const QByteArray& number, bool isRight);
    void complain(const char* what);

    std::mt19937 m_random;
    UdpPeer m_sound; // which nobody listens to
    const uint32_t m_nCallers;
    const uint32_t m_nCalled;
    SipExchange m_exchange;
    HeapFolder m_heaps;
    SteeredPhone m_phone;
    SippCallers m_called;
    int m_nBegun = 0;
    int m_nNumbers = 0;
    int m_nWrongs = 0;
    int m_nFailedRuns = 0;
    QMap<QByteArray, int> m_acts;
};
