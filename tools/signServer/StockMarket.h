#pragma once
// A price that moves as one on a market does: by the stock's code and the time, and by nothing else. Any
// thread.
#include "tools/signServer/FeedChance.h"
#include "tools/signServer/Quote.h"
#include <QXmlStreamAttributes>

class StockMarket
{
public:
    // The attributes of a stock in stock.xml: code, company, base, swing, shares, trades.
    explicit StockMarket(const QXmlStreamAttributes& stock);

    // There is a price to move around.
    bool IsGood() const { return m_base > 0; }
    // Outside the hours of trade the quote is that of the last close. now: in UTC.
    Quote At(const QDateTime& now) const;

private:
    // All prices in hundredths, so that a close is the same amount from whichever day it is looked at.
    qint64 Rounded(double price) const;
    qint64 Close(const QDate& day) const;
    qint64 Open(const QDate& day) const;
    struct Ends
    {
        qint64 open, close; // of a session
    };
    qint64 PriceAt(const QDate& day, int minute, const Ends& ends) const;
    double TradedUntil(const QDate& day, int minute) const;

    FeedChance m_chance;
    QString m_company;
    double m_base, m_share; // share: the usual move of a day, of the price
    double m_shares, m_trades;
};
