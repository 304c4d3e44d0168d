#pragma once
// Removes files that no record speaks of: transfers that were cut off, and files that were verified when the
// phone went down before their record was stored. User-interface thread.
#include "support/host/task.h"
#include <string>

class nDeckFetcher;
class nDeckFileBook;

class nDeckSweeper : public ActionCallback
{
public:
    // Both outlive this.
    nDeckSweeper(const nDeckFileBook& book, const nDeckFetcher& fetcher) : m_book(book), m_fetcher(fetcher) {}

    // Looks for them on another thread, and removes them a moment later.
    void Begin();
    void OnCallback(taskAction* action) override;

private:
    bool IsNeeded(const std::string& name) const;

    const nDeckFileBook& m_book;
    const nDeckFetcher& m_fetcher;
};
