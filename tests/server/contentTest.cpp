#include "places.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/players/films.h"
#include "tests/server/statusOf.h"
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Content : public StatusTest
{
protected:
    // A schedule of one layout with a region of these media.
    void writeLayout(const QByteArray& media,
                     const QByteArray& place = "left='0' top='0' width='320' height='240'")
    {
        write("schedule.xml", "<schedule><layout file='a.xml'/></schedule>");
        write("layouts/a.xml", "<layout bgcolor='red'><region " + place + ">" + media + "</region></layout>");
    }
    void writeMedia(const QByteArray& type, const QByteArray& name)
    {
        writeLayout("<media type='" + type + "' duration='5' path='" + name + "'/>");
    }
    // Long enough ago that nobody writes it any more.
    void settle(const QByteArray& name) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    }
    void settleMedia() const
    {
        for (const QString& name : QDir(path("media")).entryList(QDir::Files))
            settle("media/" + name.toUtf8());
    }
    // What the page, and the log as well, says of the folder.
    QStringList told()
    {
        settleMedia();
        if (m_port == 0)
            start();
        EXPECT_TRUE(contentIsChecked());
        const QStringList all = warnings();
        for (const QString& one : all) {
            const QString shown = QString(one).replace('\t', QChar::ReplacementCharacter);
            EXPECT_EQ(log().count("content: " + shown.toUtf8() + "\n"), 1) << qPrintable(one);
            EXPECT_TRUE(page().body.contains(shown.toHtmlEscaped().replace('\'', "&#39;").toUtf8()))
                << qPrintable(one);
        }
        return all;
    }
    void savePicture(const QByteArray& name, int width, int height) const
    {
        QDir().mkpath(path("media"));
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        ASSERT_TRUE(image.save(path("media/" + name)));
    }
};

TEST_F(Content, OfTheDemonstrationWarnsOfNothing)
{
    QProcess copy;
    copy.start("cp", {"-rT", HX_BUILD_DIR "/signageDemo", m_folder.path()});
    ASSERT_TRUE(copy.waitForFinished());
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_FALSE(page().body.contains("no phone"));
    EXPECT_FALSE(log().contains("content: "));
}

TEST_F(Content, AFilmWhosePictureNoPhoneShowsIsNamedWithItsCodec)
{
    makeFilm(path("media/clip.webm"), "webmmux name=m ! filesink name=out %1 ! vp8enc deadline=1 ! m.",
             {{RED}, 5});
    writeMedia("video", "clip.webm");
    EXPECT_THAT(told(),
                ElementsAre("media/clip.webm: its picture is VP8; phones show H.264, MPEG-4 part 2 and "
                            "H.263"));
}

