#include "tools/signServer/StatusDesk.h"
#include "tools/signServer/Account.h"
#include "tools/signServer/BookFile.h"
#include "tools/signServer/RequestLog.h"
#include "tools/signServer/StatusJson.h"
#include "tools/signServer/StatusPage.h"
#include <ctime>

namespace {

const char* const kBookFile = "displays.json";
const char* const kPagePath = "/status";
const char* const kJsonPath = "/status.json";
constexpr int kInterval = 60; // seconds; that of a phone that is told no other
constexpr int kLongestInterval = 86400;
constexpr qint64 kStoreS = 30; // between two savings of the book

qint64 Now()
{
    return qint64(time(nullptr));
}

// "Basic" and name:password in base 64; any name will do.
bool GivesPassword(const QByteArray& authorization, const QByteArray& password)
{
    if (authorization.left(6).toLower() != "basic ")
        return false;
    const QByteArray given = QByteArray::fromBase64(authorization.mid(6).trimmed());
    const qsizetype colon = given.indexOf(':');
    return colon >= 0 && IsSameSecret(given.mid(colon + 1), password);
}

StatusAnswer Refused(int status, const QByteArray& why)
{
    StatusAnswer answer;
    answer.status = status;
    answer.type = "text/plain; charset=utf-8";
    answer.body = why + "\n";
    if (status == 401)
        answer.fields = {{"WWW-Authenticate", "Basic realm=\"signage status\", charset=\"UTF-8\""}};
    return answer;
}

} // namespace

StatusDesk::StatusDesk(const SignFolder& folder, Account& account, RequestLog& log)
    : m_folder(folder), m_account(account), m_log(log), m_notes(log)
{
    const StoredBook stored = ReadBookFile(m_folder.PathOf(kBookFile));
    m_book.Restore(stored.known, stored.strangers, Now());
    m_nStored = m_book.Changes();
    m_nStoredAt = Now();
    m_watch = std::make_unique<ContentWatch>(m_folder, m_notes, [this](bool isEnd) { StoreBook(isEnd); });
}

StatusDesk::~StatusDesk() = default;

void StatusDesk::Note(const DisplayEvent& event)
{
    m_book.Note(event, Now());
}

// On the thread of the watch.
void StatusDesk::StoreBook(bool isEnd)
{
    const quint64 changes = m_book.Changes();
    if (changes == m_nStored || (!isEnd && Now() - m_nStoredAt < kStoreS))
        return;
    m_nStoredAt = Now();
    // Who is admitted in between is in both; that counts.
    const DisplayBook::Records strangers = m_book.Strangers();
    const int stored = WriteBookFile(m_folder.PathOf(kBookFile), {m_book.Known(), strangers});
    if (stored)
        m_nStored = changes;
    else if (!m_storeFailed)
        m_log.Line(QByteArray("status: ") + kBookFile + " cannot be written");
    m_storeFailed = !stored;
}

bool StatusDesk::IsStatusPath(const QByteArray& path)
{
    return path == kPagePath || path == kJsonPath;
}

QByteArray StatusDesk::Setting(const char* name) const
{
    return m_account.Setting("status", name);
}

int StatusDesk::IntervalS() const
{
    const int seconds = Setting("interval").toInt();
    return seconds > 0 && seconds <= kLongestInterval ? seconds : kInterval;
}

StatusReport StatusDesk::Report() const
{
    StatusInput input;
    input.known = m_book.Known();
    input.strangers = m_book.Strangers();
    input.expected = m_account.Displays();
    input.warnings = m_notes.List();
    input.contentKnown = m_notes.IsWhole();
    input.intervalS = IntervalS();
    input.now = Now();
    return StatusReport(input);
}

StatusAnswer StatusDesk::Answer(const StatusRequest& request) const
{
    const QByteArray password = Setting("password");
    if (!password.isEmpty() && !GivesPassword(request.authorization, password))
        return Refused(401, "The status needs the password of [status] in server.ini.");
    if (password.isEmpty() && !request.refusal.isEmpty())
        return Refused(403, "Without a password under [status] in server.ini the status is told " +
                                request.refusal + ".");
    StatusAnswer answer;
    const bool isPage = request.path == kPagePath;
    answer.type = isPage ? "text/html; charset=utf-8" : "application/json";
    answer.body = isPage ? StatusPage(Report(), request.display) : StatusJson(Report());
    answer.fields = {{"Cache-Control", "no-store"},
                     {"X-Content-Type-Options", "nosniff"},
                     {"Referrer-Policy", "no-referrer"},
                     {"Content-Security-Policy", StatusPagePolicy()}};
    return answer;
}
