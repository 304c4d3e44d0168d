#include "tools/signServer/SignServer.h"
#include "tools/signServer/ConnectionPool.h"
#include "tools/signServer/FileAnswer.h"
#include "tools/signServer/ReplyText.h"
#include "tools/signServer/RequestText.h"
#include "tools/signServer/ScheduleReply.h"
#include "tools/signServer/StockReply.h"
#include "tools/signServer/WeatherReply.h"
#include "tools/signServer/WireStream.h"
#include <QElapsedTimer>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kIdleMs = 15000; // a connection without requests
constexpr int kRequestsAConnection = 1000;
constexpr int kBacklog = 1024;            // connections that a burst of phones may leave unaccepted
constexpr size_t kLargestBody = 64 << 10; // of a request
const char* const kFaultsPath = "/faults";
const char* const kIconsPath = "/ig/images/weather/";

QByteArray TargetOf(const httplib::Request& request)
{
    return QByteArray::fromStdString(request.target);
}

bool IsFromThisMachine(const httplib::Request& request)
{
    const QByteArray address = QByteArray::fromStdString(request.remote_addr);
    return address.startsWith("127.") || address == "::1" || address.startsWith("::ffff:127.");
}

void ReuseAddress(socket_t socket)
{
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

} // namespace

// The fault of the request that this thread serves.
static thread_local const Fault* t_pFault = nullptr;

SignServer::SignServer(const QByteArray& folder, RequestLog& log, int threads)
    : m_folder(folder), m_account(m_folder), m_faults(m_folder), m_log(log)
{
    new_task_queue = [this, threads] { return new ConnectionPool(threads, m_waiting); };
    set_socket_options(ReuseAddress);
    set_tcp_nodelay(true);
    set_payload_max_length(kLargestBody);
    set_keep_alive_timeout(kIdleMs / 1000);
    set_keep_alive_max_count(kRequestsAConnection);
    set_pre_routing_handler([this](const Request& request, Response& response) {
        if (request.method != "GET" && request.method != "HEAD")
            return HandlerResponse::Unhandled;
        Answer(request, response);
        return HandlerResponse::Handled;
    });
    const auto faults = [this](const Request& request, Response& response) {
        AnswerFaults(request, response);
    };
    Post(kFaultsPath, faults);
    Delete(kFaultsPath, faults);
}

int SignServer::Bind(const QByteArray& address, int port)
{
    const std::string host = address.toStdString();
    const int bound = port == 0 ? bind_to_any_port(host) : bind_to_port(host, port) ? port : -1;
    // The library's own backlog is too short for a building full of phones that come up together.
    if (bound > 0 && ::listen(svr_sock_, kBacklog) != 0)
        return -1;
    return bound;
}

int SignServer::Serve()
{
    return listen_after_bind() ? 1 : 0;
}

void SignServer::Halt()
{
    m_stopping = true;
    stop();
}

