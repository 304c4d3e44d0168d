// The phone's own pictures, films and ring tones in the hands of a person: seen, heard and deleted, by finger
// and by keys.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>
#include <functional>

namespace {

#define USER_FILE "/rundata/config/user/user.ini"

const QRgb kRed = 0xffff0000;
const QRgb kGreen = 0xff00ff00;

// The menu "Media", four icons a row.
const QPoint kPhotoManager(557, 120);
const QPoint kVideoManager(719, 120);
const QPoint kSoundManager(233, 312);

class MediaStory : public LivePhone
{
protected:
    QString host(const QString& file) const { return root() + file; }
    void putPicture(const QString& file, QRgb colour)
    {
        QImage picture(800, 480, QImage::Format_RGB32);
        picture.fill(colour);
        QDir().mkpath(QFileInfo(host(file)).path());
        ASSERT_TRUE(picture.save(host(file)));
    }
    // What of its kind the phone brings along stands first in a list.
    int stock(const char* kind) const
    {
        return int(QDir(host(QString("/phone/resource/sysdata/") + kind)).entryList(QDir::Files).size());
    }
    static bool until(const std::function<bool()>& holds) { return kit::waits(holds, 15000); }
    bool shows(QRgb colour, QPoint place)
    {
        return until([&] { return screen().pixel(place) == colour; });
    }
    bool rings(const QString& what)
    {
        return until([&] { return !logOf("ring").isEmpty() && logOf("ring").last().contains(what); });
    }
    void openByFinger(QPoint icon)
    {
        tap("tileMedia");
        waitPage("dlgIconviewForm");
        tap(icon.x(), icon.y());
        waitPage("dlgMediaManager");
    }
    // steps: to the right of the first icon of the menu.
    void openByKeys(int steps)
    {
        for (int left = 6; left > 0 && focusWidget()["name"] != "tileMedia"; --left)
            key("Right");
        ASSERT_EQ(focusWidget()["name"], "tileMedia");
        key("Return");
        waitPage("dlgIconviewForm");
        key("Right", steps);
        key("Return");
        waitPage("dlgMediaManager");
    }
    // Whether the page has a soft key of that name.
    bool hasKey(const QString& name)
    {
        for (const QJsonValue widget : topWindow()["widgets"].toArray()) {
            if (widget["class"] == "qSoftButton" && widget["name"] == name)
                return true;
        }
        return false;
    }
    // A tap on a row of the list, which is a box of 40 pixels under the top of the list.
    void tapRow(int row)
    {
        const QJsonObject list = widget("tabWgtMediaList");
        tap(list["x"].toInt() + 30, list["y"].toInt() + 40 * row + 20);
    }
};

} // namespace

TEST_F(MediaStory, PhotosAreSeenAndDeletedByFinger)
{
    putPicture("/rundata/media/image/a.png", kRed);
    putPicture("/rundata/media/image/b.png", kGreen);
    openByFinger(kPhotoManager);
    tapRow(stock("ephoto"));
    EXPECT_TRUE(shows(kRed, QPoint(600, 250)));
    tapRow(stock("ephoto") + 1);
    EXPECT_TRUE(shows(kGreen, QPoint(600, 250)));
    shot("media-photos");
    softKey(0);
    waitPage("dlgImagePreview");
    EXPECT_TRUE(shows(kGreen, QPoint(5, 470)));
    key("F4");
    waitPage("dlgMediaManager");
    softKey(1);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Delete b.png?");
    shot("media-delete");
    tap("btnYes");
    waitPage("dlgMediaManager");
    EXPECT_FALSE(QFile::exists(host("/rundata/media/image/b.png")));
    EXPECT_TRUE(QFile::exists(host("/rundata/media/image/a.png")));
    EXPECT_TRUE(shows(kRed, QPoint(600, 250))) << "the one that is left";
    softKey(3);
    waitPage("dlgIconviewForm");
    tap(kPhotoManager.x(), kPhotoManager.y());
    waitPage("dlgMediaManager");
    tapRow(stock("ephoto"));
    EXPECT_TRUE(shows(kRed, QPoint(600, 250)));
}

TEST_F(MediaStory, PhotosAreSeenAndDeletedByKeys)
{
    putPicture("/rundata/media/image/a.png", kRed);
    putPicture("/rundata/media/image/b.png", kGreen);
    openByKeys(2);
    key("Up", 2); // round, to the last but one
    EXPECT_TRUE(shows(kRed, QPoint(600, 250)));
    key("Down");
    key("Return");
    waitPage("dlgImagePreview");
    EXPECT_TRUE(shows(kGreen, QPoint(5, 470)));
    key("Return");
    waitPage("dlgMediaManager");
    key("F2");
    waitPage("dlgMessageBox");
    key("Return");
    waitPage("dlgMediaManager");
    EXPECT_FALSE(QFile::exists(host("/rundata/media/image/b.png")));
    key("F2");
    waitPage("dlgMessageBox");
    key("Right");
    key("Return");
    waitPage("dlgMediaManager");
    EXPECT_TRUE(QFile::exists(host("/rundata/media/image/a.png"))) << "it was kept";
    key("F4");
    waitPage("dlgIconviewForm");
}

