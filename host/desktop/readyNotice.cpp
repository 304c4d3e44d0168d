#include "host/desktop/readyNotice.h"
#include "support/host/trace.h"
#include <QByteArray>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

void readyNoticeSend()
{
    constexpr char kReady[] = "READY=1";
    const QByteArray name = qgetenv("NOTIFY_SOCKET");
    sockaddr_un to = {};
    if (name.isEmpty() || name.size() >= qsizetype(sizeof to.sun_path))
        return;
    to.sun_family = AF_UNIX;
    memcpy(to.sun_path, name.constData(), size_t(name.size()));
    if (name[0] == '@') // of the abstract name space
        to.sun_path[0] = '\0';
    const socklen_t length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0 || sendto(socket, kReady, strlen(kReady), MSG_NOSIGNAL,
                             reinterpret_cast<const sockaddr*>(&to), length) < 0)
        nuxTrace(TRACE_NOTE, "the service manager cannot be told that the phone is up: %s", strerror(errno));
    if (socket >= 0)
        close(socket);
}
