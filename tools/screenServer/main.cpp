// hxScreenServer: shows the screen of a display server in web browsers of this machine.
#include "tools/screenServer/screenServer.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>

namespace {

constexpr int kBadUsage = 2;

int complain(const QString& text, int result)
{
    fprintf(stderr, "hxScreenServer: %s\n", qPrintable(text));
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(
        "Shows the screen of a display server in web browsers of this machine.\n"
        "The first line of its output is the address to open. Who knows that line may use the screen.");
    options.addHelpOption();
    options.addOptions({{"port", "Port of the page; 0 takes one that is free.", "PORT", "6080"},
                        {"page", "Folder with the files of the page.", "DIR", "/usr/share/novnc"}});
    options.addPositionalArgument("SOCKET", "The socket on which the display server speaks RFB.");
    options.process(application);
    bool isNumber = false;
    const int port = options.value("port").toInt(&isNumber);
    if (!isNumber || port < 0 || port > 65535)
        return complain("the port is a number from 0 to 65535", kBadUsage);
    if (options.positionalArguments().size() != 1)
        return complain("needs the socket of a display server", kBadUsage);
    ScreenServer server(options.positionalArguments().first(), options.value("page"));
    if (!server.listen(port))
        return complain(server.why(), 1);
    printf("%s\n", server.address().constData());
    fflush(stdout);
    return application.exec();
}
