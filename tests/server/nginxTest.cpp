#include "places.h"
#include "tests/server/signServer.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kDeadlineMs = 60000;

// Debian's nginx between the phones and the server, with the example that the document gives.
class Nginx : public SignServerTest
{
protected:
    void SetUp() override
    {
        write("layouts/a.xml", "<layout/>");
        write("layouts/b.xml", "<layout bgcolor='red'/>");
        write("schedule.xml", "<schedule><layout file='a.xml' displays='Lobby'/>"
                              "<layout file='b.xml' displays='Hall'/></schedule>");
        write("media/film.mp4", noise(kFilm));
        write("media/p.png", "picture");
        start();
        m_serverPort = m_port;
        startCache();
        ASSERT_EQ(resultOf(enroll().body), "registered");
    }
    void TearDown() override
    {
        m_nginx.terminate();
        EXPECT_TRUE(m_nginx.waitForFinished(kDeadlineMs));
    }

    // The rest of the class asks through the cache; this is the server itself.
    void setFaults(const QByteArray& rules)
    {
        m_port = m_serverPort;
        EXPECT_EQ(ask("POST", "/faults", rules).status, 200);
        m_port = m_cachePort;
    }
    // Requests that reached the server for a target with this text, with that status and so many bytes.
    qsizetype reached(const QByteArray& text, const QByteArray& answer = {}) const
    {
        qsizetype count = 0;
        for (const QByteArray& line : log().split('\n'))
            count += line.contains(text) && line.contains(" " + answer) ? 1 : 0;
        return count;
    }
    // One question at a time: whoever asks while a change is being fetched fetches it as well.
    QByteArray picture() const
    {
        const Answer answer = get(fileTarget("p.png"), {}, kDeadlineMs);
        EXPECT_EQ(answer.status, 200);
        return answer.body;
    }
    // In one step: half of a picture is none.
    void replacePicture(const QByteArray& bytes) const
    {
        write("media/.new", bytes);
        ASSERT_EQ(rename(path("media/.new").toUtf8().constData(), path("media/p.png").toUtf8().constData()),
                  0);
    }
    // Asks for the picture again and again until something is so.
    bool asksUntil(const std::function<bool(const QByteArray&)>& isSo)
    {
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < kDeadlineMs) {
            if (isSo(picture()))
                return true;
            m_nginx.waitForReadyRead(50);
        }
        return false;
    }

    // As from a phone, that names the server's own machine.
    int statusFor(const QByteArray& target) const
    {
        const Wire wire(m_cachePort);
        wire.send("GET " + target + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
        return wire.readAll(kDeadlineMs).status;
    }

    static constexpr int kFilm = 300000;
    bool m_bOpen = false; // without what keeps the administrator's addresses to the server's machine
    int m_serverPort = 0, m_cachePort = 0;
    QProcess m_nginx;

private:
    // The block of the document, with what it says is to be chosen.
    QByteArray example()
    {
        QFile document(HX_SOURCE_DIR "/docs/signage-server.md");
        EXPECT_TRUE(document.open(QIODevice::ReadOnly));
        const QByteArray text = document.readAll();
        const qsizetype from = text.indexOf("```nginx\n") + 9;
        QByteArray block = text.mid(from, text.indexOf("```", from) - from);
        const auto choose = [&](const QByteArray& named, const QByteArray& chosen) {
            EXPECT_GT(block.count(named), 0) << named.constData();
            EXPECT_TRUE(text.left(from).contains(named)) << "the document names " << named.constData();
            block.replace(named, chosen);
        };
        choose("127.0.0.1:8080", "127.0.0.1:" + QByteArray::number(m_serverPort));
        choose("8090", "127.0.0.1:" + QByteArray::number(m_cachePort));
        choose("/var/lib/nginx/signage", path("cache").toUtf8());
        for (const QByteArray own : {"location /faults {", "location /status {"}) {
            const qsizetype at = block.indexOf(own);
            EXPECT_GT(at, 0) << own.constData();
            if (m_bOpen)
                block.remove(at, block.indexOf('}', at) + 1 - at);
        }
        return block;
    }
    // What Debian's own file has around the folder of examples, as far as it is about this machine.
    void writeSettings()
    {
        write("conf.d/signage.conf", example());
        QByteArray temporary;
        for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
            temporary += QByteArray(kind) + "_temp_path " + path(kind).toUtf8() + ";\n";
        write("nginx.conf", QByteArray(geteuid() == 0 ? "user root;\n" : "") +
                                "daemon off;\nworker_processes 2;\npid " + path("nginx.pid").toUtf8() +
                                ";\nevents { worker_connections 768; }\nhttp {\naccess_log off;\n" +
                                temporary + "include " + path("conf.d").toUtf8() + "/*.conf;\n}\n");
    }
    void startCache()
    {
        QTcpServer port;
        ASSERT_TRUE(port.listen(QHostAddress::LocalHost));
        m_cachePort = port.serverPort();
        writeSettings();
        port.close();
        m_nginx.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_nginx.setProcessChannelMode(QProcess::MergedChannels);
        m_nginx.start("/usr/sbin/nginx", {"-c", path("nginx.conf"), "-e", "stderr"});
        ASSERT_TRUE(m_nginx.waitForStarted(kDeadlineMs));
        m_port = m_cachePort;
        QElapsedTimer time;
        time.start();
        while (!answers() && m_nginx.state() == QProcess::Running && time.elapsed() < kDeadlineMs)
            m_nginx.waitForReadyRead(10);
        ASSERT_EQ(m_nginx.state(), QProcess::Running) << m_nginx.readAll().constData();
    }
    bool answers() const
    {
        const Wire wire(m_cachePort, Wire::MayFail);
        wire.trySend("GET / HTTP/1.0\r\n\r\n");
        return wire.readAll(1000).status != 0;
    }
};

