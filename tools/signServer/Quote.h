#pragma once
// What is known of a stock, as the feeds tell it.
#include <QDateTime>
#include <QString>

struct Quote
{
    QString company, marketCap, volume;
    // What is no number is not known.
    double price = 0, previous = 0, open = 0, low = 0, high = 0, bid = 0, ask = 0;
    QDateTime time; // of the last trade, in UTC
};

// With three digits that count and a letter: "1.82M", "405K", "12.4B".
QString ShortNumber(double value);
