#pragma once
// Twelve touch keys in three columns. User-interface thread.
#include <QTimer>
#include <QWidget>

class dialPad : public QWidget
{
    Q_OBJECT
public:
    explicit dialPad(QWidget* parent = nullptr);

signals:
    // One of "0123456789*#", or "+" for a zero that is held.
    void typed(QChar sign);

protected:
    void resizeEvent(QResizeEvent*) override;

private:
    enum { HOLD_MS = 700 };

    QTimer m_hold;
    bool m_bHeld = false;
};