TEST_F(Nginx, ThirtyPhonesThatWantAFileAtOnceCauseOneRequest)
{
    // The server holds the file back until all have asked.
    setFaults("stall *getfile* seconds=1 after=1000");
    std::vector<std::unique_ptr<Wire>> phones;
    for (int i = 0; i < 30; ++i) {
        phones.push_back(std::make_unique<Wire>(m_port));
        phones.back()->send("GET " + fileTarget("film.mp4") + "&n=" + QByteArray::number(i) +
                            " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    }
    for (const auto& phone : phones)
        ASSERT_EQ(phone->readAll(kDeadlineMs).body, noise(kFilm));
    EXPECT_EQ(reached("filePath=film.mp4"), 1);
}

TEST_F(Nginx, AFileThatIsThereIsNotFetchedAgain)
{
    constexpr int kTimes = 40;
    for (int i = 0; i < kTimes; ++i)
        ASSERT_EQ(file("film.mp4").body, noise(kFilm));
    EXPECT_EQ(reached("filePath=film.mp4", "200 " + QByteArray::number(kFilm)), 1);
    EXPECT_LT(reached("filePath=film.mp4"), kTimes / 2) << "most are answered without the server";
    // Not even by a phone that names itself in another way.
    EXPECT_EQ(get(fileTarget("film.mp4").replace("language=en", "language=de")).body, noise(kFilm));
    EXPECT_EQ(reached("filePath=film.mp4", "200 " + QByteArray::number(kFilm)), 1);
}

TEST_F(Nginx, AfterAWhileTheServerIsAskedWhetherTheFileChanged)
{
    ASSERT_EQ(picture(), "picture");
    EXPECT_TRUE(asksUntil([this](const QByteArray&) { return reached("filePath=p.png", "304 0 ") > 0; }));
    EXPECT_EQ(reached("filePath=p.png", "200 7 "), 1);
    replacePicture("changed");
    QByteArray last = "picture";
    EXPECT_TRUE(asksUntil([&](const QByteArray& now) {
        EXPECT_TRUE(now == last || now == "changed") << now.constData();
        last = now;
        return last == "changed";
    }));
    // Never the old one again.
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(picture(), "changed");
    // The log's line follows the answer.
    EXPECT_TRUE(asksUntil([this](const QByteArray&) { return reached("filePath=p.png", "200 7 ") > 1; }));
    EXPECT_EQ(reached("filePath=p.png", "200 7 "), 2);
}

TEST_F(Nginx, SchedulesAndRegistrationsAreTheServersOwn)
{
    ASSERT_EQ(resultOf(enroll("Hall", "112233").body), "registered");
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(rowsOf(schedule("aabbcc").body, "layout"),
                    testing::ElementsAre(testing::Truly([](auto& row) { return row.contains("a.xml"); })));
        EXPECT_THAT(rowsOf(schedule("112233").body, "layout"),
                    testing::ElementsAre(testing::Truly([](auto& row) { return row.contains("b.xml"); })));
        EXPECT_EQ(resultOf(schedule("ffffff").body), "this display is not registered");
    }
    write("schedule.xml", "<schedule><layout file='b.xml'/></schedule>");
    EXPECT_THAT(rowsOf(schedule("aabbcc").body, "layout"),
                testing::ElementsAre(testing::Truly([](auto& row) { return row.contains("b.xml"); })));
    write("server.ini", "[server]\nkey=key\npassword=word\n[displays]\nHall=112233\n");
    EXPECT_EQ(resultOf(schedule("aabbcc").body), "this display is not registered");
    EXPECT_EQ(resultOf(enroll().body), "unknown display");
}

TEST_F(Nginx, ARefusalIsNotKept)
{
    EXPECT_EQ(file("late.png").status, 404);
    write("media/late.png", "late");
    EXPECT_EQ(file("late.png").body, "late");
    setFaults("refuse *film.mp4 times=1");
    EXPECT_EQ(file("film.mp4").status, 503);
    EXPECT_EQ(file("film.mp4").body, noise(kFilm));
}

TEST_F(Nginx, NoParameterPutsAFileInThePlaceOfAnother)
{
    const QByteArray begin = "/service/getfile.htm?serverKey=key&hardwareKey=aabbcc&fileType=media&";
    // The cache would read the first, the server the second.
    for (const QByteArray name : {"filepath", "FILEPATH"})
        EXPECT_NE(get(begin + name + "=p.png&filePath=film.mp4").status, 0);
    get(begin + "%66ilePath=film.mp4&filePath=p.png");
    get("/service/"
        "getfile.htm?serverKey=key&hardwareKey=aabbcc&filePath=p.png&%66ileType=layout&fileType=media");
    EXPECT_EQ(file("p.png").body, "picture");
    EXPECT_EQ(file("film.mp4").body, noise(kFilm));
}

TEST_F(Nginx, NamesWithBlanksAndLettersComeThroughEscaped)
{
    write("media/zwei Bäume.jpg", "trees");
    EXPECT_EQ(file("zwei%20B%C3%A4ume.jpg").body, "trees");
    EXPECT_EQ(file("zwei%20B%C3%A4ume.jpg").body, "trees");
}

TEST_F(Nginx, MisbehaviourCannotBeAskedForFromOutside)
{
    EXPECT_EQ(ask("POST", "/faults", "refuse *").status, 404);
    EXPECT_EQ(ask("DELETE", "/faults").status, 404);
    EXPECT_EQ(get("/faults").status, 404);
    EXPECT_EQ(get("/%66aults").status, 404);
    EXPECT_EQ(get("/service/../faults").status, 404);
    EXPECT_EQ(file("p.png").body, "picture");
}

TEST_F(Nginx, TheStatusIsNotToldOutside)
{
    for (const QByteArray target : {"/status", "/status.json", "/status?display=aabbcc", "/%73tatus",
                                    "//status.json", "/x/../status", "http://localhost/status.json"})
        EXPECT_EQ(statusFor(target), 404) << target.constData();
    EXPECT_EQ(reached("status"), 0);
}

// A block that somebody else wrote, and that passes all on.
class OpenNginx : public Nginx
{
protected:
    OpenNginx() { m_bOpen = true; }
};

TEST_F(OpenNginx, TheServerItselfRefusesWhatCameThroughAProxy)
{
    for (const QByteArray target : {"/status", "/status.json", "/faults"})
        EXPECT_EQ(statusFor(target), 403) << target.constData();
    EXPECT_EQ(ask("POST", "/faults", "refuse *").status, 403);
    EXPECT_EQ(file("p.png").body, "picture");
}

} // namespace
