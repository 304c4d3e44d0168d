#include "tests/e2e/livePhone.h"
#include "host/desktop/pressGuard.h"
#include "places.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

namespace {

constexpr int kStartMs = 10000;
constexpr int kConnectMs = 100;
constexpr int kAnswerMs = 60000;

QJsonValue parse(const QByteArray& line)
{
    const QJsonDocument wrapped = QJsonDocument::fromJson('[' + line.trimmed() + ']');
    return wrapped.array().isEmpty() ? QJsonValue() : wrapped.array().first();
}

void putFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    ASSERT_EQ(file.write(content), content.size());
}

} // namespace

void LivePhone::SetUp()
{
    ASSERT_TRUE(m_root.isValid());
    ASSERT_TRUE(kit::fillDeviceFolder(root(), kit::Firmware::Link));
    start();
}

void LivePhone::TearDown()
{
    if (m_phone.state() != QProcess::NotRunning)
        quit();
}

void LivePhone::start()
{
    launch();
    waitPage("frmDesktop");
    waitIdle();
}

void LivePhone::startWith(const QString& imageFile, const QByteArray& content)
{
    ASSERT_TRUE(kit::fillDeviceFolder(root(), kit::Firmware::HardLinks));
    ASSERT_TRUE(kit::replaceImageFile(root(), imageFile, content));
    start();
}

void LivePhone::writeFile(const QString& path, const QByteArray& content)
{
    ASSERT_TRUE(path.startsWith("/rundata/")) << qPrintable(path);
    putFile(root() + path, content);
}

void LivePhone::launch(uid_t user)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_SCALE_FACTOR", "1");
    m_phone.setProcessEnvironment(environment);
    kit::endWithUs(m_phone, user);
    m_phone.setProcessChannelMode(QProcess::ForwardedChannels);
    m_phone.start(kit::program("hxPhone"),
                  QStringList{"--sysroot", root(), "--control", root() + "/control"} + further);
    ASSERT_TRUE(m_phone.waitForStarted());
    // Its socket has its name a moment before the phone listens.
    m_link.open(root() + "/control", kStartMs);
}

void LivePhone::quit()
{
    ctl({"quit"});
    waitForEnd();
}

void LivePhone::restartByTap(const QString& widgetName)
{
    const QPoint middle = middleOf(widgetName);
    restartBy({"touch", QString::number(middle.x()), QString::number(middle.y())});
}

void LivePhone::restartBy(const QStringList& command)
{
    ControlLink link;
    ASSERT_TRUE(link.open(root() + "/control", 5000));
    link.ask(command, kConnectMs * 100);
    // It answers until it ends.
    while (link.isOpen())
        link.ask({"screen"}, kConnectMs * 100);
    ASSERT_TRUE(link.open(root() + "/control", 20000));
    link.close();
    waitPage("frmDesktop");
    waitIdle();
}

void LivePhone::waitForEnd()
{
    ASSERT_TRUE(m_phone.waitForFinished(10000));
    EXPECT_EQ(m_phone.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_phone.exitCode(), 0);
}

void LivePhone::kill()
{
    m_phone.kill();
    m_phone.waitForFinished(5000);
    m_link.close();
    // The next one listens anew.
    QFile::remove(root() + "/control");
}

QJsonValue LivePhone::ask(const QStringList& command, int& exit)
{
    // Another phone may have taken the place of the one before.
    if (!m_link.isAlive())
        m_link.open(root() + "/control", kConnectMs);
    const QJsonValue value = m_link.ask(command, kAnswerMs);
    const QJsonObject answer = value.toObject();
    if (!m_link.isOpen() || answer["usage"].toBool())
        exit = 2;
    else
        exit = answer.contains("error") ? 1 : 0;
    return value;
}

QJsonValue LivePhone::ctl(const QStringList& command, int expectedExit)
{
    int exit = 0;
    const QJsonValue value = ask(command, exit);
    EXPECT_EQ(exit, expectedExit) << qPrintable(command.join(' ')) << ": "
                                  << qPrintable(value.toObject()["error"].toString());
    return value;
}

