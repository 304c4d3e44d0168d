#include "host/services/transfers/httpTransfer.h"
#include "host/services/transfers/redirectRule.h"
#include "support/file/path.h"
#include "support/host/http.h"
#include "support/host/trace.h"
#include <QUrl>
#include <algorithm>
#include <utility>

namespace {

const char* const kNotThere = "it is sent on to where it may not go";
constexpr int kStatusGood = 200;
constexpr int kStatusElsewhere[] = {301, 302, 303, 305, 307, 308};

QByteArray folderOf(const QByteArray& file)
{
    chString folder(file.constData());
    pathRemoveFileSpec(folder);
    return QByteArray(folder.GetText());
}

QUrl addressOf(const QByteArray& url)
{
    return QUrl(QString::fromUtf8(url), QUrl::TolerantMode);
}

bool isHttpAddress(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return url.isValid() && !url.host().isEmpty() && (scheme == "http" || scheme == "https");
}

} // namespace

QByteArray httpTransfer::serverOf(const QByteArray& url)
{
    return addressOf(url).toEncoded(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery |
                                    QUrl::RemoveFragment);
}

httpTransfer::httpTransfer(const tagHttpJob& job, diskRoom& room, checkSums& sums, DoneCall done)
    : m_job(job), m_folder(folderOf(job.file)), m_room(room), m_sums(sums),
      m_sum(job.bCheckSum ? checkSums::begin() : nullptr), m_done(std::move(done))
{
    m_stall.setSingleShot(true);
    m_stall.setTimerType(Qt::PreciseTimer);
    m_stall.callOnTimeout(this, [this] { look(); });
    m_end.setSingleShot(true);
    m_end.callOnTimeout(this, [this] { fail("it takes too long"); });
}

void httpTransfer::start(httpLoop& loop)
{
    const QUrl url = addressOf(m_job.url);
    if (!isHttpAddress(url)) {
        fail("this is no HTTP address");
        return;
    }
    m_pLoop = &loop;
    begin(url);
    m_end.start(m_job.nTimeLimit > 0 ? qMin<int>(m_job.nTimeLimit, MOST_MS) : MOST_MS);
}

void httpTransfer::begin(const QUrl& url)
{
    m_redirect = QUrl();
    m_request =
        std::make_unique<httpRequest>(*m_pLoop, url, m_eReach, static_cast<httpRequest::Listener&>(*this));
    m_heard.start();
    m_stall.start(STALL_MS);
}

// The timer is not set again with each byte that comes: that would cost more than the byte.
void httpTransfer::look()
{
    const qint64 left = STALL_MS - m_heard.elapsed();
    if (left > 0)
        m_stall.start(int(left));
    else
        fail("nothing comes any more");
}

void httpTransfer::giveUp()
{
    m_done = nullptr;
    m_stall.stop();
    m_end.stop();
    m_block.clear();
    m_file.Abandon();
    m_request.reset();
}

// Notes the first reason only. Always false: nothing more is wanted.
bool httpTransfer::refuse(const char* reason)
{
    if (!m_szFailure)
        m_szFailure = reason;
    return false;
}

void httpTransfer::fail(const char* reason)
{
    refuse(reason);
    // Not inside one of the request's own calls.
    QMetaObject::invokeMethod(
        this, [this] { conclude(); }, Qt::QueuedConnection);
}

// Empty when the answer sends nobody on.
QUrl httpTransfer::redirectTarget() const
{
    const int* const end = std::end(kStatusElsewhere);
    if (std::find(std::begin(kStatusElsewhere), end, m_request->status()) == end)
        return QUrl();
    const QUrl target = addressOf(m_request->field("Location"));
    return target.isEmpty() ? QUrl() : m_request->url().resolved(target);
}

// Once a server elsewhere has sent it on, nobody may send it into this machine any more.
void httpTransfer::followTo(QUrl target)
{
    if (++m_nRedirects > MAX_REDIRECTS) {
        fail("it is sent on too often");
        return;
    }
    if (!redirectRule::isAllowed(addressOf(m_job.url), target)) {
        fail(kNotThere);
        return;
    }
    if (!m_request->isFromHere())
        m_eReach = httpRequest::ELSEWHERE;
    begin(target);
}

