#include "host/web/engineStart.h"
#include "host/web/enginePanel.h"
#include "host/web/engineProxy.h"
#include "host/web/rendererWatch.h"
#include "host/web/requestGuard.h"
#include "host/web/sandbox.h"
#include <QFont>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace {

constexpr int kCacheBytes = 2 * 1024 * 1024;
constexpr int kHeapMiB = 96; // of one script; the process has a limit of its own

// Draws in software wherever the phone runs; one process draws all texts. Its own count of frames gives way
// to that of frameBeat. A text is laid out before it is shown, and not in the background for that. All that
// goes to the network goes through the proxy, names of this machine too.
void setFlags(bool isSandboxed, quint16 proxy)
{
    QByteArray flags = "--disable-gpu --disable-frame-rate-limit --renderer-process-limit=1 --log-level=3 "
                       "--disable-logging --disable-renderer-backgrounding --proxy-bypass-list=<-loopback> "
                       "--force-webrtc-ip-handling-policy=disable_non_proxied_udp";
    flags += " --proxy-server=socks5://127.0.0.1:" + QByteArray::number(proxy);
    flags += " --js-flags=--max-old-space-size=" + QByteArray::number(kHeapMiB);
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
    setFonts(profile->settings());
    return profile;
}

const char* lineOf(int reason)
{
    switch (reason) {
    case rendererWatch::TOO_BUSY:
        return "rich text takes too much of the processor, its process is ended";
    case rendererWatch::TOO_LARGE:
        return "rich text takes too much memory, its process is ended";
    default:
        return "rich text process hangs, it is ended";
    }
}

tagEngine makeEngine(bool isSandboxed, const tagWebPanelEvents& events)
{
    const auto say = events.say;
    tagEngine engine;
    engine.proxy = new engineProxy;
    setFlags(isSandboxed, engine.proxy->port());
    engine.profile = makeProfile();
    engine.guard = new requestGuard(engine.profile);
    engine.profile->setUrlRequestInterceptor(engine.guard);
    QObject::connect(engine.proxy, &engineProxy::refused, engine.profile, [say](const QString& target) {
        say(qPrintable("rich text may not reach " + target + " on this machine"));
    });
    QObject::connect(&rendererWatch::instance(), &rendererWatch::ending, engine.profile,
                     [say](pid_t, int reason) { say(lineOf(reason)); });
    return engine;
}

} // namespace

const tagEngine* engineOf(const tagWebPanelEvents& events)
{
    static const SANDBOX_STATE sandbox = sandboxState();
    static tagEngine engine;
    static bool told = false;
    if (sandbox != SANDBOX_MISSING && !engine.profile)
        engine = makeEngine(sandbox == SANDBOX_ON, events);
    if (sandbox != SANDBOX_ON && !told) {
        told = true;
        events.say(sandbox == SANDBOX_OFF ? "rich text engine runs without its sandbox: the phone is root"
                                          : "rich text engine not started: there is no sandbox for it");
    }
    return engine.profile ? &engine : nullptr;
}

extern "C" __attribute__((visibility("default"))) bool hxWebStart(const tagWebPanelEvents& events)
{
    return engineOf(events) != nullptr;
}

extern "C" __attribute__((visibility("default"))) webPanel* hxWebMakePanel(QWidget* parent,
                                                                           const tagWebPanelEvents& events)
{
    const tagEngine* engine = engineOf(events);
    rendererWatch::instance().setBudget(events.budget);
    return engine ? new enginePanel(*engine, parent, events) : nullptr;
}
