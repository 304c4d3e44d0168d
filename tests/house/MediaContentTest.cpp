// What the phone brings along to look at and to listen to.
#include "support/file/deviceRoot.h"
#include "support/file/findFile.h"
#include "support/xml/xmlFile.h"
#include "tests/house/sourceTree.h"
#include "tests/kit/contrast.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

const QString kWallpapers = "/phone/resource/sysdata/wallpaper";
const QString kPhotos = "/phone/resource/sysdata/ephoto";
const QString kRings = "/phone/resource/sysdata/ring";
const QString kContacts = "/phone/resource/contact-image";
const char* const kMediaTable = "/phone/resource/mediafile.xml";
const char* const kShowTable = "/phone/resource/screenview.xml";
const QSize kScreen(800, 480);

QStringList filesIn(const QString& folder, const QString& filter)
{
    return QDir(imagePath(folder)).entryList(filter.split(';'), QDir::Files, QDir::Name);
}

// The lowest of the place, without the one pixel in fifty that a star or a spark is.
double contrastIn(const QImage& picture, const QRect& place, double veil)
{
    QList<double> all;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const QColor own = picture.pixelColor(x, y);
            const auto under = [veil](int value) { return int(value + (255 - value) * veil); };
            all.append(kit::contrastOfWhite(QColor(under(own.red()), under(own.green()), under(own.blue()))));
        }
    }
    std::sort(all.begin(), all.end());
    return all[all.size() / 50];
}

struct Ring
{
    int channels = 0, rate = 0, bits = 0;
    QList<double> samples; // -1 to 1
    double loudest(double from, double to) const
    {
        double most = 0;
        for (qsizetype i = qsizetype(from * rate); i < qMin(qsizetype(to * rate), samples.size()); ++i)
            most = qMax(most, std::fabs(samples[i]));
        return most;
    }
    double seconds() const { return double(samples.size()) / rate; }
};

