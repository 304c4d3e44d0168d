#include "tools/signServer/UpstreamDesk.h"
#include "tools/signServer/JsonPath.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <algorithm>

namespace {

constexpr qsizetype kMostEntries = 2000;
constexpr qint64 kMinute = 60000;
constexpr qint64 kAfterFault = 10000;   // until the same is asked again
constexpr qint64 kUnknownKeep = 600000; // for what the service does not know
constexpr int kLastResort = 20;         // times its time an old answer is better than none
constexpr qsizetype kLongestText = 200;
constexpr qint64 kLongestPause = 3600000; // that a service may ask for
constexpr int kOk = 200, kNotFound = 404, kTooMany = 429, kBusy = 503;

// What a phone can show, on one line.
QString Tidy(QString text)
{
    text.truncate(kLongestText);
    for (QChar& letter : text) {
        if (!letter.isPrint())
            letter = ' ';
    }
    return text.simplified();
}

} // namespace

UpstreamDesk::UpstreamDesk(const ServicePlan& plan, const char* proof, int days, UpstreamClient& client,
                           RequestLog& log)
    : m_plan(plan), m_proof(proof), m_nDays(days), m_client(client), m_log(log)
{
    m_time.start();
}

void UpstreamDesk::Ask(const QByteArray& key, const NamedValues& values, const Done& done)
{
    const auto address = m_plan.AddressFor(values);
    if (!address) {
        done({true, nullptr});
        return;
    }
    QMutexLocker locker(&m_lock);
    const qint64 now = m_time.elapsed();
    MakeRoom(now);
    Entry& entry = m_entries[key];
    if (now < entry.until || (!entry.isAsked && !MayAsk(now))) {
        const UpstreamResult result =
            now < std::max(entry.until, entry.lastResort) ? entry.result : UpstreamResult();
        locker.unlock();
        done(result);
        return;
    }
    entry.waiting.append(done);
    if (entry.isAsked)
        return;
    entry.isAsked = true;
    locker.unlock();
    m_client.Get(*address, m_plan.patienceMs, [this, key](const UpstreamReply& reply) { Take(key, reply); });
}

bool UpstreamDesk::MayAsk(qint64 now)
{
    if (now < m_nPausedUntil)
        return false;
    if (now >= m_nMinuteEnds) {
        m_nMinuteEnds = now + kMinute;
        m_nInMinute = 0;
    }
    return m_nInMinute < m_plan.most && ++m_nInMinute;
}

void UpstreamDesk::Take(const QByteArray& key, const UpstreamReply& reply)
{
    QByteArray fault;
    UpstreamResult result = Read(reply, fault);
    QMutexLocker locker(&m_lock);
    const qint64 now = m_time.elapsed();
    Entry& entry = m_entries[key];
    if (result.isAnswer) {
        entry.result = result;
        entry.until = now + (result.values ? m_plan.keepMs : std::min(kUnknownKeep, m_plan.keepMs));
        entry.lastResort = now + kLastResort * m_plan.keepMs;
    } else {
        const qint64 pause = PauseOf(reply);
        m_nPausedUntil = pause > 0 ? now + pause : m_nPausedUntil;
        if (now >= entry.lastResort)
            entry.result = UpstreamResult();
        entry.until = now + kAfterFault;
        result = entry.result;
    }
    const QList<Done> waiting = std::move(entry.waiting);
    entry.waiting.clear();
    entry.isAsked = false;
    locker.unlock();
    if (!fault.isEmpty())
        m_log.Line("gateway: " + m_plan.name + ": " + fault);
    for (const Done& done : waiting)
        done(result);
}

UpstreamResult UpstreamDesk::Read(const UpstreamReply& reply, QByteArray& fault) const
{
    if (reply.status == kNotFound)
        return {true, nullptr};
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(reply.body, &error);
    if (reply.status != kOk)
        fault = reply.status ? "status " + QByteArray::number(reply.status) : reply.fault;
    else if (error.error != QJsonParseError::NoError)
        fault = "no JSON: " + error.errorString().toUtf8();
    if (!fault.isEmpty())
        return {};
    const QJsonValue root = document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    auto texts = std::make_shared<NamedTexts>();
    for (auto it = m_plan.fields.begin(); it != m_plan.fields.end(); ++it) {
        for (int day = 0; day < (it.key().startsWith("day.") ? m_nDays : 1); ++day) {
            const QByteArray number = QByteArray::number(day);
            const QByteArray name = it.key().startsWith("day.") ? it.key() + '.' + number : it.key();
            const QString text = JsonText(root, QByteArray(*it).replace("{day}", number));
            if (!text.isNull())
                (*texts)[name] = Tidy(text);
        }
    }
    return {true, texts->contains(m_proof) ? UpstreamValues(texts) : nullptr};
}

// How long the service wants not to be asked, in milliseconds.
qint64 UpstreamDesk::PauseOf(const UpstreamReply& reply) const
{
    if (reply.status != kTooMany && (reply.status != kBusy || reply.retryAfter.isEmpty()))
        return 0;
    bool isSeconds = false;
    qint64 pause = qint64(reply.retryAfter.toUInt(&isSeconds)) * 1000;
    if (!isSeconds) {
        QDateTime time =
            QLocale::c().toDateTime(QString::fromLatin1(reply.retryAfter), "ddd, dd MMM yyyy hh:mm:ss 'GMT'");
        time.setTimeSpec(Qt::UTC);
        pause = time.isValid() ? QDateTime::currentDateTimeUtc().msecsTo(time) : kMinute;
    }
    return std::clamp(pause, kAfterFault / 10, kLongestPause);
}

// What nobody waits for and is over goes first; a building full of other names must not fill the memory.
void UpstreamDesk::MakeRoom(qint64 now)
{
    if (m_entries.size() < kMostEntries)
        return;
    m_entries.removeIf([now](const auto& it) { return !it->isAsked && now >= it->until; });
    if (m_entries.size() >= kMostEntries)
        m_entries.removeIf([](const auto& it) { return !it->isAsked; });
}