bool SignServer::process_and_close_socket(socket_t socket)
{
    WireStream wire(socket, m_stopping);
    const auto isWanted = [this] { return m_waiting == 0; };
    for (int left = kRequestsAConnection; left > 0; --left) {
        // The first request of a connection is waited for also while others wait.
        const bool first = left == kRequestsAConnection;
        if (!wire.AwaitRequest(kIdleMs, first ? [] { return true; } : std::function<bool()>(isWanted)))
            break;
        if (!ServeRequest(wire, left == 1))
            break;
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return true;
}

bool SignServer::ServeRequest(WireStream& wire, bool last)
{
    QElapsedTimer time;
    time.start();
    bool closed = false;
    Request seen;
    const bool good = process_request(wire, last, closed, [&](Request& request) {
        TakeRequest(request, wire);
        // A body that nobody reads would be taken for the next request.
        const bool unread = request.method == "GET" || request.method == "HEAD";
        const std::string length = request.get_header_value("Content-Length");
        closed = closed || (unread && !length.empty() && length != "0");
        seen = request;
    });
    t_pFault = nullptr;
    LogRequest(seen, wire, time.elapsed());
    return good && !closed && !wire.IsOver();
}

void SignServer::TakeRequest(Request& request, WireStream& wire)
{
    // Files come whole and as they are.
    request.headers.erase("Accept-Encoding");
    request.headers.erase("Range");
    request.ranges.clear();
    if (request.path != kFaultsPath)
        wire.SetFault(m_faults.Choose(PercentDecoded(TargetOf(request))));
    t_pFault = &wire.GetFault();
}

void SignServer::LogRequest(const Request& request, const WireStream& wire, qint64 ms)
{
    std::string address;
    int port = 0;
    wire.get_remote_ip_and_port(address, port);
    const QByteArray asked = request.method.empty() ? QByteArray("(no request)")
                                                    : QByteArray::fromStdString(request.method) + " " +
                                                          LoggableTarget(TargetOf(request));
    const QByteArray fault = wire.GetFault().name;
    m_log.Line(QByteArray::fromStdString(address) + " " + asked + " " + QByteArray::number(wire.Status()) +
               " " + QByteArray::number(wire.BodyBytes()) + " " + QByteArray::number(ms) + "ms" +
               (fault.isEmpty() ? QByteArray() : " fault=" + fault));
}

void SignServer::Answer(const Request& request, Response& response)
{
    if (request.path == kFaultsPath) {
        AnswerFaults(request, response);
        return;
    }
    const Fault fault = *t_pFault;
    if (fault.kind == FaultKind::Refuse) {
        AnswerXml(response, RefusedReply("refused"), fault.status);
        return;
    }
    if (fault.kind == FaultKind::Redirect) {
        response.set_redirect(fault.to.isEmpty() ? request.target : fault.to.toStdString());
        return;
    }
    AnswerPath(RequestText(TargetOf(request)), request, response);
    if (fault.kind == FaultKind::BrokenXml)
        BreakXml(response);
    if (fault.kind == FaultKind::Cut && fault.chunked)
        SendInChunks(response);
}

void SignServer::AnswerPath(const RequestText& asked, const Request& request, Response& response)
{
    const QByteArray& path = asked.path;
    if (path == "/service/register.htm")
        AnswerRegister(asked, response);
    else if (path == "/service/getschedule.htm")
        AnswerSchedule(asked, request, response);
    else if (path == "/service/getfile.htm")
        AnswerFile(asked, request, response);
    else if (path == "/service/weather.htm" || path == "/service/stock.htm")
        AnswerFeed(asked, request, response);
    else if (path == "/ig/api")
        AnswerPublicFeed(asked, response);
    else if (path.startsWith(kIconsPath))
        AnswerIcon(asked, request, response);
    else
        AnswerXml(response, RefusedReply("no such service"), 404);
}

void SignServer::AnswerRegister(const RequestText& asked, Response& response)
{
    const QByteArray refused = m_account.Register(asked.Value("serverKey"), asked.Value("password"),
                                                  asked.Value("clientName"), asked.Value("hardwareKey"));
    AnswerXml(response, refused.isEmpty() ? RegisteredReply() : RefusedReply(refused));
}

void SignServer::AnswerSchedule(const RequestText& asked, const Request& request, Response& response)
{
    QByteArray display;
    const QByteArray refused = m_account.Check(asked.Value("serverKey"), asked.Value("hardwareKey"), display);
    if (!refused.isEmpty()) {
        AnswerXml(response, RefusedReply(refused));
        return;
    }
    const QByteArray schedule = ScheduleOf(display);
    if (schedule.isEmpty())
        AnswerXml(response, RefusedReply("the schedule cannot be read"), 503);
    else
        AnswerXmlOrUnchanged(request, response, schedule);
}

// While schedule.xml is being written, the phones go on with what they had.
QByteArray SignServer::ScheduleOf(const QByteArray& display)
{
    ScheduleReply maker(m_folder);
    const QByteArray schedule = maker.For(display);
    QMutexLocker locker(&m_scheduleLock);
    if (m_complaints[display] != maker.Complaints()) {
        m_complaints[display] = maker.Complaints();
        for (const QString& complaint : maker.Complaints())
            m_log.Line("content: " + complaint.toUtf8());
    }
    if (!schedule.isEmpty())
        m_goodSchedules[display] = schedule;
    return m_goodSchedules[display];
}

void SignServer::AnswerFile(const RequestText& asked, const Request& request, Response& response)
{
    QByteArray display;
    const QByteArray refused = m_account.Check(asked.Value("serverKey"), asked.Value("hardwareKey"), display);
    if (!refused.isEmpty()) {
        AnswerXml(response, RefusedReply(refused), 403);
        return;
    }
    const QByteArray name = asked.Value("filePath");
    const OpenFilePtr file = m_folder.Open(asked.Value("fileType"), name);
    if (file)
        AnswerFileOrUnchanged(request, response, file, m_folder.Sum(*file), name);
    else
        AnswerXml(response, RefusedReply("no such file"), 404);
}

void SignServer::AnswerFeed(const RequestText& asked, const Request& request, Response& response)
{
    QByteArray display;
    const QByteArray refused = m_account.Check(asked.Value("serverKey"), asked.Value("hardwareKey"), display);
    if (!refused.isEmpty()) {
        AnswerXml(response, RefusedReply(refused));
        return;
    }
    const QByteArray here = "http://" + QByteArray::fromStdString(request.get_header_value("Host"));
    if (asked.path == "/service/weather.htm")
        AnswerXml(response, WeatherReply(m_folder, QDate::currentDate()).ForPhone(asked.Value("city"), here));
    else
        AnswerXml(response,
                  StockReply(m_folder, QDateTime::currentDateTimeUtc()).ForPhone(asked.Value("code")));
}

void SignServer::AnswerPublicFeed(const RequestText& asked, Response& response)
{
    const QByteArray city = asked.Value("weather"), code = asked.Value("stock");
    if (!city.isEmpty())
        AnswerXml(response, WeatherReply(m_folder, QDate::currentDate()).ForPublic(city));
    else
        AnswerXml(response, StockReply(m_folder, QDateTime::currentDateTimeUtc()).ForPublic(code));
}

void SignServer::AnswerIcon(const RequestText& asked, const Request& request, Response& response)
{
    const QByteArray name = asked.path.mid(qsizetype(strlen(kIconsPath)));
    const OpenFilePtr file = m_folder.Open("icon", name);
    if (file)
        AnswerFileOrUnchanged(request, response, file, m_folder.Sum(*file), name);
    else
        AnswerXml(response, RefusedReply("no such picture"), 404);
}

// GET: the rules in force. POST: other rules, none for an empty body. DELETE: those of the file again.
void SignServer::AnswerFaults(const Request& request, Response& response)
{
    if (!IsFromThisMachine(request)) {
        AnswerXml(response, RefusedReply("only from the server's own machine"), 403);
        return;
    }
    QByteArray error;
    if (request.method == "POST")
        error = m_faults.Replace(QByteArray::fromStdString(request.body));
    else if (request.method == "DELETE")
        m_faults.Restore();
    response.status = error.isEmpty() ? 200 : 400;
    response.set_content((error.isEmpty() ? m_faults.Report() : error + "\n").toStdString(), "text/plain");
}
