// The frames in which a date and a time are typed, field by field.
#include "settings/system/dataEditFrame.h"
#include "settings/system/timeEditFrame.h"
#include "support/host/clock.h"
#include "support/host/net.h"
#include "tests/kit/phoneTest.h"
#include <QLabel>
#include <QLineEdit>

namespace {

template <class T>
class FrameTest : public PhoneTest
{
protected:
    FrameTest()
    {
        netSetLocalTime(2026, 5, 6, 7, 8, 9);
        frame.setupNow();
    }
    QLineEdit* edit(const char* name) const { return frame.template findChild<QLineEdit*>(name); }
    // Typed at its end, key by key, as the frame has it after each.
    QString typed(const char* name, const QString& text)
    {
        edit(name)->setFocus();
        edit(name)->setText("");
        for (const QChar c : text)
            edit(name)->setText(edit(name)->text() + c);
        return edit(name)->text();
    }
    QString left(const char* name)
    {
        emit edit(name)->editingFinished();
        return edit(name)->text();
    }

    T frame;
};

class DateEdits : public FrameTest<DataEditFrame>
{
protected:
    QString date(const QString& year, const QString& month, const QString& day)
    {
        // A day that every month has while the others change.
        edit("editDay")->setText("1");
        edit("editYear")->setText(year);
        edit("editMonth")->setText(month);
        edit("editDay")->setText(day);
        return text();
    }
    QString text() const
    {
        return edit("editYear")->text() + ' ' + edit("editMonth")->text() + ' ' + edit("editDay")->text();
    }
};

class TimeEdits : public FrameTest<TimeEditFrame>
{
};

} // namespace

TEST_F(DateEdits, LeapYearsAreThoseOfTheCalendar)
{
    for (const int year : {2008, 2000, 1600, 2400, 4})
        EXPECT_EQ(IsLeapyear(year), 1) << year;
    for (const int year : {2009, 1900, 2100, 2038, 1})
        EXPECT_EQ(IsLeapyear(year), 0) << year;
}

TEST_F(DateEdits, TodayHasTwoDigits)
{
    EXPECT_EQ(text(), "2026 05 06");
    EXPECT_EQ(frame.year(), 2026);
    EXPECT_EQ(frame.month(), 5);
    EXPECT_EQ(frame.day(), 6);
    QStringList between;
    for (const QLabel* label : frame.findChildren<QLabel*>())
        between.append(label->text());
    EXPECT_EQ(between, (QStringList{"-", "-"}));
}

TEST_F(DateEdits, AYearThatCannotBeBecomes1970)
{
    for (const char* good : {"", "2", "20", "999", "1000", "1970", "2038"})
        EXPECT_EQ(typed("editYear", good), good);
    for (const char* bad : {"1001", "1969", "2039", "9999"})
        EXPECT_EQ(typed("editYear", bad), "1970") << bad;
    EXPECT_EQ(typed("editYear", "02026"), "1970") << "five characters";
}

TEST_F(DateEdits, AYearThatIsLeftIsWhole)
{
    for (const char* bad : {"", "2", "999", "1000", "0000"}) {
        typed("editYear", bad);
        EXPECT_EQ(left("editYear"), "1970") << bad;
    }
    for (const char* good : {"1970", "2026", "2038"}) {
        typed("editYear", good);
        EXPECT_EQ(left("editYear"), good);
    }
    typed("editYear", "1969");
    EXPECT_EQ(left("editYear"), "1970");
}

TEST_F(DateEdits, AMonthThatCannotBeBecomesTheFirst)
{
    for (const char* good : {"", "0", "1", "9", "09", "12"})
        EXPECT_EQ(typed("editMonth", good), good);
    for (const char* bad : {"13", "99", "001", "123"})
        EXPECT_EQ(typed("editMonth", bad), "01") << bad;
    for (const auto& [text, whole] : {std::pair{"", "01"}, std::pair{"0", "01"}, std::pair{"00", "01"},
                                      std::pair{"5", "05"}, std::pair{"12", "12"}}) {
        typed("editMonth", text);
        EXPECT_EQ(left("editMonth"), whole) << text;
    }
}

