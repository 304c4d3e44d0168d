// The page "Screen Saver": times, kind, and the wallpaper that shows as it is chosen.
#include "frame/roomHooks.h"
#include "host/services/system/hostLog.h"
#include "settings/personal/dlgScreenSaver.h"
#include "support/host/combo.h"
#include "support/host/desktop.h"
#include "support/host/image.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include "tests/kit/heldPictures.h"
#include "tests/kit/kitTime.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/settings_personal/personalPageTest.h"
#include <QAbstractItemView>
#include <QBuffer>
#include <QFile>
#include <QLabel>
#include <algorithm>

namespace {

int s_bSignage = 0;
qsizetype s_nBroadcastsAtWallpaper = -1;

qsizetype broadcasts()
{
    const QList<tagLogEntry> log = hostLogFrom(1);
    return std::count_if(log.begin(), log.end(),
                         [](const tagLogEntry& entry) { return entry.strKind == "broadcast"; });
}

} // namespace

extern "C" void __real__Z20desktop_SetWallPaperPKc(const char* path);
extern "C" void __wrap__Z20desktop_SetWallPaperPKc(const char* path);

void __wrap__Z20desktop_SetWallPaperPKc(const char* path)
{
    s_nBroadcastsAtWallpaper = broadcasts();
    __real__Z20desktop_SetWallPaperPKc(path);
}

namespace {

class ScreenSaverPage : public PersonalPageTest
{
protected:
    ScreenSaverPage()
    {
        kit::holdClocks(true);
        s_bSignage = 0;
        roomHooks().isNdeckEnable = [] { return s_bSignage; };
        writeFile(
            "/phone/resource/mediafile.xml",
            "<MediaFile><wallpaper filter=\"*.png;*.jpg\"><filelist>"
            "<item path=\"/rundata/media/wallpaper\" shortname=\"\"/></filelist></wallpaper></MediaFile>");
        paint("a-red", Qt::red);
        paint("b-green", Qt::green);
        paint("c-blue", Qt::blue);
        store("120", "1", "600", path("b-green"));
    }
    ~ScreenSaverPage() override
    {
        roomHooks().isNdeckEnable = nullptr;
        kit::holdClocks(false);
    }

    static QByteArray path(const char* name)
    {
        return QByteArray("/rundata/media/wallpaper/") + name + ".png";
    }
    void paint(const char* name, Qt::GlobalColor colour)
    {
        QImage image(80, 48, QImage::Format_RGB32);
        image.fill(colour);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        ASSERT_TRUE(image.save(&buffer, "PNG"));
        writeFile(path(name), bytes);
    }
    void store(const QByteArray& saver, const QByteArray& type, const QByteArray& sleep,
               const QByteArray& wallpaper)
    {
        writeFile(USER_FILE, "[ScreenSaver]\nnTimeout=" + saver + "\neType=" + type + "\n[Sleep]\nnTimeout=" +
                                 sleep + "\n[Theme]\nstrWallpaper=" + wallpaper + "\n");
    }
    void openPage() { open("Screen Saver"); }

