#include "tools/signClients/SimulatedPhone.h"
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QXmlStreamReader>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <chrono>
#include <limits>

namespace http = boost::beast::http;
using boost::system::error_code;

static constexpr std::chrono::seconds kPatience(30);

SimulatedPhone::SimulatedPhone(const boost::asio::ip::tcp::endpoint& server, const QByteArray& key,
                               const QByteArray& password, int number)
    : m_server(server), m_stream(m_context), m_key(key), m_password(password),
      m_hardwareKey(QByteArray::number(0x020000000000LL + number, 16).rightJustified(12, '0'))
{
}

bool SimulatedPhone::Do(const std::function<void(const Ended&)>& start)
{
    bool good = false;
    m_stream.expires_after(kPatience);
    start([&good](error_code error, size_t) { good = !error; });
    m_context.restart();
    m_context.run();
    return good;
}

QByteArray SimulatedPhone::Ask(const QByteArray& target)
{
    if (!m_bConnected) {
        m_stream.close();
        m_come.clear();
        m_bConnected = Do([this](const Ended& ended) {
            m_stream.async_connect(m_server, [ended](error_code error) { ended(error, 0); });
        });
        error_code ignored;
        m_stream.socket().set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    }
    http::request<http::empty_body> request(http::verb::get, target.toStdString(), 11);
    request.set(http::field::host, m_server.address().to_string());
    http::response_parser<http::string_body> answer;
    answer.body_limit(std::numeric_limits<std::uint64_t>::max());
    const bool good = m_bConnected &&
                      Do([&](const Ended& ended) { http::async_write(m_stream, request, ended); }) &&
                      Do([&](const Ended& ended) { http::async_read(m_stream, m_come, answer, ended); });
    m_bConnected = good && answer.keep_alive();
    return good && answer.get().result_int() == 200 ? QByteArray::fromStdString(answer.get().body())
                                                    : QByteArray();
}

QByteArray SimulatedPhone::Fetch(const QByteArray& target, std::vector<qint64>* times)
{
    QElapsedTimer time;
    time.start();
    const bool kept = m_bConnected;
    QByteArray body = Ask(target);
    // A connection that was kept may have been closed while nothing was asked.
    if (body.isNull() && kept && !m_bConnected)
        body = Ask(target);
    if (body.isNull()) {
        ++m_count.failures;
        return QByteArray();
    }
    if (times)
        times->push_back(time.nsecsElapsed() / 1000);
    m_count.bytes += body.size();
    return body;
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
