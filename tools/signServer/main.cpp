// hxSignServer: the demonstration server for signage, weather and stock quotes.
#include "tools/signServer/FeedGateway.h"
#include "tools/signServer/FeedsOnly.h"
#include "tools/signServer/SignServer.h"
#include "tools/signServer/WebServer.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <memory>
#include <sys/resource.h>
#include <thread>

namespace {

constexpr int kBadUsage = 2;
constexpr int kMostThreads = 256;
constexpr int kLongestPatience = 3600; // seconds
constexpr int kOtherFiles = 64;        // descriptors that are no connection's

int Complain(const QString& text)
{
    std::fprintf(stderr, "hxSignServer: %s\n", qPrintable(text));
    return kBadUsage;
}

// Every thread started later leaves these signals to the one that waits for them.
sigset_t BlockEndSignals()
{
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return ends;
}

void ServeUntilSignalled(WebServer& server, FeedGateway* pGateway, const sigset_t& ends, int threads)
{
    std::thread waiter([&] {
        int which = 0;
        sigwait(&ends, &which);
        server.Halt();
        if (pGateway)
            pGateway->Stop();
    });
    server.Run(threads);
    waiter.join();
}

// Each connection may need a descriptor more for the file that it sends. How many connections there can be.
int MakeRoomFor(int connections)
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return connections;
    const rlim_t wanted = 2 * rlim_t(connections) + kOtherFiles;
    if (limit.rlim_cur < wanted) {
        limit.rlim_cur = std::min(limit.rlim_max, wanted);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    return limit.rlim_cur < wanted ? int((limit.rlim_cur - kOtherFiles) / 2) : connections;
}

// False when the account is of no use to phones. The rest is left out, and said.
bool CheckNames(const SignServer& server, RequestLog& log)
{
    for (const QString& complaint : server.ContentComplaints()) {
        Complain(complaint);
        log.Line("content: " + complaint.toUtf8());
    }
    const QStringList account = server.AccountComplaints();
    for (const QString& complaint : account)
        Complain(complaint);
    return account.isEmpty();
}

// A fixed time as "2026-11-21T14:05:00Z", or the machine's own; nothing for what is no time.
FeedClock ClockOf(const QString& text)
{
    if (text.isEmpty())
        return [] { return QDateTime::currentDateTimeUtc(); };
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() ? FeedClock([time] { return time; }) : FeedClock();
}

void TellOfFeeds(RequestLog& log, const QByteArray& address, bool isTaken)
{
    log.Line("feeds: " + (isTaken ? "at " + address : address + " is another program's; waiting for it"));
}

int WholeNumber(const QCommandLineParser& options, const char* name)
{
    bool good = false;
    const int number = options.value(name).toInt(&good);
    return good ? number : 0;
}

void DescribeOptions(QCommandLineParser& options)
{
    options.setApplicationDescription(
        "Serves a folder to phones: signage, weather and stock quotes.\n"
        "The folder holds server.ini, schedule.xml, layouts/, media/, and if wanted weather.xml, stock.xml,\n"
        "icons/ and faults.txt.");
    options.addHelpOption();
    options.addOptions({
        {"port", "The port; 0 chooses one (default), none leaves --feeds alone.", "PORT", "0"},
        {"bind", "The address to listen at (default 127.0.0.1).", "ADDRESS", "127.0.0.1"},
        {"log", "Append the log to a file (default: standard output).", "FILE"},
        {"threads", "Threads that answer; they wait for nobody (default: one for each processor).", "N",
         QString::number(std::max(2U, std::thread::hardware_concurrency()))},
        {"connections",
         "Connections at a time (default 4096). Whoever was silent for longest gives way to the next.", "N",
         "4096"},
        {"feeds", "Answer the public feeds at 127.0.0.1:PORT too, as soon as no other program has it.",
         "PORT"},
        {"weather", "Ask the JSON service at URL for forecasts, as gateway.ini describes it.", "URL"},
        {"stock", "The same for quotes.", "URL"},
        {"clock", "The feeds' time, which stands still: 2026-11-21T14:05:00Z.", "TIME"},
        {"patience", "Seconds in which a request must have come (default 10).", "N", "10"},
    });
    options.addPositionalArgument("DIR", "The folder.");
}

} // namespace

int main(int argc, char** argv)
{
    const sigset_t ends = BlockEndSignals();
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    DescribeOptions(options);
    options.process(application);

    if (options.positionalArguments().size() != 1)
        return Complain("one folder is needed; --help tells more");
    const QString folder = QDir(options.positionalArguments().first()).absolutePath();
    if (!QFileInfo(folder + "/server.ini").isReadable())
        return Complain(folder + "/server.ini cannot be read");
    const bool isFeedsAlone = options.value("port") == "none" && options.isSet("feeds");
    bool portGood = isFeedsAlone;
    const int port = isFeedsAlone ? 0 : options.value("port").toUShort(&portGood);
    const int threads = WholeNumber(options, "threads"), connections = WholeNumber(options, "connections");
    const int patience = std::min(WholeNumber(options, "patience"), kLongestPatience);
    if (!portGood || threads < 1 || connections < 1 || patience < 1)
        return Complain("--port, --threads, --connections and --patience need numbers");

    RequestLog log;
    if (!log.Open(QFile::encodeName(options.value("log"))))
        return Complain(options.value("log") + " cannot be written");
    const FeedClock clock = ClockOf(options.value("clock"));
    const int feedsPort = options.isSet("feeds") ? options.value("feeds").toUShort() : -1;
    if (!clock || feedsPort == 0)
        return Complain("--clock needs a time, --feeds a port");
    const GatewayPlan plan(SignFolder(QFile::encodeName(folder)).Content("gateway.ini"),
                           options.value("weather").toUtf8(), options.value("stock").toUtf8());
    for (const QString& complaint : plan.Complaints())
        Complain("gateway.ini: " + complaint);
    if (!plan.Complaints().isEmpty())
        return kBadUsage;
    std::unique_ptr<FeedGateway> gateway;
    if (plan.HasWeather() || plan.HasStock())
        gateway = std::make_unique<FeedGateway>(plan, log);
    SignServer service(QFile::encodeName(folder), log, clock, gateway.get());
    FeedsOnly feeds(service);
    if (!CheckNames(service, log))
        return kBadUsage;
    WebServer server(service, MakeRoomFor(connections), patience * 1000);
    const QByteArray feedsAddress = "http://127.0.0.1:" + QByteArray::number(feedsPort);
    if (feedsPort > 0)
        server.BindWhenFree("127.0.0.1", feedsPort, feeds,
                            [&](bool isTaken) { TellOfFeeds(log, feedsAddress, isTaken); });
    const int bound = isFeedsAlone ? 0 : server.Bind(options.value("bind").toLatin1(), port);
    if (bound < 0)
        return Complain(QString("cannot listen at %1 port %2").arg(options.value("bind")).arg(port));
    if (isFeedsAlone)
        std::printf("%s\n", feedsAddress.constData());
    else
        std::printf("http://%s:%d\n", qPrintable(options.value("bind")), bound);
    std::fflush(stdout);
    ServeUntilSignalled(server, gateway.get(), ends, std::min(threads, kMostThreads));
    if (gateway)
        gateway->Settle();
    service.Settle();
    return 0;
}
