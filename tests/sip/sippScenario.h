#pragma once
// A scenario of SIPp, written step by step: what one side of a call sends, and what it must hear.
#include <QByteArray>

class SippScenario
{
public:
    enum SIDE { CALLER, CALLED };
    // The side that SIPp takes; it is number "300".
    explicit SippScenario(SIDE side) : m_eSide(side) {}

    // A request of the call; the first one of a caller begins it. lines: further header lines, without the
    // last one's end. An ACK and a CANCEL are those of the INVITE before.
    SippScenario& asks(const QByteArray& method, const QByteArray& lines = {}, const QByteArray& sdp = {});
    // The reply to the INVITE that began the call of one who is called, whatever came after it.
    SippScenario& answersCall(const QByteArray& status, const QByteArray& lines = {},
                              const QByteArray& sdp = {});
    // The reply to the last request. Lines may name another contact than the own one.
    SippScenario& answers(const QByteArray& status, const QByteArray& lines = {}, const QByteArray& sdp = {});
    SippScenario& hears(const QByteArray& method);
    // The INVITE that begins the call, once more.
    SippScenario& hearsCall();
    SippScenario& hears(int status);
    // It may come, or not.
    SippScenario& mayHear(int status);
    // What was heard last has that somewhere: a regular expression, in the form of POSIX.
    SippScenario& with(const QByteArray& expression);
    // It comes within that time.
    SippScenario& within(int ms);
    // It has that header, whose value, with the blank before it, stands for "[$name]" from here on.
    SippScenario& keeps(const QByteArray& name, const QByteArray& header);
    SippScenario& without(const QByteArray& expression);
    // The digest of what was heard last is that of the password; MD5, as SIPp knows no other.
    SippScenario& withPassword(const QByteArray& user, const QByteArray& password);
    SippScenario& rests(int ms);
    // The file's.
    QByteArray text() const;

private:
    void flush();
    void hear(const QByteArray& what);
    void remember(const QByteArray& name, const QByteArray& header, const QByteArray& expression = ".*");
    QByteArray check(const QByteArray& expression, const char* kind);
    void send(const QByteArray& attributes, const QByteArray& head, const QByteArray& lines,
              const QByteArray& body);
    QByteArray ends() const;

    const SIDE m_eSide;
    QByteArray m_steps;
    QByteArray m_open;    // the last step, which may still get actions
    QByteArray m_actions; // its
    QByteArray m_strVariables;
    QByteArray m_lastAsked;
    int m_nLastHeard = 0; // status; 0 for a request
    int m_nNumber = 0;    // of the last request but an ACK or a CANCEL
    int m_nInvite = 0;    // of the last INVITE
    int m_nChecks = 0;
    bool m_bKnown = false; // the other side has told how it is reached
};
