#pragma once
// Asks the server for the layouts and media that are wanted, proves what comes by its MD5, and asks again
// within the budget of the file. User-interface thread.
#include "signage/nDeckFileBook.h"
#include "signage/nDeckRequests.h"

class nDeckFetcher
{
public:
    enum : long long { MEDIA_SIZE_LIMIT = 8 << 20 }; // bytes of one media file

    // book: takes what comes; callback: hears of the ends of transfers, and hands them to OnFile. Both
    // outlive this.
    nDeckFetcher(nDeckFileBook& book, ActionCallback& callback) : m_book(book), m_callback(callback) {}

    void DownLoadLayout(const _nDeckFileNode& wanted);
    // Not when it is too large, or there is no room.
    void DownLoadMediaFile(const _nDeckFileNode& wanted);
    // The one or the other, as the record says.
    void DownLoad(const _nDeckFileNode& record);
    // The record of that path; nothing happens without one.
    void DownLoadImmediately(const chString& path);
    // True when the transfer was the one that its file waited for, and it came.
    bool OnFile(const nDeckHttpAction& action);
    // Nobody wants it any more.
    void Forget(const chString& name) { m_requests.Forget(name); }
    bool IsAwaited(const std::string& name) const { return m_requests.IsAwaited(name); }

private:
    void Begin(_nDeckFileNode wanted, long long limit);
    void DropLateFile(const chString& name);
    void VerifyFile(const nDeckHttpAction& action);
    void RetryFile(const nDeckHttpAction& action);

    nDeckFileBook& m_book;
    ActionCallback& m_callback;
    nDeckRequests m_requests;
};
