#pragma once
// A request as it came, the answer to it, and what became of both.
#include "tools/signServer/FaultPlan.h"
#include "tools/signServer/RequestText.h"
#include "tools/signServer/ScheduledFiles.h"
#include <QMap>
#include <functional>

struct WebRequest
{
    QByteArray method;                   // empty: what came is no request
    QByteArray target;                   // printable, as the request line has it
    RequestText asked;                   // the target taken apart
    QMap<QByteArray, QByteArray> fields; // names in lower case; what comes twice is joined by a comma
    QByteArray body;
    qint64 length = 0;  // of the body, as the head announces it
    bool keeps = false; // the connection is to stay for another request
    QByteArray address; // of whoever asks

    QByteArray Field(const char* name) const { return fields.value(name); }
};

struct WebResponse
{
    int status = 200;
    QByteArray type;
    QByteArray body;
    OpenFilePtr file; // sent instead of the body
    QList<QPair<QByteArray, QByteArray>> fields;
    bool chunked = false; // without a length
    Fault fault;          // how it goes wrong on its way

    // For those who keep the books.
    QByteArray display;      // the name of the display that asked, if it is known
    QByteArray refused;      // why it does not get what it asked for
    QByteArray sum;          // of the file
    ScheduledFilesPtr files; // of the schedule
};

// What became of a request; the body of the response is no longer in it.
struct Served
{
    WebRequest request;
    WebResponse response;
    qint64 bodyBytes = 0; // of the answer, that went out
    bool whole = false;   // all of the answer went out, as it should be
    qint64 ms = 0;
};

// Answers requests. Any thread.
class WebService
{
public:
    using Reply = std::function<void(WebResponse)>;

    virtual ~WebService() = default;
    // Calls reply once, at once or later, on any thread.
    virtual void Answer(const WebRequest& request, const Reply& reply) = 0;
    // Every request ends here, also one that was refused before it was understood.
    virtual void Finish(const Served& served) = 0;
    // A file that had gone out whole did not arrive so: its reader went before its end. Comes after Finish.
    virtual void Lose(const Served& served) = 0;
};
