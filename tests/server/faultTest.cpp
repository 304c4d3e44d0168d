#include "tests/server/signServer.h"

namespace {

const int Size = 20000;

class Faults : public SignServerTest
{
protected:
    void SetUp() override
    {
        write("media/film.mp4", noise(Size));
        write("media/p.png", "picture");
        write("layouts/a.xml", "<layout/>");
        write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
        start();
        enroll();
    }
    void rules(const QByteArray& text) const
    {
        const Answer answer = ask("POST", "/faults", text);
        ASSERT_EQ(answer.status, 200) << answer.body.constData();
    }
    Answer request(const QByteArray& method, const QByteArray& fields, const QByteArray& body = {}) const
    {
        const Wire wire(m_port);
        wire.send(method + " /faults HTTP/1.1\r\n" + fields +
                  "Connection: close\r\nContent-Type: text/plain\r\n" +
                  "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        return wire.readAll();
    }
    Answer film() const { return file("film.mp4"); }
    // '.' for a good answer, 'x' for another, of so many requests.
    QByteArray pattern(int requests) const
    {
        QByteArray text;
        for (int i = 0; i < requests; ++i)
            text += file("p.png").status == 200 ? '.' : 'x';
        return text;
    }
};

TEST_F(Faults, RefuseAnswersWithTheStatusThatIsAskedFor)
{
    rules("refuse *getfile*\n");
    EXPECT_EQ(film().status, 503);
    EXPECT_EQ(resultOf(film().body), "refused");
    rules("refuse *getfile* status=418");
    EXPECT_EQ(film().status, 418);
    EXPECT_EQ(schedule().status, 200);
}

TEST_F(Faults, StallHoldsTheWholeAnswerBack)
{
    rules("stall *film* seconds=1");
    EXPECT_TRUE(get(fileTarget("film.mp4"), {}, 300).raw.isEmpty());
    const Answer answer = film();
    EXPECT_GE(answer.ms, 1000);
    EXPECT_EQ(answer.body, noise(Size));
}

TEST_F(Faults, StallMayComeInTheMiddleOfTheBody)
{
    rules("stall *film* seconds=1 after=5000");
    const Answer begun = get(fileTarget("film.mp4"), {}, 400);
    EXPECT_EQ(begun.body, noise(Size).left(5000));
    EXPECT_FALSE(begun.ended);
    EXPECT_EQ(film().body, noise(Size));
}

TEST_F(Faults, DripSendsTheBodyInDrops)
{
    rules("drip *film* bytes=1000 pause=20");
    const Answer answer = film();
    EXPECT_GE(answer.ms, 20 * 20);
    EXPECT_EQ(answer.body, noise(Size));
}

TEST_F(Faults, CutEndsTheConnectionBeforeTheBodyIsComplete)
{
    rules("cut *film* after=5000");
    const Answer answer = film();
    EXPECT_EQ(answer.announced(), Size);
    EXPECT_EQ(answer.body, noise(Size).left(5000));
    EXPECT_TRUE(answer.ended);
    rules("cut *film*");
    EXPECT_EQ(film().body.size(), Size / 2);
    rules("cut *film* after=999999");
    EXPECT_EQ(film().body.size(), Size - 1);
}

TEST_F(Faults, CutMayEndAnAnswerInChunks)
{
    rules("cut *film* after=5000 chunked=1");
    const Answer answer = film();
    EXPECT_EQ(answer.fields["transfer-encoding"], "chunked");
    EXPECT_FALSE(answer.fields.contains("content-length"));
    EXPECT_EQ(answer.body.size(), 5000);
    EXPECT_FALSE(answer.body.endsWith("0\r\n\r\n"));
    EXPECT_TRUE(answer.ended);
}

TEST_F(Faults, CorruptChangesBytesAndNothingElse)
{
    rules("corrupt *film* after=100 bytes=3");
    const QByteArray good = noise(Size), bad = film().body;
    ASSERT_EQ(bad.size(), good.size());
    EXPECT_EQ(bad.left(100), good.left(100));
    EXPECT_EQ(bad.mid(103), good.mid(103));
    for (int i = 100; i < 103; ++i)
        EXPECT_NE(bad[i], good[i]);
}

TEST_F(Faults, RedirectLeadsElsewhereOrInCircles)
{
    rules("redirect *film* to=/service/other.htm");
    EXPECT_EQ(film().status, 302);
    EXPECT_EQ(film().fields["location"], "/service/other.htm");
    rules("redirect *film*");
    EXPECT_EQ(film().fields["location"], fileTarget("film.mp4"));
}

TEST_F(Faults, LongerAnnouncesMoreThanComes)
{
    rules("longer *film* by=10");
    const Answer answer = film();
    EXPECT_EQ(answer.announced(), Size + 10);
    EXPECT_EQ(answer.body.size(), Size);
    EXPECT_TRUE(answer.ended);
}

TEST_F(Faults, ShorterAnnouncesLessThanComes)
{
    rules("shorter *film* by=10");
    const Answer answer = film();
    EXPECT_EQ(answer.announced(), Size - 10);
    EXPECT_EQ(answer.body.size(), Size);
}

TEST_F(Faults, GarbageIsNoHttp)
{
    rules("garbage *film* bytes=500");
    const Answer answer = film();
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.raw.size(), 500);
    EXPECT_TRUE(answer.ended);
}

TEST_F(Faults, BrokenXmlHasTheRightLengthAndNoEnd)
{
    ASSERT_TRUE(isXml(schedule().body));
    rules("broken-xml *getschedule*");
    const Answer answer = schedule();
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.announced(), answer.body.size());
    EXPECT_GT(answer.body.size(), 20);
    EXPECT_FALSE(isXml(answer.body));
}

