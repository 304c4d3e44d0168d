#pragma once
// The call screen of a phone in this process, as somebody sees and touches it. User-interface thread.
#include "bench/threadWatch.h"
#include <QPoint>
#include <QString>
#include <functional>

class QAbstractButton;
class QLabel;
class QWidget;

class CallScreen
{
public:
    enum : int { END_KEY = 3 }; // of the soft keys

    // The phone has booted.
    CallScreen();
    const QWidget* window() const { return m_pWindow; }
    bool isGone() const;
    QPoint answerKey() const;
    // What the widgets say, before they are painted.
    bool rings(const QString& name) const;
    bool talks() const;
    // What has been painted: the answer key is the only green there is.
    bool hasAnswerKey() const;

private:
    QWidget* m_pWindow;
    QAbstractButton* m_pAnswer;
    QLabel* m_pName;
    QLabel* m_pState;
};

QWidget* topWindow();
QPoint middleOf(const QWidget* widget);
// Until the call screen has painted what it is to say.
tagCost untilPainted(const CallScreen& screen, TurnWatch& turns, const std::function<void()>& act,
                     const std::function<bool()>& says);
// Whoever has nothing to do any more lets the next call find a phone at rest.
void endCall(const CallScreen& screen, TurnWatch& turns);
