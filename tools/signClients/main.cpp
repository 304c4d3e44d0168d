// hxSignClients: how a signage server does under many phones that all start at once, as after a power cut.
#include "tools/signClients/SimulatedPhone.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QUrl>
#include <algorithm>
#include <boost/asio/ip/tcp.hpp>
#include <cstdio>
#include <memory>
#include <thread>
#include <unistd.h>

namespace {

struct Course
{
    int seconds, intervalMs;
};

void Live(SimulatedPhone& phone, const Course& course)
{
    QElapsedTimer time;
    time.start();
    phone.Register();
    for (qint64 next = 0; next < course.seconds * 1000LL; next += course.intervalMs) {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::max<qint64>(next - time.elapsed(), 0)));
        phone.Update();
    }
}

void PrintTimes(const char* what, std::vector<qint64> times)
{
    if (times.empty())
        return;
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return double(times[size_t(share * double(times.size() - 1))]) / 1000;
    };
    std::printf("%-10s %7zu requests   half within %8.2f ms   95%% %8.2f ms   99%% %8.2f ms   all %8.2f ms\n",
                what, times.size(), at(0.5), at(0.95), at(0.99), at(1));
}

// Processor seconds and the largest memory of the server's process so far.
void PrintProcess(int pid)
{
    QFile stat(QString("/proc/%1/stat").arg(pid)), status(QString("/proc/%1/status").arg(pid));
    if (!stat.open(QIODevice::ReadOnly) || !status.open(QIODevice::ReadOnly))
        return;
    const QList<QByteArray> fields = stat.readAll().split(')').last().split(' ');
    const double ticks = double(sysconf(_SC_CLK_TCK));
    std::printf("server: %.2f s user, %.2f s system", fields[12].toDouble() / ticks,
                fields[13].toDouble() / ticks);
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            std::printf(", at most %s in memory", line.mid(6).simplified().constData());
    }
    std::printf("\n");
}

void PrintTotal(const std::vector<std::unique_ptr<SimulatedPhone>>& phones, double seconds)
{
    PhoneCount total;
    for (const auto& phone : phones) {
        const PhoneCount& one = phone->Count();
        total.scheduleTimes.insert(total.scheduleTimes.end(), one.scheduleTimes.begin(),
                                   one.scheduleTimes.end());
        total.fileTimes.insert(total.fileTimes.end(), one.fileTimes.begin(), one.fileTimes.end());
        total.bytes += one.bytes;
        total.failures += one.failures;
    }
    std::printf("%zu phones, %.1f s, %.1f MiB, %d failures\n", phones.size(), seconds,
                double(total.bytes) / (1 << 20), total.failures);
    PrintTimes("schedules", total.scheduleTimes);
    PrintTimes("files", total.fileTimes);
}

// Throws what cannot be understood or found.
boost::asio::ip::tcp::endpoint EndpointOf(const QUrl& address)
{
    boost::asio::io_context context;
    boost::asio::ip::tcp::resolver resolver(context);
    return *resolver.resolve(address.host().toStdString(), std::to_string(address.port(80))).begin();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription("Loads a signage server with simulated phones.");
    options.addHelpOption();
    options.addOptions({
        {"phones", "How many (default 200).", "N", "200"},
        {"seconds", "How long (default 20).", "N", "20"},
        {"interval", "Milliseconds between two schedules of a phone (default 1000).", "N", "1000"},
        {"key", "The account's key (default demo).", "KEY", "demo"},
        {"password", "The account's password (default demo).", "PASSWORD", "demo"},
        {"server-pid", "Tell what this process used.", "PID"},
    });
    options.addPositionalArgument("ADDRESS", "The server, as http://127.0.0.1:8080.");
    options.process(application);
    if (options.positionalArguments().size() != 1) {
        std::fprintf(stderr, "hxSignClients: one address is needed; --help tells more\n");
        return 2;
    }

    const Course course = {options.value("seconds").toInt(), std::max(options.value("interval").toInt(), 1)};
    const auto server = EndpointOf(QUrl(options.positionalArguments().first()));
    std::vector<std::unique_ptr<SimulatedPhone>> phones;
    for (int i = 0; i < options.value("phones").toInt(); ++i)
        phones.push_back(std::make_unique<SimulatedPhone>(server, options.value("key").toUtf8(),
                                                          options.value("password").toUtf8(), i));
    QElapsedTimer time;
    time.start();
    std::vector<std::thread> lives;
    for (const auto& phone : phones)
        lives.emplace_back([&phone, &course] { Live(*phone, course); });
    for (std::thread& life : lives)
        life.join();
    PrintTotal(phones, double(time.elapsed()) / 1000);
    PrintProcess(options.value("server-pid").toInt());
    return 0;
}
