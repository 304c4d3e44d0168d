#pragma once
// The choice of the line that a number goes out on: any, one of the accounts, or the analogue line. A line
// that cannot make calls is pale, and cannot be chosen. User-interface thread.
#include "support/host/message.h"
#include <QList>
#include <QWidget>

class dialLines : public QWidget, public chMsgProcesser
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    explicit dialLines(QWidget* parent = nullptr);
    ~dialLines() override;
    // -1 any, 0 to 3, or PHONE_LINE_PSTN.
    int line() const { return m_nLine; }
    // One that cannot be chosen leaves the choice at any.
    void setLine(int line);
    // Reads the lines again.
    void refresh();
    // "Auto|Line 1 1001|Line 2", the chosen one with a "*" in front, for those who cannot see it.
    QString text() const;
    int TryThreadMessage(msgObject& msg) override;

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent*) override;

private:
    struct tagLine
    {
        int nLine;
        QString strName;
        QString strNumber; // of the user; empty: there is none
        bool bReady;
    };
    QRect place(int index) const;
    void step(int way);
    QList<tagLine> readLines() const;
    QList<tagLine> m_lines;
    int m_nLine = -1;
};
