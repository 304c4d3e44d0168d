#pragma once
// The stocks of stock.xml. A code is found as it is written, with regard to case.
//
//   <stocks>
//     <stock code="NRV" company="Norvane" previous="42.10" open="42.30" low="41.80" high="43.05"
//            price="42.75" market_cap="8.1B" volume="1.2M" swing="1.5"/>
//     <stock code="HRBR" company="Harbour House Group" base="146.85" swing="1.1" shares="83.6M"
//     trades="1.82M"/>
//   </stocks>
//
// The first is a quote. swing: by how many percent the price wanders around "price" in the course of minutes;
// without it the quote stands still. The second, with "base", is a stock whose price moves as on a market.
#include "tools/signServer/Quote.h"
#include "tools/signServer/SignFolder.h"
#include <optional>

// now: in UTC. isWritten: only quotes count, no stock that moves. Nothing for an unknown code.
std::optional<Quote> FindStock(const SignFolder& folder, const QByteArray& code, const QDateTime& now,
                               bool isWritten = false);
