#include "tests/server/signServer.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <gmock/gmock.h>

namespace {

QByteArray md5(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
}

class Schedule : public SignServerTest
{
protected:
    void startEnrolled()
    {
        start();
        ASSERT_EQ(resultOf(enroll().body), "registered");
    }
    QList<QByteArray> files() const { return rowsOf(schedule().body, "file"); }
    QList<QByteArray> layouts() const { return rowsOf(schedule().body, "layout"); }
};

TEST_F(Schedule, ListsLayoutsAndTheirMediaWithSumsAndSizes)
{
    const QByteArray layout = "<layout background='b.jpg'><region><media type='image' path='p.png'/>"
                              "<media type='text'><text><![CDATA[x]]></text></media></region></layout>";
    write("schedule.xml", "<schedule><layout file='one.xml'/></schedule>");
    write("layouts/one.xml", layout);
    write("media/b.jpg", "back");
    write("media/p.png", noise(70000));
    startEnrolled();
    const QByteArray layoutRow =
        "type=layout path=one.xml md5=" + md5(layout) + " size=" + QByteArray::number(layout.size());
    EXPECT_EQ(files(), (QList<QByteArray>{layoutRow, "type=media path=b.jpg md5=" + md5("back") + " size=4",
                                          "type=media path=p.png md5=" + md5(noise(70000)) + " size=70000"}));
}

TEST_F(Schedule, KeepsTheOrderAndNamesAFileThatTwoLayoutsShareOnce)
{
    write("schedule.xml",
          "<schedule><layout file='b.xml'/><layout file='a.xml'/><layout file='b.xml'/></schedule>");
    write("layouts/a.xml", "<layout background='x.jpg'/>");
    write("layouts/b.xml", "<layout background='x.jpg'/>");
    write("media/x.jpg", "x");
    startEnrolled();
    const QList<QByteArray> rows = layouts();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_TRUE(rows[0].startsWith("file=b.xml "));
    EXPECT_TRUE(rows[1].startsWith("file=a.xml "));
    EXPECT_TRUE(rows[2].startsWith("file=b.xml "));
    EXPECT_EQ(files().size(), 3);
}

TEST_F(Schedule, GivesALayoutWithoutTimesAllTime)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout/>");
    startEnrolled();
    EXPECT_EQ(layouts(), QList<QByteArray>{"file=a.xml fromdt=2000-01-01 00:00:00 todt=2037-12-31 23:59:59 "
                                           "eventType= applet="});
}

TEST_F(Schedule, PassesTimesEventTypeAndAppletAsTheyStand)
{
    write("schedule.xml", "<schedule><layout file='a.xml' fromdt='2026-1-2 3:4:5' todt='2026-02-03 04:05:06' "
                          "eventType='sametime' applet='meeting'/></schedule>");
    write("layouts/a.xml", "<layout/>");
    startEnrolled();
    EXPECT_EQ(layouts(), QList<QByteArray>{"file=a.xml fromdt=2026-1-2 3:4:5 todt=2026-02-03 04:05:06 "
                                           "eventType=sametime applet=meeting"});
}

TEST_F(Schedule, ShowsADisplayOnlyItsOwnLayouts)
{
    write("schedule.xml", "<schedule><layout file='a.xml' displays='Hall'/>"
                          "<layout file='b.xml' displays='Hall, Lobby'/></schedule>");
    write("layouts/a.xml", "<layout background='a.jpg'/>");
    write("layouts/b.xml", "<layout/>");
    write("media/a.jpg", "a");
    startEnrolled();
    EXPECT_EQ(files().size(), 1);
    EXPECT_THAT(layouts(), testing::ElementsAre(testing::Truly(
                               [](const QByteArray& row) { return row.startsWith("file=b.xml "); })));
}

TEST_F(Schedule, LeavesOutWhatIsMissingAndSaysSoOnce)
{
    write("schedule.xml", "<schedule><layout file='gone.xml'/><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout background='gone.jpg'/>");
    startEnrolled();
    EXPECT_EQ(layouts().size(), 1);
    EXPECT_EQ(files().size(), 1);
    EXPECT_EQ(log().count("content: layouts/gone.xml is not there"), 1);
    EXPECT_EQ(log().count("content: media/gone.jpg is not there"), 1);
}

