#include "bench/steeredPhone.h"
#include <QThread>

namespace {

constexpr int kTrimMs = 2500;
const char* const kHome = "frmDesktop";
const char* const kCall = "frmCall";

} // namespace

bool SteeredPhone::start(const QStringList& options)
{
    // Which of the allocator's heaps the next thread gets is chance, and each that was ever used keeps some
    // hundred KiB.
    qputenv("MALLOC_ARENA_MAX", "1");
    if (!m_phone.start(options) || !m_link.open(root() + "/control", WAIT_MS))
        return false;
    // Calls that follow each other so quickly take each press at once.
    ask({"config", "/rundata/config/system.ini", "CALL", "nPressGuard", "0"});
    return true;
}

QJsonObject SteeredPhone::ask(const QStringList& words)
{
    const QJsonObject answer = m_link.ask(words).toObject();
    if (!m_link.isOpen())
        qFatal("the phone does not answer: %s", qPrintable(words.join(' ')));
    return answer;
}

void SteeredPhone::type(const QString& digits)
{
    for (const QChar digit : digits)
        ask({"key", QString(digit)});
}

bool SteeredPhone::waitPage(const char* className)
{
    return !ask({"wait", "page", className, QString::number(WAIT_MS)}).contains("error");
}

bool SteeredPhone::goHome()
{
    if (ask({"screen"})["top"] == kCall)
        key("F4");
    return waitPage(kHome);
}

// What the toolkit has drawn before goes; then a window comes and goes, after which the phone gives back what
// it has over.
void SteeredPhone::rest(int ms)
{
    QThread::msleep(ulong(ms));
    ask({"memory"});
    ask({"menu", "setting.xml"});
    key("F4");
    waitPage(kHome);
    QThread::msleep(kTrimMs);
    ask({"wait", "idle", QString::number(WAIT_MS)});
}
