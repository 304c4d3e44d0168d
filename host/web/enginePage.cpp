#include "host/web/enginePage.h"
#include "host/web/requestGuard.h"
#include <QColor>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

namespace {

const char* const kBegun = "hx-text-begun ";
const char* const kLaidOut = "hx-text-laid-out ";
const char* const kAddress = "data:text/html;charset=UTF-8,"; // and the text

const QWebEngineSettings::WebAttribute kForbidden[] = {
    QWebEngineSettings::LocalContentCanAccessFileUrls,
    QWebEngineSettings::LocalContentCanAccessRemoteUrls,
    QWebEngineSettings::JavascriptCanOpenWindows,
    QWebEngineSettings::JavascriptCanAccessClipboard,
    QWebEngineSettings::JavascriptCanPaste,
    QWebEngineSettings::AllowWindowActivationFromJavaScript,
    QWebEngineSettings::AllowGeolocationOnInsecureOrigins,
    QWebEngineSettings::LocalStorageEnabled,
    QWebEngineSettings::HyperlinkAuditingEnabled,
    QWebEngineSettings::LinksIncludedInFocusChain,
    QWebEngineSettings::FocusOnNavigationEnabled,
    QWebEngineSettings::FullScreenSupportEnabled,
    QWebEngineSettings::ScreenCaptureEnabled,
    QWebEngineSettings::NavigateOnDropEnabled,
    QWebEngineSettings::PluginsEnabled,
    QWebEngineSettings::PdfViewerEnabled,
    QWebEngineSettings::WebGLEnabled,
    QWebEngineSettings::Accelerated2dCanvasEnabled,
    QWebEngineSettings::DnsPrefetchEnabled,
    QWebEngineSettings::ErrorPageEnabled,
    QWebEngineSettings::AutoLoadIconsForPage,
    QWebEngineSettings::ShowScrollBars,
};

QWebEngineScript mark(const char* text, QWebEngineScript::InjectionPoint when)
{
    QWebEngineScript script;
    script.setName(text);
    script.setInjectionPoint(when);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setSourceCode(QStringLiteral("console.info('%1' + document.URL.length)").arg(text));
    return script;
}

// How long the address is in which the engine passes a text on, in letters.
qsizetype addressLength(const QString& html)
{
    return qsizetype(qstrlen(kAddress)) + html.toUtf8().toPercentEncoding().size();
}

} // namespace

enginePage::enginePage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent)
{
    setBackgroundColor(QColor(Qt::transparent));
    setAudioMuted(true);
    restrict();
    addMarks();
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
}

void enginePage::restrict()
{
    for (const QWebEngineSettings::WebAttribute attribute : kForbidden)
        settings()->setAttribute(attribute, false);
    settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
}

void enginePage::setText(const QString& html)
{
    m_nAwaited = addressLength(html);
    setHtml(html);
}

// The engine's own signals come late: it waits for every picture of the text.
void enginePage::addMarks()
{
    scripts().insert(mark(kBegun, QWebEngineScript::DocumentCreation));
    scripts().insert(mark(kLaidOut, QWebEngineScript::DocumentReady));
}

// The document before may be late: its marks say its own length.
void enginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& text, int,
                                          const QString&)
{
    if (text == kBegun + QString::number(m_nAwaited))
        emit begun();
    else if (text == kLaidOut + QString::number(m_nAwaited))
        emit laidOut();
}

// Of the page itself only what setHtml loads; a frame inside may come from the web.
bool enginePage::acceptNavigationRequest(const QUrl& address, NavigationType type, bool isMainFrame)
{
    if (isMainFrame)
        return type == NavigationTypeTyped && (address.scheme() == "data" || address.scheme() == "about");
    return (type == NavigationTypeTyped || type == NavigationTypeOther) && requestGuard::isAllowed(address);
}