TEST_F(Schedule, LeavesOutAMediaFileThatNoPhoneWouldFetch)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml",
          "<layout><region><media path='fits.mp4'/><media path='large.mp4'/></region></layout>");
    write("media/fits.mp4", "");
    write("media/large.mp4", "");
    QFile(path("media/fits.mp4")).resize(8388608);
    QFile(path("media/large.mp4")).resize(8388609);
    startEnrolled();
    EXPECT_EQ(files().size(), 2);
    EXPECT_TRUE(files()[1].contains("path=fits.mp4 "));
    EXPECT_TRUE(files()[1].endsWith(" size=8388608"));
    EXPECT_TRUE(log().contains("content: media/large.mp4 is larger than a phone fetches (8 MiB)"));
}

TEST_F(Schedule, LeavesOutALayoutThatIsNoXml)
{
    write("schedule.xml", "<schedule><layout file='bad.xml'/><layout file='a.xml'/></schedule>");
    write("layouts/bad.xml", "<layout>\n<region></layout>");
    write("layouts/a.xml", "<layout/>");
    startEnrolled();
    EXPECT_EQ(layouts().size(), 1);
    EXPECT_TRUE(log().contains("content: layouts/bad.xml, line 2: "));
}

TEST_F(Schedule, DoesNotTakeALayoutFromOutsideItsFolder)
{
    write("schedule.xml", "<schedule><layout file='../out.xml'/></schedule>");
    write("out.xml", "<layout/>");
    startEnrolled();
    EXPECT_TRUE(layouts().isEmpty());
}

TEST_F(Schedule, NoticesAnEditAtTheNextRequest)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout background='x.jpg'/>");
    write("layouts/b.xml", "<layout/>");
    write("media/x.jpg", "first");
    startEnrolled();
    EXPECT_TRUE(files()[1].contains(md5("first")));
    // The same size, within the same second.
    write("media/x.jpg", "other");
    EXPECT_TRUE(files()[1].contains(md5("other")));
    write("schedule.xml", "<schedule><layout file='b.xml'/></schedule>");
    EXPECT_TRUE(layouts()[0].startsWith("file=b.xml"));
}

TEST_F(Schedule, NoticesAnEditOfAFileWhoseSumIsKept)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout background='x.jpg'/>");
    write("media/x.jpg", "first");
    QFile old(path("media/x.jpg"));
    ASSERT_TRUE(old.open(QIODevice::ReadWrite));
    old.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    old.close();
    startEnrolled();
    EXPECT_TRUE(files()[1].contains(md5("first")));
    write("media/x.jpg", "other");
    EXPECT_TRUE(files()[1].contains(md5("other")));
}

TEST_F(Schedule, StaysAsItWasWhileTheFileIsHalfWritten)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout/>");
    startEnrolled();
    const QByteArray whole = schedule().body;
    write("schedule.xml", "<schedule><layout file='a.x");
    const Answer half = schedule();
    EXPECT_EQ(half.status, 200);
    EXPECT_EQ(half.body, whole);
    EXPECT_TRUE(log().contains("content: schedule.xml, line 1: "));
}

TEST_F(Schedule, ThatNeverCouldBeReadIsAServerError)
{
    startEnrolled();
    EXPECT_EQ(schedule().status, 503);
    EXPECT_EQ(resultOf(schedule().body), "the schedule cannot be read");
}

TEST_F(Schedule, IsNotSentAgainToACacheThatHasIt)
{
    write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
    write("layouts/a.xml", "<layout/>");
    startEnrolled();
    const QByteArray target = "/service/getschedule.htm?serverKey=key&hardwareKey=aabbcc";
    const QByteArray tag = get(target).fields["etag"];
    const Answer again = get(target, "If-None-Match: " + tag + "\r\n");
    EXPECT_EQ(again.status, 304);
    EXPECT_TRUE(again.body.isEmpty());
    write("layouts/a.xml", "<layout bgcolor='red'/>");
    EXPECT_EQ(get(target, "If-None-Match: " + tag + "\r\n").status, 200);
}

} // namespace
