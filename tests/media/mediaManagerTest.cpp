#include "tests/media/mediaManagerTest.h"
#include "host/services/players/speaker.h"
#include "host/services/system/hostLog.h"
#include "media/mediaShows.h"
#include "media/soundPreview.h"
#include "support/host/image.h"
#include "support/host/phone.h"
#include "support/host/picture.h"
#include "tests/kit/heldPictures.h"
#include "tests/kit/plain/pictureFiles.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <malloc.h>

namespace {

class MediaManager : public MediaManagerTest
{
protected:
    ~MediaManager() override
    {
        Stop_ImageView();
        Stop_VideoView();
    }
    QString title() { return page->findChild<qTopBar*>()->title(); }
    QLabel* facts() { return child<QLabel>("labImageFacts"); }
    qLeftBar* leftBar() { return page->findChild<qLeftBar*>(); }
    static QString top()
    {
        return kit::windows().isEmpty() ? QString() : kit::windows().first()->objectName();
    }
    static bool arePicturesRead()
    {
        return kit::waitUntil([] { return picturePending() == 0; }, 60000);
    }
};

TEST_F(MediaManager, ListsTheFilesOfEachFolderOfItsTypeByName)
{
    putTable("ephoto", "*.jpg;*.png",
             "<item path=\"/rundata/b\" shortname=\"Stock/\" bReadOnly=\"1\"/>"
             "<item path=\"/rundata/a\" shortname=\"\" bReadOnly=\"0\"/><other path=\"/rundata/c\"/>");
    for (const char* file : {"/rundata/b/2.png", "/rundata/b/1.jpg", "/rundata/a/3.PNG", "/rundata/a/no.txt",
                             "/rundata/a/below/4.png", "/rundata/c/5.jpg"})
        putPicture(file);
    open("Photo Manager");
    EXPECT_EQ(names(), QStringList({"Stock/1.jpg", "Stock/2.png", "3.PNG", "5.jpg"}));
    const QVariant path = list()->item(1, 0)->data(Qt::UserRole);
    EXPECT_EQ(path.metaType(), QMetaType::fromName("chStringA"));
    EXPECT_STREQ(path.value<chString>(), "/rundata/b/2.png");
    QList<QVariant> readOnly;
    for (int row = 0; row < 4; ++row)
        readOnly.append(list()->item(row, 1)->data(Qt::UserRole));
    EXPECT_EQ(readOnly, QList<QVariant>({true, true, false, false}));
}

TEST_F(MediaManager, ItsListLooksAsItsTypeIsToLook)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    EXPECT_TRUE(list()->horizontalHeader()->isHidden());
    EXPECT_TRUE(list()->verticalHeader()->isHidden());
    EXPECT_EQ(list()->selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(list()->selectionBehavior(), QAbstractItemView::SelectRows);
    EXPECT_EQ(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    EXPECT_FALSE(list()->showGrid());
    EXPECT_TRUE(list()->hasAutoScroll());
    EXPECT_EQ(list()->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list()->columnCount(), 2);
    EXPECT_EQ(list()->columnWidth(0), list()->width() - 40);
    EXPECT_EQ(list()->columnWidth(1), 40);
    EXPECT_EQ(list()->rowHeight(0), 40);
    EXPECT_EQ(list()->iconSize(), QSize(32, 32));
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_EQ(list()->palette().color(group, QPalette::Text), QColor(51, 59, 62));
        EXPECT_EQ(list()->palette().color(group, QPalette::Highlight), QColor(201, 222, 241));
        EXPECT_EQ(list()->palette().color(group, QPalette::Base).alpha(), 0);
    }
}

TEST_F(MediaManager, EveryTypeHasItsTitleIconKeysAndPlaceForThePreview)
{
    const QString icons = "/phone/resource/theme/default/bmp/menu/";
    const QRect wide(QPoint(495, 150), QPoint(794, 329));
    const struct
    {
        const char* page;
        const char* title;
        const char* icon;
        const char* keys;
        QRect preview;
    } types[] = {
        {"Photo Manager", "Photo Manager", "menu_photomanage.png", "Preview|Delete|USB|Back", wide},
        {"Contact Picture Manage", "Contact Picture Manage", "menu_contactimage.png", "|Delete|USB|Back",
         QRect(QPoint(585, 150), QPoint(710, 275))},
        {"Wallpaper Manager", "Wallpaper Manager", "menu_screensaver.png", "Preview|Delete|USB|Back", wide},
        {"Sound Manager", "Ringtone Manager", "menu_soundset.png", "|Delete|USB|Back", QRect()},
        {"Video Manager", "Video Manager", "menu_videomanage.png", "Preview|Delete|USB|Back", QRect()},
    };
    putPhotos({"a.png"});
    writeFile("/rundata/media/video/a.mp4", "film");
    for (const auto& type : types) {
        SCOPED_TRACE(type.page);
        open(type.page);
        EXPECT_EQ(title(), type.title);
        EXPECT_EQ(leftBar()->title(), type.title);
        EXPECT_EQ(leftBar()->icon(), icons + type.icon);
        EXPECT_EQ(softKeys(), type.keys);
        kit::stepTime(600);
        EXPECT_TRUE(arePicturesRead());
        EXPECT_EQ(label()->isVisible(), !type.preview.isNull());
        EXPECT_EQ(list()->geometry().intersects(wide), type.preview.isNull()) << "the room of the preview";
        EXPECT_EQ(list()->columnWidth(0), list()->width() - 40);
        if (!type.preview.isNull()) {
            EXPECT_EQ(label()->geometry(), type.preview);
        }
        kit::shot(QString("mediaManager-%1").arg(type.page));
        softKey(3);
        EXPECT_FALSE(page->isVisible());
    }
}

TEST_F(MediaManager, OtherPicturesShowWhereTheFormHasThemAndLeaveTheKeyOfThePreview)
{
    putTable("picture-dial", "*.png", "<item path=\"/rundata/media/dial\" shortname=\"\"/>");
    putPicture("/rundata/media/dial/a.png");
    open("Contact Picture Manage");
    EXPECT_EQ(manager()->LoadImageMedia("picture-dial"), 1);
    EXPECT_EQ(names(), QStringList({"a.png"}));
    EXPECT_EQ(label()->geometry(), QRect(495, 150, 300, 180));
    EXPECT_EQ(softKeys(), "|Delete|USB|Back");
    manager()->LoadVideoMedia("ad");
    manager()->LoadImageMedia("picture-dial");
    EXPECT_EQ(softKeys(), "Preview|Delete|USB|Back");
}

TEST_F(MediaManager, ATypeThatTheTableDoesNotHaveIsAnEmptyList)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    for (const char* type : {"none", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(manager()->LoadImageMedia("ephoto"), 1);
        EXPECT_EQ(names(), QStringList({"a.png"}));
        EXPECT_EQ(manager()->LoadImageMedia(type), 1);
        EXPECT_EQ(list()->rowCount(), 0);
        EXPECT_EQ(softKeyTitle(1), "");
        EXPECT_STREQ(manager()->getCurrentMediaFullPath(), "");
        EXPECT_TRUE(manager()->getCurrentMediaReadOnly());
    }
    writeFile("/phone/resource/mediafile.xml", "<MediaFile><ephoto");
    EXPECT_EQ(manager()->LoadImageMedia("ephoto"), 1);
    EXPECT_EQ(list()->rowCount(), 0);
}

TEST_F(MediaManager, TheFirstRowIsTheCurrentOneAndIsPreviewedAfterHalfASecond)
{
    putPhotos({"a.png", "b.png"});
    open("Photo Manager");
    EXPECT_EQ(row(), 0);
    EXPECT_TRUE(list()->item(0, 0)->isSelected());
    EXPECT_EQ(playing(), QList<int>({0}));
    EXPECT_STREQ(manager()->getCurrentMediaFullPath(), "/rundata/media/image/a.png");
    EXPECT_FALSE(manager()->getCurrentMediaReadOnly());
    kit::stepTime(499);
    EXPECT_TRUE(label()->isHidden());
    kit::stepTime(1);
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(MediaManager, AnotherRowTakesTheIconAlongAndIsPreviewedAnew)
{
    putPicture("/rundata/media/image/a.png", 0xffc04020);
    putPicture("/rundata/media/image/b.png", 0xff20c040);
    open("Photo Manager");
    kit::stepTime(500);
    EXPECT_EQ(label()->grab().toImage().pixel(150, 90), 0xffc04020);
    tapRow(1);
    EXPECT_EQ(row(), 1);
    EXPECT_EQ(playing(), QList<int>({1}));
    EXPECT_TRUE(label()->isHidden());
    kit::stepTime(500);
    EXPECT_TRUE(label()->isVisible());
    EXPECT_EQ(label()->grab().toImage().pixel(150, 90), 0xff20c040);
}

TEST_F(MediaManager, BelowThePreviewStandWhatThePictureMeasuresAndItsBytes)
{
    const QByteArray photo = Pictures::picture("JPG", 400, 200);
    writeFile("/rundata/media/image/a.jpg", photo);
    writeFile("/rundata/media/image/b.png", "no picture");
    open("Photo Manager");
    EXPECT_TRUE(facts()->isHidden());
    kit::stepTime(500);
    EXPECT_TRUE(arePicturesRead());
    EXPECT_EQ(facts()->text(),
              QString::fromUtf8("400 x 200 \u00b7 %1 kB").arg(qRound(double(photo.size()) / 1000)));
    EXPECT_TRUE(facts()->isVisible());
    EXPECT_EQ(facts()->geometry().center().x(), label()->geometry().center().x());
    EXPECT_GT(facts()->y(), label()->geometry().bottom());
    tapRow(1);
    EXPECT_TRUE(facts()->isHidden());
    kit::stepTime(500);
    EXPECT_TRUE(arePicturesRead());
    EXPECT_TRUE(label()->isVisible());
    EXPECT_TRUE(facts()->isHidden()) << "of what is refused nothing is told";
}

TEST_F(MediaManager, AStepWithinTheRowStaysOnItsPreview)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    kit::stepTime(500);
    kit::key(Qt::Key_Right);
    EXPECT_EQ(list()->currentColumn(), 1);
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(MediaManager, UpAndDownGoRoundAtTheEndsOnly)
{
    putPhotos({"a.png", "b.png", "c.png"});
    open("Photo Manager");
    EXPECT_TRUE(list()->hasFocus());
    QList<int> rows;
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}) {
        kit::key(key);
        rows.append(row());
    }
    EXPECT_EQ(rows, QList<int>({2, 1, 2, 0, 1}));
}

