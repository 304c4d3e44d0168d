#pragma once
#include <QEvent>
#include <QObject>

// Counts the events of one type that reach what it is installed on as a filter.
class EventCounter : public QObject
{
public:
    explicit EventCounter(QEvent::Type type) : m_type(type) {}
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == m_type;
        return false;
    }
    int count = 0;

private:
    QEvent::Type m_type;
};
