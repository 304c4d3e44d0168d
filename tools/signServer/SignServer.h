#pragma once
// The demonstration server: answers what phones ask of a signage server and of the public weather and stock
// feeds, from one folder.
#include "tools/signServer/Account.h"
#include "tools/signServer/FaultPlan.h"
#include "tools/signServer/RequestLog.h"
#include <atomic>
#include <httplib.h>

struct RequestText;
class WireStream;

class SignServer : public httplib::Server
{
public:
    // log outlives the server. threads: how many connections are served at a time.
    SignServer(const QByteArray& folder, RequestLog& log, int threads);

    // port 0 chooses one. The port, or -1 when the address cannot be taken.
    int Bind(const QByteArray& address, int port);
    // Serves until Halt; 0 when the server could not start.
    int Serve();
    // Any thread; ends also answers that are held back or drip.
    void Halt();

private:
    using Request = httplib::Request;
    using Response = httplib::Response;

    bool process_and_close_socket(socket_t socket) override;
    bool ServeRequest(WireStream& wire, bool last);
    void TakeRequest(Request& request, WireStream& wire);
    void LogRequest(const Request& request, const WireStream& wire, qint64 ms);

    void Answer(const Request& request, Response& response);
    void AnswerPath(const RequestText& asked, const Request& request, Response& response);
    void AnswerRegister(const RequestText& asked, Response& response);
    void AnswerSchedule(const RequestText& asked, const Request& request, Response& response);
    void AnswerFile(const RequestText& asked, const Request& request, Response& response);
    void AnswerFeed(const RequestText& asked, const Request& request, Response& response);
    void AnswerPublicFeed(const RequestText& asked, Response& response);
    void AnswerIcon(const RequestText& asked, const Request& request, Response& response);
    void AnswerFaults(const Request& request, Response& response);
    QByteArray ScheduleOf(const QByteArray& display);

    SignFolder m_folder;
    Account m_account;
    FaultPlan m_faults;
    RequestLog& m_log;
    std::atomic<bool> m_stopping{false};
    std::atomic<int> m_waiting{0};
    QMutex m_scheduleLock;
    QHash<QByteArray, QByteArray> m_goodSchedules; // by display, the last one that could be made
    QHash<QByteArray, QStringList> m_complaints;   // by display, what was said last
};
