#pragma once
// Time and date of the home screen, or the number that is being dialled there.
#include <QWidget>

class chTime;

class homeClock : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    explicit homeClock(QWidget* parent);
    // Repaints when the minute, the kind of clock or the number differs.
    void refresh();
    void setNumber(const QString& number);
    QString number() const { return m_strNumber; }
    // What is shown, without the half of the day.
    QString text() const;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    void paintTime(QPainter& painter, const chTime& now) const;
    QString timeText(const chTime& now) const;

    long m_nShownMinute = -1;
    bool m_bTwelveHours = false;
    QString m_strNumber;
};
