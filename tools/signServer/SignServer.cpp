#include "tools/signServer/SignServer.h"
#include "tools/signServer/FileAnswer.h"
#include "tools/signServer/LocalAccess.h"
#include "tools/signServer/ReplyText.h"
#include "tools/signServer/ScheduleReply.h"
#include "tools/signServer/StockReply.h"
#include "tools/signServer/WeatherReply.h"

namespace {

const char* const kFaultsPath = "/faults";
const char* const kWeatherPath = "/service/weather.htm";
const char* const kStockPath = "/service/stock.htm";
const char* const kPublicPath = "/ig/api";
const char* const kIconsPath = "/ig/images/weather/";
constexpr int kSummers = 2;

bool IsRead(const WebRequest& request)
{
    return request.method == "GET" || request.method == "HEAD";
}

bool IsFeed(const QByteArray& path)
{
    return path == kWeatherPath || path == kStockPath || path == kPublicPath;
}

// False for a request that no phone makes.
bool IsOfDisplay(const Served& served, DisplayEvent& event)
{
    const QByteArray& path = served.request.asked.path;
    if (path == "/service/register.htm")
        event.kind = DisplayEvent::Registration;
    else if (path == "/service/getschedule.htm")
        event.kind = DisplayEvent::Look;
    else if (path == "/service/getfile.htm")
        event.kind = DisplayEvent::File;
    else
        return false;
    return served.request.method == "GET";
}

DisplayEvent EventOf(const Served& served, DisplayEvent event)
{
    const RequestText& asked = served.request.asked;
    const WebResponse& response = served.response;
    const bool isGranted = response.status == 200 || response.status == 304;
    event.key = asked.Value("hardwareKey");
    event.name = response.display;
    event.address = served.request.address;
    event.refused = response.refused;
    event.whole = served.whole && isGranted;
    event.files = response.files;
    event.fileType = asked.Value("fileType");
    event.fileName = asked.Value("filePath");
    event.sum = response.sum;
    if (event.kind != DisplayEvent::File && event.refused.isEmpty() && !event.whole)
        event.refused = "the answer was cut off";
    return event;
}

} // namespace

SignServer::SignServer(const QByteArray& folder, RequestLog& log, const FeedClock& clock,
                       FeedGateway* pGateway)
    : m_folder(folder), m_account(m_folder), m_feeds(m_folder, clock, pGateway), m_faults(m_folder),
      m_log(log), m_status(m_folder, m_account, m_log)
{
    m_summers.setMaxThreadCount(kSummers);
}

void SignServer::Settle()
{
    m_summers.waitForDone();
    m_account.Settle();
}

void SignServer::Answer(const WebRequest& request, const Reply& reply)
{
    if (request.asked.path == kFaultsPath) {
        reply(AnswerFaults(request));
        return;
    }
    if (StatusDesk::IsStatusPath(request.asked.path) && IsRead(request)) {
        reply(AnswerStatus(request));
        return;
    }
    WebResponse response;
    response.fault = m_faults.Choose(PercentDecoded(request.target));
    const FaultKind kind = response.fault.kind;
    if (!IsRead(request)) {
        AnswerRefused(response, "no such service", 404);
    } else if (kind == FaultKind::Refuse) {
        AnswerRefused(response, "refused", response.fault.status);
    } else if (kind == FaultKind::Redirect) {
        response.status = 302;
        response.fields.append(
            {"Location", response.fault.to.isEmpty() ? request.target : response.fault.to});
    } else if (request.asked.path == "/service/register.htm") {
        AnswerRegister(request, response, reply);
        return;
    } else if (request.asked.path == "/service/getfile.htm") {
        AnswerFile(request, response, reply);
        return;
    } else if (IsFeed(request.asked.path)) {
        AnswerFeed(request, response, reply);
        return;
    } else if (request.asked.path.startsWith(kIconsPath)) {
        AnswerIcon(request, response, reply);
        return;
    } else {
        AnswerPath(request, response);
    }
    Spoil(response);
    reply(response);
}