TEST_F(MediaManager, OneRowStaysWhateverKeyComes)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    kit::stepTime(500);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down}) {
        kit::key(key);
        EXPECT_EQ(row(), 0);
        EXPECT_TRUE(label()->isVisible());
    }
}

TEST_F(MediaManager, OkAndTheKeyPreviewShowThePictureOverTheWholeScreen)
{
    putPicture("/rundata/media/image/a.png", 0xffc04020);
    putPicture("/rundata/media/image/b.png", 0xff20c040);
    open("Photo Manager");
    softKey(0);
    ASSERT_EQ(top(), "dlgImagePreview") << "the first row, before its time";
    EXPECT_EQ(kit::screen().pixel(5, 5), 0xffc04020);
    kit::key(Qt::Key_F4);
    ASSERT_EQ(top(), "dlgMediaManager");
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    ASSERT_EQ(top(), "dlgImagePreview");
    EXPECT_EQ(kit::screen().pixel(5, 5), 0xff20c040);
}

// The preview was stopped, and no other row became the current one.
TEST_F(MediaManager, TheKeyPreviewBeginsThatOfTheFirstRowAnew)
{
    putPhotos({"a.png", "b.png"});
    open("Photo Manager");
    page->hide();
    page->show();
    kit::stepTime(1000);
    EXPECT_TRUE(label()->isHidden());
    softKey(0);
    kit::key(Qt::Key_F4);
    kit::stepTime(500);
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(MediaManager, AKeyThatIsHeldOpensOnePreview)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, QString(), true);
    QCoreApplication::sendEvent(list(), &again);
    EXPECT_EQ(top(), "dlgMediaManager");
}

