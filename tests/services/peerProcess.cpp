#include "tests/services/peerProcess.h"
#include "host/services/messages/messageBus.h"
#include "support/file/deviceRoot.h"
#include "support/host/message.h"
#include "tests/kit/phoneTest.h"
#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

const char* const kPeerVariable = "HX_TEST_PEER";

void say(const QByteArray& line)
{
    fprintf(stdout, "%s\n", line.constData());
    fflush(stdout);
}

class Peer : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        switch (msg.message) {
        case PEER_SAY:
            sayMessage("said", msg);
            return 1;
        case PEER_COUNT:
            m_nCounted = msg.wParam == unsigned(m_nCounted) ? m_nCounted + 1 : -1;
            return 1;
        case PEER_REPORT:
            msg.nResult = m_nCounted;
            return 1;
        case PEER_ADD:
            msg.nResult = int(msg.wParam + msg.lParam) + msg.GetExtraSize();
            return 1;
        case PEER_BLOCK:
            return msg.SetReplyData(QByteArray(int(msg.wParam), char(msg.lParam)).constData(),
                                    int(msg.wParam));
        case PEER_DIE:
            raise(SIGKILL);
            return 1;
        case PEER_HANG:
            for (;;)
                pause();
        case PEER_ASK_BACK:
            msg.nResult =
                msgSendMsgToThread(msgGetThreadByName("app_test"), PEER_ADD, msg.wParam, msg.lParam) + 1;
            return 1;
        case PEER_POST_BACK:
            for (unsigned int i = 0; i < msg.wParam; ++i)
                msgPostMsgToThread(msgGetThreadByName("app_test"), PEER_COUNT, i, 0);
            return 1;
        case PEER_BROADCAST:
            msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, msg.wParam, msg.lParam);
            return 1;
        case CONFIG_MSG_BCAST_CHANGED:
            sayMessage("broadcast", msg);
            return 1;
        default:
            return 0;
        }
    }

private:
    static void sayMessage(const QByteArray& word, const msgObject& msg)
    {
        const QByteArray extra(static_cast<const char*>(msg.GetExtraData()), msg.GetExtraSize());
        say((word + ' ' + QByteArray::number(msg.wParam) + ' ' + QByteArray::number(msg.lParam) + ' ' + extra)
                .trimmed());
    }
    int m_nCounted = 0;
};

void bePeer()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool listening = messageServiceStart(getenv(kPeerVariable));
    Peer peer;
    say(listening ? "ready" : "refused");
    if (listening)
        QCoreApplication::exec();
    _exit(0);
}

const bool registered = [] {
    if (getenv(kPeerVariable))
        kit::guiHooks().afterApplication = bePeer;
    return true;
}();

} // namespace

peerProcess::peerProcess(const QString& name)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kPeerVariable, name);
    environment.insert("HX_SYSROOT", QString::fromUtf8(deviceGetRoot().GetText()));
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationFilePath(), QStringList());
}

peerProcess::~peerProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        kill();
}

bool peerProcess::isReady()
{
    return hasSaid("ready");
}

bool peerProcess::isRefused()
{
    return hasSaid("refused");
}

bool peerProcess::hasSaid(const QByteArray& line)
{
    return kit::waitUntil(
        [&] {
            m_said += m_process.readAllStandardOutput();
            return ('\n' + m_said).contains('\n' + line + '\n');
        },
        20000);
}

// A process that has ended has number 0, which would mean this one and all its kin.
void peerProcess::signal(int number)
{
    const pid_t peer = pid_t(pid());
    if (peer > 0)
        ::kill(peer, number);
}

void peerProcess::kill()
{
    signal(SIGKILL);
    m_process.waitForFinished();
}

void peerProcess::stop()
{
    signal(SIGSTOP);
}

void peerProcess::resume()
{
    signal(SIGCONT);
}
