#pragma once
// A phone as a signage server sees it: it registers, asks for the schedule again and again, and fetches what
// is new in it.
#include <QByteArray>
#include <QMap>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <functional>
#include <vector>

// What one phone went through; times in microseconds.
struct PhoneCount
{
    std::vector<qint64> scheduleTimes, fileTimes;
    qint64 bytes = 0; // of all bodies
    int failures = 0; // no answer, a bad status, a wrong sum, no registration
};

class SimulatedPhone
{
public:
    // The hardware key is made of the number.
    SimulatedPhone(const boost::asio::ip::tcp::endpoint& server, const QByteArray& key,
                   const QByteArray& password, int number);

    void Register();
    // One cycle: the schedule, then every file in it that is not there yet.
    void Update();
    const PhoneCount& Count() const { return m_count; }

private:
    using Ended = std::function<void(boost::system::error_code, size_t)>;

    // Starts something on the connection, and waits for it. False when it failed or took too long.
    bool Do(const std::function<void(const Ended&)>& start);
    // The body of an answer with status 200; null when none comes.
    QByteArray Ask(const QByteArray& target);
    QByteArray Fetch(const QByteArray& target, std::vector<qint64>* times);
    void FetchFile(const QByteArray& type, const QByteArray& name, const QByteArray& sum);

    const boost::asio::ip::tcp::endpoint m_server;
    boost::asio::io_context m_context;
    boost::beast::tcp_stream m_stream;
    boost::beast::flat_buffer m_come;
    bool m_bConnected = false;
    QByteArray m_key, m_password, m_hardwareKey;
    QMap<QByteArray, QByteArray> m_files; // by kind and name, their sums
    PhoneCount m_count;
};