void SignServer::Spoil(WebResponse& response)
{
    if (response.fault.kind == FaultKind::BrokenXml)
        BreakXml(response);
    response.chunked = response.fault.kind == FaultKind::Cut && response.fault.chunked;
}

void SignServer::AnswerPath(const WebRequest& request, WebResponse& response)
{
    const QByteArray& path = request.asked.path;
    if (path == "/service/getschedule.htm")
        AnswerSchedule(request, response);
    else
        AnswerRefused(response, "no such service", 404);
}

void SignServer::AnswerRegister(const WebRequest& request, WebResponse response, const Reply& reply)
{
    const RequestText& asked = request.asked;
    response.display = asked.Value("clientName");
    m_account.Register(asked.Value("serverKey"), asked.Value("password"), response.display,
                       asked.Value("hardwareKey"), [response, reply](const QByteArray& refused) mutable {
                           if (refused.isEmpty())
                               AnswerXml(response, RegisteredReply());
                           else
                               AnswerRefused(response, refused);
                           Spoil(response);
                           reply(response);
                       });
}

// False when the display may not be served; the answer says why then.
bool SignServer::Admits(const WebRequest& request, WebResponse& response, int status)
{
    const RequestText& asked = request.asked;
    const QByteArray refused =
        m_account.Check(asked.Value("serverKey"), asked.Value("hardwareKey"), response.display);
    if (!refused.isEmpty())
        AnswerRefused(response, refused, status);
    return refused.isEmpty();
}

void SignServer::AnswerSchedule(const WebRequest& request, WebResponse& response)
{
    if (!Admits(request, response, 200))
        return;
    const MadeSchedulePtr schedule = ScheduleOf(response.display);
    if (!schedule) {
        AnswerRefused(response, "the schedule cannot be read", 503);
        return;
    }
    response.files = schedule->files;
    AnswerXmlOrUnchanged(request, response, schedule->reply);
}

// While schedule.xml is being written, the phones go on with what they had.
MadeSchedulePtr SignServer::ScheduleOf(const QByteArray& display)
{
    ScheduleReply maker(m_folder);
    const QByteArray reply = maker.For(display);
    m_status.Complain(maker.Complaints());
    if (!reply.isEmpty())
        m_goodSchedules.Keep(display, {reply, maker.Files()});
    return m_goodSchedules.LastOf(display);
}

void SignServer::AnswerFile(const WebRequest& request, WebResponse response, const Reply& reply)
{
    const QByteArray name = request.asked.Value("filePath");
    OpenFilePtr file;
    if (Admits(request, response, 403)) {
        file = m_folder.Open(request.asked.Value("fileType"), name);
        if (!file)
            AnswerRefused(response, "no such file", 404);
    }
    AnswerContent(request, response, file, name, reply);
}

// A file that nobody knows yet is read elsewhere: the threads that answer wait for nobody. Without a file the
// response is whole already.
void SignServer::AnswerContent(const WebRequest& request, WebResponse response, const OpenFilePtr& file,
                               const QByteArray& name, const Reply& reply)
{
    auto answer = [request, response, file, name, reply](const QByteArray& sum) mutable {
        if (file)
            AnswerFileOrUnchanged(request, response, file, sum, name);
        Spoil(response);
        reply(response);
    };
    const QByteArray known = file ? m_folder.Sums().Known(*file) : QByteArray("");
    if (known.isNull())
        m_summers.start([this, answer, file, asked = FileSums::Clock::now()]() mutable {
            answer(m_folder.Sums().Of(*file, asked));
        });
    else
        answer(known);
}