TEST_F(Faults, ProbabilityGivesTheSameCourseForTheSameSeed)
{
    rules("seed 7\nrefuse *p.png probability=0.5");
    const QByteArray first = pattern(24);
    EXPECT_TRUE(first.contains('.') && first.contains('x')) << first.constData();
    rules("seed 7\nrefuse *p.png probability=0.5");
    EXPECT_EQ(pattern(24), first);
    rules("seed 8\nrefuse *p.png probability=0.5");
    EXPECT_NE(pattern(24), first);
    rules("refuse *p.png probability=0");
    EXPECT_EQ(pattern(8), "........");
    rules("refuse *p.png probability=1");
    EXPECT_EQ(pattern(8), "xxxxxxxx");
}

TEST_F(Faults, TimesEndsAFault)
{
    rules("refuse *p.png times=2");
    EXPECT_EQ(pattern(4), "xx..");
}

TEST_F(Faults, TheFirstRuleThatFitsCounts)
{
    rules("refuse *p.png status=500 times=1\nrefuse *p.png status=404 times=1\n# a remark\n\n");
    EXPECT_EQ(file("p.png").status, 500);
    EXPECT_EQ(file("p.png").status, 404);
    EXPECT_EQ(file("p.png").status, 200);
}

TEST_F(Faults, PatternsSeeTheNameAsItIsMeant)
{
    write("media/zwei Bäume.jpg", "trees");
    rules("refuse *zwei*Bäume.jpg");
    EXPECT_EQ(file("zwei Bäume.jpg").status, 503);
    EXPECT_EQ(file("zwei%20B%C3%A4ume.jpg").status, 503);
}

TEST_F(Faults, CanBeSwitchedOffWhileTheServerRuns)
{
    write("faults.txt", "refuse *p.png\n");
    EXPECT_EQ(pattern(2), "xx");
    rules("");
    EXPECT_EQ(pattern(2), "..");
    EXPECT_EQ(ask("DELETE", "/faults").body, "refuse *p.png # fitted 0, struck 0\n");
    EXPECT_EQ(pattern(2), "xx");
    EXPECT_EQ(ask("GET", "/faults").body, "refuse *p.png # fitted 2, struck 2\n");
}

