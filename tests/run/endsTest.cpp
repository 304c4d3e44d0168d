// A start of ./run that is over has left nothing behind, however it ended.
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/run/runScript.h"
#include "tests/server/signServer.h"
#include <QFileInfo>
#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace {

class RunEnds : public testing::Test
{
protected:
    void start(const QStringList& options = {})
    {
        m_phone.startPage(options);
        m_started = m_phone.descendants();
        m_folder = m_phone.folder();
        m_display = "/tmp/.X11-unix/X" + m_phone.display();
        ASSERT_TRUE(QFileInfo::exists(m_folder) && QFileInfo::exists(m_display));
        // The phone, its two players, display, page, and the keeper of the folder.
        ASSERT_GE(m_started.size(), 6);
    }
    void expectNothingLeft()
    {
        EXPECT_TRUE(
            kit::waits([&] { return std::none_of(m_started.begin(), m_started.end(), isAlive); }, 10000));
        EXPECT_TRUE(kit::waits([&] { return !QFileInfo::exists(m_folder); }, 10000)) << qPrintable(m_folder);
        EXPECT_TRUE(kit::waits([&] { return !QFileInfo::exists(m_display); }, 10000))
            << qPrintable(m_display);
    }

    // The display hears nothing of the terminal, so that it is there until the phone has ended.
    void endByTerminal(int number)
    {
        start({"--signage"});
        const qint64 phone = m_phone.processOf("hxPhone"), display = m_phone.processOf("Xtigervnc");
        ASSERT_TRUE(phone && display);
        EXPECT_NE(getsid(pid_t(display)), getsid(pid_t(phone))) << "a signal of the terminal reaches it";
        m_phone.signalTerminal(number);
        ASSERT_TRUE(m_phone.waitEnd());
        EXPECT_EQ(m_phone.exitCode(), 130);
        EXPECT_FALSE(m_phone.output().contains("X11")) << m_phone.output().constData();
        expectNothingLeft();
    }

    RunScript m_phone;

private:
    QList<qint64> m_started;
    QString m_folder;
    QString m_display;
};

} // namespace

TEST_F(RunEnds, WithThePhone)
{
    start();
    m_phone.ctl({"quit"});
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 0);
    EXPECT_TRUE(m_phone.output().contains("The phone has ended."));
    expectNothingLeft();
}

TEST_F(RunEnds, WhenToldTo)
{
    start();
    m_phone.signal(SIGINT);
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 130);
    expectNothingLeft();
}

TEST_F(RunEnds, OnTheInterruptKeyWithTheDisplayBehindThePhone)
{
    endByTerminal(SIGINT);
}

TEST_F(RunEnds, OnTheQuitKeyWithTheDisplayBehindThePhone)
{
    endByTerminal(SIGQUIT);
}

TEST_F(RunEnds, SaysPlainWordsToAPipeAndBoldOnesToATerminal)
{
    start();
    m_phone.ctl({"quit"});
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_TRUE(m_phone.output().contains("\nThe phone has ended.\n")) << m_phone.output().constData();
    EXPECT_FALSE(m_phone.output().contains('\033'));
    QProcess terminal;
    terminal.start("script", {"-qec", HX_SOURCE_DIR "/run --build-only --built " HX_BUILD_DIR, "/dev/null"});
    ASSERT_TRUE(terminal.waitForFinished());
    EXPECT_TRUE(terminal.readAll().contains("\033[1mBuilt: "));
}

TEST_F(RunEnds, WithItsTerminal)
{
    start({"--signage"});
    m_phone.signalTerminal(SIGHUP);
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_FALSE(m_phone.output().contains("X11")) << m_phone.output().constData();
    expectNothingLeft();
}

TEST_F(RunEnds, WhenItIsKilled)
{
    start({"--signage"});
    m_phone.signal(SIGKILL);
    ASSERT_TRUE(m_phone.waitEnd());
    expectNothingLeft();
}

TEST_F(RunEnds, WhenItsPageEnds)
{
    start();
    ::kill(pid_t(m_phone.processOf("hxScreenServer")), SIGKILL);
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_NE(m_phone.exitCode(), 0);
    EXPECT_TRUE(m_phone.output().contains("has ended unexpectedly")) << m_phone.output().constData();
    expectNothingLeft();
}

TEST_F(RunEnds, WithoutTheOneBesideIt)
{
    RunScript other;
    other.startPage();
    start();
    EXPECT_NE(m_phone.port(), other.port());
    EXPECT_NE(m_phone.token(), other.token());
    EXPECT_NE(m_phone.display(), other.display());
    // The token of one opens the page of that one alone.
    const Wire wire(other.port());
    wire.send("GET /" + m_phone.token() + "/vnc.html HTTP/1.1\r\nHost: " + other.host() + "\r\n\r\n");
    EXPECT_EQ(wire.readAll().status, 403);
    m_phone.signal(SIGTERM);
    ASSERT_TRUE(m_phone.waitEnd());
    expectNothingLeft();
    EXPECT_EQ(other.ctl({"screen"}).toObject()["top"].toString(), "frmDesktop");
    const Wire again(other.port());
    again.send("GET /" + other.token() + "/vnc.html HTTP/1.1\r\nHost: " + other.host() + "\r\n\r\n");
    EXPECT_EQ(again.readAll().status, 200);
}

TEST_F(RunEnds, AtOnceWhenItsPortIsTaken)
{
    RunScript other;
    other.startPage();
    m_phone.launch(
        {"--built", HX_BUILD_DIR, "--root", m_phone.root(), "--port", QString::number(other.port())});
    ASSERT_TRUE(m_phone.waitEnd());
    EXPECT_EQ(m_phone.exitCode(), 1);
    const QByteArray said = m_phone.output();
    EXPECT_TRUE(said.contains("cannot listen on port " + QByteArray::number(other.port())))
        << said.constData();
    EXPECT_TRUE(said.contains("--port chooses another port")) << said.constData();
    EXPECT_TRUE(isAlive(other.processOf("hxScreenServer")));
}
