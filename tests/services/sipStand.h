#pragma once
// A phone with real lines whose agent and media are the test: it says what they say, and sees what they are
// told.
#include "host/services/phone/phoneService.h"
#include "host/services/phone/sipBackend.h"
#include "sip/sipWire.h"
#include "support/host/phone.h"
#include "tests/kit/phoneTest.h"
#include "tests/services/historyOf.h"
#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace kit {

// Answers with "offer 1", "answer 2" and so on, unless it is told to be silent, to have nothing or to be
// missing.
class ScriptedMedia : public sipMedia
{
public:
    void setNews(sipMediaNews* news) override { m_pNews = news; }
    void prepare() override { ++nPrepared; }
    // What is offered fits, unless it is said that it does not.
    int judge(const QByteArray& offer, const tagMediaWish& wish) override;
    void offer(int call, const tagMediaWish& wish) override { describe(call, "offer", wish); }
    void answer(int call, const QByteArray& offer, const tagMediaWish& wish) override
    {
        describe(call, "answer " + offer + " with", wish);
    }
    void agree(int, const QByteArray& answer) override { orders.append("agree " + answer); }
    void begin(int) override { orders.append("begin"); }
    void withdraw(int) override { orders.append("withdraw"); }
    void setMuted(int call, bool muted) override
    {
        orders.append(muted ? "mute" : "unmute");
        mutes[call] = muted;
    }
    void setStill(int call, bool still) override { stills[call] = still; }
    bool sendTone(int, QChar tone, int) override
    {
        if (bTakesTones)
            orders.append(QString("tone ") + tone);
        return bTakesTones;
    }
    bool join(int, int) override
    {
        orders.append("join");
        return bJoins;
    }
    void split(int) override { orders.append("split"); }
    void end(int) override { orders.append("end"); }

    // What it says by itself.
    void tellDescribed(int call, const QByteArray& sdp) { m_pNews->mediaDescribed(call, sdp); }
    void tellChanged(int call, const tagCallStreams& streams) { m_pNews->mediaChanged(call, streams); }
    void tellLost() { m_pNews->mediaLost(); }
    void tellUnfit(int call) { m_pNews->mediaUnfit(call); }
    void tellJudged(int question, CALL_FIT said) { m_pNews->mediaJudged(question, said); }

    QStringList orders;
    tagMediaWish lastWish;
    QHash<int, tagMediaWish> wishes; // the last one of each call
    CALL_FIT fit = CALL_FITS;
    bool bJudges = true;
    int nJudged = 0; // that were asked for
    QByteArray judgedOffer;
    tagMediaWish judgedWish;
    QHash<int, bool> stills; // the same
    QHash<int, bool> mutes;  // the same
    bool bSilent = false;
    bool bEmpty = false;
    bool bMissing = false;
    bool bTakesTones = true;
    bool bJoins = true;
    int nPrepared = 0; // that calls may come

private:
    void describe(int call, const QString& what, const tagMediaWish& wish);

    sipMediaNews* m_pNews = nullptr;
    int m_nCount = 0;
    QObject m_late; // what it has not said at its end is not said
};

// The agent's end of the socket. It is alive: what asks for that is answered while the phone goes on.
class ScriptedAgent
{
public:
    ~ScriptedAgent() { leave(); }
    // False when nobody serves it.
    bool comeTo(const QString& path);
    void leave();
    template <typename Record>
    void tell(const Record& record)
    {
        tellBytes(&record, sizeof record);
    }
    void tellBytes(const void* bytes, size_t size);
    // The next record of the kind, while the phone goes on; others before it are dropped. Null when none
    // comes.
    template <typename Record>
    const Record* next(SIP_RECORD kind)
    {
        return static_cast<const Record*>(nextOf(kind));
    }
    // Nothing more of the kind, once the phone has nothing more to do.
    bool isQuiet(SIP_RECORD kind);
    // The phone has closed its end.
    bool isLeft();
    // From now on nothing is read but what next() and those beside it wait for.
    void stopReading() { m_pNotifier->setEnabled(false); }

    bool bFrozen = false; // it answers no question whether it is alive
    int nPings = 0;       // that it was asked

private:
    const void* nextOf(SIP_RECORD kind, int ms = 5000);
    void receive();

    int m_nSocket = -1;
    bool m_bLeft = false;
    sipWire::Reader m_reader;
    sipWire::Reader m_questions; // the same stream
    std::unique_ptr<QSocketNotifier> m_pNotifier;
};

} // namespace kit

class SipPhone : public PhoneTest
{
protected:
    enum : uint32_t { IN = SIP_CALL_FIRST_INCOMING };

    SipPhone();
    ~SipPhone() override;

    // Line 0 has an account in its file, and the phone starts.
    void boot(sipBackend::AGENT agent = sipBackend::AGENT_ANYBODY);
    void writeAccount(int line, const QByteArray& keys);
    void tellAccountChanged(int line);
    // An agent comes, and is told who it is to register.
    void agentComes();
    // The lines of the phone, as the agent tells them.
    void tellLine(int line, SIP_LINE_STATE state, uint32_t status = 0, const char* reason = "",
                  SIP_TLS_FAULT fault = SIP_TLS_NO_FAULT);
    // All of it: the agent comes, and line 0 is registered.
    void begin();

    static tagSipArrived arrival(uint32_t wire, const char* number = "200", const char* sdp = "their offer");
    // A call comes in and is told to the phone; its id there.
    int arrives(const tagSipArrived& record);
    void tellMedia(SIP_RECORD kind, uint32_t wire, const char* sdp);
    void tellEnd(uint32_t wire, SIP_ENDING ending, uint32_t status = 0, const char* target = "");
    void tellStatus(SIP_RECORD kind, uint32_t wire, uint32_t status);
    // What the agent is told next of that kind.
    QString nextMedia(SIP_RECORD kind)
    {
        const auto* record = agent.next<tagSipMedia>(kind);
        return record ? QString(record->szSdp) : QString("nothing");
    }
    uint32_t nextStatus(SIP_RECORD kind)
    {
        const auto* record = agent.next<tagSipStatus>(kind);
        return record ? record->nStatus : 1000;
    }
    // A call goes out, and the agent is told; its id at the agent.
    uint32_t dials(const char* number);
    // Such a call talks.
    uint32_t talksOut(const char* number = "300");
    // A call from outside talks; its id.
    int talksIn(uint32_t wire);

    static LINE_STATE stateOf(int line);
    static QList<tagCall> calls() { return phoneService::instance().calls(); }
    // The one call that is there.
    static tagCall call();
    bool waitsForEnd(int count = 1);
    tagCall lastEnded() const;
    static QStringList history(const char* attribute, int count) { return historyOf(attribute, count); }

    kit::ScriptedMedia* media = nullptr;
    kit::ScriptedAgent agent;
    int nKept = -1; // of the calls at the end of the test, those that have a place in the lists; -1: all
    QList<tagCall> heard;

private:
    int m_nListener = 0;
};
