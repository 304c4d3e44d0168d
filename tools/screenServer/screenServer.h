#pragma once
// Serves the page that shows a display server's screen, and the screen itself, on the loopback interface.
#include "tools/screenServer/accessRule.h"
#include "tools/screenServer/pageFolder.h"
#include <QPointer>
#include <QTcpServer>
#include <memory>

class PageConnection;

class ScreenServer : public QObject
{
    Q_OBJECT

public:
    // vncPath: the display server's socket. folder: the files of the page.
    ScreenServer(const QString& vncPath, const QString& folder);
    // port: 0 takes one that is free. False when it is taken, or the page is missing; why() says which.
    bool listen(int port);
    // With the token, and the only place where it is told.
    QByteArray address() const;
    QString why() const { return m_strWhy; }

private:
    void onVisitor();
    void onScreenWanted(QTcpSocket* socket, const tagHttpRequest& request);

    QString m_strVncPath;
    PageFolder m_folder;
    QByteArray m_token;
    std::unique_ptr<AccessRule> m_rule;
    QTcpServer m_pages;
    QList<QPointer<PageConnection>> m_visitors;
    QString m_strWhy;
};
