#pragma once
// Fetches what one address holds. One at a time: a new start gives the one before up. Nothing is told after
// stop(). User-interface thread.
#include "support/host/http.h"
#include <QByteArray>
#include <functional>
#include <memory>

class addressFetch : public ActionCallback
{
public:
    // good: content is all of it. Otherwise the transfer failed, or it is larger than limit bytes.
    using Done = std::function<void(bool good, const QByteArray& content)>;
    // file: device path that the transfer writes, and that is gone when done is called.
    addressFetch(const char* file, size_t limit, Done done);
    ~addressFetch() override;

    void start(const chString& url);
    void stop();
    bool isRunning() const { return m_action != nullptr; }

    void OnCallback(taskAction* action) override;

private:
    chString m_strFile;
    size_t m_nLimit;
    Done m_done;
    std::unique_ptr<HttpAction> m_action;
};
