#include "tools/signServer/ContentWatch.h"
#include <QElapsedTimer>
#include <algorithm>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr qint64 kRestMs = 1000;  // between two looks, at least
constexpr qint64 kRestShare = 20; // a look may use this part of the time
constexpr int kNiceness = 10;

// Requests go before it. Who the thread starts gives way as well.
void GiveWay()
{
    setpriority(PRIO_PROCESS, id_t(gettid()), kNiceness);
}

} // namespace

ContentWatch::ContentWatch(const SignFolder& folder, ContentNotes& notes, std::function<void(bool)> afterLook)
    : m_folder(folder), m_notes(notes), m_afterLook(std::move(afterLook)), m_check(m_stopping),
      m_thread([this] { Work(); })
{
}

ContentWatch::~ContentWatch()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void ContentWatch::Work()
{
    GiveWay();
    qint64 rest = 0;
    while (Rest(rest)) {
        QElapsedTimer time;
        time.start();
        Look();
        rest = std::max(kRestMs, time.elapsed() * kRestShare);
        m_afterLook(false);
    }
    m_afterLook(true);
}

bool ContentWatch::Rest(qint64 ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stopping.load(); });
}

void ContentWatch::Look()
{
    const quint64 begin = m_notes.BeginLook();
    ScheduleReply schedule(m_folder);
    schedule.ForAll();
    // What can be told at once is not kept back by what takes its time.
    m_notes.Add(schedule.Complaints());
    QStringList complaints = schedule.Complaints();
    for (const LayoutText::Use& use : schedule.Uses()) {
        const QByteArray name = use.name.toUtf8();
        const OpenFilePtr file = m_folder.Open("media", name);
        if (!file || use.kind == MediaKind::Unknown || m_stopping)
            continue;
        const QByteArray path = m_folder.PathOf(("media/" + name).constData());
        for (const QString& fault : m_check.FaultsOf(path, *file, use.kind))
            complaints.append(QString("media/%1: %2").arg(use.name, fault));
    }
    if (m_stopping)
        return;
    if (!m_check.Hindrance().isEmpty())
        complaints.append(m_check.Hindrance());
    const bool isWhole = !m_check.IsOwing() && m_check.Hindrance().isEmpty();
    m_check.ForgetOthers();
    m_notes.EndLook(begin, complaints, isWhole);
}