bool httpTransfer::onHead()
{
    m_heard.start();
    m_redirect = redirectTarget();
    if (!m_redirect.isEmpty())
        return false;
    if (const char* wrong = whatIsWrong())
        return refuse(wrong);
    const qint64 announced = m_request->announcedSize();
    if (announced > sizeLimit())
        return refuse("it is too large");
    return m_room.has(m_folder, announced) || refuse("there is no room for it");
}

bool httpTransfer::onBytes(const char* bytes, size_t size)
{
    m_heard.start();
    return !m_szFailure && (store(bytes, size) || refuse("it cannot be stored"));
}

const char* httpTransfer::whatIsWrong()
{
    if (m_request->status() != kStatusGood)
        return "the server refuses it";
    const QByteArray encoding = m_request->field("Content-Encoding").toLower();
    if (!encoding.isEmpty() && encoding != "identity")
        return "the server has packed it";
    return nullptr;
}

bool httpTransfer::store(const char* bytes, size_t size)
{
    m_nReceived += qint64(size);
    if (m_nReceived > sizeLimit() || !m_room.take(m_folder, qint64(size)))
        return false;
    if (m_block.isEmpty())
        beginBlock();
    m_block.append(bytes, qsizetype(size));
    return m_block.size() < BLOCK || writeBlock();
}

// A write for each piece would cost more than the piece: what comes in one turn of the loop is written
// together.
void httpTransfer::beginBlock()
{
    const qint64 whole = m_request->announcedSize();
    if (m_nReceived <= whole && whole <= BLOCK)
        m_block.reserve(whole);
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_szFailure && !writeBlock())
                fail("it cannot be stored");
        },
        Qt::QueuedConnection);
}

bool httpTransfer::writeBlock()
{
    if (m_block.isEmpty())
        return true;
    if (m_sum && !m_uncounted.isEmpty())
        m_sums.add(m_sum, m_uncounted);
    m_uncounted = std::exchange(m_block, QByteArray());
    return openFile() && m_file.Write(m_uncounted.constData(), size_t(m_uncounted.size()));
}

void httpTransfer::countLast(checkSums::ToldCall told)
{
    m_sums.finish(m_sum, std::exchange(m_uncounted, QByteArray()), std::move(told));
}

qint64 httpTransfer::sizeLimit() const
{
    return m_job.nSizeLimit > 0 ? qMin(m_job.nSizeLimit, MAX_SIZE) : MAX_SIZE;
}

bool httpTransfer::openFile()
{
    if (!m_bOpen)
        m_bOpen = m_job.bUnfinished ? m_file.OpenUnfinished(m_job.file.constData())
                                    : m_file.Open(m_job.file.constData());
    return m_bOpen;
}

void httpTransfer::onEnd()
{
    if (!m_szFailure && !m_redirect.isEmpty()) {
        followTo(m_redirect);
        return;
    }
    const taskUse use(*m_job.hold);
    if (use.action())
        static_cast<HttpAction*>(use.action())->httpFinished(nullptr);
    conclude();
}

const char* httpTransfer::whyNoAnswer()
{
    if (m_request->isBarred())
        return kNotThere;
    const QByteArray failure = m_request->tlsFailure();
    if (failure.isEmpty())
        return "the server does not answer";
    m_tlsFailure = "TLS: " + failure;
    return m_tlsFailure.constData();
}

// What is wrong with an answer that has come to its end.
void httpTransfer::findFailure()
{
    const qint64 announced = m_request->announcedSize();
    if (m_request->status() == 0)
        refuse(whyNoAnswer());
    else if (const char* wrong = whatIsWrong())
        refuse(wrong);
    else if (m_request->isPadded())
        refuse("there is more around it than in it");
    else if (!m_request->isWhole())
        refuse("the connection broke");
    else if (announced >= 0 && announced != m_nReceived)
        refuse("it is not complete");
    else if (!openFile() || !writeBlock() || !m_file.Commit(m_job.bFlush))
        refuse("it cannot be stored");
}

// Puts the file in its place if all is well, and tells. Does so once.
void httpTransfer::conclude()
{
    if (!m_done)
        return;
    m_stall.stop();
    m_end.stop();
    if (!m_szFailure)
        findFailure();
    m_request.reset();
    if (m_szFailure) {
        m_file.Abandon();
        nuxTrace(TRACE_NOTE, "transfer from %s failed: %s", serverOf(m_job.url).constData(), m_szFailure);
    }
    const DoneCall done = std::move(m_done);
    m_done = nullptr;
    done(this, !m_szFailure);
}
