#pragma once
// A request's target taken apart. Phones put values into the query as they stand: blanks, UTF-8, '+' and a
// lonely '%' mean themselves, and what is percent-encoded is decoded.
#include <QByteArray>
#include <QMap>

struct RequestText
{
    RequestText() = default;
    explicit RequestText(const QByteArray& target);

    QByteArray path;
    bool Has(const char* name) const { return m_values.contains(name); }
    // Empty for a name that is not there.
    QByteArray Value(const char* name) const { return m_values.value(name); }

private:
    QMap<QByteArray, QByteArray> m_values; // of two with one name the first
};

QByteArray PercentDecoded(const QByteArray& text);
// The request line with its target made printable, so that blanks and odd bytes in it do not end it early.
QByteArray TidyRequestLine(const QByteArray& line);
// The target as it may stand in a log: no passwords, no control characters.
QByteArray LoggableTarget(const QByteArray& target);
// A phone can send the value as it stands, and it arrives as it was: without '&', '#' and escapes.
bool ArrivesAsSent(const QByteArray& value);
// What is said of one that does not, behind its name.
extern const char* const CannotBeSent;