TEST_F(Content, FilmsThatPhonesPlayAreNotNamed)
{
    makeH264(path("media/a.mp4"), {{RED}, 5});
    makeMpeg4(path("media/b.mp4"), {{RED}, 5});
    makeH263(path("media/c.avi"), {{RED}, 5});
    writeLayout("<media type='video' path='a.mp4'/><media type='video' path='b.mp4'/>"
                "<media type='video' path='c.avi'/>");
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Content, AFilmWithoutSoundIsNotNamed)
{
    const QString avi = "avimux name=m ! filesink name=out %1 ! ",
                  mp4 = "mp4mux name=m ! filesink name=out %1 ! ";
    const QString h264 = "x264enc bframes=0 speed-preset=ultrafast ! ",
                  stamped = " ! identity name=stamp ! m.";
    const tagColours colours = {{RED}, 5, QSize(352, 288)};
    makeFilm(path("media/h264.avi"), avi + h264 + "m.", colours);
    makeFilm(path("media/mpeg4.avi"), avi + "avenc_mpeg4" + stamped, colours);
    makeFilm(path("media/h263.avi"), avi + "avenc_h263" + stamped, colours);
    makeFilm(path("media/h264.mp4"), mp4 + h264 + "h264parse ! m.", colours);
    writeLayout("<media type='video' path='h264.avi'/><media type='video' path='mpeg4.avi'/>"
                "<media type='video' path='h263.avi'/><media type='video' path='h264.mp4'/>");
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(Content, AFilmWithoutAPictureIsNamed)
{
    makeFilm(path("media/song.mp4"),
             "mp4mux name=m ! filesink name=out %1 ! fakesink audiotestsrc num-buffers=40 ! avenc_aac ! "
             "aacparse ! m.",
             {{RED}, 5});
    writeMedia("video", "song.mp4");
    EXPECT_THAT(told(), ElementsAre("media/song.mp4: it has no picture"));
}

TEST_F(Content, WhatIsNoFilmIsNamed)
{
    write("media/list.mp4", "#EXTM3U\nhttp://127.0.0.1/film.mp4\n");
    write("media/noise.mp4", noise(100000));
    writeLayout("<media type='video' path='list.mp4'/><media type='video' path='noise.mp4'/>");
    EXPECT_THAT(told(), ElementsAre("media/list.mp4: no phone can read it as a film",
                                    "media/noise.mp4: no phone can read it as a film"));
}

TEST_F(Content, AJpegIsMeasuredInPixels)
{
    savePicture("fits.jpg", 1920, 1024);
    savePicture("wide.jpg", 1921, 100);
    savePicture("high.jpg", 100, 1025);
    writeLayout("<media type='image' path='fits.jpg'/><media type='image' path='wide.jpg'/>"
                "<media type='image' path='high.jpg'/>");
    EXPECT_THAT(told(),
                ElementsAre("media/high.jpg: it is a JPEG of 100 by 1025; 1920 by 1024 is the largest that a "
                            "phone shows",
                            "media/wide.jpg: it is a JPEG of 1921 by 100; 1920 by 1024 is the largest that a "
                            "phone shows"));
}

TEST_F(Content, OtherPicturesAreMeasuredInBytes)
{
    for (const QByteArray name : {"fits.png", "large.png"})
        savePicture(name, 64, 48);
    // What follows the end of a picture is not looked at.
    QFile(path("media/fits.png")).resize(1966080);
    QFile(path("media/large.png")).resize(1966081);
    writeLayout("<media type='image' path='fits.png'/><media type='image' path='large.png'/>");
    EXPECT_THAT(told(),
                ElementsAre("media/large.png: it has 1966081 bytes; no phone shows a picture of its kind "
                            "of more than 1966080"));
}

TEST_F(Content, APictureThatIsNoneIsNamed)
{
    savePicture("half.jpg", 640, 480);
    QFile(path("media/half.jpg")).resize(2000);
    write("media/text.png", "this is no picture");
    savePicture("good.jpg", 64, 48);
    QFile::copy(path("media/good.jpg"), path("media/good"));
    QFile::copy(path("media/good.jpg"), path("media/good.webp"));
    writeLayout("<media type='image' path='half.jpg'/><media type='image' path='text.png'/>"
                "<media type='image' path='good'/><media type='image' path='good.webp'/>"
                "<media type='image' path='good.jpg'/>");
    const QStringList all = told();
    EXPECT_EQ(all.size(), 4);
    EXPECT_THAT(all, Contains("media/half.jpg: it is a damaged JPEG, or none"));
    EXPECT_EQ(all.filter("ends in no kind of picture").size(), 2);
    EXPECT_EQ(all.filter("media/text.png: no phone can read it as a picture").size(), 1);
}

// The phone's own decoder is asked, in its own bounds.
TEST_F(Content, APictureIsNamedWhenThePhoneDoesNotShowIt)
{
    QByteArray media;
    const auto put = [&](const QByteArray& name, const QByteArray& bytes) {
        write("media/" + name, bytes);
        media += "<media type='image' path='" + name + "'/>";
    };
    const QByteArray end = QByteArray::fromHex("ffd9");
    for (const QByteArray kind : {"bmp", "png", "jpg"}) {
        savePicture("whole." + kind, 640, 480);
        QFile file(path("media/whole." + kind));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        put("half." + kind, whole.left(whole.size() / 2) + (kind == "jpg" ? end : ""));
        if (kind == "jpg")
            put("camera.jpg", whole.chopped(2) + QByteArray(20, '\0') + end);
    }
    put("many.png", kit::pngOfOneColour({12000, 9000}));
    put("toomany.png", kit::pngOfOneColour({12000, 12000}));
    put("inmemory.png", kit::pngOfOneColour({6000, 6000}, true));
    put("good.gif", kit::gifOfScreen({1, 1}));
    put("half.gif", kit::gifOfScreen({1, 1}).chopped(3));
    put("scan.tif", "II*" + noise(3000));
    writeLayout(media);
    const QStringList all = told();
    for (const char* damaged : {"half.bmp", "half.png", "half.jpg", "half.gif", "scan.tif"}) {
        EXPECT_EQ(all.filter(QString("media/%1: no phone can read it as a picture").arg(damaged)).size(), 1)
            << damaged;
    }
    for (const char* large : {"toomany.png", "inmemory.png"})
        EXPECT_THAT(all, Contains(QString("media/%1: it has more pixels than a phone takes").arg(large)));
    EXPECT_EQ(all.size(), 7) << qPrintable(all.join('\n'));
}

TEST_F(Content, AFileThatIsTooLargeIsNamedAndLeftOut)
{
    write("media/large.mp4", "");
    QFile(path("media/large.mp4")).resize(8388609);
    write("layouts/b.xml", "<layout/>" + QByteArray(1 << 20, ' '));
    writeMedia("video", "large.mp4");
    write("schedule.xml", "<schedule><layout file='a.xml'/><layout file='b.xml'/></schedule>");
    EXPECT_THAT(told(), ElementsAre("layouts/b.xml is larger than a phone fetches (1 MiB)",
                                    "media/large.mp4 is larger than a phone fetches (8 MiB)"));
    enroll();
    EXPECT_EQ(rowsOf(schedule().body, "file").size(), 1);
}

TEST_F(Content, ANameThatPhonesRefuseIsNamedAndLeftOut)
{
    const QByteArray longest(136, 'n');
    QByteArray media;
    for (const QByteArray& name :
         {QByteArray("a.png.ing"), QByteArray("b.NEW"), QByteArray("FileList.xml"),
          QByteArray("display.xml.old"), longest + "x.png", QByteArray(".hidden.png"), QByteArray("c#d.png"),
          QByteArray("50%25.png"), longest + ".png", QByteArray("50% Süd+1.png")}) {
        savePicture("x.png", 8, 8);
        QFile::rename(path("media/x.png"), path("media/" + name));
        media += "<media type='image' path='" + name + "'/>";
    }
    writeLayout(media + "<media type='image' path='tab&#9;.png'/><media type='image' path='../x.png'/>");
    const QStringList all = told();
    EXPECT_EQ(all.filter("is fetched by no phone: its name ends in .ing or .new").size(), 2);
    EXPECT_EQ(all.filter("is fetched by no phone: phones have a file of their own of that name").size(), 2);
    EXPECT_EQ(all.filter("is fetched by no phone: its name has more than 140 bytes").size(), 1);
    EXPECT_EQ(all.filter("is fetched by no phone: its name is no bare file name").size(), 2);
    EXPECT_EQ(all.filter("is fetched by no phone: a control character is in its name").size(), 1);
    EXPECT_EQ(all.filter(QRegularExpression("^media/.* cannot be sent by a phone")).size(), 2);
    EXPECT_TRUE(all.filter("Süd").isEmpty());
    enroll();
    EXPECT_EQ(rowsOf(schedule().body, "file").size(), 3) << "the layout and two pictures";
}

TEST_F(Content, ARegionThatNoPhonePlaysAFilmInIsNamed)
{
    makeH264(path("media/a.mp4"), {{RED}, 5});
    const auto toldOf = [this](const QByteArray& place) {
        writeLayout("<media type='video' path='a.mp4'/>", place);
        if (m_port == 0)
            told();
        // The look at the change has begun and ended when its own mark is told.
        write("schedule.xml",
              "<schedule><layout file='a.xml'/><layout file='" + place.toHex().left(60) + "'/></schedule>");
        EXPECT_TRUE(soon([&] { return !warnings().filter(place.toHex().left(60)).isEmpty(); }));
        EXPECT_TRUE(soon([&] { return warnings().filter("is not there").size() == 1; }));
        return warnings().filter("layouts/a.xml").join('\n');
    };
    EXPECT_EQ(toldOf("left='0' top='0' width='1280' height='800'"), "");
    EXPECT_EQ(toldOf("top='0' left='0' width='1295' height='800'"), "") << "cut to the grid";
    EXPECT_EQ(toldOf("width='1296' left='0' top='0' height='480'"),
              "layouts/a.xml, region 1: no phone plays a film of 1296 by 480; 1280 by 800 is the largest");
    EXPECT_EQ(toldOf("height='801' left='0' top='0' width='480'"),
              "layouts/a.xml, region 1: no phone plays a film of 480 by 801; 1280 by 800 is the largest");
    EXPECT_EQ(toldOf("left='8' top='0' width='20' height='80'"),
              "layouts/a.xml, region 1: it is too narrow for a film: 20 pixels, cut to a grid of 16");
}

TEST_F(Content, MediaThatShowNothingAreNamed)
{
    writeLayout("<media type='flash'/><media type='text'><text> <![CDATA[x]]></text></media>"
                "<media type='text'><text><![CDATA[y]]></text></media>");
    EXPECT_THAT(told(),
                ElementsAre("layouts/a.xml, region 1: a text has no CDATA section right behind <text>, so "
                            "nothing shows",
                            "layouts/a.xml, region 1: no phone shows media of the type \"flash\""));
}

TEST_F(Content, WarningsWithoutEndAreToldInPart)
{
    const int all = 1200, kept = 1000, onThePage = 100;
    QByteArray rows;
    for (int i = 0; i < all; ++i)
        rows += "<layout file='none" + QByteArray::number(i) + ".xml'/>";
    write("schedule.xml", "<schedule>" + rows + "</schedule>");
    start();
    ASSERT_TRUE(contentIsChecked());
    EXPECT_EQ(warnings().size(), kept);
    EXPECT_EQ(log().count("content: "), kept);
    const QByteArray body = page().body;
    const qsizetype begin = body.indexOf("Content that no phone shows");
    const QByteArray list = body.mid(begin, body.indexOf("</ul>", begin) - begin);
    EXPECT_EQ(list.count("<li>"), onThePage + 1);
    EXPECT_TRUE(list.contains("<li>and 900 more</li>"));
}

TEST_F(Content, AWarningGoesWhenTheFileIsGood)
{
    write("media/a.png", "no picture");
    writeMedia("image", "a.png");
    EXPECT_EQ(told().size(), 1);
    savePicture("a.png", 8, 8);
    settleMedia();
    EXPECT_TRUE(soon([this] { return warnings().isEmpty(); }));
    write("media/a.png", "no picture again");
    settleMedia();
    EXPECT_TRUE(soon([this] { return !warnings().isEmpty(); }));
    EXPECT_EQ(log().count("content: media/a.png"), 2);
}

TEST_F(Content, AFileThatIsBeingWrittenIsLeftForLater)
{
    savePicture("a.png", 8, 8);
    writeMedia("image", "a.png");
    start();
    ASSERT_TRUE(contentIsChecked());
    EXPECT_TRUE(soon([this] {
        write("media/a.png", "half a pic"); // again: what lies a while counts as written
        return !status()["content_checked"].toBool();
    }));
    savePicture("a.png", 9, 9);
    EXPECT_TRUE(contentIsChecked());
    EXPECT_FALSE(log().contains("content: "));
}

// A server beside which lies another program in place of the check.
class BadCheck : public Content
{
protected:
    void startWith(const QByteArray& script)
    {
        write("bin/hxSignCheck", "#!/bin/sh\n" + script + "\n");
        QFile::setPermissions(path("bin/hxSignCheck"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        ASSERT_TRUE(QFile::copy(HX_BUILD_DIR "/bin/hxSignServer", path("bin/hxSignServer")));
        savePicture("a.png", 8, 8);
        writeMedia("image", "a.png");
        settleMedia();
        startProgram(path("bin/hxSignServer"));
        enroll();
    }
};

TEST_F(BadCheck, ThatDiesIsTold)
{
    startWith("kill -SEGV $$");
    EXPECT_TRUE(contentIsChecked());
    EXPECT_THAT(warnings(), ElementsAre("media/a.png: looking into it fails"));
}

TEST_F(BadCheck, ThatHangsHoldsNoRequestAndIsEnded)
{
    startWith("echo $$ >" + path("pid").toUtf8() + "; exec sleep 1000");
    ASSERT_TRUE(soon([this] { return QFile(path("pid")).size() > 1; }));
    EXPECT_EQ(schedule().status, 200);
    EXPECT_EQ(fetch("a.png").status, 200);
    EXPECT_FALSE(status()["content_checked"].toBool());
    EXPECT_TRUE(soon([this] { return !warnings().isEmpty(); }));
    EXPECT_THAT(warnings(), ElementsAre("media/a.png: looking into it takes too long"));
    QFile pid(path("pid"));
    ASSERT_TRUE(pid.open(QIODevice::ReadOnly));
    EXPECT_FALSE(QFile::exists("/proc/" + pid.readAll().trimmed()));
}

TEST_F(BadCheck, ThatTalksWithoutEndIsEnded)
{
    startWith("exec yes");
    EXPECT_TRUE(soon([this] { return !warnings().isEmpty(); }));
    EXPECT_EQ(warnings().size(), 1);
}

TEST_F(BadCheck, ThatIsMissingIsSaid)
{
    startWith("");
    stop();
    QFile::remove(path("bin/hxSignCheck"));
    startProgram(path("bin/hxSignServer"));
    EXPECT_TRUE(soon([this] { return !warnings().isEmpty(); }));
    EXPECT_THAT(warnings(), ElementsAre("pictures and films are not checked: hxSignCheck cannot be started"));
}

} // namespace
