#include "host/web/peerOwner.h"
#include <QFile>
#include <QtEndian>
#include <atomic>
#include <cerrno>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kLocal = 1, kRemote = 2, kState = 3, kUid = 7; // words of a row
constexpr int kRowBytes = 512;
constexpr int kAnswerBytes = 4096; // with all that a kernel may add

QByteArray hex(quint32 number, int digits)
{
    return QByteArray::number(number, 16).toUpper().rightJustified(digits, '0');
}

// The kernel writes addresses as the numbers that lie in memory.
QByteArray entry(const QHostAddress& address, quint16 port)
{
    return hex(qToBigEndian(address.toIPv4Address()), 8) + ':' + hex(port, 4);
}

// A socket of IPv6 may speak IPv4 too.
QByteArray mapped(const QByteArray& entry)
{
    return QByteArray(16, '0') + hex(qToBigEndian(quint32(0xffff)), 8) + entry;
}

struct tagQuestion
{
    nlmsghdr head;
    inet_diag_req_v2 what;
};

bool sendQuestion(int asking, const peerOwner::tagEnds& ends)
{
    tagQuestion question = {};
    question.head.nlmsg_len = sizeof question;
    question.head.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    question.head.nlmsg_flags = NLM_F_REQUEST;
    question.what.sdiag_family = AF_INET;
    question.what.sdiag_protocol = IPPROTO_TCP;
    question.what.idiag_states = 1U << TCP_ESTABLISHED;
    inet_diag_sockid& id = question.what.id;
    id.idiag_src[0] = qToBigEndian(ends.address.toIPv4Address());
    id.idiag_dst[0] = qToBigEndian(ends.farAddress.toIPv4Address());
    id.idiag_sport = qToBigEndian(ends.port);
    id.idiag_dport = qToBigEndian(ends.farPort);
    id.idiag_cookie[0] = id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    return send(asking, &question, sizeof question, 0) == ssize_t(sizeof question);
}

// The answer lies there when the question was sent.
peerOwner::ANSWER readAnswer(int asking, const peerOwner::tagEnds& ends, uid_t& uid)
{
    alignas(nlmsghdr) char bytes[kAnswerBytes];
    const ssize_t size = recv(asking, bytes, sizeof bytes, MSG_DONTWAIT);
    const auto* head = reinterpret_cast<const nlmsghdr*>(bytes);
    if (size < ssize_t(sizeof(nlmsghdr)) || !NLMSG_OK(head, unsigned(size)))
        return peerOwner::ANSWER_REFUSED;
    if (head->nlmsg_type == NLMSG_ERROR && head->nlmsg_len >= NLMSG_LENGTH(sizeof(nlmsgerr))) {
        const int error = static_cast<const nlmsgerr*>(NLMSG_DATA(head))->error;
        return error == -ENOENT ? peerOwner::ANSWER_NOT_OPEN : peerOwner::ANSWER_REFUSED;
    }
    if (head->nlmsg_type != SOCK_DIAG_BY_FAMILY || head->nlmsg_len < NLMSG_LENGTH(sizeof(inet_diag_msg)))
        return peerOwner::ANSWER_REFUSED;
    const auto* found = static_cast<const inet_diag_msg*>(NLMSG_DATA(head));
    // Where there is none of both ends, the kernel names who listens at one.
    if (found->idiag_state != TCP_ESTABLISHED || found->id.idiag_dport != qToBigEndian(ends.farPort))
        return peerOwner::ANSWER_NOT_OPEN;
    uid = found->idiag_uid;
    return peerOwner::ANSWER_FOUND;
}

} // namespace

std::optional<uid_t> peerOwner::uidIn(QIODevice& table, const tagEnds& ends)
{
    const QByteArray local = entry(ends.address, ends.port);
    const QByteArray remote = entry(ends.farAddress, ends.farPort);
    for (int row = 0; row < ROWS; ++row) {
        const QByteArray line = table.readLine(kRowBytes);
        if (line.isEmpty())
            break;
        if (!line.contains(local))
            continue;
        const QByteArrayList words = line.simplified().split(' ');
        const bool isIt = (words.value(kLocal) == local && words.value(kRemote) == remote) ||
                          (words.value(kLocal) == mapped(local) && words.value(kRemote) == mapped(remote));
        // One that its process has closed is written down as the superuser's.
        if (!isIt || words.value(kState) != "01")
            continue;
        bool isNumber = false;
        const uid_t uid = words.value(kUid).toUInt(&isNumber);
        return isNumber ? std::optional(uid) : std::nullopt;
    }
    return std::nullopt;
}

peerOwner::ANSWER peerOwner::ask(const tagEnds& ends, uid_t& uid)
{
    const int asking = socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (asking < 0)
        return ANSWER_REFUSED;
    const ANSWER answer = sendQuestion(asking, ends) ? readAnswer(asking, ends, uid) : ANSWER_REFUSED;
    close(asking);
    return answer;
}

std::optional<uid_t> peerOwner::uidInTables(const tagEnds& ends)
{
    for (const char* name : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile table(name);
        if (!table.open(QIODevice::ReadOnly))
            continue;
        if (const std::optional<uid_t> uid = uidIn(table, ends))
            return uid;
    }
    return std::nullopt;
}

bool peerOwner::isOwn(const QTcpSocket& client)
{
    // A kernel that cannot be asked says that there is nothing, whatever is asked for.
    static std::atomic<bool> hasAnswered = false;
    const tagEnds ends{client.peerAddress(), client.peerPort(), client.localAddress(), client.localPort()};
    uid_t uid = 0;
    switch (ask(ends, uid)) {
    case ANSWER_FOUND:
        hasAnswered = true;
        return uid == geteuid();
    case ANSWER_NOT_OPEN:
        if (hasAnswered)
            return false;
        break;
    case ANSWER_REFUSED:
        break;
    }
    return uidInTables(ends) == geteuid();
}