TEST_F(MediaManager, APictureOnDemandIsNotLostWhenTheLabelsTurnComes)
{
    putPhotos({"a.png"});
    writeFile("/rundata/media/image/b.jpg", kit::jpegPhoto({1920, 1000}));
    open("Photo Manager");
    tapRow(1);
    softKey(0);
    kit::stepTime(600);
    EXPECT_TRUE(arePicturesRead());
    kit::settle();
    EXPECT_EQ(top(), "dlgImagePreview");
}

TEST_F(MediaManager, ASecondDemandTakesThePlaceOfTheFirst)
{
    putPhotos({"a.png"});
    writeFile("/rundata/media/image/b.jpg", kit::jpegPhoto({1920, 1000}));
    open("Photo Manager");
    tapRow(1);
    {
        const kit::HeldPictures pictures;
        softKey(0);
        const int waiting = picturePending();
        softKey(0);
        EXPECT_EQ(picturePending(), waiting) << "it is read once";
    }
    EXPECT_TRUE(arePicturesRead());
    kit::settle();
    EXPECT_EQ(top(), "dlgImagePreview");
}

TEST_F(MediaManager, APictureOnDemandDoesNotOpenWhenItsRowOrThePageIsLeft)
{
    putPhotos({"a.png", "c.png"});
    writeFile("/rundata/media/image/b.jpg", kit::jpegPhoto({1920, 1000}));
    for (const Qt::Key leave : {Qt::Key_Down, Qt::Key_F4}) {
        open("Photo Manager");
        tapRow(1);
        softKey(0);
        kit::key(leave);
        EXPECT_TRUE(arePicturesRead());
        kit::settle();
        EXPECT_NE(top(), "dlgImagePreview") << leave;
    }
}

