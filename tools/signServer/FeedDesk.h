#pragma once
// Where forecasts and quotes come from: what is written by hand in the folder goes first, then the gateway,
// and without one the climates and markets of the folder. Any thread.
#include "tools/signServer/FeedGateway.h"
#include "tools/signServer/SignFolder.h"

// The time now. Any thread.
using FeedClock = std::function<QDateTime()>;

class FeedDesk
{
public:
    // folder and gateway outlive it; pGateway: null for none.
    FeedDesk(const SignFolder& folder, const FeedClock& clock, FeedGateway* pGateway)
        : m_folder(folder), m_clock(clock), m_pGateway(pGateway)
    {
    }

    // done: once, at once or later, on any thread.
    void FindCity(const QByteArray& city, const FeedGateway::WeatherDone& done) const;
    void FindStock(const QByteArray& code, const FeedGateway::StockDone& done) const;

private:
    const SignFolder& m_folder;
    const FeedClock m_clock;
    FeedGateway* m_pGateway;
};
