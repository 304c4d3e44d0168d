// What the server keeps of the displays, and in which order they are shown.
#include "tools/signServer/StatusReport.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace {

constexpr qint64 kNow = 1000000;
constexpr int kInterval = 60;
constexpr qint64 kDay = 24 * 3600;

DisplayEvent lookOf(const QByteArray& key)
{
    DisplayEvent event;
    event.key = event.name = key;
    return event;
}

DisplayEvent refusalOf(const QByteArray& key)
{
    DisplayEvent event = lookOf(key);
    event.refused = "the password is wrong";
    return event;
}

DisplayEvent fileOf(const QByteArray& key, const QByteArray& sum)
{
    DisplayEvent event = lookOf(key);
    event.kind = DisplayEvent::File;
    event.fileType = "media";
    event.fileName = "a.png";
    event.sum = sum;
    event.whole = true;
    return event;
}

DisplayEvent lookAtOneFile(const QByteArray& key)
{
    auto files = std::make_shared<ScheduledFiles>();
    files->id = "1";
    files->files = {{"media", "a.png", "new", {}}};
    DisplayEvent event = lookOf(key);
    event.files = files;
    return event;
}

AdmittedDisplay admitted(const QByteArray& key)
{
    AdmittedDisplay display;
    display.key = display.name = key;
    return display;
}

QStringList namesOf(const StatusReport& report)
{
    QStringList names;
    for (const StatusRow& row : report.rows)
        names.append(QString::fromUtf8(row.record.name));
    return names;
}

StatusInput inputOf(const DisplayBook& book)
{
    StatusInput input;
    input.known = book.Known();
    input.strangers = book.Strangers();
    input.intervalS = kInterval;
    input.now = kNow;
    return input;
}

TEST(StatusRows, WhoIsLateForLongestStandsOnTop)
{
    DisplayBook book;
    book.Note(lookOf("a"), kNow - 1000);
    book.Note(lookOf("b"), kNow - 3000);
    book.Note(lookOf("c"), kNow - 2000);
    book.Note(lookOf("d"), kNow);
    StatusInput input = inputOf(book);
    for (const char* key : {"a", "b", "c", "d", "never"})
        input.expected.append(admitted(key));
    EXPECT_EQ(namesOf(StatusReport(input)), QStringList({"never", "b", "c", "a", "d"}));
}

TEST(StatusRows, AStrangerIsShownForADay)
{
    DisplayBook book;
    book.Note(refusalOf("yesterday"), kNow - kDay - 1);
    book.Note(refusalOf("today"), kNow - kDay);
    EXPECT_EQ(namesOf(StatusReport(inputOf(book))), QStringList("today"));
}

TEST(StatusRows, WhoWasRefusedAndThenFellSilentIsLate)
{
    DisplayBook book;
    book.Note(lookOf("a"), kNow - 1000);
    book.Note(refusalOf("a"), kNow - 3 * kInterval - 1);
    StatusInput input = inputOf(book);
    input.expected = {admitted("a")};
    EXPECT_EQ(StatusReport(input).Count(Standing::Late), 1);
    input.now -= 1;
    EXPECT_EQ(StatusReport(input).Count(Standing::Refused), 1);
}

TEST(Book, AFileOfAnotherContentIsNotTheOneOfTheSchedule)
{
    DisplayBook book;
    book.Note(lookAtOneFile("a"), kNow);
    book.Note(fileOf("a", "old"), kNow);
    EXPECT_EQ(book.Known()["a"].states, QByteArray(1, FILE_MISSING));
    book.Note(fileOf("a", "new"), kNow);
    EXPECT_EQ(book.Known()["a"].states, QByteArray(1, FILE_WHOLE));
}

TEST(Book, WhoIsAdmittedIsAStrangerNoMore)
{
    DisplayBook book;
    book.Note(refusalOf("a"), kNow);
    EXPECT_TRUE(book.Strangers().contains("a"));
    book.Note(lookOf("a"), kNow);
    EXPECT_TRUE(book.Known().contains("a"));
    EXPECT_TRUE(book.Strangers().isEmpty());

    DisplayBook restored;
    DisplayBook::Records strangers;
    strangers["a"].key = "a";
    strangers["b"].key = "b";
    restored.Restore(book.Known(), strangers, kNow);
    EXPECT_EQ(restored.Strangers().keys(), QList<QByteArray>{"b"});
}

TEST(Book, WhatIsTakenBackIsBounded)
{
    DisplayBook::Records known, strangers;
    for (int i = 0; i < DisplayBook::DISPLAY_LIMIT + 100; ++i) {
        const QByteArray key = QByteArray::number(i);
        known[key].key = key;
        strangers["x" + key].key = "x" + key;
    }
    DisplayBook book;
    book.Restore(known, strangers, kNow);
    EXPECT_EQ(book.Known().size(), DisplayBook::DISPLAY_LIMIT);
    EXPECT_EQ(book.Strangers().size(), DisplayBook::STRANGER_LIMIT);
    book.Note(lookOf("new"), kNow);
    EXPECT_TRUE(book.Known().contains("new"));
    EXPECT_LE(book.Known().size(), DisplayBook::DISPLAY_LIMIT);
}

TEST(Book, AClockThatWasAheadKeepsNobodyFromBeingLate)
{
    DisplayBook ahead;
    ahead.Note(lookOf("a"), kNow + kDay);
    DisplayBook book;
    book.Restore(ahead.Known(), {}, kNow);
    EXPECT_EQ(book.Known()["a"].lastLook, kNow);
    EXPECT_EQ(book.Known()["a"].heard, kNow);
}

} // namespace
