// "./run --raw-touch": what the mouse does in the browser is a finger on the simulated touch panel.
#include "tests/run/rfbScreen.h"
#include "tests/run/runScript.h"
#include <QJsonObject>
#include <QWebSocket>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

TEST(RunRawTouch, TheMouseIsAFingerOnTheRawDeviceAndTouchesThePhone)
{
    RunScript phone;
    phone.startPage({"--raw-touch"});
    const QByteArray path = (phone.root() + "/dev/input/TouchScreen").toLocal8Bit();
    const int device = open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(device, 0);
    QWebSocket socket(phone.origin());
    RfbScreen screen([&](const QByteArray& bytes) { socket.sendBinaryMessage(bytes); });
    QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &socket,
                     [&](const QByteArray& bytes) { screen.take(bytes); });
    socket.open(QUrl("ws://" + phone.host() + '/' + phone.token() + "/screen"));
    ASSERT_TRUE(eventually([&] { return screen.isOpen(); }));
    screen.tap(336, 289);
    EXPECT_TRUE(eventually([&] { return phone.ctl({"screen"}).toObject()["top"] != "frmDesktop"; }));
    char record[16];
    EXPECT_EQ(read(device, record, sizeof record), ssize_t(sizeof record));
    close(device);
}
