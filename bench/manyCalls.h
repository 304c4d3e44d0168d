#pragma once
// Calls in and out on the phone in a process of its own, by finger and by keys: who calls, what becomes of a
// call and how it is done is drawn at random, and what each act has done is looked at.
#include "bench/heldThings.h"
#include "bench/steeredPhone.h"
#include <QMap>
#include <random>

class ManyCalls
{
public:
    explicit ManyCalls(unsigned seed) : m_random(seed) {}
    // False when the phone does not come up.
    bool start();
    // So many more calls. The last of them may be there afterwards.
    void play(int count);
    // Ends all calls, and waits until the phone is at rest at its home screen.
    tagHeld look();
    // Below its root, without the history of calls.
    int files() const;
    // Acts that have had another effect than they are to have.
    int wrongs() const { return m_nWrongs; }
    void printActs() const;

private:
    struct tagSeen
    {
        int nId = 0;
        QString strNumber;
        bool bIncoming = false;
        bool bTalks = false;
        bool bHeld = false;
        bool bMuted = false;
        int nJoined = 0;
        bool asks() const { return bIncoming && !bTalks; }
    };
    struct tagEnd
    {
        QString strHow;
        QString strTarget;
    };

    int draw(int below) { return int(m_random() % unsigned(below)); }
    bool chance(int percent) { return draw(100) < percent; }
    QString drawNumber() { return QString::number(100 + draw(900)); }

    void fillLog();
    QJsonObject ask(const QStringList& words) { return m_phone.ask(words); }
    void touch(int x, int y);
    void key(const char* name) { m_phone.key(name); }
    // By finger or by the key, whichever is drawn.
    void touchOrKey(int x, int y, const char* name);
    void softKey(int index);
    void goHome();

    // Asks the phone what has become of the calls.
    void see();
    tagSeen seen(int id) const;
    tagSeen shown() const;
    int talking() const;

    void begin();
    void callIn();
    void callOut();
    void actOnRinging(const tagSeen& call);
    void actOnDialled(const tagSeen& call);
    void actOnTalking(const tagSeen& call);
    void sendAway(const tagSeen& call, const char* act, const char* end);
    void hangUp(const tagSeen& call, const char* end);
    void waitForAnswer(const tagSeen& call);
    // Another one than those that talk together, which talks as well; one without an id when there is none.
    tagSeen beside(const tagSeen& call) const;
    bool canJoin(const tagSeen& call) const;
    void swap(const tagSeen& call);
    void join(const tagSeen& call);
    void connectBoth(const tagSeen& call);
    // Looks, and holds what is seen against what the act was for. What somebody has answered meanwhile may
    // have got in between.
    template <typename Holds>
    void expect(const char* act, Holds holds);
    void expectEnd(const char* act, int id, const char* end, const QString& target = QString());

    SteeredPhone m_phone;
    std::mt19937 m_random;
    QList<tagSeen> m_calls;
    QMap<int, tagEnd> m_ended; // the last ones
    int m_nShown = 0;
    bool m_bAnswered = false; // an outgoing call, since the look before
    int m_nBegun = 0;
    int m_nWrongs = 0;
    int m_nUnsure = 0;
    QMap<QString, int> m_acts;
};