int LivePhone::exitOf(const QStringList& command)
{
    int exit = 0;
    ask(command, exit);
    return exit;
}

QJsonValue LivePhone::hxctl(const QStringList& command, int expectedExit)
{
    QProcess process;
    process.start(kit::program("hxctl"), QStringList{"-s", root() + "/control"} + command);
    EXPECT_TRUE(process.waitForFinished(kAnswerMs)) << qPrintable(command.join(' '));
    const QByteArray output = process.readAllStandardOutput();
    EXPECT_EQ(process.exitCode(), expectedExit) << qPrintable(command.join(' ')) << ": " << output.constData()
                                                << process.readAllStandardError().constData();
    return parse(output);
}

QJsonObject LivePhone::topWindow()
{
    return ctl({"tree"}).toObject()["windows"].toArray().first().toObject();
}

QJsonObject LivePhone::widget(const QString& name)
{
    for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
        if (entry.toObject()["name"] == name)
            return entry.toObject();
    }
    ADD_FAILURE() << "no widget " << qPrintable(name);
    return {};
}

QJsonObject LivePhone::focusWidget()
{
    for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
        if (entry.toObject()["focus"].toBool())
            return entry.toObject();
    }
    return {};
}

void LivePhone::letPressesCount()
{
    QThread::msleep(pressGuard::SETTLE_MS + 100);
}

void LivePhone::tap(int x, int y)
{
    ctl({"touch", QString::number(x), QString::number(y)});
    waitIdle();
}

void LivePhone::tap(const QString& widgetName)
{
    const QPoint middle = middleOf(widgetName);
    tap(middle.x(), middle.y());
}

QPoint LivePhone::middleOf(const QString& widgetName)
{
    const QJsonObject at = widget(widgetName);
    return {at["x"].toInt() + at["w"].toInt() / 2, at["y"].toInt() + at["h"].toInt() / 2};
}

void LivePhone::softKey(int index)
{
    tap(100 + 200 * index, 460);
}

QStringList LivePhone::softKeys()
{
    QStringList titles;
    for (const QJsonValue& entry : topWindow()["widgets"].toArray()) {
        if (entry.toObject()["class"] == "qSoftButton")
            titles.append(entry.toObject()["text"].toString());
    }
    return titles;
}

void LivePhone::key(const QString& name, int times)
{
    for (int i = 0; i < times; ++i)
        ctl({"key", name});
    waitIdle();
}

void LivePhone::pad(const QString& digits)
{
    for (const QChar digit : digits)
        ctl({"key", QString(digit)});
    waitIdle();
}

QString LivePhone::config(const QString& file, const QString& section, const QString& name)
{
    return ctl({"config", file, section, name}).toString();
}

void LivePhone::setSignageKey(const QString& key, const QString& value)
{
    ctl({"config", "/rundata/config/system.ini", "nDeck", key, value});
}

void LivePhone::joinSignage(const QString& server, int intervalMs)
{
    setSignageKey("strServerURL", server);
    setSignageKey("strServerKey", "hall");
    setSignageKey("strServerPwd", "secret");
    setSignageKey("strDisplayName", "Lobby");
    setSignageKey("nUpdateInteval", QString::number(intervalMs));
    setSignageKey("bEnable", "1");
}

QStringList LivePhone::logOf(const QString& kind)
{
    QStringList texts;
    for (const QJsonValue& entry : ctl({"log"}).toObject()["log"].toArray()) {
        if (entry.toObject()["kind"] == kind)
            texts.append(entry.toObject()["text"].toString());
    }
    return texts;
}

QImage LivePhone::screen()
{
    const QString file = root() + "/screen.ppm";
    ctl({"shot", file});
    return QImage(file);
}

void LivePhone::shot(const QString& name)
{
    QDir().mkpath(HX_BUILD_DIR "/shots");
    ctl({"shot", QString(HX_BUILD_DIR "/shots/%1.png").arg(name)});
}
