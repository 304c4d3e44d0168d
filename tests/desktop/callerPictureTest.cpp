// The picture of who calls, as his server has it, on the call screen: instead of the contact's, when it
// comes, and never at the cost of anything else.
#include "host/desktop/callerPicture.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/roundPicture.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/picture.h"
#include "tests/desktop/desktopTest.h"
#include "tests/kit/plain/pictureFiles.h"
#include "tests/services/httpServer.h"
#include <QFile>
#include <QImage>
#include <QPointer>

namespace {

class CallerPicture : public DesktopTest
{
protected:
    CallerPicture()
    {
        callScreenInstall();
        QImage green(300, 200, QImage::Format_RGB32);
        green.fill(Qt::green);
        writeFile("/rundata/data/caller.png", "");
        green.save(hostPath("/rundata/data/caller.png"));
        content = readFile("/rundata/data/caller.png");
        server.onRequest = [this](QTcpSocket& socket, const QByteArray&) {
            if (answers)
                socket.write(httpServer::answer(content));
        };
    }
    int ring(const QString& address, const QString& number = "4711")
    {
        tagCaller caller;
        caller.strNumber = number;
        caller.strPicture = address;
        EXPECT_TRUE(phoneSimulation::instance()->ringFrom(caller));
        kit::settle();
        return phoneService::instance().calls().last().nId;
    }
    static QColor shown()
    {
        const QWidget* top = kit::windows().value(0);
        const auto* place = top->findChild<roundPicture*>("labPicture");
        return place->picture().toImage().pixelColor(60, 40);
    }
    bool comes()
    {
        return kit::waitUntil([] { return shown() == QColor(Qt::green); }, 20000);
    }
    QString url() { return server.url("/caller.png"); }
    bool isLeft() const { return QFile::exists(hostPath("/tmp/hxCaller/picture")); }

    httpServer server;
    QByteArray content;
    bool answers = true;
};

TEST_F(CallerPicture, ComesFromTheServerAndLeavesNoFile)
{
    ring(url());
    EXPECT_NE(shown(), QColor(Qt::green));
    EXPECT_TRUE(comes());
    EXPECT_FALSE(isLeft());
    kit::shot("call-caller-picture");
}

TEST_F(CallerPicture, TakesTheContactsPlaceWhenItIsThere)
{
    writeFile("/rundata/data/ann.png", kit::pngOfOneColour({300, 300}));
    writeFile("/rundata/data/contactData.xml",
              "<contactData><group name=\"A\"><contact name=\"Ann\" number=\"4711\" "
              "sImagePath=\"/rundata/data/ann.png\"/></group></contactData>");
    answers = false;
    const int id = ring(url());
    EXPECT_TRUE(kit::waitUntil([] { return shown() == QColor(Qt::black); }, 20000));
    phoneService::instance().hangUp(id);
    answers = true;
    ring(url());
    EXPECT_TRUE(comes());
}

TEST_F(CallerPicture, WhatIsTooLargeOrNoPictureIsLeft)
{
    for (const QByteArray& bad :
         {content + QByteArray(callerPicture::MAX_BYTES, 'x'), content.left(20), QByteArray("<html>")}) {
        const QByteArray good = std::exchange(content, bad);
        const int id = ring(url());
        const int before = int(server.paths.size());
        EXPECT_TRUE(
            kit::waitUntil([&] { return server.paths.size() >= before && server.closed > 0; }, 20000));
        kit::waitUntil([] { return picturePending() == 0; }, 20000);
        kit::waitUntil([] { return false; }, 300);
        EXPECT_NE(shown(), QColor(Qt::green)) << bad.size();
        EXPECT_FALSE(isLeft());
        phoneService::instance().hangUp(id);
        content = good;
    }
}

TEST_F(CallerPicture, OfAnotherCallIsNotShownWithThisOne)
{
    QPointer<QTcpSocket> held;
    server.onRequest = [&held](QTcpSocket& socket, const QByteArray&) { held = &socket; };
    const int id = ring(url());
    EXPECT_TRUE(kit::waitUntil([&] { return held != nullptr; }, 20000));
    phoneService::instance().hangUp(id);
    ring("", "4712");
    if (held)
        held->write(httpServer::answer(content));
    EXPECT_FALSE(kit::waitUntil([] { return shown() == QColor(Qt::green); }, 500));
}

} // namespace
