#pragma once
// Asks the server for the layouts and media that are wanted, proves what comes by its MD5, and asks again
// within the budget of the file. User-interface thread.
#include "signage/nDeckFileBook.h"
#include "signage/nDeckLaterTries.h"
#include "signage/nDeckRequests.h"
#include <QElapsedTimer>

class nDeckFetcher
{
public:
    enum : long long { MEDIA_SIZE_LIMIT = 8 << 20 }; // bytes of one media file
    enum : int { LOOK_MS = 20 };                     // between two looks at the room on the disk

    // book: takes what comes; callback: hears of the ends of transfers, and hands them to OnFile. Both
    // outlive this.
    nDeckFetcher(nDeckFileBook& book, ActionCallback& callback);

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
    void Forget(const chString& name);
    bool IsAwaited(const std::string& name) const { return m_requests.IsAwaited(name); }
    // Whether it is on its way, or will be when the network is back.
    bool IsComing(const chString& name) const;
    // The network is back, and a schedule says what is wanted now: asks for what failed for want of it.
    void AskAgain(const DisplayFrame& wanted);

private:
    void LookAtFolder();
    void Begin(_nDeckFileNode wanted, long long limit);
    void DropLateFile(const chString& name);
    void VerifyFile(const nDeckHttpAction& action);
    void RetryFile(const nDeckHttpAction& action);
    void GiveUp(const _nDeckFileNode& wanted);

    nDeckFileBook& m_book;
    ActionCallback& m_callback;
    nDeckRequests m_requests;
    nDeckNameSet m_putOff; // files that failed while the network was down; their budget is untouched
    nDeckLaterTries m_laterTries;
    QElapsedTimer m_looked; // at the folder
    unsigned m_nLookedRoot = 0;
    long long m_nRoom = 0; // bytes that media may take
};
