// Pictures that are large, damaged or meant to hurt, in a show that goes on.
#include "media/PhotoFile.h"
#include "signage/nDeckPicture.h"
#include "support/host/image.h"
#include "support/host/picture.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/signage/displayFixture.h"
#include <QLabel>
#include <ctime>

namespace {

constexpr int kLongMs = 60000; // for a machine under load

double secondsOf(clockid_t clock)
{
    timespec used;
    clock_gettime(clock, &used);
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

class ShowPictures : public DisplayTest
{
protected:
    static QPixmap shown(int index)
    {
        auto* label = qobject_cast<QLabel*>(panels().value(index)->GetContent());
        return label && label->isVisible() ? label->pixmap() : QPixmap();
    }
};

} // namespace

TEST_F(ShowPictures, EightLargeOnesTakeNoneOfThisThreadsTime)
{
    const QByteArray large = kit::pngOfOneColour({6000, 4000});
    QByteArray regions;
    for (int i = 0; i < 8; ++i) {
        const QByteArray name = QByteArray::number(i) + ".png";
        addFile(name.constData(), large);
        regions += region(QRect(100 * i, 0, 100, 480), image(name.constData(), "50"));
    }
    addLayout("a.xml", layout(regions));
    takeUp();
    const double ours = secondsOf(CLOCK_THREAD_CPUTIME_ID), all = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    show();
    const double share =
        (secondsOf(CLOCK_THREAD_CPUTIME_ID) - ours) / (secondsOf(CLOCK_PROCESS_CPUTIME_ID) - all);
    EXPECT_LT(share, 0.4);
    ASSERT_EQ(panels().size(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(shown(i).size(), QSize(100, 480)) << "in the size of its place";
    EXPECT_EQ(pixel(50, 100), qRgb(0, 0, 0));
}

TEST_F(ShowPictures, ThatAreCutShortAreNotShown)
{
    const QList<QPair<const char*, QByteArray>> files = {
        {"a.bmp", picture(Qt::red, "BMP", QSize(300, 200))},
        {"b.png", picture(Qt::red, "PNG", QSize(300, 200))},
        {"c.jpg", picture(Qt::red, "JPG", QSize(300, 200))},
        {"d.gif", kit::gifOfScreen({1, 1})},
    };
    const QByteArray end = QByteArray::fromHex("ffd9"); // the check of a JPEG asks for no more
    QByteArray regions;
    for (const auto& [name, bytes] : files) {
        addFile(name, bytes.left(bytes.size() / 2) + (QByteArray(name).endsWith("jpg") ? end : ""));
        regions += region(QRect(0, 0, 300, 200), image(name, "50"));
    }
    addLayout("a.xml", layout(regions));
    takeUp();
    show();
    ASSERT_EQ(panels().size(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(shown(i).isNull()) << files[i].first;
        frame().SetBackgroundImage(files[i].first, true);
        picturesCome();
        const QImage general(hostPath("/phone/resource/theme/default/bmp/general/gen_bg.jpg"));
        EXPECT_EQ(pixel(300, 240), general.pixel(300, 240)) << files[i].first;
    }
    EXPECT_TRUE(PhotoFile().IsOk("/rundata/nDeck/a.bmp", IMAGE_SIZE_LIMIT)) << "the check is another matter";
}

// The window of the show has the general background itself; one of the host's has not.
TEST_F(ShowPictures, TheGeneralBackgroundTakesThePlaceOfOneThatIsCutShort)
{
    const QByteArray whole = picture(Qt::red, "BMP", QSize(300, 200));
    addFile("a.bmp", whole.left(whole.size() / 2));
    addLayout("a.xml", layout("", "background=\"a.bmp\""));
    takeUp();
    QWidget home;
    home.resize(800, 480);
    home.setPalette(QPalette(Qt::green));
    home.show();
    EXPECT_TRUE(nDeckWindowDisplay(1, NDECK_WINDOW_IDLE, &home, kFull));
    picturesCome();
    const QImage general(hostPath("/phone/resource/theme/default/bmp/general/gen_bg.jpg"));
    const QRgb is = pixel(300, 240), wanted = general.pixel(300, 240);
    EXPECT_EQ(background(), "a.bmp");
    EXPECT_LT(qAbs(qRed(is) - qRed(wanted)) + qAbs(qGreen(is) - qGreen(wanted)), 10)
        << "not the host's green";
    frame().SetFrameParent(nullptr, QRect());
}

TEST_F(ShowPictures, TheOldLayoutStaysUntilTheNewOnesPicturesAreThere)
{
    addFile("red.png", picture(Qt::red, "PNG", QSize(1200, 800)));
    addFile("blue.png", picture(Qt::blue, "PNG", QSize(1200, 800)));
    addLayout("a.xml", layout(region(image("red.png", "2")), "bgcolor=\"#ffffff\""));
    addLayout("b.xml",
              layout(region(QRect(0, 0, 400, 480), image("blue.png", "2")), "background=\"blue.png\""));
    takeUp();
    show();
    EXPECT_EQ(pixel(200, 200), qRgb(255, 0, 0));
    // As if nothing had been read ahead.
    GetImageManager()->RemoveImageInCache("/rundata/nDeck/blue.png");
    display().SetCurrentLayout([] {
        auto next = display().GetCurrentLayout();
        return ++next;
    }());
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(pixel(200, 200), qRgb(255, 0, 0));
    EXPECT_EQ(pixel(600, 200), qRgb(255, 0, 0));
    EXPECT_TRUE(kit::waitUntil([] { return frame().findChildren<nDeckCover*>().isEmpty(); }, kLongMs));
    EXPECT_EQ(pixel(200, 200), qRgb(0, 0, 255));
    EXPECT_EQ(pixel(600, 200), qRgb(0, 0, 255));
}

TEST_F(ShowPictures, TheOldLayoutStaysUntilTheBackgroundOfTheNewOneIsThere)
{
    addFile("red.png", picture(Qt::red));
    addFile("blue.png", picture(Qt::blue, "PNG", QSize(1200, 800)));
    const QByteArray small = region(QRect(0, 0, 80, 48), image("red.png", "2"));
    addLayout("a.xml", layout(small, "bgcolor=\"#00ff00\""));
    addLayout("b.xml", layout(small + region(QRect(400, 0, 80, 48), image("red.png", "2")),
                              "background=\"blue.png\""));
    takeUp();
    show();
    GetImageManager()->RemoveImageInCache("/rundata/nDeck/blue.png");
    auto next = display().GetCurrentLayout();
    display().SetCurrentLayout(++next);
    EXPECT_EQ(current(), "b.xml");
    EXPECT_EQ(pixel(600, 200), qRgb(0, 255, 0));
    EXPECT_EQ(pixel(440, 24), qRgb(0, 255, 0)) << "what is drawn already is covered";
    EXPECT_TRUE(kit::waitUntil([] { return frame().findChildren<nDeckCover*>().isEmpty(); }, kLongMs));
    EXPECT_EQ(pixel(600, 200), qRgb(0, 0, 255));
    EXPECT_EQ(pixel(440, 24), qRgb(255, 0, 0));
}

TEST_F(ShowPictures, TheNextLayoutsAndTheNextMediasPicturesAreReadAhead)
{
    for (const char* name : {"red.png", "blue.png", "green.png", "sky.png"})
        addFile(name, picture(Qt::red, "PNG", QSize(1200, 800)));
    addLayout("a.xml", layout(region(image("red.png", "2") + image("blue.png", "2"))));
    addLayout("b.xml",
              layout(region(QRect(10, 20, 300, 200), image("green.png", "2")), "background=\"sky.png\""));
    takeUp();
    show();
    const chRect whole(0, 0, 800, 480), part(10, 20, 310, 220);
    EXPECT_TRUE(GetNDeckScreen().IsPictureReady("blue.png", &whole));
    EXPECT_TRUE(GetNDeckScreen().IsPictureReady("green.png", &part));
    EXPECT_TRUE(GetNDeckScreen().IsPictureReady("sky.png", nullptr));
    EXPECT_FALSE(GetNDeckScreen().IsPictureReady("red.png", &part));
}

TEST_F(ShowPictures, AnotherSizeOfTheFrameReadsThemAnew)
{
    addFile("red.png", picture(Qt::red, "PNG", QSize(1200, 800)));
    addLayout("a.xml", layout(region(image("red.png", "50"))));
    takeUp();
    QWidget home;
    home.resize(800, 480);
    home.show();
    EXPECT_TRUE(nDeckWindowDisplay(1, NDECK_WINDOW_IDLE, &home, QRect(0, 0, 400, 240)));
    picturesCome();
    EXPECT_EQ(shown(0).size(), QSize(400, 240));
    frame().SetRectRate(1.0f);
    frame().resize(800, 480);
    picturesCome();
    EXPECT_EQ(shown(0).size(), QSize(800, 480));
    frame().SetFrameParent(nullptr, QRect());
}
