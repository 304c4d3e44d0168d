#include "tools/signServer/JsonPath.h"
#include <QJsonArray>
#include <QJsonObject>
#include <cmath>

namespace {

constexpr double kWholeBelow = 1e15;

QString NumberText(double number)
{
    const bool isWhole = std::abs(number) < kWholeBelow && number == std::floor(number);
    return isWhole ? QString::number(qint64(number)) : QString::number(number, 'g', 15);
}

QJsonValue Step(const QJsonValue& value, const QByteArray& name)
{
    if (!value.isArray())
        return value.toObject().value(QString::fromUtf8(name));
    bool isIndex = false;
    const int index = name.toInt(&isIndex);
    return isIndex ? value.toArray().at(index) : QJsonValue(QJsonValue::Undefined);
}

} // namespace

QString JsonText(QJsonValue value, const QByteArray& path)
{
    for (const QByteArray& name : path.split('.'))
        value = Step(value, name);
    if (value.isDouble())
        return NumberText(value.toDouble());
    if (value.isBool())
        return value.toBool() ? "true" : "false";
    // A text that is there is not null, also an empty one.
    return value.isString() ? value.toString() + QLatin1String("") : QString();
}
