#include "tests/pbx/baresipProcess.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <csignal>
#include <gtest/gtest.h>

namespace {

constexpr int kWaitMs = 15000;

bool write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace

BaresipProcess::BaresipProcess()
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

BaresipProcess::~BaresipProcess()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    ::kill(pid_t(m_process.processId()), SIGTERM);
    if (!m_process.waitForFinished(kWaitMs)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void BaresipProcess::start(const QByteArray& user, uint32_t server, const QByteArray& password,
                           bool answersItself)
{
    const uint32_t control = UdpPeer::freePort();
    const QByteArray settings =
        "poll_method epoll\nsip_listen 127.0.0.1:" + QByteArray::number(UdpPeer::freePort()) +
        "\ncall_local_timeout 60\ncall_max_calls 4\naudio_player aubridge,a\n"
        "audio_source aubridge,a\naudio_alert aubridge,b\n"
        "module_path /usr/lib/baresip/modules\nmodule g711.so\nmodule aubridge.so\n"
        "module_app account.so\nmodule_app menu.so\nmodule_app ctrl_tcp.so\n"
        "ctrl_tcp_listen 127.0.0.1:" +
        QByteArray::number(control) + "\n";
    const QByteArray account = "<sip:" + user + "@127.0.0.1:" + QByteArray::number(server) +
                               ">;auth_pass=" + password +
                               ";regint=600;answermode=" + (answersItself ? "auto" : "manual") + "\n";
    ASSERT_TRUE(write(m_folder.filePath("config"), settings) &&
                write(m_folder.filePath("accounts"), account) && write(m_folder.filePath("contacts"), "\n"));
    kit::endWithUs(m_process);
    m_process.start("baresip", {"-f", m_folder.path()});
    ASSERT_TRUE(m_process.waitForStarted()) << "baresip (package baresip-core) is missing";
    ASSERT_TRUE(kit::waits([&] { return UdpPeer::isListening(control); }, kWaitMs)) << output().constData();
    m_control.connectToHost(QHostAddress::LocalHost, quint16(control));
    ASSERT_TRUE(m_control.waitForConnected(kWaitMs)) << output().constData();
}

bool BaresipProcess::tells(const QByteArray& event, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!m_told.contains(event)) {
        if (timer.elapsed() >= ms || !m_control.waitForReadyRead(int(qMax<qint64>(1, ms - timer.elapsed()))))
            return m_told.contains(event);
        m_told += m_control.readAll();
    }
    // What came before is told no more.
    m_told = m_told.mid(m_told.indexOf(event) + event.size());
    return true;
}

bool BaresipProcess::prints(const QByteArray& text, int ms)
{
    return kit::waits(
        [&] {
            output();
            return m_output.contains(text);
        },
        ms);
}

void BaresipProcess::command(const QByteArray& name, const QByteArray& parameters)
{
    const QByteArray text =
        "{\"command\":\"" + name + "\",\"params\":\"" + parameters + "\",\"token\":\"test\"}";
    m_control.write(QByteArray::number(text.size()) + ":" + text + ",");
    m_control.waitForBytesWritten(kWaitMs);
}

QByteArray BaresipProcess::output()
{
    m_process.waitForReadyRead(0);
    m_output += m_process.readAll();
    return m_output.right(4000) + "\n" + m_told.right(4000);
}
