#pragma once
// Takes samples one by one without ever keeping the thread that asks: the device is read when it has
// something. User-interface thread.
#include "calibration/rawCall.h"
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class TouchSampler : public QObject
{
    Q_OBJECT
public:
    using Taken = std::function<void(const ts_sample&)>;

    explicit TouchSampler(QObject* parent);
    // Asks for one sample, as ts_read_raw with a sample of zeros gives it. taken is called once, from the
    // event loop; not when Cancel() comes first. device stays the caller's, and open until then. One at a
    // time.
    void Request(const tsdev* device, Taken taken);
    void Cancel();
    bool IsWaiting() const { return bool(m_taken); }
    // The device had gone when the last sample was asked for.
    bool IsLost() const { return m_bLost; }

private:
    void onReady();
    void onTimeOut();
    void finish(const ts_sample& sample);
    void end();

    Taken m_taken;
    std::optional<RawCall> m_call;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    QTimer m_timer;
    bool m_bLost = false;
};
