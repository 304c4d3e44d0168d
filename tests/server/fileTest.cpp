#include "tests/server/signServer.h"
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <unistd.h>

namespace {

class Files : public SignServerTest
{
protected:
    void SetUp() override
    {
        write("media/p.png", "picture");
        write("layouts/l.xml", "<layout/>");
        start();
        enroll();
    }
};

TEST_F(Files, ComeByteForByte)
{
    const QByteArray bytes = noise(300001);
    write("media/film.mp4", bytes);
    const Answer answer = file("film.mp4");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.announced(), bytes.size());
    EXPECT_EQ(answer.body, bytes);
    EXPECT_EQ(answer.fields["content-type"], "video/mp4");
}

TEST_F(Files, MayBeEmpty)
{
    write("media/none.jpg", "");
    const Answer answer = file("none.jpg");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.announced(), 0);
}

TEST_F(Files, OfTheTwoKindsLieApart)
{
    EXPECT_EQ(file("l.xml", "layout").body, "<layout/>");
    EXPECT_EQ(file("l.xml", "media").status, 404);
    EXPECT_EQ(file("p.png", "layout").status, 404);
    EXPECT_EQ(file("p.png", "").status, 404);
    EXPECT_EQ(file("sunny.gif", "icon").status, 404);
}

TEST_F(Files, MayHaveNamesWithBlanksAndLettersOfAnyLanguage)
{
    write("media/zwei Bäume.jpg", "trees");
    EXPECT_EQ(file("zwei Bäume.jpg").body, "trees");
    EXPECT_EQ(file("zwei%20B%C3%A4ume.jpg").body, "trees");
}

TEST_F(Files, MayHaveNamesWithSignsThatMeanMoreElsewhere)
{
    for (const QByteArray name : {"a+b.jpg", "100%.jpg", "50% off.jpg", "a?b.jpg", "a#b.jpg", "a=b.jpg"}) {
        write("media/" + name, name);
        EXPECT_EQ(file(name).body, name) << name.constData();
    }
}

TEST_F(Files, OutsideTheFoldersAreNotThere)
{
    write("secret.txt", "secret");
    write("media/sub/x.png", "secret");
    for (const QByteArray name : {"../server.ini",
                                  "../secret.txt",
                                  "..%2fsecret.txt",
                                  "%2e%2e/secret.txt",
                                  "%2e%2e%2fsecret.txt",
                                  "..%5csecret.txt",
                                  "..\\secret.txt",
                                  "./p.png",
                                  "/etc/passwd",
                                  "%2fetc%2fpasswd",
                                  "sub/x.png",
                                  "..",
                                  ".",
                                  "",
                                  "p.png/",
                                  "p.png%00",
                                  "p.png%00.jpg",
                                  "%00",
                                  "../media/p.png",
                                  "....//secret.txt",
                                  "%252e%252e%252fsecret.txt",
                                  "p.png%0d%0aX-Evil: 1"}) {
        const Answer answer = file(name);
        EXPECT_EQ(answer.status, 404) << name.constData();
        EXPECT_FALSE(answer.raw.contains("secret\n") || answer.body.contains("root:")) << name.constData();
        EXPECT_EQ(resultOf(answer.body), "no such file") << name.constData();
    }
}

TEST_F(Files, WithTheAbsolutePathOfAFileInTheFolderAreNotThere)
{
    EXPECT_EQ(file(path("media/p.png").toUtf8()).status, 404);
}

TEST_F(Files, ThatAreLinksOrFoldersOrHiddenAreNotThere)
{
    write("secret.txt", "secret");
    ASSERT_EQ(symlink("../secret.txt", path("media/link.txt").toUtf8().constData()), 0);
    ASSERT_TRUE(QDir().mkpath(path("media/folder")));
    write("media/.hidden", "secret");
    EXPECT_EQ(file("link.txt").status, 404);
    EXPECT_EQ(file("folder").status, 404);
    EXPECT_EQ(file(".hidden").status, 404);
}

TEST_F(Files, AreForRegisteredDisplaysWithTheKey)
{
    const QByteArray rest = "&fileType=media&filePath=p.png";
    EXPECT_EQ(get("/service/getfile.htm?serverKey=other&hardwareKey=aabbcc" + rest).status, 403);
    EXPECT_EQ(get("/service/getfile.htm?serverKey=key&hardwareKey=ffffff" + rest).status, 403);
    EXPECT_EQ(get("/service/getfile.htm?serverKey=key&hardwareKey=aabbcc" + rest).status, 200);
}

