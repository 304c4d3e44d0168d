#pragma once
// Tells people and programs whether every display is in step, and what no phone would show: keeps the book of
// the displays, watches the content, and makes "/status" and "/status.json" of both. Any thread.
//
//   [status]            of server.ini
//   interval=60         seconds between two looks of a display; three without one, and it is late
//   password=secret     whoever gives it sees the status from anywhere; without one only the server's own
//   machine
#include "tools/signServer/ContentWatch.h"
#include "tools/signServer/DisplayBook.h"
#include "tools/signServer/StatusReport.h"

class Account;

// A request for the status, as far as it counts.
struct StatusRequest
{
    QByteArray path, display; // a key, or empty
    QByteArray refusal;       // why it is not the administrator's own; empty when it is
    QByteArray authorization; // the field of that name
};

struct StatusAnswer
{
    int status = 200;
    QByteArray type, body;
    QList<QPair<QByteArray, QByteArray>> fields;
};

class StatusDesk
{
public:
    // All three outlive it.
    StatusDesk(const SignFolder& folder, Account& account, RequestLog& log);
    // Stores the book.
    ~StatusDesk();

    void Note(const DisplayEvent& event);
    void Complain(const QStringList& complaints) { m_notes.Add(complaints); }
    static bool IsStatusPath(const QByteArray& path);
    StatusAnswer Answer(const StatusRequest& request) const;

private:
    StatusReport Report() const;
    void StoreBook(bool isEnd);
    QByteArray Setting(const char* name) const;
    int IntervalS() const;

    const SignFolder& m_folder;
    Account& m_account;
    RequestLog& m_log;
    DisplayBook m_book;
    ContentNotes m_notes;
    quint64 m_nStored = 0; // changes of the book that are on the disk
    qint64 m_nStoredAt = 0;
    bool m_storeFailed = false;
    std::unique_ptr<ContentWatch> m_watch;
};
