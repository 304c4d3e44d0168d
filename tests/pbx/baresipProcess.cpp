#include "tests/pbx/baresipProcess.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QElapsedTimer>
#include <QHostAddress>
#include <gtest/gtest.h>

namespace {

constexpr int kWaitMs = 15000;

} // namespace

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
    ASSERT_TRUE(m_program.write("config", settings) && m_program.write("accounts", account) &&
                m_program.write("contacts", "\n"));
    ASSERT_TRUE(m_program.start("baresip", {"-f", m_program.path()}))
        << "baresip (package baresip-core) is missing";
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
    return kit::waits([&] { return m_program.output().contains(text); }, ms);
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
    return m_program.output().right(4000) + "\n" + m_told.right(4000);
}
