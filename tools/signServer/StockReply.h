#pragma once
// Quotes from stock.xml, in the format of the signage server and in that of the public feed:
//
//   <stocks>
//     <stock code="NRV" company="Norvane" previous="42.10" open="42.30" low="41.80" high="43.05"
//            price="42.75" market_cap="8.1B" volume="1.2M" swing="1.5"/>
//   </stocks>
//
// swing: by how many percent the price wanders around "price" in the course of minutes; without it the quote
// stands still. A code is found as it is written, with regard to case.
#include "tools/signServer/SignFolder.h"
#include <QDateTime>

class StockReply
{
public:
    // now: the time of the last trade, in UTC.
    StockReply(const SignFolder& folder, const QDateTime& now) : m_folder(folder), m_now(now) {}

    QByteArray ForPhone(const QByteArray& code);
    QByteArray ForPublic(const QByteArray& code);

private:
    struct Quote
    {
        QString company, marketCap, volume;
        double price = 0, previous = 0, open = 0, low = 0, high = 0;
        bool known = false;
    };

    Quote Find(const QByteArray& code) const;
    double Wander(double price, double percent) const;

    const SignFolder& m_folder;
    QDateTime m_now;
};
