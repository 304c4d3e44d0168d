#include "host/services/transfers/httpTransfer.h"
#include "host/services/transfers/redirectRule.h"
#include "support/file/path.h"
#include "support/host/http.h"
#include "support/host/trace.h"
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslError>
#include <QUrl>

namespace {

constexpr qint64 kBlock = 64 << 10;
constexpr int kStatusGood = 200;
constexpr qint64 kReadAhead = 1 << 20; // bytes that may wait for their place in the file

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

QNetworkRequest requestFor(const QUrl& url)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setHeader(QNetworkRequest::UserAgentHeader, "hxPhone");
    // The bytes are stored as they come, and their number is checked.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

} // namespace

QByteArray httpTransfer::serverOf(const QByteArray& url)
{
    return addressOf(url).toEncoded(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery |
                                    QUrl::RemoveFragment);
}

httpTransfer::httpTransfer(const tagHttpJob& job, diskRoom& room, DoneCall done)
    : m_job(job), m_folder(folderOf(job.file)), m_room(room), m_done(std::move(done))
{
    m_stall.setSingleShot(true);
    m_stall.setTimerType(Qt::PreciseTimer);
    m_stall.setInterval(STALL_MS);
    connect(&m_stall, &QTimer::timeout, this, [this] { fail("nothing comes any more"); });
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, this, [this] { fail("it takes too long"); });
}

httpTransfer::~httpTransfer()
{
    if (m_pReply)
        m_pReply->deleteLater();
}

void httpTransfer::start(QNetworkAccessManager& manager, bool hasConnection)
{
    const QUrl url = addressOf(m_job.url);
    if (!isHttpAddress(url)) {
        m_szFailure = "this is no HTTP address";
        conclude();
        return;
    }
    m_pManager = &manager;
    begin(url);
    if (hasConnection)
        m_stall.start();
    m_end.start(m_job.nTimeLimit > 0 ? qMin<int>(m_job.nTimeLimit, MOST_MS) : MOST_MS);
}

void httpTransfer::begin(const QUrl& url)
{
    m_pReply = m_pManager->get(requestFor(url));
    m_pReply->setReadBufferSize(kReadAhead);
    connect(m_pReply, &QNetworkReply::metaDataChanged, this, [this] { onHead(); });
    connect(m_pReply, &QNetworkReply::sslErrors, this, [this](const QList<QSslError>& errors) {
        m_tlsFailure = errors.value(0).errorString().toUtf8();
    });
    connect(m_pReply, &QNetworkReply::readyRead, this, [this] { onData(); });
    connect(m_pReply, &QNetworkReply::finished, this, [this] { onFinished(); });
    for (const auto begins : {&QNetworkReply::socketStartedConnecting, &QNetworkReply::requestSent})
        connect(m_pReply, begins, this, [this] { m_stall.start(); });
}

void httpTransfer::giveUp()
{
    m_done = nullptr;
    m_stall.stop();
    m_end.stop();
    m_file.Abandon();
    if (!m_pReply)
        return;
    m_pReply->disconnect(this);
    m_pReply->abort();
}

void httpTransfer::fail(const char* reason)
{
    if (m_szFailure)
        return;
    m_szFailure = reason;
    // Not inside one of the reply's own calls.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_done)
                m_pReply->abort();
            conclude(); // of a reply that was left behind nothing is heard any more
        },
        Qt::QueuedConnection);
}

// Empty when the answer sends nobody on.
QUrl httpTransfer::redirectTarget() const
{
    const QUrl target = m_pReply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    return target.isEmpty() ? QUrl() : m_pReply->url().resolved(target);
}

// Nothing more is wanted of the reply that said so.
void httpTransfer::followTo(const QUrl& target)
{
    m_pReply->disconnect(this);
    if (++m_nRedirects > MAX_REDIRECTS) {
        fail("it is sent on too often");
        return;
    }
    redirectRule::ask(addressOf(m_job.url), target, this, [this, target](bool allowed) {
        if (!m_done || m_szFailure)
            return;
        if (!allowed) {
            fail("it is sent on to where it may not go");
            return;
        }
        m_pReply->abort();
        m_pReply->deleteLater();
        begin(target);
    });
}

