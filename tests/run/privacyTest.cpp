// A start of ./run belongs to one user: his display, his screen, his address.
#include "tests/run/displayClient.h"
#include "tests/run/rfbScreen.h"
#include "tests/run/runScript.h"
#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t kStranger = 65534;

class Privacy : public testing::Test
{
protected:
    void SetUp() override { m_phone.startPage(); }

    RunScript m_phone;
};

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

mode_t modeOf(const QString& path)
{
    struct stat known = {};
    return stat(path.toUtf8(), &known) == 0 ? known.st_mode & 07777 : 07777;
}

// 0 when somebody listens there, else the error.
int errorOfConnecting(const QByteArray& name)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    memcpy(address.sun_path, name.constData(), size_t(name.size()));
    const int socketFd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto size = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    const int error = connect(socketFd, reinterpret_cast<sockaddr*>(&address), size) == 0 ? 0 : errno;
    close(socketFd);
    return error;
}

int errorOfConnectingAsAStranger(const QByteArray& name)
{
    const pid_t stranger = fork();
    if (stranger == 0)
        _exit(setresuid(kStranger, kStranger, kStranger) == 0 ? errorOfConnecting(name) : 255);
    int status = 0;
    waitpid(stranger, &status, 0);
    return WEXITSTATUS(status);
}

// The addresses on which the process waits for TCP, as the system writes them: "0100007F:17C0".
QList<QByteArray> listeningOf(qint64 pid)
{
    QByteArray sockets;
    const QDir files(QString("/proc/%1/fd").arg(pid));
    for (const QString& name : files.entryList(QDir::Files | QDir::System))
        sockets += QFile::symLinkTarget(files.filePath(name)).toUtf8() + ' ';
    QList<QByteArray> found;
    for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        for (const QByteArray& line : readAll(table).split('\n')) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.value(3) == "0A" && sockets.contains("socket:[" + words.value(9) + "]"))
                found.append(words.value(1));
        }
    }
    return found;
}

} // namespace

TEST_F(Privacy, TheDisplayAsksForItsKey)
{
    const QString cookie = m_phone.folder() + "/cookie", wrong = m_phone.root() + "/wrong";
    QFile file(wrong);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(16, 'x'));
    file.close();
    for (const bool withoutFile : {false, true}) {
        EXPECT_TRUE(DisplayClient(m_phone.display(), cookie, withoutFile).isAdmitted()) << withoutFile;
        EXPECT_FALSE(DisplayClient(m_phone.display(), {}, withoutFile).isAdmitted()) << withoutFile;
        EXPECT_FALSE(DisplayClient(m_phone.display(), wrong, withoutFile).isAdmitted()) << withoutFile;
    }
}

TEST_F(Privacy, NobodyElseReachesTheScreen)
{
    EXPECT_EQ(modeOf(m_phone.folder()), 0700u);
    EXPECT_EQ(modeOf(m_phone.folder() + "/screen"), 0600u);
    EXPECT_EQ(modeOf(m_phone.folder() + "/cookie"), 0600u);
    const QByteArray screen = m_phone.folder().toUtf8() + "/screen";
    EXPECT_EQ(errorOfConnecting(screen), 0);
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can play another user";
    EXPECT_EQ(errorOfConnectingAsAStranger(screen), EACCES);
}

TEST_F(Privacy, OnlyPageAndFeedsListenAndOnThisMachineAlone)
{
    const auto onlyAt = [](int port) {
        return QList<QByteArray>{"0100007F:" + QByteArray::number(port, 16).toUpper().rightJustified(4, '0')};
    };
    const qint64 page = m_phone.processOf("hxScreenServer"), feeds = m_phone.processOf("hxSignServer");
    EXPECT_EQ(listeningOf(page), onlyAt(m_phone.port()));
    EXPECT_TRUE(eventually([&] { return listeningOf(feeds) == onlyAt(m_phone.feedsPort()); }));
    const QList<qint64> all = m_phone.descendants();
    EXPECT_GE(all.size(), 3);
    for (const qint64 process : all)
        EXPECT_TRUE(process == page || process == feeds || listeningOf(process).isEmpty()) << process;
}

TEST_F(Privacy, NoCommandLineAndNoFileTellsTheToken)
{
    const QByteArray key = readAll(m_phone.folder() + "/cookie").right(16);
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        const QByteArray line = readAll("/proc/" + entry + "/cmdline");
        EXPECT_FALSE(line.contains(m_phone.token())) << line.constData();
        EXPECT_FALSE(line.contains(key.toHex())) << line.constData();
    }
    QProcess search;
    search.start("grep", {"-rl", m_phone.token(), m_phone.root()});
    ASSERT_TRUE(search.waitForFinished());
    EXPECT_EQ(search.readAll(), "");
    EXPECT_EQ(m_phone.output().count(m_phone.token()), 1);
}
