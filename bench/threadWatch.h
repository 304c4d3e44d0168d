#pragma once
// What a person would notice of a user-interface thread that is busy: how long it answers to nothing, and how
// far apart the frames of something that moves are.
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <vector>

class QImage;
class QWidget;

// What something has cost, in milliseconds.
struct tagCost
{
    double waited = 0; // by the clock
    double worked = 0; // processor time of the thread: a machine that others use takes turns off
};

class CostClock
{
public:
    CostClock();
    // Since it was made.
    tagCost cost() const;

private:
    QElapsedTimer m_clock;
    double m_before;
};

// Of one of the figures.
double percentile99(const std::vector<tagCost>& costs, double tagCost::*figure);

// Turns the event loop, and remembers the longest turns.
class TurnWatch
{
public:
    enum : int { TURNS_MS = 20000 };

    void turn();
    // False when ms went by.
    bool turnUntil(const std::function<bool()>& holds, int ms = TURNS_MS);
    void turnFor(int ms);
    // The longest by the clock, and the one that worked longest.
    tagCost longest() const { return m_longest; }

private:
    tagCost m_longest;
};

// Looks every few milliseconds whether the thread comes round.
class ThreadWatch : public QObject
{
public:
    ThreadWatch();
    // Milliseconds beyond the moment at which the thread should have come round.
    double longestStall() const { return m_longest; }

private:
    void look();
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_longest = 0;
};

// Notes when widgets of one kind are painted; paints of one turn are one frame.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(std::function<bool(const QWidget*)> fits);
    // Forgets what was.
    void begin();
    bool hasPainted() const { return m_since.isValid(); }
    int count() const { return int(m_intervals.size()); }
    // Of the intervals, in milliseconds; share 1 is the longest. Infinite when there are none.
    double percentile(double share) const;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<bool(const QWidget*)> m_fits;
    QElapsedTimer m_since;
    std::vector<double> m_intervals;
};

// Looks at what the window that it is an event filter of has painted, each time that it has done so.
class FrameWatch : public QObject
{
public:
    explicit FrameWatch(std::function<void(const QImage&)> look) : m_look(std::move(look)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(const QImage&)> m_look;
    bool m_bInside = false;
};
