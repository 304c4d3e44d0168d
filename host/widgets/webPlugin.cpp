#include "host/widgets/webPlugin.h"
#include "support/host/trace.h"
#include <QFileInfo>
#include <QThread>
#include <dlfcn.h>
#include <private/qopenglcontext_p.h>

namespace {

const char* const kPlugin = "libhxWeb.so";

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
    if (m_library.isLoaded())
        m_pEntry = reinterpret_cast<webPanelEntry>(m_library.resolve(kWebPanelEntry));
    m_eState = m_pEntry ? READY : MISSING;
    if (!m_pEntry)
        nuxTrace(TRACE_NOTE, "rich text engine not loaded: %s", qPrintable(m_library.errorString()));
    emit finished();
}

webPanel* webPlugin::makePanel(QWidget* parent, const tagWebPanelEvents& events) const
{
    return m_pEntry ? m_pEntry(parent, events) : nullptr;
}