    QComboBox* pictures() const { return child<QComboBox>("cmbBoxPic"); }
    QLabel* preview() const { return child<QLabel>("labShowPic"); }
    // The colour that the preview shows; invalid while it shows nothing.
    QColor shown() const
    {
        kit::waitUntil([] { return picturePending() == 0; });
        const QImage image = preview()->isVisible() ? preview()->pixmap().toImage() : QImage();
        return image.isNull() ? QColor() : image.pixelColor(image.width() / 2, image.height() / 2);
    }
    static QRect whereOf(const QWidget* widget) { return widget->geometry(); }
    bool isOnView(const char* name) const { return child<QWidget>(name)->isVisible(); }
    std::string chosen(const char* box) const
    {
        QComboBox* combo = child<QComboBox>(box);
        return qGetExternValue(combo, combo->currentIndex()).GetText();
    }
};

TEST_F(ScreenSaverPage, ShowsItsTextsAndWhatIsStored)
{
    openPage();
    EXPECT_EQ(title(), "Desktop Setting");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "Wallpaper Manager", "", "Back"}));
    EXPECT_EQ(child<QLabel>("labScreenSaver")->text(), "Screen Saver");
    EXPECT_EQ(child<QLabel>("labScreeType")->text(), "Screen Type");
    EXPECT_EQ(child<QLabel>("labSleep")->text(), "Backlight Time");
    EXPECT_EQ(child<QLabel>("labWallpaper")->text(), "Wallpaper");
    EXPECT_EQ(items("cmbBoxScreenSaver"), (QStringList{"Never: 0", "30seconds: 30", "1minute: 60",
                                                       "2minutes: 120", "5minutes: 300", "10minutes: 600"}));
    EXPECT_EQ(items("cmbBoxScreenType"), (QStringList{"Photo: 0", "Video: 1"}));
    EXPECT_EQ(items("cmbBoxSleep"), (QStringList{"Always on: 0", "1minute: 60", "2minutes: 120",
                                                 "5minutes: 300", "10minutes: 600", "30minutes: 1800"}));
    EXPECT_EQ(items("cmbBoxPic"), (QStringList{"a-red.png: /rundata/media/wallpaper/a-red.png",
                                               "b-green.png: /rundata/media/wallpaper/b-green.png",
                                               "c-blue.png: /rundata/media/wallpaper/c-blue.png"}));
    EXPECT_EQ(chosen("cmbBoxScreenSaver"), "120");
    EXPECT_EQ(chosen("cmbBoxScreenType"), "1");
    EXPECT_EQ(chosen("cmbBoxSleep"), "600");
    EXPECT_EQ(chosen("cmbBoxPic"), path("b-green").toStdString());
    EXPECT_EQ(focusName(), "cmbBoxScreenSaver");
    EXPECT_EQ(shown(), QColor(Qt::green)) << "before the preview's time";
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::green));
    kit::shot("screensaver-page");
}

TEST_F(ScreenSaverPage, WithNothingStoredEachChoiceShowsItsFirstItemAndSavesNothing)
{
    writeFile(USER_FILE, "");
    openPage();
    EXPECT_EQ(chosen("cmbBoxScreenSaver"), "0");
    EXPECT_EQ(chosen("cmbBoxScreenType"), "0");
    EXPECT_EQ(chosen("cmbBoxSleep"), "0");
    EXPECT_EQ(chosen("cmbBoxPic"), path("a-red").toStdString());
    expectSaved();
    EXPECT_EQ(readFile(USER_FILE), "");
    expectChangesTold({});
}

TEST_F(ScreenSaverPage, OpensWithThePictureBeforeTheFilesAreListed)
{
    dlgScreenSaver made(nullptr, nullptr);
    made.show();
    page = &made;
    EXPECT_EQ(pictures()->count(), 1);
    EXPECT_EQ(pictures()->itemText(0), "b-green.png");
    EXPECT_EQ(shown(), QColor(Qt::green));
    kit::settle();
    EXPECT_EQ(pictures()->count(), 3);
}

TEST_F(ScreenSaverPage, OfANewPhoneThatPictureIsTheFactorys)
{
    writeFile(USER_FILE, "");
    dlgScreenSaver made(nullptr, nullptr);
    made.show();
    page = &made;
    EXPECT_EQ(pictures()->itemText(0), "wallpaper.jpg");
    EXPECT_EQ(preview()->pixmap().size(), QSize(300, 180)) << "there at once";
}

TEST_F(ScreenSaverPage, OpensWithoutAPictureThatTheCheckRefuses)
{
    QImage wide(1921, 100, QImage::Format_RGB32);
    wide.fill(Qt::red);
    ASSERT_TRUE(wide.save(hostPath("/rundata/media/wallpaper/wide.jpg")));
    store("120", "1", "600", "/rundata/media/wallpaper/wide.jpg");
    dlgScreenSaver made(nullptr, nullptr);
    made.show();
    page = &made;
    EXPECT_FALSE(shown().isValid());
}

TEST_F(ScreenSaverPage, AStoredPictureThatComesLateDoesNotCoverAnotherChoice)
{
    writeFile(path("b-green"), kit::pngOfOneColour({4000, 3000}));
    {
        const kit::HeldPictures pictures;
        openPage();
        choose("cmbBoxPic", path("c-blue"));
    }
    EXPECT_NE(shown(), QColor(Qt::black));
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::blue));
}

