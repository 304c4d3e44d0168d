#include "tools/signClients/SimulatedPhone.h"
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QXmlStreamReader>

SimulatedPhone::SimulatedPhone(const std::string& address, const QByteArray& key, const QByteArray& password,
                               int number)
    : m_client(address), m_key(key), m_password(password),
      m_hardwareKey(QByteArray::number(0x020000000000LL + number, 16).rightJustified(12, '0'))
{
    m_client.set_keep_alive(true);
    m_client.set_tcp_nodelay(true);
    m_client.set_read_timeout(30);
}

QByteArray SimulatedPhone::Fetch(const QByteArray& target, std::vector<qint64>* times)
{
    QElapsedTimer time;
    time.start();
    const httplib::Result answer = m_client.Get(target.toStdString());
    if (!answer || answer->status != 200) {
        ++m_count.failures;
        return QByteArray();
    }
    if (times)
        times->push_back(time.nsecsElapsed() / 1000);
    m_count.bytes += qint64(answer->body.size());
    return QByteArray::fromStdString(answer->body);
}

void SimulatedPhone::Register()
{
    const QByteArray reply = Fetch(
        "/service/register.htm?serverKey=" + m_key + "&password=" + m_password + "&clientName=phone-" +
            m_hardwareKey + "&hardwareKey=" + m_hardwareKey + "&clientType=hx7206p&version=2.0&language=en",
        nullptr);
    if (!reply.contains("<success"))
        ++m_count.failures;
}

void SimulatedPhone::Update()
{
    const QByteArray reply =
        Fetch("/service/getschedule.htm?serverKey=" + m_key + "&hardwareKey=" + m_hardwareKey +
                  "&clientType=hx7206p&version=2.0&language=en",
              &m_count.scheduleTimes);
    QXmlStreamReader xml(reply);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != QLatin1String("file"))
            continue;
        const QXmlStreamAttributes at = xml.attributes();
        FetchFile(at.value("type").toUtf8(), at.value("path").toUtf8(), at.value("md5").toUtf8());
    }
}

void SimulatedPhone::FetchFile(const QByteArray& type, const QByteArray& name, const QByteArray& sum)
{
    QByteArray& known = m_files[type + "/" + name];
    if (known == sum)
        return;
    const QByteArray bytes =
        Fetch("/service/getfile.htm?serverKey=" + m_key + "&hardwareKey=" + m_hardwareKey +
                  "&clientType=hx7206p&version=2.0&language=en&fileType=" + type + "&filePath=" + name,
              &m_count.fileTimes);
    if (QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex() == sum)
        known = sum;
    else
        ++m_count.failures;
}
