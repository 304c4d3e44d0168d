// hxctl: drives and inspects a running phone from a shell. One command, one JSON value on the standard
// output. Exit status: 0 done, 1 refused, 2 no phone or bad usage.
#include <QByteArray>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <cstdio>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

enum { EXIT_DONE = 0, EXIT_REFUSED = 1, EXIT_USAGE = 2 };

const char* const kHelp =
    "usage: hxctl -s SOCKET COMMAND ...\n"
    "\n"
    "open NAME                       open a page by name\n"
    "open-info NAME ICON TITLE       open a page as a menu does, with its icon and title\n"
    "menu FILE                       open a menu file\n"
    "frame NAME                      open a menu by name; prints the result\n"
    "refresh FILE                    load a menu file again; stockData.xml: the list of the page \"Stock\"\n"
    "cache INDEX                     one step of the boot pre-building; prints the result\n"
    "tree                            all windows and widgets, topmost window first\n"
    "touch X Y [down|move|up]        a finger on the screen; without the last word a tap\n"
    "touch-raw X Y [PRESSURE]        what the touch panel reports, in its own counts (0 to 4095); PRESSURE "
    "100\n"
    "touch-raw up                    the finger has left the panel\n"
    "key NAME [press|release]        a key by its name: Up, Return, F1, 5, *, message\n"
    "type TEXT                       text into the focus widget, key by key\n"
    "screen                          idle milliseconds, saver held off, lamp and backlight lit; class of "
    "the\n"
    "                                topmost window, number of widgets, processor milliseconds of the user "
    "interface\n"
    "memory                          bytes that the phone holds\n"
    "shot FILE                       the screen as PNG; as PPM, which is quicker, where FILE ends in .ppm\n"
    "log [N]                         what the phone did, from number N on\n"
    "set line I [state=] [user=] [server=] [name=] [new=] [old=] [why=TEXT]\n"
    "set list LINE [NUMBER[=NAME],...]\n"
    "                                the extensions that the server of a line has put on its list\n"
    "set net [state=] [type=] [cable=] [conflict=] [used=IP]\n"
    "set pstn N | set calls [total=] [talk=] | set upgrading N\n"
    "set clock \"YYYY-MM-DD hh:mm:ss\"\n"
    "set storage plug usb|sd DIR | set storage unplug DIR\n"
    "ring NUMBER [LINE|pstn] [NAME] [anonymous] [video] [by=NUMBER]...\n"
    "                                a call comes in; on the analogue line after \"set pstn 1\"; by: who "
    "has\n"
    "                                forwarded it here\n"
    "calls                           the calls that are there, and those that have ended, with all facts\n"
    "other-side ID hold|resume|hangup|refuse|accept\n"
    "                                what the other side of a call does; refuse: does not let itself be put\n"
    "                                through any more\n"
    "streams ID [sound=NAME] [picture=NAME] [quality=-1..4] [encrypted=0|1]\n"
    "                                what goes over the wire of a simulated call, and how well\n"
    "connect ID OTHER                puts the other sides of two calls that talk through to each other\n"
    "join ID OTHER | split ID        a conference of two calls that talk; its end: the other one is held\n"
    "dsskey N [press|long|show]      a programmable key; what it is\n"
    "lamp NUMBER [idle|ringing|busy|unknown]\n"
    "                                the state of an extension\n"
    "set language NAME               English, Chinese, German, French, Spanish\n"
    "set idle SECONDS                as if nobody had touched the phone for so long\n"
    "post THREAD MESSAGE WPARAM LPARAM [HEX]\n"
    "                                a message as another process would send it\n"
    "config FILE SECTION KEY [VALUE] read or write a key\n"
    "wait page CLASS MS              until a page of the class is on top\n"
    "wait idle MS                    until nothing is left to do\n"
    "quit                            end the phone\n";

int usage(const char* problem)
{
    fprintf(stderr, "hxctl: %s (hxctl --help lists all)\n", problem);
    return EXIT_USAGE;
}

// Also behind a socket, where no phone needs to be.
bool asksForHelp(const QStringList& words)
{
    const QString first = words.value(words.value(0) == "-s" ? 2 : 0);
    return first == "--help" || first == "-h";
}

int connectTo(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= int(sizeof address.sun_path))
        return -1;
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int socketFd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socketFd >= 0 && connect(socketFd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return socketFd;
    if (socketFd >= 0)
        close(socketFd);
    return -1;
}

bool sendAll(int socketFd, const QByteArray& data)
{
    for (qsizetype sent = 0; sent < data.size();) {
        const ssize_t now = send(socketFd, data.constData() + sent, size_t(data.size() - sent), MSG_NOSIGNAL);
        if (now <= 0)
            return false;
        sent += now;
    }
    return true;
}

QByteArray readLine(int socketFd)
{
    QByteArray line;
    char block[65536];
    while (!line.endsWith('\n')) {
        const ssize_t count = read(socketFd, block, sizeof block);
        if (count <= 0)
            break;
        line.append(block, count);
    }
    return line;
}

QByteArray request(QStringList words)
{
    // The phone runs in a folder of its own.
    if (words.value(0) == "shot" && words.size() == 2)
        words[1] = QDir::current().absoluteFilePath(words[1]);
    return QJsonDocument(QJsonArray::fromStringList(words)).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

int main(int argc, char** argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]));
    if (asksForHelp(words)) {
        fputs(kHelp, stdout);
        return EXIT_DONE;
    }
    if (words.size() < 3 || words[0] != "-s")
        return usage("needs -s SOCKET and a command");
    const int phone = connectTo(words[1].toLocal8Bit());
    if (phone < 0)
        return usage("no phone on that socket");
    if (!sendAll(phone, request(words.mid(2))))
        return usage("the phone went away");
    const QByteArray answer = readLine(phone);
    close(phone);
    if (!answer.endsWith('\n'))
        return usage("the phone went away");
    fwrite(answer.constData(), 1, size_t(answer.size()), stdout);
    const QJsonObject object = QJsonDocument::fromJson(answer).object();
    if (object.value("usage").toBool())
        return EXIT_USAGE;
    return object.contains("error") ? EXIT_REFUSED : EXIT_DONE;
}
