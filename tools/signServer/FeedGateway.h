#pragma once
// Forecasts and quotes of JSON services, as gateway.ini describes them. Any thread.
#include "tools/signServer/Forecast.h"
#include "tools/signServer/Quote.h"
#include "tools/signServer/UpstreamDesk.h"

template <typename T>
struct Found
{
    bool isAnswer = false; // somebody knows; otherwise the service could not be asked
    std::optional<T> what; // nothing: there is no such place, or code
};

class FeedGateway
{
public:
    using WeatherDone = std::function<void(const Found<Forecast>&)>;
    using StockDone = std::function<void(const Found<Quote>&)>;

    // plan is good; log outlives it.
    FeedGateway(const GatewayPlan& plan, RequestLog& log);

    bool HasWeather() const { return m_plan.HasWeather(); }
    bool HasStock() const { return m_plan.HasStock(); }
    // now: the server's, for what the service leaves out. done: once, on any thread.
    void FindCity(const QByteArray& city, const QDateTime& now, const WeatherDone& done);
    void FindStock(const QByteArray& code, const QDateTime& now, const StockDone& done);
    // Whoever waits is answered. Any thread.
    void Stop() { m_client.Stop(); }
    // Stops, and waits until that is done; before the connections go.
    void Settle() { m_client.Settle(); }

private:
    void FindForecast(const NamedTexts& place, const QDateTime& now, const WeatherDone& done);
    std::optional<Forecast> ForecastOf(const NamedTexts& texts, const QDate& today) const;
    static Quote QuoteOf(const NamedTexts& texts, const QByteArray& code, const QDateTime& now);

    const GatewayPlan m_plan;
    UpstreamDesk m_places, m_weather, m_stock;
    UpstreamClient m_client; // ends before those that it answers
};
