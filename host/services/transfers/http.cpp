#include "support/host/http.h"
#include "host/services/transfers/httpService.h"

HttpAction::HttpAction() = default;

HttpAction::~HttpAction()
{
    const quint64 number = taskBook::numberOf(*this);
    taskForget(*this);
    httpService::forget(number);
}

void HttpAction::Abandon()
{
    httpService::abandon(taskBook::numberOf(*this));
}

int HttpAction::exec()
{
    httpService::instance().start(httpService::takeJob(*this));
    return 0;
}

void HttpAction::httpFinished(QNetworkReply*) {}
