#pragma once
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kit {

// The stacking order as the window system would have it, kept apart from the phone's own list so that a
// fault there does not hide itself.
class WindowTracker : public QObject
{
public:
    static WindowTracker& instance();
    QList<QWidget*> windows() const;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<QPointer<QWidget>> m_stack; // topmost first
};

} // namespace kit