// As a page in a browser of the server's machine asks, or whoever comes through a proxy there.
TEST_F(Faults, AreChangedByNobodyButAProgramOfThisMachine)
{
    const QByteArray here = "Host: 127.0.0.1:80\r\n", change = "X-Signage-Change: 1\r\n";
    for (const QByteArray& fields :
         {here,
          here + "Origin: http://evil.example\r\nSec-Fetch-Site: cross-site\r\nSec-Fetch-Mode: no-cors\r\n",
          here + change + "Origin: http://evil.example\r\n", here + change + "Origin: null\r\n",
          here + change + "Origin: http://127.0.0.1:81\r\n",
          here + change + "Origin: https://127.0.0.1:80\r\n",
          here + change + "Sec-Fetch-Site: cross-site\r\n", here + change + "Sec-Fetch-Site: same-site\r\n",
          change + "Host: evil.example\r\n", change + "Host: 127.0.0.1.evil.example\r\n",
          here + change + "X-Forwarded-For: 10.0.0.9\r\n", here + change + "Via: 1.1 proxy\r\n",
          here + change + "X-Real-IP: 10.0.0.9\r\n", here + change + "Forwarded: for=10.0.0.9\r\n"}) {
        EXPECT_EQ(request("POST", fields, "refuse *").status, 403) << fields.constData();
        EXPECT_EQ(request("DELETE", fields).status, 403) << fields.constData();
        ASSERT_EQ(pattern(1), ".") << fields.constData();
    }
    for (const QByteArray& fields :
         {here, QByteArray("Host: LocalHost:80\r\n"), QByteArray("Host: [::1]:80\r\n"),
          here + "Origin: http://127.0.0.1:80\r\nSec-Fetch-Site: same-origin\r\n"}) {
        EXPECT_EQ(request("POST", fields + change, "refuse *p.png").status, 200) << fields.constData();
        EXPECT_EQ(pattern(1), "x") << fields.constData();
        EXPECT_EQ(request("POST", fields + change).status, 200);
    }
}

TEST_F(Faults, AreToldNobodyButWhoeverIsOnThisMachine)
{
    EXPECT_EQ(request("GET", "Host: 127.0.0.1:80\r\n").status, 200);
    for (const QByteArray fields :
         {"Host: evil.example\r\n", "Host: localhost\r\nOrigin: http://evil.example\r\n",
          "Host: localhost\r\nX-Forwarded-For: 10.0.0.9\r\n"})
        EXPECT_EQ(request("GET", fields).status, 403) << fields.constData();
}

TEST_F(Faults, OfTheFileFollowItsEdits)
{
    EXPECT_EQ(pattern(1), ".");
    write("faults.txt", "refuse *p.png status=500\n");
    EXPECT_EQ(file("p.png").status, 500);
    write("faults.txt", "refuse *p.png status=501\n");
    EXPECT_EQ(file("p.png").status, 501);
    write("faults.txt", "");
    EXPECT_EQ(pattern(1), ".");
}

TEST_F(Faults, ThatAreNotUnderstoodChangeNothing)
{
    rules("refuse *p.png");
    for (const QByteArray bad :
         {"explode *", "refuse", "refuse * status=200", "cut * after=x", "cut * after=-1", "drip * bytes=0",
          "refuse * probability=2", "refuse * times", "stall * seconds=0"}) {
        const Answer answer = ask("POST", "/faults", bad);
        EXPECT_EQ(answer.status, 400) << bad.constData();
        EXPECT_FALSE(answer.body.isEmpty());
    }
    EXPECT_EQ(pattern(1), "x");
}

TEST_F(Faults, StandInTheLog)
{
    rules("cut *film* after=5000");
    film();
    // The line is written behind the answer.
    stop();
    EXPECT_TRUE(log().contains(" 200 5000 "));
    EXPECT_TRUE(log().contains("ms fault=cut\n"));
}

TEST_F(Faults, DoNotHoldTheServersEndUp)
{
    rules("stall *film* seconds=600\n");
    Wire wire(m_port);
    wire.send("GET " + fileTarget("film.mp4") + " HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_TRUE(wire.readAll(200).raw.isEmpty());
    stop();
    EXPECT_TRUE(wire.readAll(2000).ended);
}

} // namespace