TEST_F(ScreenSaverPage, AnotherPictureIsPreviewedAMomentLater)
{
    openPage();
    kit::stepTime(200);
    ASSERT_EQ(shown(), QColor(Qt::green));
    pictures()->setFocus();
    kit::key(Qt::Key_Right);
    kit::stepTime(190);
    EXPECT_NE(shown(), QColor(Qt::blue));
    kit::stepTime(10);
    EXPECT_EQ(shown(), QColor(Qt::blue));
}

TEST_F(ScreenSaverPage, AHighlightedRowIsPreviewedAndWithoutAChoiceTheCurrentOneComesBack)
{
    openPage();
    kit::stepTime(200);
    pictures()->setFocus();
    kit::key(Qt::Key_Return);
    ASSERT_TRUE(pictures()->view()->isVisible());
    kit::key(Qt::Key_Down);
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::blue));
    kit::key(Qt::Key_Escape);
    EXPECT_FALSE(pictures()->view()->isVisible());
    EXPECT_EQ(pictures()->currentIndex(), 1);
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::green));
}

TEST_F(ScreenSaverPage, ATouchedRowIsPreviewedAndASecondTouchTakesIt)
{
    openPage();
    kit::stepTime(200);
    kit::tap(pictures());
    QAbstractItemView* rows = pictures()->view();
    ASSERT_TRUE(rows->isVisible());
    const QModelIndex red = rows->model()->index(0, 0);
    const QPoint at = rows->viewport()->mapToGlobal(rows->visualRect(red).center());
    kit::tap(at);
    EXPECT_TRUE(rows->isVisible());
    kit::stepTime(1000);
    EXPECT_EQ(shown(), QColor(Qt::red));
    kit::tap(at);
    EXPECT_FALSE(rows->isVisible());
    EXPECT_EQ(pictures()->currentIndex(), 0);
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::red));
}

TEST_F(ScreenSaverPage, BackRestoresThePictureAndStoresNothing)
{
    openPage();
    pictures()->setFocus();
    kit::key(Qt::Key_Right);
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::blue));
    const QByteArray before = readFile(USER_FILE);
    back();
    EXPECT_FALSE(page->isVisible());
    kit::stepTime(200);
    kit::waitUntil([] { return picturePending() == 0; });
    EXPECT_EQ(preview()->pixmap().toImage().pixelColor(5, 5), QColor(Qt::green));
    EXPECT_EQ(readFile(USER_FILE), before);
    expectChangesTold({});
    openPage();
    EXPECT_EQ(pictures()->currentIndex(), 1);
}

TEST_F(ScreenSaverPage, BackAfterASaveRestoresWhatWasSaved)
{
    openPage();
    choose("cmbBoxPic", path("c-blue"));
    expectSaved();
    openPage();
    choose("cmbBoxPic", path("a-red"));
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::red));
    back();
    kit::stepTime(200);
    kit::waitUntil([] { return picturePending() == 0; });
    EXPECT_EQ(preview()->pixmap().toImage().pixelColor(5, 5), QColor(Qt::blue));
}

TEST_F(ScreenSaverPage, SaveStoresAllAndTellsOnce)
{
    openPage();
    choose("cmbBoxScreenSaver", "30");
    choose("cmbBoxScreenType", "0");
    choose("cmbBoxSleep", "1800");
    choose("cmbBoxPic", path("c-blue"));
    expectSaved();
    expectStored(USER_FILE, "ScreenSaver", "nTimeout", "30");
    expectStored(USER_FILE, "ScreenSaver", "eType", "0");
    expectStored(USER_FILE, "Sleep", "nTimeout", "1800");
    expectStored(USER_FILE, "Theme", "strWallpaper", path("c-blue"));
    expectChangesTold({"17 0"});
}

TEST_F(ScreenSaverPage, TheHomeScreenTakesTheWallpaperBeforeAnybodyIsTold)
{
    openPage();
    choose("cmbBoxPic", path("c-blue"));
    const qsizetype before = broadcasts();
    s_nBroadcastsAtWallpaper = -1;
    expectSaved();
    EXPECT_EQ(s_nBroadcastsAtWallpaper, before);
    EXPECT_EQ(broadcasts(), before + 1);
}

