#include "settings/system/timeEditFrame.h"
#include "settings/system/editRow.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include <QLineEdit>

namespace {

constexpr int kDigits = 2;
constexpr int kLastHour = 23;
constexpr int kLastMinute = 59; // and second
constexpr int kWidth = 68;
const char* const kZero = "00";

bool isWrong(const QLineEdit* edit, int last)
{
    return edit->text().size() > kDigits || edit->text().toInt() > last;
}

void correct(QLineEdit* edit, int last)
{
    if (isWrong(edit, last))
        edit->setText(kZero);
}

void correctLeft(QLineEdit* edit, int last)
{
    if (edit->text().isEmpty() || isWrong(edit, last))
        edit->setText(kZero);
    else
        editRowShow(edit, edit->text().toInt());
}

} // namespace

void setupLineTimeEdit(QLineEdit* hour, QLineEdit* minute, QLineEdit* second)
{
    const chTime now(netGetLocalTime());
    editRowShow(hour, now.GetHour());
    editRowShow(minute, now.GetMinute());
    editRowShow(second, now.GetSecond());
}

TimeEditFrame* qReplaceTimeEditFrame(QWidget* placeholder)
{
    return editRowReplace<TimeEditFrame>(placeholder);
}

TimeEditFrame::TimeEditFrame(QWidget* parent)
    : QFrame(parent), m_pHour(new QLineEdit(this)), m_pMinute(new QLineEdit(this)),
      m_pSecond(new QLineEdit(this))
{
    editRowSetUp(this, ":",
                 {{m_pHour, "editHour", kWidth},
                  {m_pMinute, "editMinute", kWidth},
                  {m_pSecond, "editSecond", kWidth}});
    connect(m_pHour, SIGNAL(textChanged(QString)), this, SLOT(setHour()));
    connect(m_pMinute, SIGNAL(textChanged(QString)), this, SLOT(setMinute()));
    connect(m_pSecond, SIGNAL(textChanged(QString)), this, SLOT(setSecond()));
    connect(m_pHour, SIGNAL(editingFinished()), this, SLOT(setFocusOutHour()));
    connect(m_pMinute, SIGNAL(editingFinished()), this, SLOT(setFocusOutMinute()));
    connect(m_pSecond, SIGNAL(editingFinished()), this, SLOT(setFocusOutSecond()));
}

void TimeEditFrame::setupNow()
{
    setupLineTimeEdit(m_pHour, m_pMinute, m_pSecond);
}

int TimeEditFrame::hour() const
{
    return m_pHour->text().toInt();
}

int TimeEditFrame::minute() const
{
    return m_pMinute->text().toInt();
}

int TimeEditFrame::second() const
{
    return m_pSecond->text().toInt();
}

void TimeEditFrame::checkTime()
{
    setFocusOutHour();
    setFocusOutMinute();
    setFocusOutSecond();
}

void TimeEditFrame::setHour()
{
    correct(m_pHour, kLastHour);
}

void TimeEditFrame::setMinute()
{
    correct(m_pMinute, kLastMinute);
}

void TimeEditFrame::setSecond()
{
    correct(m_pSecond, kLastMinute);
}

void TimeEditFrame::setFocusOutHour()
{
    correctLeft(m_pHour, kLastHour);
}

void TimeEditFrame::setFocusOutMinute()
{
    correctLeft(m_pMinute, kLastMinute);
}

void TimeEditFrame::setFocusOutSecond()
{
    correctLeft(m_pSecond, kLastMinute);
}
