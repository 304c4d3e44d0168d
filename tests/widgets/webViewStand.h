#pragma once
// What the tests of rich text share: a view on a window, and the processes that draw for it.
#include "host/services/system/hostLog.h"
#include "support/host/webview.h"
#include "tests/kit/phoneTest.h"
#include <QTcpServer>
#include <QTcpSocket>

inline constexpr int kEngineMs = 30000; // the engine's first text, on a busy machine
inline constexpr QRect kView(100, 100, 400, 100);

inline bool isNear(QRgb colour, QRgb wanted)
{
    return qAbs(qRed(colour) - qRed(wanted)) < 40 && qAbs(qGreen(colour) - qGreen(wanted)) < 40 &&
           qAbs(qBlue(colour) - qBlue(wanted)) < 40;
}
inline bool isNear(QColor colour, QColor wanted)
{
    return isNear(colour.rgb(), wanted.rgb());
}

// The smallest rectangle that holds all pixels of that colour.
inline QRect extent(const QImage& image, QColor colour)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGB32);
    const QRgb wanted = colour.rgb();
    QRect found;
    for (int y = 0; y < plain.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(plain.constScanLine(y));
        for (int x = 0; x < plain.width(); ++x) {
            if (isNear(line[x], wanted))
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

// Every request line that comes; answers nothing.
class WebServer : public QTcpServer
{
public:
    explicit WebServer(const QHostAddress& place = QHostAddress(QHostAddress::LocalHost))
    {
        listen(place);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* client = nextPendingConnection();
            connect(client, &QTcpSocket::readyRead, this, [this, client] {
                asked.append(client->readLine().trimmed());
                client->write(answer());
                client->disconnectFromHost();
            });
        });
    }
    QString address() const { return QString("http://127.0.0.1:%1/").arg(serverPort()); }
    QByteArrayList asked;
    QByteArray redirect; // where all but "last" is sent on to; empty: nowhere

private:
    QByteArray answer() const
    {
        const QByteArray rest =
            "Access-Control-Allow-Origin: *\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
        if (redirect.isEmpty() || asked.last().contains("/last "))
            return "HTTP/1.1 200 OK\r\n" + rest;
        return "HTTP/1.1 307 Elsewhere\r\nLocation: " + redirect + "\r\n" + rest;
    }
};

// A view on a green window, as a panel lies on its frame.
class WebView : public PhoneTest
{
protected:
    WebView()
    {
        window.setGeometry(0, 0, 800, 480);
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(0, 128, 0));
        window.setPalette(palette);
        window.setAutoFillBackground(true);
        view = new QWebView(&window);
        view->setGeometry(kView);
        QObject::connect(view, &QWebView::loadFinished, [this](bool ok) { ends.append(ok); });
        window.show();
        kit::settle();
    }
    ~WebView() override { window.hide(); }

    QRect whereIs(QColor colour) { return extent(kit::screen(), colour); }
    bool shows(QColor colour, int ms = kEngineMs)
    {
        return kit::waitUntil([&] { return !whereIs(colour).isEmpty(); }, ms);
    }
    bool isEmpty()
    {
        return whereIs(QColor(0, 128, 0)) == QRect(0, 0, 800, 480) && whereIs(Qt::red).isEmpty() &&
               whereIs(Qt::blue).isEmpty() && whereIs(Qt::yellow).isEmpty();
    }
    // Texts may, since it is the signage server.
    void mayReach(const WebServer& server)
    {
        writeFile("/rundata/config/system.ini", "[nDeck]\nstrServerURL=" + server.address().toUtf8() + '\n');
    }
    std::string traced() const { return traces().join("|").toStdString(); }

    QWidget window{nullptr, Qt::FramelessWindowHint};
    QWebView* view;
    QList<bool> ends;
};

inline QString box(const char* colour, const char* place = "left:20px;top:30px;width:50px;height:40px")
{
    return QString("<div style='position:absolute;background:%1;%2'></div>").arg(colour, place);
}

inline const char* const kMarquee =
    "<body style='margin:0'><marquee direction=left scrollamount=6 height='100%'>"
    "<div style='background:red;width:200px;height:20px'></div></marquee></body>";