TEST_F(ScreenSaverPage, AnUnchangedSaveTellsNobody)
{
    openPage();
    expectSaved();
    expectChangesTold({});
}

TEST_F(ScreenSaverPage, ASaveThatChangesTheTimeAloneTellsToo)
{
    openPage();
    choose("cmbBoxSleep", "60");
    expectSaved();
    expectChangesTold({"17 0"});
}

TEST_F(ScreenSaverPage, TheNewWallpaperIsOnTheHomeScreen)
{
    frmDesktop* home = frmDesktop::GetInstance();
    home->show();
    kit::settle();
    const auto homeIs = [&](Qt::GlobalColor colour) {
        return kit::waitUntil([&] { return home->grab().toImage().pixelColor(600, 110) == QColor(colour); });
    };
    EXPECT_TRUE(homeIs(Qt::green));
    openPage();
    choose("cmbBoxPic", path("a-red"));
    expectSaved();
    EXPECT_TRUE(homeIs(Qt::red));
}

// What is in the memory is answered for a moment whatever becomes of the file.
TEST_F(ScreenSaverPage, TheNewWallpaperIsHeldReadyAndTheOldOneIsForgotten)
{
    openPage();
    choose("cmbBoxPic", path("a-red"));
    ASSERT_EQ(GetImageManager()->AddNode(path("b-green"), 1), 1);
    expectSaved();
    QFile::remove(hostPath(path("a-red")));
    QFile::remove(hostPath(path("b-green")));
    EXPECT_FALSE(GetImageManager()->GetImage(path("a-red")).isNull());
    EXPECT_TRUE(GetImageManager()->GetImage(path("b-green")).isNull());
}

TEST_F(ScreenSaverPage, AFullDiskIsToldAndKeepsWhatWasChosen)
{
    openPage();
    choose("cmbBoxPic", path("c-blue"));
    choose("cmbBoxScreenSaver", "600");
    expectFullDiskTold();
    expectChangesTold({});
    EXPECT_EQ(chosen("cmbBoxPic"), path("c-blue").toStdString());
    EXPECT_EQ(chosen("cmbBoxScreenSaver"), "600");
    expectSaved();
    expectChangesTold({"17 0"});
}

TEST_F(ScreenSaverPage, WithoutSignageTheSaverHasItsRows)
{
    openPage();
    for (const char* name : {"labScreenSaver", "labScreeType", "cmbBoxScreenType", "cmbBoxScreenSaver"})
        EXPECT_TRUE(isOnView(name)) << name;
    EXPECT_EQ(child<QLabel>("labSleep")->pos(), QPoint(190, 230));
    EXPECT_EQ(child<QComboBox>("cmbBoxSleep")->pos(), QPoint(190, 260));
    EXPECT_EQ(child<QLabel>("labWallpaper")->pos(), QPoint(190, 310));
    EXPECT_EQ(pictures()->pos(), QPoint(190, 340));
}

TEST_F(ScreenSaverPage, WithSignageTheSaversRowsAreGoneAndKeepWhatIsStored)
{
    s_bSignage = 1;
    openPage();
    for (const char* name : {"labScreenSaver", "labScreeType", "cmbBoxScreenType", "cmbBoxScreenSaver"})
        EXPECT_FALSE(isOnView(name)) << name;
    EXPECT_EQ(child<QLabel>("labSleep")->pos(), QPoint(190, 70));
    EXPECT_EQ(child<QComboBox>("cmbBoxSleep")->pos(), QPoint(190, 100));
    EXPECT_EQ(child<QLabel>("labWallpaper")->pos(), QPoint(190, 150));
    EXPECT_EQ(pictures()->pos(), QPoint(190, 180));
    EXPECT_EQ(focusName(), "cmbBoxSleep");
    kit::stepTime(200);
    kit::shot("screensaver-page-signage");
    choose("cmbBoxSleep", "60");
    expectSaved();
    expectStored(USER_FILE, "ScreenSaver", "nTimeout", "120");
    expectStored(USER_FILE, "ScreenSaver", "eType", "1");
    s_bSignage = 0;
    openPage();
    EXPECT_TRUE(isOnView("cmbBoxScreenSaver"));
    EXPECT_EQ(pictures()->pos(), QPoint(190, 340));
    EXPECT_EQ(focusName(), "cmbBoxScreenSaver");
}