// Signage and the public feed ask the same in two ways, and read it in two.
void SignServer::AnswerFeed(const WebRequest& request, WebResponse response, const Reply& reply)
{
    const RequestText& asked = request.asked;
    const bool isPublic = asked.path == kPublicPath;
    if (!isPublic && !Admits(request, response, 200)) {
        Spoil(response);
        reply(response);
        return;
    }
    const QByteArray here = "http://" + request.Field("host");
    if (isPublic ? asked.Has("weather") : asked.path == kWeatherPath)
        m_feeds.FindCity(asked.Value(isPublic ? "weather" : "city"), [response, reply, isPublic,
                                                                      here](const Found<Forecast>& found) {
            AnswerFound(response, reply, found.isAnswer,
                        isPublic ? WeatherForPublic(found.what) : WeatherForPhone(found.what, here));
        });
    else
        m_feeds.FindStock(asked.Value(isPublic ? "stock" : "code"),
                          [response, reply, isPublic](const Found<Quote>& found) {
                              AnswerFound(response, reply, found.isAnswer,
                                          isPublic ? StockForPublic(found.what) : StockForPhone(found.what));
                          });
}

// To the phone a feed that nobody knows anything of is one that cannot be reached.
void SignServer::AnswerFound(WebResponse response, const Reply& reply, bool isAnswer, const QByteArray& xml)
{
    if (isAnswer)
        AnswerXml(response, xml);
    else
        AnswerRefused(response, "the service behind the gateway gives no answer", 503);
    Spoil(response);
    reply(response);
}

void SignServer::AnswerIcon(const WebRequest& request, WebResponse response, const Reply& reply)
{
    const QByteArray name = request.asked.path.mid(qsizetype(strlen(kIconsPath)));
    const OpenFilePtr file = m_folder.Open("icon", name);
    if (!file)
        AnswerRefused(response, "no such picture", 404);
    AnswerContent(request, response, file, name, reply);
}

// GET: the rules in force. POST: other rules, none for an empty body. DELETE: those of the file again.
WebResponse SignServer::AnswerFaults(const WebRequest& request)
{
    WebResponse response;
    const QByteArray refusal = IsRead(request) ? LocalRefusal(request) : LocalChangeRefusal(request);
    if (!refusal.isEmpty()) {
        AnswerRefused(response, refusal, 403);
        return response;
    }
    if (request.method == "POST")
        response.refused = m_faults.Replace(request.body);
    else if (request.method == "DELETE")
        m_faults.Restore();
    response.status = response.refused.isEmpty() ? 200 : 400;
    response.type = "text/plain";
    response.body = response.refused.isEmpty() ? m_faults.Report() : response.refused + "\n";
    return response;
}

WebResponse SignServer::AnswerStatus(const WebRequest& request)
{
    const StatusAnswer answer = m_status.Answer({request.asked.path, request.asked.Value("display"),
                                                 LocalRefusal(request), request.Field("authorization")});
    WebResponse response;
    response.status = answer.status;
    response.type = answer.type;
    response.body = answer.body;
    response.fields = answer.fields;
    return response;
}

void SignServer::Lose(const Served& served)
{
    DisplayEvent event;
    if (!IsOfDisplay(served, event))
        return;
    event = EventOf(served, event);
    event.whole = false;
    m_status.Note(event);
}

void SignServer::Finish(const Served& served)
{
    DisplayEvent event;
    if (IsOfDisplay(served, event))
        m_status.Note(EventOf(served, event));
    const WebRequest& request = served.request;
    const WebResponse& response = served.response;
    const QByteArray asked = request.method.isEmpty() ? QByteArray("(no request)")
                                                      : request.method + " " + LoggableTarget(request.target);
    QByteArray line = request.address + " " + asked + " " + QByteArray::number(response.status) + " " +
                      QByteArray::number(served.bodyBytes) + " " + QByteArray::number(served.ms) + "ms";
    if (!response.refused.isEmpty())
        line += " refused: " + response.refused;
    if (!response.fault.name.isEmpty())
        line += " fault=" + response.fault.name;
    m_log.Line(line);
}
