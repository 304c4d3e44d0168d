#pragma once
// Carries one browser's bytes to the display server and back. It deletes itself when either side has gone.
#include "tools/screenServer/webSocket.h"
#include <QLocalSocket>

class ScreenBridge : public QObject
{
    Q_OBJECT

public:
    // Takes the browser's socket, and answers its request. vncPath: the socket of the display server.
    ScreenBridge(QTcpSocket* browser, const tagHttpRequest& request, const QString& vncPath, QObject* parent);
    ~ScreenBridge() override;

private:
    void toBrowser();
    void toScreen();
    void end();

    WebSocket m_browser;
    QLocalSocket m_vnc;
};
