#include "tests/run/runScript.h"
#include "places.h"
#include "tests/kit/plain/ports.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {

constexpr int kStartMs = 30000;
constexpr int kLookEveryMs = 10;
constexpr int kLoss = 48;

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<qint64> childrenOf(qint64 parent)
{
    QList<qint64> children;
    for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
        const QByteArray stat = readAll("/proc/" + entry + "/stat");
        if (entry.toInt() > 0 &&
            stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toLongLong() == parent)
            children.append(entry.toInt());
    }
    return children;
}

// What comes to a browser has been compressed with losses.
bool isNear(QRgb a, QRgb b)
{
    return abs(qRed(a) - qRed(b)) < kLoss && abs(qGreen(a) - qGreen(b)) < kLoss &&
           abs(qBlue(a) - qBlue(b)) < kLoss;
}

} // namespace

RunScript::RunScript() : m_nFeedsPort(int(kit::freePort()))
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

RunScript::~RunScript()
{
    if (m_process.state() != QProcess::NotRunning) {
        signal(SIGTERM);
        waitEnd();
    }
}

void RunScript::launch(const QStringList& options, const QString& source, uid_t user)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
        environment.remove("DISPLAY");
    }
    environment.insert("QT_SCALE_FACTOR", "1");
    environment.insert("HX_FEEDS_PORT", QString::number(m_nFeedsPort));
    m_process.setProcessEnvironment(environment);
    kit::endWithUs(m_process, user);
    // Its own group of processes, as in a terminal, where nobody ignores the terminal's keys: shells do so
    // for what they start in the background, and this test may be.
    const QString script = (source.isEmpty() ? QString(HX_SOURCE_DIR) : source) + "/run";
    m_process.start("env", QStringList{"--default-signal=INT,QUIT", "setsid", script} + options);
    ASSERT_TRUE(m_process.waitForStarted());
}

void RunScript::startPage(const QStringList& options)
{
    launch(QStringList{"--built", HX_BUILD_DIR, "--root", root(), "--control", root() + "/control", "--port",
                       "0"} +
           options);
    waitHome();
    takeAddress();
}

void RunScript::startWindow(const QString& display, const QString& cookie)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DISPLAY", display);
    environment.insert("XAUTHORITY", cookie);
    m_process.setProcessEnvironment(environment);
    launch({"--built", HX_BUILD_DIR, "--root", root(), "--control", root() + "/control"});
    waitHome();
}

void RunScript::waitHome()
{
    ASSERT_TRUE(m_control.open(root() + "/control", kStartMs)) << output().constData();
    ctl({"wait", "page", "frmDesktop", "20000"});
    ctl({"wait", "idle", "10000"});
}

void RunScript::takeAddress()
{
    static const QRegularExpression address("http://127\\.0\\.0\\.1:(\\d+)/([0-9a-f]{32})/");
    const QRegularExpressionMatch found = address.match(QString::fromUtf8(output()));
    ASSERT_TRUE(found.hasMatch()) << output().constData();
    m_nPort = found.captured(1).toInt();
    m_token = found.captured(2).toLatin1();
}

bool RunScript::waitEnd(int ms)
{
    return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(ms);
}

void RunScript::signal(int number) const
{
    ::kill(pid_t(pid()), number);
}

void RunScript::signalTerminal(int number) const
{
    ::kill(-pid_t(pid()), number);
}

QByteArray RunScript::output()
{
    m_process.waitForReadyRead(0);
    m_output += m_process.readAll();
    return m_output;
}

QList<qint64> RunScript::descendants() const
{
    QList<qint64> all = childrenOf(pid());
    for (qsizetype i = 0; i < all.size(); ++i)
        all += childrenOf(all[i]);
    return all;
}

qint64 RunScript::processOf(const QByteArray& program) const
{
    for (const qint64 process : descendants()) {
        if (QFile::symLinkTarget(QString("/proc/%1/exe").arg(process)).toUtf8().endsWith('/' + program))
            return process;
    }
    return 0;
}

QString RunScript::folder() const
{
    // Every display server is told its key's file.
    for (const qint64 process : descendants()) {
        const QList<QByteArray> words = readAll(QString("/proc/%1/cmdline").arg(process)).split('\0');
        const qsizetype at = words.indexOf("-auth");
        if (at >= 0)
            return QFileInfo(QString::fromUtf8(words.value(at + 1))).path();
    }
    return {};
}

QByteArray RunScript::display() const
{
    return readAll(folder() + "/display").trimmed();
}

QImage RunScript::phoneShot()
{
    const QString file = root() + "/shot.ppm";
    ctl({"wait", "idle", "10000"});
    ctl({"shot", file});
    return QImage(file).convertToFormat(QImage::Format_RGB32);
}

bool eventually(const std::function<bool()>& holds, int ms)
{
    QEventLoop loop;
    QTimer look;
    bool isSo = holds();
    // From the end of one look to the next: the page is drawn meanwhile.
    look.setSingleShot(true);
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        QElapsedTimer took;
        took.start();
        isSo = holds();
        if (isSo)
            loop.quit();
        else
            look.start(int(qMax<qint64>(kLookEveryMs, took.elapsed())));
    });
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    look.start(kLookEveryMs);
    if (!isSo)
        loop.exec();
    return isSo;
}

double difference(const QImage& a, const QImage& b)
{
    if (a.isNull() || a.size() != b.size())
        return 1;
    const QImage left = a.convertToFormat(QImage::Format_RGB32);
    const QImage right = b.convertToFormat(QImage::Format_RGB32);
    qint64 count = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto* leftLine = reinterpret_cast<const QRgb*>(left.constScanLine(y));
        const auto* rightLine = reinterpret_cast<const QRgb*>(right.constScanLine(y));
        for (int x = 0; x < a.width(); ++x)
            count += !isNear(leftLine[x], rightLine[x]);
    }
    return double(count) / (double(a.width()) * a.height());
}

bool isAlive(qint64 pid)
{
    return kit::statusKiB(pid, "VmRSS") > 0;
}