TEST_F(MediaManager, PreviewWithoutAFileSaysSoForThreeSeconds)
{
    open("Photo Manager");
    EXPECT_EQ(softKeys(), "Preview||USB|Back");
    QString title;
    QString text;
    bool isOpen = false;
    whenBoxIsUp([&](QDialog* box) {
        title = box->findChild<QLabel*>("labTitle")->text();
        text = box->findChild<QLabel*>("labText")->text();
        kit::stepTime(2990);
        isOpen = box->isVisible();
        kit::stepTime(10);
    });
    softKey(0);
    EXPECT_TRUE(isOpen);
    EXPECT_EQ(title, "Error");
    EXPECT_EQ(text, "No media found in this phone!");
}

TEST_F(MediaManager, AFilmPlaysOnlyWhenItIsAskedFor)
{
    writeFile("/rundata/media/video/a.mp4", "film");
    open("Video Manager");
    EXPECT_EQ(playing(), QList<int>({0}));
    kit::stepTime(2000);
    EXPECT_EQ(top(), "dlgMediaManager");
    EXPECT_TRUE(label()->isHidden());
    kit::key(Qt::Key_Return);
    EXPECT_EQ(top(), "dlgVideoPreview");
    EXPECT_TRUE(traces().contains("----[/rundata/media/video/a.mp4]---"));
}

TEST_F(MediaManager, OkDoesNothingOnPicturesOfContacts)
{
    open("Contact Picture Manage");
    ASSERT_GT(list()->rowCount(), 0);
    kit::key(Qt::Key_Return);
    kit::stepTime(1000);
    EXPECT_TRUE(arePicturesRead());
    kit::settle();
    EXPECT_EQ(top(), "dlgMediaManager");
    EXPECT_TRUE(page->isVisible());
}

class SoundManager : public MediaManager
{
protected:
    SoundManager()
    {
        writeFile("/rundata/config/user/user.ini", "[Volume]\nnRing=35\n");
        putTable("sound", "*.wav", "<item path=\"/rundata/media/ring\" shortname=\"\"/>");
        putRings({"a.wav", "b.wav"});
        open("Sound Manager");
        mark();
    }
    const QString a = "/rundata/media/ring/a.wav 1";
    const QString b = "/rundata/media/ring/b.wav 1";
};

TEST_F(SoundManager, PlaysTheRowAfterASecondAsLoudAsThePhoneRings)
{
    kit::stepTime(999);
    EXPECT_EQ(rings(), QStringList());
    kit::stepTime(1);
    EXPECT_EQ(rings(), QStringList({a}));
    EXPECT_EQ(dev_get_output_volume(), 35);
    mark();
    kit::key(Qt::Key_Down);
    EXPECT_EQ(rings(), QStringList({"stop"}));
    kit::stepTime(1000);
    EXPECT_EQ(rings(), QStringList({"stop", b}));
}

