#include "tools/signServer/FeedDesk.h"
#include "tools/signServer/StockFile.h"
#include "tools/signServer/WeatherFile.h"

void FeedDesk::FindCity(const QByteArray& city, const FeedGateway::WeatherDone& done) const
{
    const bool isAsked = m_pGateway && m_pGateway->HasWeather();
    const QDateTime now = m_clock().toLocalTime();
    const auto known = ::FindCity(m_folder, city, now, isAsked);
    if (known || !isAsked)
        done({true, known});
    else
        m_pGateway->FindCity(city, now, done);
}

void FeedDesk::FindStock(const QByteArray& code, const FeedGateway::StockDone& done) const
{
    const bool isAsked = m_pGateway && m_pGateway->HasStock();
    const QDateTime now = m_clock().toUTC();
    const auto known = ::FindStock(m_folder, code, now, isAsked);
    if (known || !isAsked)
        done({true, known});
    else
        m_pGateway->FindStock(code, now, done);
}
