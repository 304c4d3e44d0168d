#pragma once
// Time and date of the home screen.
#include <QWidget>

class chTime;

class homeClock : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    explicit homeClock(QWidget* parent);
    // Repaints when the minute or the kind of clock differs.
    void refresh();
    // What is shown, without the half of the day.
    QString text() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintTime(QPainter& painter, const chTime& now) const;
    QString timeText(const chTime& now) const;

    long m_nShownMinute = -1;
    bool m_bTwelveHours = false;
};
