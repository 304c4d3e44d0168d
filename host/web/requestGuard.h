#pragma once
// What a text may fetch: data of its own, and the web. Never a file of the phone. Network thread of the
// engine or user-interface thread.
#include <QWebEngineUrlRequestInterceptor>

class requestGuard : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
    static bool isAllowed(const QUrl& address);
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;
};
