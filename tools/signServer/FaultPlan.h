#pragma once
// How the server misbehaves when a test wants it to. One rule a line, the first that fits a request counts:
//
//   seed 7
//   cut      /service/getfile.htm*film.mp4   after=5000 probability=0.3
//   refuse   /service/getschedule.htm*       status=503 times=2
//
// The pattern stands for path and query; '*' is any text. The rules come from faults.txt in the folder, until
// they are replaced over the wire. FaultPlan: any thread.
#include "tools/signServer/SignFolder.h"
#include <QList>
#include <random>

enum class FaultKind {
    None,
    Refuse,    // status, and an error report as body
    Stall,     // a pause of `seconds`, before the answer or after `after` bytes of the body
    Drip,      // the body comes `bytes` at a time, with `pause` between
    Cut,       // the connection ends after `after` bytes of the body
    Corrupt,   // `bytes` bytes of the body from `after` on are wrong
    Redirect,  // to the address `to`, or for ever to itself
    Longer,    // Content-Length says `by` bytes more than come
    Shorter,   // Content-Length says `by` bytes fewer than come
    Garbage,   // `bytes` random bytes that are no HTTP
    BrokenXml, // the body ends inside an element, with the right length
};

struct Fault
{
    FaultKind kind = FaultKind::None;
    QByteArray name;
    int status = 503;
    qint64 after = -1; // -1: the middle of the body; for a stall: before the answer
    qint64 by = 100;
    int bytes = 16;
    int pause = 50;   // milliseconds
    int seconds = 60; // of a stall
    bool chunked = false;
    QByteArray to;
    unsigned seed = 0; // of random bytes
};

class FaultPlan
{
public:
    explicit FaultPlan(const SignFolder& folder) : m_folder(folder) {}

    // What happens to this request; a rule with a probability draws once for each request that fits it.
    Fault Choose(const QByteArray& target);
    // Empty, or what is wrong with the text, which then changes nothing.
    QByteArray Replace(const QByteArray& text);
    // The rules of faults.txt count again.
    void Restore();
    // The rules in force, a line each, with how often each fitted and struck.
    QByteArray Report();

private:
    struct Rule
    {
        Fault fault;
        QByteArray pattern, line;
        double probability = 1;
        int times = -1; // how often it strikes at most
        int fitted = 0, struck = 0;
        std::mt19937 dice;
    };
    using Rules = QList<Rule>;

    static QByteArray Parse(const QByteArray& text, Rules& rules);
    static QByteArray ParseRule(const QByteArray& line, unsigned seed, Rule& rule);
    static int SetValue(const QByteArray& name, const QByteArray& value, Rule& rule);
    void FollowFile();

    const SignFolder& m_folder;
    QMutex m_lock;
    Rules m_rules;
    QByteArray m_text; // of faults.txt, that the rules were made of
    bool m_replaced = false;
};

int FitsPattern(const QByteArray& text, const QByteArray& pattern);
