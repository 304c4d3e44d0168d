#pragma once
// What a text may fetch: data of its own, and the web. Never a file of the phone, and of this machine the
// signage server alone, when it runs here, which nobody may send anything to. User-interface thread.
#include <QByteArray>
#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

class requestGuard : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
    static bool isAllowed(const QUrl& address);
    // HOST:PORT of the server when its address stands for this machine; empty for any other.
    static QByteArray targetHere(const QUrl& server);
    void setServer(const QUrl& server) { m_here = targetHere(server); }
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    QByteArray m_here;
};
