#pragma once
// How a JSON service is asked and what its answers mean: gateway.ini. Read once; any thread.
#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <optional>

using NamedTexts = QHash<QByteArray, QString>; // texts under the names of gateway.ini
using NamedValues = QHash<QByteArray, QByteArray>;

// One kind of request, a section of the file.
struct ServicePlan
{
    QByteArray name;    // of the section
    QByteArray address; // with {city}, {code}, {latitude} and the like
    NamedValues fields; // paths into the answer
    qint64 keepMs = 0;  // how long an answer counts
    int most = 0;       // requests a minute
    int patienceMs = 0; // for a whole answer

    // Nothing for values that cannot stand in this address: they would lead elsewhere.
    std::optional<QByteArray> AddressFor(const NamedValues& values) const;
};

struct SkyName
{
    QString condition, icon;
};

class GatewayPlan
{
public:
    // weather, stock: addresses of the services, empty for none. What is wrong stands in Complaints().
    GatewayPlan(const QByteArray& text, const QByteArray& weather, const QByteArray& stock);

    const QStringList& Complaints() const { return m_complaints; }
    bool HasWeather() const { return m_hasWeather; }
    bool HasStock() const { return m_hasStock; }
    const ServicePlan& Place() const { return m_place; }
    const ServicePlan& Weather() const { return m_weather; }
    const ServicePlan& Stock() const { return m_stock; }
    bool IsFahrenheit() const { return m_fahrenheit; }
    SkyName SkyOf(const QString& code) const;

private:
    using Sections = QHash<QByteArray, QList<QPair<QByteArray, QByteArray>>>;

    ServicePlan ReadService(const Sections& sections, const char* name, const QByteArray& service, int keep,
                            const QList<QByteArray>& needed);

    QStringList m_complaints;
    ServicePlan m_place, m_weather, m_stock;
    QHash<QString, SkyName> m_skies;
    bool m_hasWeather, m_hasStock;
    bool m_fahrenheit = false;
};
