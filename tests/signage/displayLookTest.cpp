// A whole layout, to be looked at.
#include "support/host/webview.h"
#include "tests/kit/plain/processes.h"
#include "tests/signage/displayFixture.h"
#include <QElapsedTimer>
#include <QPushButton>

class DisplayLook : public DisplayTest
{
protected:
    static int whitePixels(const QRect& rect)
    {
        const QImage part = kit::screen().copy(rect);
        int white = 0;
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x)
                white += qGray(part.pixel(x, y)) > 230 ? 1 : 0;
        }
        return white;
    }
};

TEST_F(DisplayLook, PicturesTextAndButtonStandSideBySide)
{
    QImage sky(800, 480, QImage::Format_RGB32);
    QLinearGradient down(0, 0, 0, 480);
    down.setColorAt(0, QColor("#123a63"));
    down.setColorAt(1, QColor("#3c83c4"));
    QPainter(&sky).fillRect(sky.rect(), down);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    sky.save(&buffer, "PNG");
    addFile("sky.png", bytes);
    addFile("room.jpg", picture(QColor("#ffb04a"), "JPG", QSize(640, 480)));
    addLayout(
        "a.xml",
        layout(
            region(QRect(40, 90, 340, 300), image("room.jpg", "60", "8600")) +
                region(
                    QRect(420, 90, 340, 300),
                    text("<div style=\"color:#fff;font-size:26px\"><b>Today</b></div><p style=\"color:#fff;"
                         "font-size:18px\">10:00 Board meeting<br>14:00 Visitors</p>",
                         "60")) +
                region(QRect(0, 430, 800, 40),
                       text("<span style=\"color:#fff\">The canteen is open until three.</span>", "60",
                            "direction=\"left\" scrollamount=\"3\"")),
            "background=\"sky.png\""));
    takeUp();
    show();
    EXPECT_EQ(frame().findChildren<QWebView*>().size(), 2);
    EXPECT_TRUE(kit::waitUntil([] { return whitePixels(QRect(420, 90, 340, 300)) > 300; }, 20000));
    EXPECT_TRUE(kit::waitUntil([] { return whitePixels(QRect(0, 430, 800, 40)) > 100; }, 5000));
    kit::shot("signage_layout");
    EXPECT_EQ(panels().size(), 3);
    EXPECT_EQ(frame().findChildren<QPushButton*>().size(), 1);
    EXPECT_EQ(QColor(pixel(200, 200)).name().left(3), "#ff");
    EXPECT_EQ(pixel(20, 20), sky.pixel(20, 20));
}

TEST_F(DisplayLook, AScriptEndsWithTheShow)
{
    addLayout("a.xml",
              layout(region(text("<body style=\"background:#f00\"><script>setInterval(() => { const end "
                                 "= Date.now() + 45; while (Date.now() < end) ; }, 50)</script></body>",
                                 "60"))));
    takeUp();
    show();
    ASSERT_TRUE(kit::waitUntil([] { return pixel(50, 50) == qRgb(255, 0, 0); }, 60000));
    const pid_t process = kit::textProcess();
    ASSERT_NE(process, 0);
    const auto takes = [process](double share) {
        return kit::waitUntil(
            [&] {
                const double before = kit::cpuSeconds(process);
                QElapsedTimer timer;
                timer.start();
                kit::waitUntil([&] { return timer.elapsed() > 1000; });
                const double taken = (kit::cpuSeconds(process) - before) * 1000 / double(timer.elapsed());
                return share > 0 ? taken > share : taken < 0.05;
            },
            20000);
    };
    ASSERT_TRUE(takes(0.1));
    kit::key(Qt::Key_Return);
    ASSERT_FALSE(window().isVisible());
    EXPECT_TRUE(takes(0));
    // It comes back with the show.
    show();
    EXPECT_TRUE(kit::waitUntil([] { return pixel(50, 50) == qRgb(255, 0, 0); }, 60000));
}
