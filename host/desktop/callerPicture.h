#pragma once
// The picture of who calls, as his server has it: fetched for the call that is shown, bounded in size and
// time, and read on another thread. User-interface thread.
#include "support/host/http.h"
#include <QPixmap>
#include <functional>
#include <memory>

class callerPicture : public ActionCallback
{
public:
    enum : int { MAX_BYTES = 256 << 10, MAX_MS = 5000 };

    using Told = std::function<void(const QPixmap& picture)>;
    // The owner of what is told; it outlives this.
    explicit callerPicture(QObject* owner) : m_pOwner(owner) {}
    ~callerPicture() override;

    // In place of what was asked for before; an empty address asks for nothing. told: not before the call is
    // over, and never where it cannot be had.
    void fetch(const QString& address, const QSize& size, Told told);
    void OnCallback(taskAction* action) override;

private:
    void stop();

    QObject* m_pOwner;
    std::unique_ptr<HttpAction> m_action;
    int m_nRequest = 0;
    QSize m_size;
    Told m_told;
};