TEST_F(MediaStory, TheWallpaperIsDeletedAndTheHomeScreenShowsTheStockOne)
{
    const char* const mine = "/rundata/media/wallpaper/aaa.png";
    putPicture(mine, kRed);
    ctl({"config", USER_FILE, "Theme", "strWallpaper", mine});
    quit();
    start();
    EXPECT_TRUE(shows(kRed, QPoint(400, 200)));
    openByKeys(5);
    // Round to the last one, behind those of the firmware.
    key("Up");
    key("F2");
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "It's the Wall Paper! Delete it ?");
    shot("media-wallpaper");
    key("Return");
    waitPage("dlgMediaManager");
    EXPECT_FALSE(QFile::exists(host(mine)));
    EXPECT_EQ(config(USER_FILE, "Theme", "strWallpaper"), "/phone/resource/sysdata/wallpaper/wallpaper.jpg");
    EXPECT_EQ(logOf("broadcast").filter("0x10007 17 0").size(), 1);
    key("F2");
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "It's read only,can't be deleted!");
    key("Return");
    waitPage("dlgMediaManager");
    key("F4");
    waitPage("dlgIconviewForm");
    key("F4");
    waitPage("frmDesktop");
    EXPECT_TRUE(until([&] { return screen().pixel(400, 200) != kRed; }));
}

TEST_F(MediaStory, RingTonesSoundOneAfterTheOtherAndEndWithThePage)
{
    openByFinger(kSoundManager);
    EXPECT_TRUE(rings("/phone/resource/sysdata/ring/"));
    const QString first = logOf("ring").last();
    tapRow(1);
    EXPECT_TRUE(
        until([&] { return logOf("ring").last() != first && !logOf("ring").last().contains("stop"); }));
    softKey(1);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "It's read only,can't be deleted!");
    EXPECT_TRUE(rings("stop")) << "no tone under a box";
    key("Return");
    waitPage("dlgMediaManager");
    EXPECT_TRUE(rings("/phone/resource/sysdata/ring/")) << "and again after it";
    key("F4");
    waitPage("dlgIconviewForm");
    EXPECT_TRUE(rings("stop"));
}

TEST_F(MediaStory, AFilmIsPlayedFromTheList)
{
    QDir().mkpath(host("/rundata/media/video"));
    QFile film(host("/rundata/media/video/a.mp4"));
    ASSERT_TRUE(film.open(QIODevice::WriteOnly));
    film.close();
    openByFinger(kVideoManager);
    tapRow(stock("video"));
    softKey(0);
    waitPage("dlgVideoPreview");
    EXPECT_EQ(logOf("trace").filter("----[/rundata/media/video/a.mp4]---").size(), 1);
    key("F4");
    waitPage("dlgMediaManager");
    softKey(2);
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "The USB device is not connected!");
    tap("btnOK");
    waitPage("dlgMediaManager");
}

TEST_F(MediaStory, APictureComesFromAStickToTheEndOfTheList)
{
    QTemporaryDir stick;
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(kGreen);
    ASSERT_TRUE(picture.save(stick.filePath("holiday.png")));
    ctl({"set", "storage", "plug", "usb", stick.path()});
    openByFinger(kPhotoManager);
    softKey(2);
    waitPage("dlgImageImport");
    key("Return"); // into the stick
    waitIdle();
    key("Down");
    EXPECT_TRUE(until([&] { return hasKey("Import"); }));
    key("F2");
    waitPage("dlgMessageBox");
    EXPECT_EQ(widget("labText")["text"], "Successful loading!");
    key("Return");
    waitPage("dlgImageImport");
    key("F4");
    waitPage("dlgMediaManager");
    EXPECT_TRUE(QFile::exists(host("/rundata/media/image/holiday.png")));
    key("Up"); // round
    EXPECT_TRUE(shows(kGreen, QPoint(600, 250)));
    shot("media-imported");
}

TEST_F(MediaStory, AnIncomingCallSilencesTheRingToneUnderTest)
{
    openByFinger(kSoundManager);
    EXPECT_TRUE(rings("/phone/resource/sysdata/ring/"));
    const int before = logOf("ring").filter("stop").size();
    ctl({"ring", "4711"});
    waitPage("frmCall");
    EXPECT_TRUE(until([&] { return logOf("ring").filter("stop").size() > before; }));
}
