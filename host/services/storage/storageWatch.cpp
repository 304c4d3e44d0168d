#include "host/services/storage/storageWatch.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <QSocketNotifier>
#include <algorithm>

namespace {

const char* const kFolder = "/storage";

bool isAtOrBelow(const QByteArray& path, const QByteArray& folder)
{
    return path == folder || path.startsWith(folder + '/') || folder == "/";
}

QByteArray withoutSlash(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

const storageList::tagEntry* findPath(const QList<storageList::tagEntry>& list, const QByteArray& path)
{
    const auto found =
        std::find_if(list.begin(), list.end(), [&path](const auto& entry) { return entry.path == path; });
    return found == list.end() ? nullptr : &*found;
}

} // namespace

storageWatch& storageWatch::GetInstance()
{
    static storageWatch* watch = new storageWatch;
    watch->FollowRoot();
    return *watch;
}

storageWatch::storageWatch()
{
    m_folder.SetCall([this] { Check(); });
    WatchMounts();
}

// The kernel marks the table as exceptional when something was mounted.
void storageWatch::WatchMounts()
{
    m_mounts.setFileName(QStringLiteral("/proc/self/mountinfo"));
    if (!m_mounts.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        nuxTrace(TRACE_NOTE, "Mounted disks cannot be watched");
        return;
    }
    auto* notifier = new QSocketNotifier(m_mounts.handle(), QSocketNotifier::Exception, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        m_mounts.seek(0);
        m_mounts.readAll();
        Check();
    });
}

void storageWatch::FollowRoot()
{
    if (m_nRoot == deviceGetRootNumber())
        return;
    m_nRoot = deviceGetRootNumber();
    m_folder.Clear();
    m_folder.Add(devicePath(kFolder).GetText());
    m_storages = storageList::read();
}

const QList<storageList::tagEntry>& storageWatch::Storages()
{
    Check();
    return m_storages;
}

void storageWatch::Register(chMsgProcesser* processer, const QByteArray& path)
{
    const tagProcesserRef reference = processerBook::find(processer);
    UnRegister(processer, path);
    m_listeners.removeIf(
        [](const tagListener& listener) { return !processerBook::isThere(listener.processer); });
    if (reference.nNumber != 0)
        m_listeners.append({reference, withoutSlash(path)});
}

void storageWatch::UnRegister(chMsgProcesser* processer, const QByteArray& path)
{
    const tagProcesserRef reference = processerBook::find(processer);
    m_listeners.removeIf([&](const tagListener& listener) {
        return listener.processer == reference && listener.path == withoutSlash(path);
    });
}

void storageWatch::Check()
{
    const QList<storageList::tagEntry> before = m_storages;
    m_storages = storageList::read();
    const QList<storageList::tagEntry> now = m_storages;
    for (const storageList::tagEntry& storage : before) {
        if (!findPath(now, storage.path))
            Tell(DEVICE_EVENT_REMOVE, storage);
    }
    for (const storageList::tagEntry& storage : now) {
        const storageList::tagEntry* old = findPath(before, storage.path);
        if (!old || !(*old == storage))
            Tell(DEVICE_EVENT_REFRESH, storage);
    }
}

// Once to each receiver, also to one that registered for the storage and for a folder above it.
void storageWatch::Tell(unsigned int event, const storageList::tagEntry& storage)
{
    QList<tagProcesserRef> told;
    for (const tagListener& listener : m_listeners) {
        if (!isAtOrBelow(storage.path, listener.path) || told.contains(listener.processer))
            continue;
        told.append(listener.processer);
        processerBook::post(listener.processer,
                            msgObject(DEVICE_MSG_EVENT, event, static_cast<unsigned>(storage.nType)));
    }
}
