// ./run with a display: a window with the phone in it.
#include "tests/kit/plain/processes.h"
#include "tests/run/displayClient.h"
#include "tests/run/rfbScreen.h"
#include "tests/run/runScript.h"
#include <QFile>
#include <QJsonObject>
#include <QLocalSocket>
#include <gtest/gtest.h>

namespace {

constexpr double kSame = 0.01;

// A display of a desk: its server, and what a person in front of it sees.
class Desk
{
public:
    Desk() : m_screen([this](const QByteArray& bytes) { m_view.write(bytes); })
    {
        QObject::connect(&m_view, &QLocalSocket::readyRead, &m_view,
                         [this] { m_screen.take(m_view.readAll()); });
    }
    ~Desk()
    {
        m_server.terminate();
        m_server.waitForFinished();
    }
    bool start()
    {
        // The record of a key for any host and any display, as in every X authority file.
        QFile key(cookie());
        if (!key.open(QIODevice::WriteOnly) ||
            key.write(QByteArray::fromHex("ffff 0000 0000 0012") + "MIT-MAGIC-COOKIE-1" +
                      QByteArray::fromHex("0010") + "0123456789abcdef") < 0)
            return false;
        key.close();
        kit::endWithUs(m_server);
        m_server.start("Xvnc",
                       {"-displayfd", "1", "-geometry", "1000x700", "-depth", "24", "-SecurityTypes", "None",
                        "-rfbport", "-1", "-rfbunixpath", m_folder.path() + "/view", "-auth", cookie()});
        if (!m_server.waitForReadyRead(20000))
            return false;
        m_display = m_server.readLine().trimmed();
        m_view.connectToServer(m_folder.path() + "/view");
        return eventually([this] { return m_screen.isOpen(); });
    }
    QString cookie() const { return m_folder.path() + "/cookie"; }
    QByteArray display() const { return m_display; }
    RfbScreen& screen() { return m_screen; }
    // The part of the desk's screen where the window is.
    QImage window()
    {
        m_screen.askForAll();
        return m_screen.picture().copy(0, 0, 800, 480);
    }

private:
    QTemporaryDir m_folder;
    QProcess m_server;
    QLocalSocket m_view;
    RfbScreen m_screen;
    QByteArray m_display;
};

class RunWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_desk.start());
        m_phone.startWindow(':' + m_desk.display(), m_desk.cookie());
    }
    bool isShown()
    {
        return eventually([this] { return difference(m_desk.window(), m_phone.phoneShot()) < kSame; });
    }

    Desk m_desk;
    RunScript m_phone;
};

} // namespace

TEST_F(RunWindow, ShowsThePhoneAndTakesTouches)
{
    EXPECT_TRUE(isShown());
    DisplayClient desk(m_desk.display(), m_desk.cookie());
    ASSERT_EQ(desk.windows().size(), 1);
    EXPECT_TRUE(desk.title(desk.windows().first()).startsWith("hxPhone"));
    m_desk.screen().tap(336, 289);
    // The window's server may keep what came while it drew until something else comes: no hand is quite
    // still.
    EXPECT_TRUE(eventually([&] {
        m_desk.screen().move(336, 290);
        m_desk.screen().move(336, 289);
        return m_phone.ctl({"screen"}).toObject()["top"] != "frmDesktop";
    }));
    EXPECT_TRUE(isShown());
}

TEST_F(RunWindow, IsForThisUserAlone)
{
    EXPECT_TRUE(DisplayClient(m_phone.display(), m_phone.folder() + "/cookie").isAdmitted());
    EXPECT_FALSE(DisplayClient(m_phone.display(), {}).isAdmitted());
}

TEST_F(RunWindow, EndsThePhoneWhenItIsClosed)
{
    const QList<qint64> started = m_phone.descendants();
    ASSERT_GE(started.size(), 4);
    DisplayClient desk(m_desk.display(), m_desk.cookie());
    ASSERT_EQ(desk.windows().size(), 1);
    desk.closeWindow(desk.windows().first());
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 0) << m_phone.output().constData();
    for (const qint64 process : started)
        EXPECT_TRUE(kit::waits([&] { return !isAlive(process); }, 10000)) << process;
}
