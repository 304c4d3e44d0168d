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
    // Asks for one sample, as ts_read_raw gives it; one that no report made within the time keeps `pressure`.
    // taken is called once, from the event loop; not when Cancel() comes first. device stays the caller's,
    // and open until then. One at a time.
    void Request(const tsdev* device, unsigned pressure, Taken taken);
    void Cancel();
    bool IsWaiting() const { return bool(m_taken); }
    // The device had gone when the last sample was asked for.
    bool IsLost() const { return m_bLost; }

private:
    void onReady();
    void onTimeOut();
    ts_sample silence() const;
    void finish(const ts_sample& sample);
    void end();

    Taken m_taken;
    unsigned m_nPressure = 0; // of a sample that no report made
    std::optional<RawCall> m_call;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    QTimer m_timer;
    bool m_bLost = false;
};
