#include "settings/system/dataEditFrame.h"
#include "settings/system/editRow.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include <QLineEdit>
#include <algorithm>
#include <iterator>

namespace {

constexpr int kFirstYear = 1970;
constexpr int kLastYear = 2038;
constexpr int kYearDigits = 4;
constexpr int kShortYear = 1000; // up to here a year is still being typed
constexpr int kDigits = 2;       // of a month or a day
constexpr int kMonths = 12;
constexpr int kFebruary = 2;
constexpr int kYearWidth = 96;
constexpr int kWidth = 68;
const char* const kYear = "1970";
const char* const kFirst = "01";
const int BigMonth[] = {1, 3, 5, 7, 8, 10, 12};
const int SmallMonth[] = {4, 6, 9, 11};

template <int N>
bool isOneOf(const int (&months)[N], int month)
{
    return std::find(std::begin(months), std::end(months), month) != std::end(months);
}

// What a day that the month does not have becomes; null for one that it has.
const char* correctionOf(int day, int month, int year)
{
    if (month == kFebruary && day >= 29) {
        if (!IsLeapyear(year))
            return "28";
        return day >= 30 ? "29" : nullptr;
    }
    const bool isTooLarge =
        (isOneOf(BigMonth, month) && day >= 32) || (isOneOf(SmallMonth, month) && day >= 31);
    return isTooLarge ? kFirst : nullptr;
}

} // namespace

int IsLeapyear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 1 : 0;
}

void setupLineDataEdit(QLineEdit* year, QLineEdit* month, QLineEdit* day)
{
    const chTime now(netGetLocalTime());
    // In this order each part meets those that it is judged by.
    editRowShow(year, now.GetYear());
    editRowShow(month, now.GetMonth());
    editRowShow(day, now.GetDay());
}

DataEditFrame* qReplaceDataEditFrame(QWidget* placeholder)
{
    return editRowReplace<DataEditFrame>(placeholder);
}

DataEditFrame::DataEditFrame(QWidget* parent)
    : QFrame(parent), m_pYear(new QLineEdit(this)), m_pMonth(new QLineEdit(this)), m_pDay(new QLineEdit(this))
{
    editRowSetUp(
        this, "-",
        {{m_pYear, "editYear", kYearWidth}, {m_pMonth, "editMonth", kWidth}, {m_pDay, "editDay", kWidth}});
    connect(m_pYear, SIGNAL(textChanged(QString)), this, SLOT(setYear(QString)));
    connect(m_pMonth, SIGNAL(textChanged(QString)), this, SLOT(setMounth(QString)));
    connect(m_pMonth, SIGNAL(textChanged(QString)), this, SLOT(setDay()));
    connect(m_pDay, SIGNAL(textChanged(QString)), this, SLOT(setDay()));
    connect(m_pYear, SIGNAL(editingFinished()), this, SLOT(FocusOutsetYear()));
    connect(m_pMonth, SIGNAL(editingFinished()), this, SLOT(FocusOutsetMounth()));
    connect(m_pDay, SIGNAL(editingFinished()), this, SLOT(FocusOutSetDay()));
}

void DataEditFrame::setupNow()
{
    m_nClockYear = chTime(netGetLocalTime()).GetYear();
    setupLineDataEdit(m_pYear, m_pMonth, m_pDay);
}

bool DataEditFrame::isYear(int year) const
{
    return (year >= kFirstYear && year <= kLastYear) || year == m_nClockYear;
}

int DataEditFrame::year() const
{
    return m_pYear->text().toInt();
}

int DataEditFrame::month() const
{
    return m_pMonth->text().toInt();
}

int DataEditFrame::day() const
{
    return m_pDay->text().toInt();
}

void DataEditFrame::checkDate()
{
    FocusOutsetYear();
    FocusOutsetMounth();
    FocusOutSetDay();
}

void DataEditFrame::setYear(const QString& text)
{
    if (text.size() > kYearDigits || (year() > kShortYear && !isYear(year())))
        m_pYear->setText(kYear);
}

void DataEditFrame::FocusOutsetYear()
{
    const qsizetype size = m_pYear->text().size();
    if (size == 0 || size > kYearDigits || !isYear(year()))
        m_pYear->setText(kYear);
}

void DataEditFrame::setMounth(const QString& text)
{
    if (text.size() > kDigits || (month() > kMonths && !isYear(month())))
        m_pMonth->setText(kFirst);
}

// No month is 0: the clock would not take it.
void DataEditFrame::FocusOutsetMounth()
{
    setMounth(m_pMonth->text());
    editRowShow(m_pMonth, std::max(month(), 1));
}

void DataEditFrame::setDay()
{
    if (m_pDay->text().size() > kDigits) {
        m_pDay->setText(kFirst);
        return;
    }
    if (const char* corrected = correctionOf(day(), month(), year()))
        m_pDay->setText(corrected);
}

void DataEditFrame::FocusOutSetDay()
{
    setDay();
    editRowShow(m_pDay, std::max(day(), 1));
}
