#include "tests/pbx/baresipProcess.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include "tests/sip/udpPeer.h"
#include <QDir>
#include <QElapsedTimer>
#include <QHostAddress>

namespace {

constexpr int kWaitMs = 15000;

} // namespace

// Its decoders' filters work from the last one that is named here to the first: gaps are filled before the
// sound is recorded. A ring-back tone would take the bridge along when it ends.
QByteArray BaresipProcess::soundSettings(const tagBaresipSound& sound) const
{
    QByteArray settings =
        "ringback_disabled yes\naudio_player aubridge,a\naudio_alert aubridge,b\naudio_source ";
    settings += sound.says.isEmpty() ? "aubridge,a" : "aufile," + sound.says.toUtf8();
    settings += "\nmodule_path /usr/lib/baresip/modules\nmodule g711.so\n";
    if (!sound.codec.isEmpty())
        settings += "module g722.so\nmodule opus.so\n";
    if (sound.bRecords)
        settings += "module sndfile.so\nsnd_path " + m_program.path().toUtf8() + "\n";
    if (sound.bEncrypts)
        settings += "module srtp.so\n";
    if (!sound.codec.startsWith("opus")) // which makes up for gaps itself
        settings += "module plc.so\n";
    return settings + "module aubridge.so\nmodule aufile.so\n" + sound.settings;
}

QByteArray BaresipProcess::pictureSettings(const QByteArray& module, const QString& film)
{
    return "video_source avformat," + film.toUtf8() +
           "\nvideo_display fakevideo,nil\nvideo_size 640x480\nvideo_fps 25\nvideo_bitrate 1000000\n"
           "module avformat.so\nmodule fakevideo.so\nmodule snapshot.so\nmodule " +
           module + ".so\n";
}

bool BaresipProcess::start(const QByteArray& user, uint32_t server, const QByteArray& password,
                           bool answersItself, const tagBaresipSound& sound)
{
    const uint32_t control = kit::freePort();
    const QByteArray settings =
        "poll_method epoll\nsip_listen 127.0.0.1:" + QByteArray::number(kit::freePort()) +
        "\ncall_local_timeout 60\ncall_max_calls 4\nstatmode_default off\n" + soundSettings(sound) +
        "module_app account.so\nmodule_app menu.so\nmodule_app ctrl_tcp.so\n"
        "ctrl_tcp_listen 127.0.0.1:" +
        QByteArray::number(control) + "\n";
    QByteArray account = "<sip:" + user + "@127.0.0.1:" + QByteArray::number(server) +
                         ">;auth_pass=" + password +
                         ";regint=600;answermode=" + (answersItself ? "auto" : "manual");
    if (!sound.codec.isEmpty())
        account += ";audio_codecs=" + sound.codec;
    if (sound.bEncrypts)
        account += ";mediaenc=srtp-mand";
    if (sound.nThrough != 0)
        account += ";outbound=\"sip:127.0.0.1:" + QByteArray::number(sound.nThrough) + "\"";
    if (!m_program.write("config", settings) || !m_program.write("accounts", account + "\n") ||
        !m_program.write("contacts", "\n") || !m_program.start("baresip", {"-f", m_program.path()}) ||
        !kit::waits([&] { return UdpPeer::isListening(control); }, kWaitMs))
        return false;
    m_control.connectToHost(QHostAddress::LocalHost, quint16(control));
    return m_control.waitForConnected(kWaitMs);
}

QString BaresipProcess::recorded() const
{
    const QStringList files = QDir(m_program.path()).entryList({"dump-*-dec.wav"}, QDir::Files, QDir::Name);
    return files.isEmpty() ? QString() : m_program.path(files.last());
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

void BaresipProcess::dial(const QByteArray& user, uint32_t server)
{
    command("dial", "sip:" + user + "@127.0.0.1:" + QByteArray::number(server));
}

QByteArray BaresipProcess::output()
{
    return m_program.output().right(4000) + "\n" + m_told.right(4000);
}
