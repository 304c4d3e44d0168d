#pragma once
// Carries one browser's bytes to the display server and back. It deletes itself when either side has gone.
#include <QLocalSocket>
#include <QWebSocket>

class ScreenBridge : public QObject
{
    Q_OBJECT

public:
    // Takes the browser's socket. vncPath: the socket of the display server.
    ScreenBridge(QWebSocket* browser, const QString& vncPath, QObject* parent);

private:
    void toBrowser();
    void end();

    QWebSocket* m_pBrowser;
    QLocalSocket m_vnc;
};
