#include "host/widgets/webPlugin.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QFileInfo>
#include <QSize>
#include <QThread>
#include <QWidget>
#include <dlfcn.h>
#include <private/qopenglcontext_p.h>

namespace {

const char* const kPlugin = "libhxWeb.so";
const char* const kSystem = "/rundata/config/system.ini";
// A letter, so that the fonts are there too.
const char* const kFirstText = "<body>0</body>";
constexpr QSize kKeeperSize(64, 64);

// Beside the library, or the program, that this code is part of; of a program also in the lib folder beside
// its own.
QString pluginFile()
{
    Dl_info self = {};
    dladdr(reinterpret_cast<void*>(&pluginFile), &self);
    const QString folder = QFileInfo(QString::fromLocal8Bit(self.dli_fname)).absolutePath();
    for (const char* place : {"/", "/../lib/"}) {
        if (QFileInfo::exists(folder + place + kPlugin))
            return folder + place + kPlugin;
    }
    return folder + '/' + kPlugin;
}

// The engine looks at the shared context even when it draws without one. This one is never created, so that
// a phone needs no graphics driver.
void offerEmptyContext()
{
    if (!qt_gl_global_share_context())
        qt_gl_set_global_share_context(new QOpenGLContext);
}

} // namespace

webPlugin::webPlugin() : m_strFile(pluginFile()) {}

webPlugin& webPlugin::instance()
{
    static webPlugin* plugin = new webPlugin;
    return *plugin;
}

void webPlugin::load()
{
    if (m_eState != IDLE)
        return;
    m_eState = LOADING;
    offerEmptyContext();
    m_library.setFileName(m_strFile);
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
    QThread* loader = QThread::create([this] { m_library.load(); });
    loader->setObjectName("hxWebLoad");
    connect(loader, &QThread::finished, this, &webPlugin::take);
    connect(loader, &QThread::finished, loader, &QObject::deleteLater);
    loader->start();
}

void webPlugin::take()
{
    if (m_library.isLoaded()) {
        m_pStart = reinterpret_cast<webStartEntry>(m_library.resolve(kWebStartEntry));
        m_pEntry = reinterpret_cast<webPanelEntry>(m_library.resolve(kWebPanelEntry));
    }
    m_eState = m_pStart && m_pEntry ? READY : MISSING;
    if (m_eState == MISSING)
        nuxTrace(TRACE_NOTE, "rich text engine not loaded: %s", qPrintable(m_library.errorString()));
    emit finished();
}

webPanel* webPlugin::makePanel(QWidget* parent, tagWebPanelEvents events) const
{
    events.say = [](const char* line) { nuxTrace(TRACE_NOTE, "%s", line); };
    events.server = [] {
        return toQString(NUX_SubClass::nuxGetRegistryString(kSystem, "nDeck", "strServerURL", ""));
    };
    events.budget = m_budget;
    return m_eState == READY ? m_pEntry(parent, events) : nullptr;
}

bool webPlugin::warmStep()
{
    load();
    if (m_eState == LOADING)
        return true;
    if (m_eState == MISSING || m_eWarmth == WARM)
        return false;
    switch (m_eWarmth) {
    case COLD:
        startEngine();
        break;
    case STARTED:
        makeKeeper();
        break;
    case PAGE:
        m_eWarmth = TEXT;
        m_keeper->setHtml(kFirstText);
        break;
    default:
        break;
    }
    return m_eState == READY;
}

// Where it cannot be, texts are plain, and there is nothing to warm.
void webPlugin::startEngine()
{
    tagWebPanelEvents events;
    events.say = [](const char* line) { nuxTrace(TRACE_NOTE, "%s", line); };
    m_eWarmth = m_pStart(events) ? STARTED : WARM;
}

void webPlugin::makeKeeper()
{
    tagWebPanelEvents events;
    events.begun = [] {};
    events.loaded = [this](bool) {
        QMetaObject::invokeMethod(this, &webPlugin::onKept, Qt::QueuedConnection);
    };
    events.died = [this] { QMetaObject::invokeMethod(this, &webPlugin::onKeeperDied, Qt::QueuedConnection); };
    m_keeper.reset(makePanel(nullptr, events));
    m_keeper->widget()->resize(kKeeperSize);
    m_eWarmth = PAGE;
}

void webPlugin::onKept()
{
    if (m_eWarmth != TEXT)
        return;
    m_eWarmth = WARM;
    m_keeper->setHtml(QString());
    emit warmed();
}

void webPlugin::onKeeperDied()
{
    if (m_eWarmth != TEXT && m_eWarmth != WARM)
        return;
    m_eWarmth = PAGE;
    emit cooled();
}
