#pragma once
// Chance that can be repeated: the same name and time give the same number on every machine and day. Any
// thread.
#include <QByteArray>

class FeedChance
{
public:
    // Numbers of another name have nothing to do with these.
    explicit FeedChance(const QByteArray& name);

    // From 0 up to but not including 1. topic: letters of the caller's choice; at: a day, a minute, ...
    double At(const char* topic, qint64 at) const;
    // From -1 to 1, without a jump between one time and the next; it turns every few `period`s.
    double Smooth(const char* topic, double at, double period) const;

private:
    quint64 m_seed;
};
