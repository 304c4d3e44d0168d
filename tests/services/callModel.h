#pragma once
// What the rules of calls demand, told a second time and from the outside: what is set, what happens, and
// what the backend is to be told then. It knows nothing of the phone.
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <optional>

namespace kit {

class CallModel
{
public:
    enum : int { LINES = 4, PSTN = 4 };

    struct tagForward
    {
        bool bOn = false;
        QString strTarget;
        int nSeconds = 20; // as stored; 0 for none
    };
    struct tagLine
    {
        QString strOwn; // "user@server"; empty for none
        bool bAnonymous = false;
        bool bReject = false;
        QString strOnCode, strOffCode, strRejectOn, strRejectOff;
        int nMode = 1;
        bool bAnswers = false;
        int nAnswerAfter = 0;
    };
    struct tagSettings
    {
        tagForward always, busy, noAnswer;
        bool bWaiting = true, bWaitingPstn = false;
        bool bDisturb = false, bDisturbPstn = false;
        QList<QPair<QString, QString>> plan; // prefix, replacement
        tagLine lines[LINES];
    };
    struct tagCall
    {
        int nId = 0;
        QString strNumber;
        int nLine = 0;
        bool bIncoming = false;
        bool bTalks = false;
        bool bHeld = false;
        bool bMuted = false;
        int nJoined = 0;
        QStringList by;
    };

    // What the user has set, also where the phone has not been told; and what it has been told of.
    tagSettings set;
    bool hasPstn = false;
    int nDefault = 0;

    // These say what is set now of what the phone keeps.
    void tellLine(int line);
    void tellWaiting();
    void tellPlan();

    // Ids that calls get: the next one, and the ones after it.
    void expectIds(int next) { m_nNextId = next; }
    void arrive(const QString& number, int line, bool anonymous, const QStringList& by);
    void dial(const QString& number, int account);
    void answer(int id);
    void decline(int id);
    void forward(int id, const QString& number);
    void hangUp(int id);
    void hold(int id, bool held);
    void mute(int id, bool muted);
    void transfer(int id, const QString& number);
    // The backend does it, or cannot.
    void connect(int id, int other, bool can);
    void join(int id, int other, bool can);
    void split(int id);
    void tones(int id, const QString& tones);
    void answerFromOutside(int id);
    void endFromOutside(int id);
    void pass(int ms);

    // Since the last look.
    QStringList takeOrders() { return std::exchange(m_orders, {}); }
    QStringList takeFailures() { return std::exchange(m_failures, {}); }
    QList<tagCall> calls;

private:
    enum WHEN_DUE { ANSWERS, FORWARDS, CODE_IS_HEARD };
    struct tagDue
    {
        qint64 nAt;
        WHEN_DUE eWhat;
        int nCall;
        QString strTarget;
    };
    struct tagCode
    {
        int nLine;
        bool bReject;
        QString strNumber;
    };

    tagCall* find(int id);
    tagCall* ringing(int id);
    tagCall* talking(int id);
    void order(const QString& what, int id) { m_orders.append(what + " #" + QString::number(id)); }
    // A call that fails has an id like the others.
    void fail(const QString& reason)
    {
        ++m_nNextId;
        m_failures.append(reason);
    }
    void holdAllBut(int id);
    bool canMeet(int id, int other);
    void talk(tagCall& call);
    void end(int id);
    bool isBusyFor(const tagCall& call) const;
    QString target(const tagForward& forward, const tagCall& call) const;
    QString planned(const QString& number) const;
    bool place(const QString& number, int line);
    void codes();
    void due(const tagDue& now);

    tagLine m_told[LINES];
    bool m_bToldWaiting = true, m_bToldWaitingPstn = false;
    QList<QPair<QString, QString>> m_toldPlan;
    QStringList m_orders;
    QStringList m_failures;
    QList<tagDue> m_due;
    QList<tagCode> m_codes;
    int m_nCodeCall = 0;
    int m_nNextId = 0;
    qint64 m_nNow = 0;
};

// What is dialled for what was typed; "" for nothing that could be.
QString modelNumber(const QString& typed);
bool modelSame(const QString& one, const QString& other);

} // namespace kit
