#pragma once
// One question to a time server and what its answer is worth: the client of RFC 4330, with the checks of a
// packet that RFC 5905 adds. Any thread.
#include "support/host/api.h"
#include <QByteArray>

enum {
    SNTP_PACKET_SIZE = 48,
    SNTP_SLACK_MS = 100, // clocks of servers are as coarse as a tick of their system
};

enum SNTP_ANSWER {
    SNTP_NOT_OURS, // of another question, or of nobody's: the answer may still come
    SNTP_REFUSED,  // the server's, and not to be used
    SNTP_KISS,     // the server asks to be left alone: strReason is its code
    SNTP_GOOD
};

struct tagSntpAnswer
{
    SNTP_ANSWER eKind;
    QByteArray strReason;
    long long nUtcMs = 0; // when the answer came, by the server's clock; milliseconds since 1970
};

// The question carries a number that only its receiver can repeat, in the place of the sender's time.
HX_HOST_API QByteArray sntpQuestion(quint64 number);
// datagram: what came, tripMs after the question with that number had gone out.
HX_HOST_API tagSntpAnswer sntpJudge(const QByteArray& datagram, quint64 number, qint64 tripMs);
