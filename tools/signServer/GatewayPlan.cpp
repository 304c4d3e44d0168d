#include "tools/signServer/GatewayPlan.h"
#include "tools/signServer/KeyRows.h"
#include "tools/signServer/SignFolder.h"
#include <QUrl>
#include <algorithm>

namespace {

constexpr int kMostAMinute = 120;
constexpr int kPlaceKeep = 86400, kWeatherKeep = 900, kStockKeep = 60; // seconds
constexpr int kPatience = 8, kLongestPatience = 60;                    // seconds
constexpr int kLongestKeep = 7 * 86400;
constexpr int kThousand = 1000;
const char* const kAnySky = "*";

bool IsService(const QByteArray& address)
{
    const QUrl url = QUrl(QString::fromUtf8(address), QUrl::StrictMode);
    return (url.scheme() == "http" || url.scheme() == "https") && url.isValid() && !url.host().isEmpty();
}

// A part of a path that means a folder above, or more than one part.
bool LeavesItsPlace(const QByteArray& value)
{
    return value.isEmpty() || value.count('.') == value.size() || value.contains('/') || value.contains('\\');
}

bool HasControl(const QByteArray& value)
{
    return std::any_of(value.begin(), value.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ' ' || byte == 0x7f;
    });
}

int NumberIn(const KeyRowList& rows, const char* key, int least, int most, int otherwise)
{
    bool isGood = false;
    const int number = KeyRowValue(rows, key).toInt(&isGood);
    return isGood ? std::clamp(number, least, most) : otherwise;
}

} // namespace

std::optional<QByteArray> ServicePlan::AddressFor(const NamedValues& values) const
{
    QByteArray filled = address;
    const qsizetype query = address.indexOf('?');
    for (auto it = values.begin(); it != values.end(); ++it) {
        const QByteArray slot = '{' + it.key() + '}';
        const qsizetype at = address.indexOf(slot);
        const bool isInPath = at >= 0 && (query < 0 || at < query);
        if (HasControl(*it) || (isInPath && LeavesItsPlace(*it)))
            return std::nullopt;
        filled.replace(slot, it->toPercentEncoding());
    }
    return filled;
}

GatewayPlan::GatewayPlan(const QByteArray& text, const QByteArray& weather, const QByteArray& stock)
    : m_hasWeather(!weather.isEmpty()), m_hasStock(!stock.isEmpty())
{
    const KeySections sections = KeySectionsOf(text);
    if (m_hasWeather) {
        m_place = ReadService(sections, "place", weather, kPlaceKeep, {"latitude", "longitude"});
        m_weather = ReadService(sections, "weather", weather, kWeatherKeep,
                                {"temperature", "code", "day.low", "day.high", "day.code"});
        m_fahrenheit = KeyRowValue(sections["weather"], "unit") == "US";
    }
    if (m_hasStock)
        m_stock = ReadService(sections, "stock", stock, kStockKeep, {"price"});
    for (const auto& [code, names] : sections["conditions"]) {
        const QList<QByteArray> words = names.split(',');
        const QByteArray icon = words.size() == 2 ? words[1].trimmed() : QByteArray();
        if (IsBareName(icon))
            m_skies[QString::fromUtf8(code)] = {QString::fromUtf8(words[0].trimmed()),
                                                QString::fromUtf8(icon)};
        else
            m_complaints.append(QString("[conditions] %1 needs a text, a comma and an icon").arg(code));
    }
}

ServicePlan GatewayPlan::ReadService(const Sections& sections, const char* name, const QByteArray& service,
                                     int keep, const QList<QByteArray>& needed)
{
    const KeyRowList rows = sections[name];
    ServicePlan plan;
    plan.name = name;
    const QByteArray own = KeyRowValue(rows, "service");
    plan.address = own.isEmpty() ? service : own;
    while (plan.address.endsWith('/'))
        plan.address.chop(1);
    if (!IsService(plan.address) || plan.address.contains('{'))
        m_complaints.append(QString("%1: \"%2\" is no address of a service").arg(name, plan.address));
    const QByteArray path = KeyRowValue(rows, "path");
    if (!path.startsWith('/') || path.contains('#'))
        m_complaints.append(QString("[%1] needs a path that begins with '/'").arg(name));
    plan.address += path;
    for (const auto& [key, value] : rows)
        plan.fields[key] = value;
    for (const QByteArray& field : needed) {
        if (plan.fields.value(field).isEmpty())
            m_complaints.append(QString("[%1] needs %2").arg(name, field));
    }
    plan.keepMs = NumberIn(rows, "keep", 1, kLongestKeep, keep) * qint64(kThousand);
    plan.patienceMs = NumberIn(rows, "patience", 1, kLongestPatience, kPatience) * kThousand;
    plan.most = NumberIn(rows, "most", 1, 100000, kMostAMinute);
    return plan;
}

SkyName GatewayPlan::SkyOf(const QString& code) const
{
    const auto known = m_skies.find(code);
    return known != m_skies.end() ? *known : m_skies.value(kAnySky, {QString(), "cloudy"});
}