TEST_F(ScreenSaverPage, TheManagerIsOpenedAndTheChosenPictureIsChosenAfterIt)
{
    openPage();
    EXPECT_EQ(getScreenSaverDlg(), page);
    choose("cmbBoxPic", path("c-blue"));
    askForManager();
    EXPECT_FALSE(traces().filter("settingOpenPage(Wallpaper Manager)").isEmpty());
    QFile::remove(hostPath(path("a-red")));
    roomHooks().reloadWallPaper();
    EXPECT_EQ(pictures()->count(), 2);
    EXPECT_EQ(chosen("cmbBoxPic"), path("c-blue").toStdString());
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::blue));
    // The row of what is stored has moved.
    back();
    kit::stepTime(200);
    kit::waitUntil([] { return picturePending() == 0; });
    EXPECT_EQ(preview()->pixmap().toImage().pixelColor(5, 5), QColor(Qt::green));
}

TEST_F(ScreenSaverPage, AWallpaperThatWasDeletedGivesWayToTheFirst)
{
    openPage();
    GetImageManager()->AddNode(path("b-green"), 1);
    askForManager();
    QFile::remove(hostPath(path("b-green")));
    store("120", "1", "600", path("c-blue")); // as the manager does
    roomHooks().reloadWallPaper();
    EXPECT_TRUE(GetImageManager()->GetImage(path("b-green")).isNull()) << "forgotten";
    QFile::remove(hostPath(path("c-blue")));
    EXPECT_FALSE(GetImageManager()->GetImage(path("c-blue")).isNull()) << "held ready";
    EXPECT_EQ(chosen("cmbBoxPic"), path("a-red").toStdString());
    kit::stepTime(200);
    EXPECT_EQ(shown(), QColor(Qt::red));
    EXPECT_TRUE(traces().contains("---------------After delete, New "
                                  "wallPaper:[/rundata/media/wallpaper/c-blue.png]----------------------"));
    back();
    EXPECT_FALSE(page->isVisible());
    kit::stepTime(200);
    kit::waitUntil([] { return picturePending() == 0; });
    EXPECT_EQ(preview()->pixmap().toImage().pixelColor(5, 5), QColor(Qt::red))
        << "the first is the saved one";
}

TEST_F(ScreenSaverPage, AfterADeletedWallpaperBackRestoresTheFirst)
{
    openPage();
    askForManager();
    QFile::remove(hostPath(path("b-green")));
    roomHooks().reloadWallPaper();
    choose("cmbBoxPic", path("c-blue"));
    kit::stepTime(200);
    ASSERT_EQ(shown(), QColor(Qt::blue));
    back();
    kit::stepTime(200);
    EXPECT_EQ(preview()->pixmap().toImage().pixelColor(5, 5), QColor(Qt::red));
}

TEST_F(ScreenSaverPage, AManagerThatWasNotOpenedFromHereChangesNoChoice)
{
    EXPECT_EQ(getScreenSaverDlg(), nullptr);
    roomHooks().reloadWallPaper();
    openPage();
    back();
    paint("d-cyan", Qt::cyan);
    roomHooks().reloadWallPaper();
    EXPECT_EQ(pictures()->count(), 4);
    EXPECT_EQ(chosen("cmbBoxPic"), path("b-green").toStdString());
    EXPECT_TRUE(traces().filter("After delete").isEmpty());
}

TEST_F(ScreenSaverPage, ADamagedWallpaperSaysSoInThePreview)
{
    writeFile(path("c-blue"), "no picture");
    openPage();
    choose("cmbBoxPic", path("c-blue"));
    kit::stepTime(200);
    kit::waitUntil([] { return picturePending() == 0; });
    EXPECT_EQ(preview()->text(), "Image is error!");
    kit::shot("screensaver-page-damaged");
}

} // namespace
