#include "bench/usedPhone.h"
#include "tests/kit/plain/signServer.h"
#include <QFile>
#include <QJsonArray>

namespace {

constexpr int kMostBacks = 10;

QByteArray sources(const char* root, const QString& address)
{
    return QString("<%1><source title=\"Google\" address=\"%2\"/></%1>").arg(root, address).toUtf8();
}

void writeList(const QString& file, const QStringList& codes)
{
    QFile list(file);
    if (!list.open(QIODevice::WriteOnly))
        return;
    list.write("<Stock>");
    for (const QString& code : codes)
        list.write("<item name=\"" + code.toUtf8() + "\"/>");
    list.write("</Stock>");
}

} // namespace

void putFeeds(const QString& root, const SignServer& server, const QStringList& codes)
{
    kit::replaceImageFile(root, "/phone/resource/WeatherSource.xml",
                          sources("WeatherSource", server.url() + "/ig/api?weather=#city"));
    kit::replaceImageFile(root, "/phone/resource/StockSource.xml",
                          sources("StockSource", server.url() + "/ig/api?stock="));
    writeList(root + "/rundata/data/stockData.xml", codes);
}

UsedPhone::UsedPhone(const SignServer& server, const QStringList& codes) : m_phone(kit::Firmware::HardLinks)
{
    putFeeds(root(), server, codes);
}

bool UsedPhone::start()
{
    return m_phone.start() && m_link.open(root() + "/control", 5000);
}

void UsedPhone::end()
{
    m_link.close();
    m_phone.end();
}

bool UsedPhone::ask(const QStringList& command)
{
    const QJsonValue answer = m_link.ask(command);
    return m_link.isOpen() && !answer.toObject().contains("error");
}

QJsonObject UsedPhone::widget(const QString& name)
{
    const QJsonArray windows = m_link.ask({"tree"}).toObject()["windows"].toArray();
    for (const QJsonValue& entry : windows.first().toObject()["widgets"].toArray()) {
        if (entry.toObject()["name"] == name)
            return entry.toObject();
    }
    return {};
}

QString UsedPhone::top()
{
    return m_link.ask({"screen"}).toObject()["top"].toString();
}

bool UsedPhone::tap(const QString& name)
{
    const QJsonObject at = widget(name);
    return !at.isEmpty() && ask({"touch", QString::number(at["x"].toInt() + at["w"].toInt() / 2),
                                 QString::number(at["y"].toInt() + at["h"].toInt() / 2)});
}

bool UsedPhone::open(const QString& page, const QString& className)
{
    return ask({"open", page}) && wait(className) && waitIdle();
}

bool UsedPhone::goHome()
{
    for (int backs = 0; backs < kMostBacks; ++backs) {
        if (top() == "frmDesktop")
            return waitIdle();
        ask({"key", "F4"});
    }
    return false;
}

bool UsedPhone::search(const QString& city)
{
    for (qsizetype left = text("editSearch").size(); left > 0; --left)
        ask({"key", "Backspace"});
    return ask({"type", city}) && text("editSearch") == city && tap("btnSearch") && waitIdle() &&
           !text("labTemperature3").isEmpty();
}

bool UsedPhone::refresh(REFRESH which)
{
    const auto step = [this](const char* key) {
        return (widget("cmbStockList")["focus"].toBool() || ask({"key", "Up"})) && ask({"key", key});
    };
    const bool isAsked =
        which == REFRESH_SAME ? tap("btnRefresh") : step(which == REFRESH_NEXT ? "Right" : "Left");
    const QString name = isAsked && waitIdle() ? text("labStockName") : QString();
    return !name.isEmpty() && name != "N/A";
}

bool UsedPhone::setKey(const QString& section, const QString& key, const QString& value)
{
    return ask({"config", "/rundata/config/user/user.ini", section, key, value});
}
