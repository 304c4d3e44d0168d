#pragma once
// A phone as a signage server sees it: it registers, asks for the schedule again and again, and fetches what
// is new in it.
#include <QByteArray>
#include <QMap>
#include <httplib.h>
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
    // address: "http://host:port". The hardware key is made of the number.
    SimulatedPhone(const std::string& address, const QByteArray& key, const QByteArray& password, int number);

    void Register();
    // One cycle: the schedule, then every file in it that is not there yet.
    void Update();
    const PhoneCount& Count() const { return m_count; }

private:
    QByteArray Fetch(const QByteArray& target, std::vector<qint64>* times);
    void FetchFile(const QByteArray& type, const QByteArray& name, const QByteArray& sum);

    httplib::Client m_client;
    QByteArray m_key, m_password, m_hardwareKey;
    QMap<QByteArray, QByteArray> m_files; // by kind and name, their sums
    PhoneCount m_count;
};
