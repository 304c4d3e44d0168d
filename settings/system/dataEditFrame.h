#pragma once
// A date in three edits, for a key pad: what cannot be is corrected while it is typed, and more strictly when
// its edit is left. User-interface thread.
#include <QFrame>

class QLineEdit;

class DataEditFrame : public QFrame
{
    Q_OBJECT
public:
    explicit DataEditFrame(QWidget* parent = nullptr);
    // Today.
    void setupNow();
    // Corrects all three as if each had been left. A year that the clock had when it was shown stays as it
    // is, also beyond those that can be typed.
    void checkDate();
    int year() const;
    int month() const;
    int day() const;

private slots:
    void setYear(const QString& text);
    void setMounth(const QString& text);
    void setDay();
    void FocusOutsetYear();
    void FocusOutsetMounth();
    void FocusOutSetDay();

private:
    bool isYear(int year) const;

    int m_nClockYear = 0; // that setupNow() has shown
    QLineEdit* m_pYear;
    QLineEdit* m_pMonth;
    QLineEdit* m_pDay;
};

// 1 or 0.
int IsLeapyear(int year);
// Fills the edits with the present date.
void setupLineDataEdit(QLineEdit* year, QLineEdit* month, QLineEdit* day);
// The frame in the place of a form's placeholder.
DataEditFrame* qReplaceDataEditFrame(QWidget* placeholder);
