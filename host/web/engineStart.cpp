#include "host/web/engineStart.h"
#include "host/web/enginePanel.h"
#include "host/web/requestGuard.h"
#include "host/web/sandbox.h"
#include <QFont>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace {

constexpr int kCacheBytes = 2 * 1024 * 1024;

// Draws in software wherever the phone runs; one process draws all texts. Its own count of frames gives way
// to that of frameBeat.
void setFlags(bool isSandboxed)
{
    QByteArray flags = "--disable-gpu --disable-frame-rate-limit --renderer-process-limit=1 --log-level=3 "
                       "--disable-logging";
    if (!isSandboxed) {
        flags += " --no-zygote";
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }
    const QByteArray given = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", given.isEmpty() ? flags : flags + ' ' + given);
    qputenv("QT_QUICK_BACKEND", "software");
    QLoggingCategory::setFilterRules("qt.webenginecontext=false");
}

void setFonts(QWebEngineSettings* settings)
{
    const QString family = QGuiApplication::font().family();
    for (const QWebEngineSettings::FontFamily kind :
         {QWebEngineSettings::StandardFont, QWebEngineSettings::SansSerifFont, QWebEngineSettings::SerifFont})
        settings->setFontFamily(kind, family);
}

QWebEngineProfile* makeProfile()
{
    auto* profile = new QWebEngineProfile(qApp);
    profile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    profile->setHttpCacheMaximumSize(kCacheBytes);
    profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    profile->setSpellCheckEnabled(false);
    profile->setUrlRequestInterceptor(new requestGuard(profile));
    setFonts(profile->settings());
    return profile;
}

} // namespace

QWebEngineProfile* engineProfile(const tagWebPanelEvents& events)
{
    static const SANDBOX_STATE sandbox = sandboxState();
    static QWebEngineProfile* profile = nullptr;
    static bool told = false;
    if (sandbox != SANDBOX_MISSING && !profile) {
        setFlags(sandbox == SANDBOX_ON);
        profile = makeProfile();
    }
    if (sandbox != SANDBOX_ON && !told) {
        told = true;
        events.say(sandbox == SANDBOX_OFF ? "rich text engine runs without its sandbox: the phone is root"
                                          : "rich text engine not started: there is no sandbox for it");
    }
    return profile;
}

extern "C" __attribute__((visibility("default"))) webPanel* hxWebMakePanel(QWidget* parent,
                                                                           const tagWebPanelEvents& events)
{
    QWebEngineProfile* profile = engineProfile(events);
    return profile ? new enginePanel(profile, parent, events) : nullptr;
}
