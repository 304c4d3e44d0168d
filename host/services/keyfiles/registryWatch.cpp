#include "host/services/keyfiles/registryWatch.h"
#include "host/services/keyfiles/keyFileCache.h"
#include "host/services/keyfiles/registryHandle.h"
#include "support/file/deviceRoot.h"
#include <QPointer>
#include <algorithm>

namespace {

std::map<std::string, std::string> valuesOf(HREGISTRY handle)
{
    return keyFileCache::GetInstance().SectionValues(*handle->pSlot, handle->strSection);
}

} // namespace

RegistryWatch::RegistryWatch(qRegistryNotify* owner) : QObject(owner), m_pOwner(owner)
{
    m_folders.SetCall([this] { Check(); });
}

RegistryWatch* RegistryWatch::Of(qRegistryNotify* owner)
{
    RegistryWatch* watch = owner->findChild<RegistryWatch*>(QString(), Qt::FindDirectChildrenOnly);
    return watch ? watch : new RegistryWatch(owner);
}

void RegistryWatch::Monitor(const char* file, const char* section)
{
    HREGISTRY handle = registryOpen(file, section);
    const bool known = std::any_of(m_sections.begin(), m_sections.end(),
                                   [handle](const Section& watched) { return watched.handle == handle; });
    if (known)
        return;
    const std::string path = devicePathFollow(file).GetText();
    const size_t slash = path.rfind('/');
    m_folders.Add(slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash));
    keyFileCache::GetInstance().LookAgain();
    m_sections.push_back({handle, valuesOf(handle)});
}

void RegistryWatch::Check()
{
    keyFileCache::GetInstance().LookAgain();
    std::vector<HREGISTRY> changed;
    for (Section& section : m_sections) {
        Values now = valuesOf(section.handle);
        if (now == section.values)
            continue;
        section.values = std::move(now);
        changed.push_back(section.handle);
    }
    // The owner may end itself when it is told.
    const QPointer<qRegistryNotify> owner = m_pOwner;
    for (HREGISTRY handle : changed) {
        if (owner)
            owner->OnRegistryChanged(handle);
    }
}

qRegistryNotify::qRegistryNotify(QObject* parent) : QObject(parent) {}

qRegistryNotify::~qRegistryNotify() = default;

void qRegistryNotify::MonitorSection(const char* file, const char* section)
{
    if (file && section)
        RegistryWatch::Of(this)->Monitor(file, section);
}

// A broadcast comes with the change that it tells of, also where the system cannot watch files.
int qRegistryNotify::TryThreadMessage(msgObject& msg)
{
    if (msg.message == CONFIG_MSG_BCAST_CHANGED)
        RegistryWatch::Of(this)->Check();
    return 0;
}

void qRegistryNotify::OnRegistryChanged(HREGISTRY section)
{
    emit registryChanged(section);
}