void httpTransfer::onHead()
{
    m_stall.start();
    if (const QUrl target = redirectTarget(); !target.isEmpty())
        followTo(target);
    else if (status() == kStatusGood && announcedSize() > sizeLimit())
        fail("it is too large");
    else if (status() == kStatusGood && !m_room.ask(m_folder, announcedSize()))
        fail("there is no room for it");
}

void httpTransfer::onData()
{
    m_stall.start();
    if (!isAnswerGood())
        return;
    while (!m_szFailure && m_pReply->bytesAvailable() > 0) {
        const QByteArray bytes = m_pReply->read(kBlock);
        if (bytes.isEmpty())
            return;
        if (!store(bytes))
            fail("it cannot be stored");
    }
}

// False, and the transfer has failed, for an answer whose body is not wanted.
bool httpTransfer::isAnswerGood()
{
    if (m_szFailure)
        return false;
    if (const char* wrong = whatIsWrong()) {
        fail(wrong);
        return false;
    }
    return true;
}

const char* httpTransfer::whatIsWrong()
{
    if (status() != kStatusGood)
        return "the server refuses it";
    const QByteArray encoding = m_pReply->rawHeader("Content-Encoding").trimmed().toLower();
    if (!encoding.isEmpty() && encoding != "identity")
        return "the server has packed it";
    return nullptr;
}

// The first thing that is wrong with the certificate, or else what the handshake said.
const char* httpTransfer::tlsFailure()
{
    if (m_tlsFailure.isEmpty())
        m_tlsFailure = m_pReply->errorString().toUtf8();
    m_tlsFailure.prepend("TLS: ");
    return m_tlsFailure.constData();
}

bool httpTransfer::store(const QByteArray& bytes)
{
    m_nReceived += bytes.size();
    if (m_job.bCheckSum)
        m_hash.addData(bytes);
    return m_nReceived <= sizeLimit() && m_room.take(m_folder, bytes.size()) && openFile() &&
           m_file.Write(bytes.constData(), size_t(bytes.size()));
}

QByteArray httpTransfer::checkSum() const
{
    return m_job.bCheckSum ? m_hash.result().toHex() : QByteArray();
}

qint64 httpTransfer::sizeLimit() const
{
    return m_job.nSizeLimit > 0 ? qMin(m_job.nSizeLimit, MAX_SIZE) : MAX_SIZE;
}

bool httpTransfer::openFile()
{
    if (!m_bOpen)
        m_bOpen = m_file.Open(m_job.file.constData());
    return m_bOpen;
}

// 0 when there was no answer.
int httpTransfer::status() const
{
    return m_pReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

// -1 when the server does not say.
qint64 httpTransfer::announcedSize() const
{
    const QVariant size = m_pReply->header(QNetworkRequest::ContentLengthHeader);
    return size.isValid() ? size.toLongLong() : -1;
}

void httpTransfer::onFinished()
{
    const taskUse use(*m_job.hold);
    if (use.action())
        static_cast<HttpAction*>(use.action())->httpFinished(m_pReply);
    conclude();
}

void httpTransfer::conclude()
{
    if (!m_done)
        return;
    m_stall.stop();
    m_end.stop();
    if (m_pReply && !m_szFailure && status() == 0)
        m_szFailure = m_pReply->error() == QNetworkReply::SslHandshakeFailedError
                          ? tlsFailure()
                          : "the server does not answer";
    if (m_pReply && !m_szFailure)
        onData();
    if (m_pReply && !m_szFailure && m_pReply->error() != QNetworkReply::NoError)
        m_szFailure = "the connection broke";
    if (!m_szFailure && announcedSize() >= 0 && announcedSize() != m_nReceived)
        m_szFailure = "it is not complete";
    if (!m_szFailure && !(openFile() && m_file.Commit(m_job.bFlush)))
        m_szFailure = "it cannot be stored";
    if (m_szFailure) {
        m_file.Abandon();
        nuxTrace(TRACE_NOTE, "transfer from %s failed: %s", serverOf(m_job.url).constData(), m_szFailure);
    }
    const DoneCall done = std::move(m_done);
    m_done = nullptr;
    done(this, !m_szFailure);
}