TEST_F(SoundManager, WithoutAStoredVolumeItIsTwenty)
{
    writeFile("/rundata/config/user/user.ini", "");
    open("Sound Manager");
    kit::stepTime(1000);
    EXPECT_EQ(dev_get_output_volume(), 20);
}

TEST_F(SoundManager, IsSilentUnderAnotherWindowAndPlaysOnAfterIt)
{
    kit::key(Qt::Key_Down);
    kit::stepTime(1000);
    mark();
    QWidget other;
    other.resize(800, 480);
    other.show();
    kit::settle();
    EXPECT_EQ(rings(), QStringList({"stop"}));
    kit::stepTime(3000);
    EXPECT_EQ(rings(), QStringList({"stop"}));
    other.hide();
    kit::settle();
    EXPECT_EQ(playing(), QList<int>({1}));
    EXPECT_TRUE(list()->item(1, 0)->isSelected());
    kit::stepTime(1000);
    EXPECT_EQ(rings(), QStringList({"stop", b}));
}

TEST_F(SoundManager, IsSilentWhenThePageGoes)
{
    kit::stepTime(1000);
    mark();
    softKey(3);
    kit::stepTime(3000);
    EXPECT_EQ(rings(), QStringList({"stop"}));
}

TEST_F(SoundManager, OkPlaysAtOnceOnceAndEndsWithThePage)
{
    kit::key(Qt::Key_Return);
    EXPECT_EQ(rings(), QStringList({a}));
    kit::stepTime(3000);
    EXPECT_EQ(rings(), QStringList({a})) << "it begins anew when the delay is over";
    mark();
    kit::key(Qt::Key_Down);
    kit::key(Qt::Key_Return);
    softKey(3);
    EXPECT_EQ(rings(), QStringList({"stop", b, "stop"}));
}

TEST_F(SoundManager, AnotherTypeTakesItsPlaceInSilence)
{
    kit::stepTime(1000);
    mark();
    putPhotos({"a.png"});
    manager()->LoadImageMedia("ephoto");
    EXPECT_EQ(rings().value(0), "stop");
    mark();
    kit::stepTime(3000);
    EXPECT_EQ(rings(), QStringList());
}

TEST_F(MediaManager, ThePreviewOfThePageBeforeDoesNotComeBack)
{
    putPhotos({"a.png"});
    writeFile("/rundata/media/video/a.mp4", "film");
    open("Photo Manager");
    kit::stepTime(500);
    EXPECT_TRUE(label()->isVisible());
    open("Video Manager");
    kit::stepTime(1000);
    EXPECT_TRUE(label()->isHidden());
    EXPECT_EQ(page->findChildren<basePreview*>().size(), 1);
}

TEST_F(MediaManager, ManyOpensLeaveNothing)
{
    putPhotos({"a.png", "b.png"});
    putRings({"a.wav"});
    const auto openAll = [&] {
        for (const char* name :
             {"Photo Manager", "Sound Manager", "Video Manager", "Contact Picture Manage"}) {
            open(name);
            kit::stepTime(1100);
            EXPECT_TRUE(arePicturesRead());
            softKey(3);
        }
    };
    const auto files = [] { return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size(); };
    // The log keeps so much, and no more.
    for (int i = 0; i < 2500; ++i)
        hostLog("fill", QString(80, 'x'));
    for (int warm = 0; warm < 3; ++warm)
        openAll();
    const qsizetype objects = page->findChildren<QObject*>().size();
    const qsizetype open = files();
    const size_t heap = mallinfo2().uordblks;
    for (int i = 0; i < 25; ++i)
        openAll();
    EXPECT_EQ(page->findChildren<QObject*>().size(), objects);
    EXPECT_EQ(files(), open);
    EXPECT_LE(mallinfo2().uordblks, heap + heap / 100);
}

TEST_F(MediaManager, TheTextsFollowTheLanguage)
{
    putPhotos({"a.png"});
    open("Photo Manager");
    ASSERT_EQ(GetLanguageHelper()->SetLanguage("German"), 1);
    kit::settle();
    EXPECT_EQ(softKeys(), "Vorschau|Löschen|USB|Zurück");
    EXPECT_NE(title(), "Photo Manager");
    EXPECT_EQ(leftBar()->title(), title());
    kit::shot("mediaManager-German");
    GetLanguageHelper()->SetLanguage("English");
}

} // namespace