TEST_F(Files, CarryTheirSumAsTag)
{
    const QByteArray sum = QCryptographicHash::hash("picture", QCryptographicHash::Md5).toHex();
    EXPECT_EQ(file("p.png").fields["etag"], "\"" + sum + "\"");
}

TEST_F(Files, AreNotSentAgainToACacheThatHasThem)
{
    const Answer first = file("p.png");
    const QByteArray byTag = "If-None-Match: \"other\", " + first.fields["etag"] + "\r\n";
    const QByteArray byTime = "If-Modified-Since: " + first.fields["last-modified"] + "\r\n";
    EXPECT_EQ(file("p.png", "media", byTag).status, 304);
    EXPECT_EQ(file("p.png", "media", byTag).body, "");
    EXPECT_EQ(file("p.png", "media", byTime).status, 304);
    EXPECT_EQ(file("p.png", "media", "If-Modified-Since: Thu, 01 Jan 2004 00:00:00 GMT\r\n").status, 200);
    EXPECT_EQ(file("p.png", "media", byTime + "If-None-Match: \"other\"\r\n").status, 200);
    write("media/p.png", "changed");
    const Answer changed = file("p.png", "media", byTag);
    EXPECT_EQ(changed.status, 200);
    EXPECT_EQ(changed.body, "changed");
}

TEST_F(Files, AreSentWholeWhateverRangeOrCodingIsAskedFor)
{
    const Answer answer = file("p.png", "media", "Range: bytes=2-3\r\nAccept-Encoding: gzip\r\n");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "picture");
    EXPECT_EQ(file("l.xml", "layout", "Accept-Encoding: gzip\r\n").body, "<layout/>");
}

TEST_F(Files, TellTheirLengthToAHeadRequest)
{
    Wire wire(m_port);
    wire.send("HEAD " + fileTarget("p.png") + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    const Answer answer = wire.readAll();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.announced(), 7);
    EXPECT_EQ(answer.body, "");
}

TEST_F(Files, ComeOneAfterTheOtherOnOneConnection)
{
    Wire wire(m_port);
    const auto request = [&](const QByteArray& name) {
        return "GET " + fileTarget(name) + " HTTP/1.1\r\nHost: x\r\n\r\n";
    };
    // The last two are asked for before the first has come.
    wire.send(request("p.png"));
    EXPECT_EQ(wire.readOne().body, "picture");
    wire.send(request("gone.png") + request("p.png"));
    EXPECT_EQ(wire.readOne().status, 404);
    EXPECT_EQ(wire.readOne().body, "picture");
}

TEST_F(Files, ReplacedWhileTheyAreSentGoOnAsTheyWere)
{
    write("media/film.mp4", noise(600000, 1));
    ask("POST", "/faults", "stall *film.mp4 after=1000 seconds=2");
    Wire wire(m_port);
    wire.send("GET " + fileTarget("film.mp4") + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    QByteArray raw = wire.readFor(1000);
    write("media/next", noise(600000, 2));
    ASSERT_EQ(rename(path("media/next").toUtf8().constData(), path("media/film.mp4").toUtf8().constData()),
              0);
    raw += wire.readAll().raw;
    EXPECT_EQ(raw.right(600000), noise(600000, 1));
    ask("POST", "/faults");
    EXPECT_EQ(file("film.mp4").body, noise(600000, 2));
}

TEST_F(Files, OfAnUnknownServiceAreRefused)
{
    EXPECT_EQ(get("/service/other.htm").status, 404);
    EXPECT_EQ(get("/").status, 404);
    EXPECT_EQ(get("/../server.ini").status, 404);
    EXPECT_EQ(ask("POST", "/service/getfile.htm", "x").status, 404);
}

TEST_F(Files, RequestsThatAreNoHttpAreAnsweredOrEnded)
{
    for (const QByteArray& bytes :
         {QByteArray("HELLO\r\n\r\n"), QByteArray("GET /\r\n\r\n"), QByteArray(70000, 'x')}) {
        Wire wire(m_port);
        wire.send(bytes);
        const Answer answer = wire.readAll(3000);
        EXPECT_TRUE(answer.ended || answer.status == 400) << bytes.left(10).constData();
    }
    EXPECT_EQ(file("p.png").body, "picture");
    stop();
    EXPECT_EQ(log().count("127.0.0.1 (no request) 400 "), 2);
}

} // namespace
