#pragma once
// A time of the day in three edits, for a key pad: what cannot be is corrected while it is typed, and more
// strictly when its edit is left. User-interface thread.
#include <QFrame>

class QLineEdit;

class TimeEditFrame : public QFrame
{
    Q_OBJECT
public:
    explicit TimeEditFrame(QWidget* parent = nullptr);
    // The present time.
    void setupNow();
    // Corrects all three as if each had been left.
    void checkTime();
    int hour() const;
    int minute() const;
    int second() const;

private slots:
    void setHour();
    void setMinute();
    void setSecond();
    void setFocusOutHour();
    void setFocusOutMinute();
    void setFocusOutSecond();

private:
    QLineEdit* m_pHour;
    QLineEdit* m_pMinute;
    QLineEdit* m_pSecond;
};

// Fills the edits with the present time.
void setupLineTimeEdit(QLineEdit* hour, QLineEdit* minute, QLineEdit* second);
// The frame in the place of a form's placeholder.
TimeEditFrame* qReplaceTimeEditFrame(QWidget* placeholder);
