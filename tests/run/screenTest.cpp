// The phone in a browser: what is seen there is the phone's screen, and what is done there is done on the
// phone.
#include "tests/run/rfbScreen.h"
#include "tests/run/runScript.h"
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <QWebSocket>
#include <gtest/gtest.h>

namespace {

// The clock may step on between two looks.
constexpr double kSame = 0.01;
constexpr quint32 kKeyReturn = 0xff0d;

class Screen : public testing::Test
{
protected:
    void SetUp() override { m_phone.startPage(); }

    QString page() { return m_phone.ctl({"screen"}).toObject()["top"].toString(); }

    RunScript m_phone;
};

// A browser's page with the phone on it.
class BrowserPage
{
public:
    explicit BrowserPage(const QByteArray& address)
    {
        m_view.resize(1000, 700);
        m_view.show();
        m_view.load(QUrl::fromEncoded(address));
    }
    QVariant run(const QString& script)
    {
        QVariant value;
        bool isDone = false;
        m_view.page()->runJavaScript(script, [&](const QVariant& result) {
            value = result;
            isDone = true;
        });
        eventually([&] { return isDone; });
        return value;
    }
    QImage canvas()
    {
        const QByteArray url =
            run("(c => c ? c.toDataURL() : '')(document.querySelector('canvas'))").toByteArray();
        return QImage::fromData(QByteArray::fromBase64(url.mid(url.indexOf(',') + 1)))
            .convertToFormat(QImage::Format_RGB32);
    }
    // x, y: on the phone's screen, wherever and however large the page shows it.
    void tap(int x, int y)
    {
        run(QString("(c => { const r = c.getBoundingClientRect();"
                    "const at = {bubbles: true, clientX: r.left + %1 * r.width / c.width,"
                    "            clientY: r.top + %2 * r.height / c.height};"
                    "c.dispatchEvent(new MouseEvent('mousemove', at));"
                    "c.dispatchEvent(new MouseEvent('mousedown', {...at, buttons: 1}));"
                    "c.dispatchEvent(new MouseEvent('mouseup', at)); })(document.querySelector('canvas'))")
                .arg(x)
                .arg(y));
    }

private:
    QWebEngineView m_view;
};

} // namespace

TEST_F(Screen, ComesThroughTheSocketAndTakesTouchesAndKeys)
{
    QWebSocket socket(m_phone.origin());
    RfbScreen screen([&](const QByteArray& bytes) { socket.sendBinaryMessage(bytes); });
    QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &socket,
                     [&](const QByteArray& bytes) { screen.take(bytes); });
    socket.open(QUrl("ws://" + m_phone.host() + '/' + m_phone.token() + "/screen"));
    const auto shows = [&](const QImage& shot) {
        if (screen.isOpen())
            screen.askForAll();
        return difference(screen.picture(), shot) < kSame;
    };
    EXPECT_TRUE(eventually([&] { return shows(m_phone.phoneShot()); }));
    ASSERT_TRUE(screen.isOpen());
    const QImage home = screen.picture();
    screen.tap(336, 289);
    EXPECT_TRUE(eventually([&] { return page() != "frmDesktop"; }));
    EXPECT_TRUE(eventually([&] { return shows(m_phone.phoneShot()); }));
    EXPECT_GT(difference(home, screen.picture()), kSame);
    const QString opened = page();
    screen.key(kKeyReturn);
    EXPECT_TRUE(eventually([&] { return page() != opened; }));
}

TEST_F(Screen, ComesInABrowserAtThePrintedAddressAndTakesTouches)
{
    BrowserPage browser(m_phone.address());
    EXPECT_TRUE(eventually([&] { return difference(browser.canvas(), m_phone.phoneShot()) < kSame; }));
    browser.tap(336, 289);
    EXPECT_TRUE(eventually([&] { return page() != "frmDesktop"; }));
    EXPECT_TRUE(eventually([&] { return difference(browser.canvas(), m_phone.phoneShot()) < kSame; }));
}