Ring ringOf(const QString& name)
{
    QFile file(imagePath(kRings + "/" + name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const auto shortAt = [&bytes](qsizetype at) { return qFromLittleEndian<qint16>(bytes.constData() + at); };
    Ring ring;
    ring.channels = shortAt(22);
    ring.rate = qFromLittleEndian<qint32>(bytes.constData() + 24);
    ring.bits = shortAt(34);
    for (qsizetype at = 44; at + 1 < bytes.size(); at += 2)
        ring.samples.append(shortAt(at) / 32768.0);
    return ring;
}

// The phone's own paths lead into the image, wherever that lies: below /tmp others may write.
class ImageRoot
{
public:
    ImageRoot() { deviceSetRoot(imagePath("").toUtf8().constData()); }
    ~ImageRoot() { deviceSetRoot(""); }
};

QStringList foldersOf(const char* type, bool isReadOnly)
{
    const ImageRoot root;
    xmlFile table(kMediaTable);
    QStringList folders;
    xmlElement* list = xmlFindElementByName(&table, type);
    EXPECT_NE(list, nullptr) << type;
    xmlElement* item = list ? xmlFindElementFromRoot(list, "filelist", "item") : nullptr;
    for (; item; item = xmlGetNextElement(item)) {
        if ((QByteArray(item->GetAttributeValue("bReadOnly").GetString().GetText()) == "1") == isReadOnly)
            folders.append(item->GetAttributeValue("path").GetString().GetText());
    }
    return folders;
}

QString filterOf(const char* type)
{
    const ImageRoot root;
    xmlFile table(kMediaTable);
    xmlElement* list = xmlFindElementByName(&table, type);
    return list ? list->GetAttributeValue("filter").GetString().GetText() : QString();
}

} // namespace

TEST(MediaContent, ThereAreSixWallpapersOfTheScreensSize)
{
    const QStringList files = filesIn(kWallpapers, "*");
    EXPECT_EQ(files.join(' ').toStdString(),
              "Aurora.jpg Meadow.jpg Silk.jpg Sunset.jpg Twilight.jpg wallpaper.jpg");
    for (const QString& file : files)
        EXPECT_EQ(QImage(imagePath(kWallpapers + "/" + file)).size(), kScreen) << qPrintable(file);
}

// The places are those of the home screen: clock, captions, and the names on the bright veil of the keys.
TEST(MediaContent, WhiteTextIsLegibleOnEveryWallpaper)
{
    constexpr double kLarge = 3, kSmall = 4.5, kKeys = 0.15;
    for (const QString& file : filesIn(kWallpapers, "*")) {
        const QImage picture(imagePath(kWallpapers + "/" + file));
        EXPECT_GE(contrastIn(picture, QRect(40, 84, 400, 74), 0), kLarge) << qPrintable(file);
        EXPECT_GE(contrastIn(picture, QRect(40, 166, 400, 30), 0), kSmall) << qPrintable(file);
        for (int column = 0; column < 6; ++column) {
            EXPECT_GE(contrastIn(picture, QRect(18 + 128 * column, 322, 124, 26), 0), kSmall)
                << qPrintable(file) << " caption " << column;
            EXPECT_GE(contrastIn(picture, QRect(28 + 128 * column, 424, 104, 24), kKeys), kSmall)
                << qPrintable(file) << " key " << column;
        }
    }
}

TEST(MediaContent, NoTwoPicturesAreAlike)
{
    QMap<QByteArray, QString> looks;
    for (const QString& folder : {kWallpapers, kPhotos, kContacts}) {
        for (const QString& file : filesIn(folder, "*")) {
            const QImage small = QImage(imagePath(folder + "/" + file))
                                     .scaled(8, 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QByteArray look(reinterpret_cast<const char*>(small.constBits()), small.sizeInBytes());
            EXPECT_FALSE(looks.contains(look)) << qPrintable(file) << " is " << qPrintable(looks.value(look));
            looks[look] = file;
        }
    }
    EXPECT_GE(looks.size(), 6 + 6 + 8);
}

TEST(MediaContent, StockPicturesFillTheScreenAndContactPicturesTheirPlace)
{
    const QStringList photos = filesIn(kPhotos, "*");
    EXPECT_GE(photos.size(), 6);
    for (const QString& file : photos)
        EXPECT_EQ(QImage(imagePath(kPhotos + "/" + file)).size(), kScreen) << qPrintable(file);
    const QStringList contacts = filesIn(kContacts, "*");
    EXPECT_GE(contacts.size(), 8);
    for (const QString& file : contacts)
        EXPECT_EQ(QImage(imagePath(kContacts + "/" + file)).size(), QSize(126, 126)) << qPrintable(file);
}

TEST(MediaContent, EightRingTonesSoundClearAndCanBeRepeated)
{
    const QStringList files = filesIn(kRings, "*");
    EXPECT_EQ(files.join(' ').toStdString(),
              "Breeze.wav Celesta.wav Chime.wav Classic.wav Harp.wav Marimba.wav "
              "Pulse.wav Sunrise.wav");
    for (const QString& file : files) {
        const Ring ring = ringOf(file);
        EXPECT_EQ(ring.channels, 1) << qPrintable(file);
        EXPECT_EQ(ring.bits, 16) << qPrintable(file);
        EXPECT_GE(ring.seconds(), 2.5) << qPrintable(file);
        EXPECT_LE(ring.seconds(), 5) << qPrintable(file);
        const double most = ring.loudest(0, ring.seconds());
        EXPECT_GT(most, 0.7) << qPrintable(file);
        EXPECT_LT(most, 0.95) << qPrintable(file) << " is cut off";
        EXPECT_GT(ring.loudest(0, 0.2), 0.1) << qPrintable(file) << " begins at once";
        EXPECT_LT(std::fabs(ring.samples.first()), 0.02) << qPrintable(file) << " begins with a click";
        EXPECT_LT(ring.loudest(ring.seconds() - 0.01, ring.seconds()), 0.03)
            << qPrintable(file) << " ends with one";
    }
}

TEST(MediaContent, EveryTypeOfTheMediaTableHasAFolderOfTheUsersAndWhatThePhoneBrings)
{
    const char* const types[] = {"image", "video", "sound", "wallpaper", "contact-image", "ephoto", "ad"};
    for (const char* type : types) {
        const QStringList own = foldersOf(type, false);
        ASSERT_EQ(own.size(), 1) << type;
        const QFileInfo folder(imagePath(own.first()));
        EXPECT_TRUE(folder.isDir()) << qPrintable(own.first());
        EXPECT_EQ(int(folder.permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther)), 0)
            << type;
        EXPECT_TRUE(folder.isWritable()) << type;
        EXPECT_TRUE(QDir(imagePath("/phone/factory" + own.first())).exists()) << type;
    }
    for (const char* type : {"sound", "wallpaper", "contact-image", "ephoto", "ad"}) {
        ASSERT_EQ(foldersOf(type, true).size(), 1) << type;
        const QString folder = foldersOf(type, true).first();
        EXPECT_FALSE(filesIn(folder, filterOf(type)).isEmpty()) << type;
        EXPECT_EQ(filesIn(folder, filterOf(type)), filesIn(folder, "*")) << type << " leaves none out";
    }
}

TEST(MediaContent, ShowsPlayWhatTheUserHasAndWhatThePhoneBrings)
{
    const ImageRoot root;
    xmlFile table(kShowTable);
    const std::pair<const char*, const char*> shows[] = {{"ImageView", "ephoto"}, {"VideoView", "ad"}};
    for (const auto& [show, type] : shows) {
        QStringList played;
        xmlElement* item =
            xmlFindElementFromRoot(xmlFindElementFromRoot(&table, show), "storage", "device", "file", "item");
        for (; item; item = xmlGetNextElement(item))
            played.append(item->GetAttributeValue("path").GetString().GetText());
        EXPECT_EQ(played, foldersOf(type, false) + foldersOf(type, true)) << show;
    }
}

TEST(MediaContent, ThePicturesAreTheSameWheneverTheyArePainted)
{
    const QTemporaryDir again;
    const std::pair<const char*, QString> kinds[] = {{"wallpapers", kWallpapers}, {"photos", kPhotos}};
    for (const auto& [kind, folder] : kinds) {
        ASSERT_EQ(QProcess::execute(kit::program("hxSceneRender"), {kind, again.path()}), 0);
        for (const QString& name : QDir(again.path()).entryList(QDir::Files)) {
            QFile painted(again.filePath(name)), shipped(imagePath(folder + "/" + name));
            ASSERT_TRUE(painted.open(QIODevice::ReadOnly) && shipped.open(QIODevice::ReadOnly))
                << qPrintable(name);
            EXPECT_EQ(painted.readAll(), shipped.readAll()) << qPrintable(name);
            painted.remove();
        }
    }
}
