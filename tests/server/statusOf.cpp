#include "tests/server/statusOf.h"
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <poll.h>

namespace {

constexpr int kSoonMs = 60000;
constexpr int kTickMs = 50;

QStringList textsOf(const QJsonArray& array)
{
    QStringList texts;
    for (const QJsonValue& value : array)
        texts.append(value.toString());
    return texts;
}

} // namespace

Answer StatusTest::askStatus(const QByteArray& target, const QByteArray& fields) const
{
    Wire wire(m_port);
    const QByteArray host = fields.contains("Host:") ? QByteArray() : QByteArray("Host: 127.0.0.1:80\r\n");
    wire.send("GET " + target + " HTTP/1.1\r\n" + host + "Connection: close\r\n" + fields + "\r\n");
    return wire.readAll();
}

QJsonObject StatusTest::status() const
{
    const Answer answer = askStatus();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.fields["content-type"], "application/json");
    return QJsonDocument::fromJson(answer.body).object();
}

QJsonObject StatusTest::display(const QByteArray& key) const
{
    for (const QJsonValue& value : status()["displays"].toArray()) {
        if (value.toObject()["key"].toString().toUtf8() == key)
            return value.toObject();
    }
    return QJsonObject();
}

QStringList StatusTest::names(const QByteArray& group, const QByteArray& key) const
{
    return textsOf(display(key)["files"].toObject()[QString::fromUtf8(group)].toArray());
}

QStringList StatusTest::order() const
{
    QStringList names;
    for (const QJsonValue& value : status()["displays"].toArray())
        names.append(value.toObject()["name"].toString());
    return names;
}

QStringList StatusTest::warnings() const
{
    return textsOf(status()["warnings"].toArray());
}

bool StatusTest::soon(const std::function<bool()>& isTrue)
{
    QElapsedTimer time;
    time.start();
    while (!isTrue()) {
        if (time.elapsed() > kSoonMs)
            return false;
        poll(nullptr, 0, kTickMs);
    }
    return true;
}

bool StatusTest::contentIsChecked() const
{
    return soon([this] { return status()["content_checked"].toBool(); });
}

Answer StatusTest::fetch(const QByteArray& name, const QByteArray& type, const QByteArray& key) const
{
    return get("/service/getfile.htm?serverKey=key&hardwareKey=" + key +
               "&clientType=hx7206&version=2.0&language=en&fileType=" + type + "&filePath=" + name);
}

void StatusTest::age(int seconds) const
{
    QFile file(path("displays.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QJsonObject book = QJsonDocument::fromJson(file.readAll()).object();
    QJsonArray displays = book["displays"].toArray();
    for (auto&& value : displays) {
        QJsonObject display = value.toObject();
        for (const char* time : {"look", "registration", "heard"}) {
            const qint64 then = display[time].toInteger();
            display[time] = then ? then - seconds : 0;
        }
        value = display;
    }
    book["displays"] = displays;
    file.resize(0);
    file.seek(0);
    file.write(QJsonDocument(book).toJson());
}

void StatusTest::writeShow() const
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout background='one.jpg'><region left='0' top='0' width='80' height='80'>"
                           "<media type='image' path='two.png'/></region></layout>");
    write("media/one.jpg", noise(40000));
    write("media/two.png", noise(3000, 2));
}
