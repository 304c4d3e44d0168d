#pragma once
// The demonstration server: answers what phones ask of a signage server and of the public weather and stock
// feeds, from one folder. Any thread.
#include "tools/signServer/Account.h"
#include "tools/signServer/FeedDesk.h"
#include "tools/signServer/GoodSchedules.h"
#include "tools/signServer/NameCheck.h"
#include "tools/signServer/RequestLog.h"
#include "tools/signServer/StatusDesk.h"
#include "tools/signServer/WebExchange.h"
#include <QThreadPool>

class SignServer : public WebService
{
public:
    // log and gateway outlive the server. clock: the time of forecasts and quotes. pGateway: null for none.
    SignServer(const QByteArray& folder, RequestLog& log, const FeedClock& clock, FeedGateway* pGateway);

    // What in server.ini no phone could send; a line each. With one the server is of no use to anybody.
    QStringList AccountComplaints() const { return m_account.Complaints(); }
    // The same of files and lists, which the server goes on without.
    QStringList ContentComplaints() const { return NameComplaints(m_folder); }

    // Waits until every request is answered; before the connections go.
    void Settle();
    void Answer(const WebRequest& request, const Reply& reply) override;
    void Finish(const Served& served) override;
    void Lose(const Served& served) override;

private:
    static void Spoil(WebResponse& response);
    bool Admits(const WebRequest& request, WebResponse& response, int status);
    void AnswerPath(const WebRequest& request, WebResponse& response);
    void AnswerRegister(const WebRequest& request, WebResponse response, const Reply& reply);
    void AnswerSchedule(const WebRequest& request, WebResponse& response);
    void AnswerFile(const WebRequest& request, WebResponse response, const Reply& reply);
    void AnswerContent(const WebRequest& request, WebResponse response, const OpenFilePtr& file,
                       const QByteArray& name, const Reply& reply);
    void AnswerFeed(const WebRequest& request, WebResponse response, const Reply& reply);
    static void AnswerFound(WebResponse response, const Reply& reply, bool isAnswer, const QByteArray& xml);
    void AnswerIcon(const WebRequest& request, WebResponse response, const Reply& reply);
    WebResponse AnswerFaults(const WebRequest& request);
    MadeSchedulePtr ScheduleOf(const QByteArray& display);
    WebResponse AnswerStatus(const WebRequest& request);

    SignFolder m_folder;
    Account m_account;
    FeedDesk m_feeds;
    FaultPlan m_faults;
    RequestLog& m_log;
    GoodSchedules m_goodSchedules;
    StatusDesk m_status;
    QThreadPool m_summers; // reads of files that nobody knows yet
};
