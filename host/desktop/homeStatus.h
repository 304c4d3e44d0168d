#pragma once
// The strip at the top of the home screen: the lines with their states, waiting messages, the network, and a
// bell, whose touch switches do-not-disturb. A touch on the messages does what the message key does.
#include "support/host/message.h"
#include "support/host/phone.h"
#include <QWidget>

class homeStatus : public QWidget, public chMsgProcesser
{
    Q_OBJECT
public:
    explicit homeStatus(QWidget* parent);
    ~homeStatus() override;
    int TryThreadMessage(msgObject& msg) override;
    // Reads everything again; repaints when something differs.
    void refresh();
    void toggleDoNotDisturb();
    // What line index shows, for those who cannot see it.
    QString lineText(int index) const;
    bool isLineOn(int index) const;
    // The same as far as the strip has room for it.
    QString shownLine(int index) const;

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    int paintLine(QPainter& painter, int x, int index);
    void paintRight(QPainter& painter);
    int widthOfLongLines(const QFontMetrics& metrics) const;
    struct State
    {
        QString lines[PHONE_ACCOUNT_COUNT];
        bool on[PHONE_ACCOUNT_COUNT] = {};
        int newMessages = 0;
        bool networkUp = false;
        bool lampOn = false;
        bool isUndisturbed = false;
        bool operator==(const State& other) const;
    };
    static State currentState();
    State m_state;
};
