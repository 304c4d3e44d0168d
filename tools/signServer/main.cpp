// hxSignServer: the demonstration server for signage, weather and stock quotes.
#include "tools/signServer/SignServer.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <csignal>
#include <cstdio>
#include <thread>

namespace {

constexpr int kBadUsage = 2;

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
    sigaddset(&ends, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return ends;
}

int ServeUntilSignalled(SignServer& server, const sigset_t& ends)
{
    std::thread waiter([&] {
        int which = 0;
        sigwait(&ends, &which);
        server.Halt();
    });
    const int served = server.Serve();
    // Wakes the waiter when the server ended by itself.
    pthread_kill(waiter.native_handle(), SIGUSR1);
    waiter.join();
    return served;
}

} // namespace

int main(int argc, char** argv)
{
    const sigset_t ends = BlockEndSignals();
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(
        "Serves a folder to phones: signage, weather and stock quotes.\n"
        "The folder holds server.ini, schedule.xml, layouts/, media/, and if wanted weather.xml, stock.xml,\n"
        "icons/ and faults.txt.");
    options.addHelpOption();
    options.addOptions({
        {"port", "The port; 0 chooses one (default).", "PORT", "0"},
        {"bind", "The address to listen at (default 127.0.0.1).", "ADDRESS", "127.0.0.1"},
        {"log", "Append the log to a file (default: standard output).", "FILE"},
        {"threads", "Connections served at a time (default 256).", "N", "256"},
    });
    options.addPositionalArgument("DIR", "The folder.");
    options.process(application);

    if (options.positionalArguments().size() != 1)
        return Complain("one folder is needed; --help tells more");
    const QString folder = QDir(options.positionalArguments().first()).absolutePath();
    if (!QFileInfo(folder + "/server.ini").isReadable())
        return Complain(folder + "/server.ini cannot be read");
    bool portGood = false, threadsGood = false;
    const int port = options.value("port").toUShort(&portGood);
    const int threads = options.value("threads").toInt(&threadsGood);
    if (!portGood || !threadsGood || threads < 1)
        return Complain("--port and --threads need numbers");

    RequestLog log;
    if (!log.Open(QFile::encodeName(options.value("log"))))
        return Complain(options.value("log") + " cannot be written");
    SignServer server(QFile::encodeName(folder), log, threads);
    const int bound = server.Bind(options.value("bind").toLatin1(), port);
    if (bound <= 0)
        return Complain(QString("cannot listen at %1 port %2").arg(options.value("bind")).arg(port));
    std::printf("http://%s:%d\n", qPrintable(options.value("bind")), bound);
    std::fflush(stdout);
    return ServeUntilSignalled(server, ends) ? 0 : 1;
}