TEST_F(DateEdits, ADayThatTheMonthDoesNotHaveIsCorrected)
{
    EXPECT_EQ(date("2008", "2", "30"), "2008 2 29");
    EXPECT_EQ(date("2008", "2", "29"), "2008 2 29");
    EXPECT_EQ(date("2009", "2", "30"), "2009 2 28");
    EXPECT_EQ(date("2009", "2", "29"), "2009 2 28");
    EXPECT_EQ(date("2009", "2", "28"), "2009 2 28");
    for (const char* month : {"1", "3", "5", "7", "8", "10", "12"}) {
        EXPECT_EQ(date("2009", month, "31"), QString("2009 %1 31").arg(month));
        EXPECT_EQ(date("2009", month, "32"), QString("2009 %1 01").arg(month));
    }
    for (const char* month : {"4", "6", "9", "11"}) {
        EXPECT_EQ(date("2009", month, "30"), QString("2009 %1 30").arg(month));
        EXPECT_EQ(date("2009", month, "31"), QString("2009 %1 01").arg(month));
    }
    EXPECT_EQ(date("2009", "2", "001"), "2009 2 01") << "three characters";
    EXPECT_EQ(date("2009", "5", "007"), "2009 5 01");
}

TEST_F(DateEdits, ANewMonthCorrectsTheDayAtOnce)
{
    date("2009", "1", "31");
    edit("editMonth")->setText("4");
    EXPECT_EQ(text(), "2009 4 01");
    date("2009", "1", "31");
    edit("editMonth")->setText("2");
    EXPECT_EQ(text(), "2009 2 28");
    date("2008", "3", "30");
    edit("editMonth")->setText("2");
    EXPECT_EQ(text(), "2008 2 29");
}

TEST_F(DateEdits, ADayThatIsLeftHasTwoDigits)
{
    for (const auto& [day, whole] : {std::pair{"", "01"}, std::pair{"0", "01"}, std::pair{"00", "01"},
                                     std::pair{"7", "07"}, std::pair{"31", "31"}}) {
        date("2009", "5", day);
        EXPECT_EQ(left("editDay"), whole) << day;
    }
}

TEST_F(DateEdits, TheCheckCorrectsAllThree)
{
    date("2008", "2", "29");
    edit("editYear")->setText("2009"); // the day is not looked at for a new year
    EXPECT_EQ(text(), "2009 2 29");
    frame.checkDate();
    EXPECT_EQ(text(), "2009 02 28");
    date("", "", "");
    frame.checkDate();
    EXPECT_EQ(text(), "1970 01 01");
}

TEST_F(DateEdits, TheCheckCorrectsTheYearBeforeTheDayIsJudgedByIt)
{
    date("", "2", "29"); // a year 0 would be a leap year
    EXPECT_EQ(text(), " 2 29");
    frame.checkDate();
    EXPECT_EQ(text(), "1970 02 28");
}

TEST_F(TimeEdits, TheTimeHasTwoDigits)
{
    EXPECT_EQ(edit("editHour")->text(), "07");
    EXPECT_EQ(edit("editMinute")->text(), "08");
    EXPECT_EQ(edit("editSecond")->text(), "09");
    EXPECT_EQ(frame.hour(), 7);
    EXPECT_EQ(frame.minute(), 8);
    EXPECT_EQ(frame.second(), 9);
}

TEST_F(TimeEdits, WhatCannotBeBecomesZero)
{
    const std::pair<const char*, int> limits[] = {{"editHour", 23}, {"editMinute", 59}, {"editSecond", 59}};
    for (const auto& [name, last] : limits) {
        for (const QString& good : {QString(""), QString("0"), QString("9"), QString::number(last)})
            EXPECT_EQ(typed(name, good), good) << name;
        for (const QString& bad : {QString::number(last + 1), QString("99"), QString("001")})
            EXPECT_EQ(typed(name, bad), "00") << name << ' ' << qPrintable(bad);
    }
}

TEST_F(TimeEdits, WhatIsLeftHasTwoDigits)
{
    for (const char* name : {"editHour", "editMinute", "editSecond"}) {
        for (const auto& [text, whole] :
             {std::pair{"", "00"}, std::pair{"0", "00"}, std::pair{"7", "07"}, std::pair{"23", "23"}}) {
            typed(name, text);
            EXPECT_EQ(left(name), whole) << name << ' ' << text;
        }
    }
}

TEST_F(TimeEdits, TheCheckCorrectsAllThree)
{
    for (const char* name : {"editHour", "editMinute", "editSecond"})
        edit(name)->setText("");
    edit("editMinute")->setText("5");
    frame.checkTime();
    EXPECT_EQ(edit("editHour")->text(), "00");
    EXPECT_EQ(edit("editMinute")->text(), "05");
    EXPECT_EQ(edit("editSecond")->text(), "00");
}
