#pragma once
#include <QString>

class QWebEngineProfile;
class engineProxy;
class requestGuard;

// What all pages share; nothing of it is stored.
struct tagEngine
{
    QWebEngineProfile* profile = nullptr;
    requestGuard* guard = nullptr;
    engineProxy* proxy = nullptr;
    // The address of the signage server, which texts may read from also where it runs on this machine.
    void setServer(const QString& url) const;
};
