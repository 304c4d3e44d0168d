#include "calibration/touchSampler.h"
#include <utility>

namespace {

constexpr int kUsInMs = 1000;

} // namespace

TouchSampler::TouchSampler(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &TouchSampler::onTimeOut);
}

void TouchSampler::Request(const tsdev* device, unsigned pressure, Taken taken)
{
    Cancel();
    m_nPressure = pressure;
    m_taken = std::move(taken);
    m_bLost = false;
    if (!RawCall::IsEnabled()) {
        m_timer.start(0);
        return;
    }
    m_call.emplace(device);
    m_pNotifier = std::make_unique<QSocketNotifier>(device->fd, QSocketNotifier::Read);
    connect(m_pNotifier.get(), &QSocketNotifier::activated, this, &TouchSampler::onReady);
    m_timer.start(RAW_WAIT_US / kUsInMs);
}

void TouchSampler::Cancel()
{
    m_taken = nullptr;
    end();
}

void TouchSampler::end()
{
    m_timer.stop();
    m_call.reset();
    // It may be what calls.
    if (m_pNotifier) {
        m_pNotifier->setEnabled(false);
        m_pNotifier.release()->deleteLater();
    }
}

// What makes no sample is bounded by the call itself.
void TouchSampler::onReady()
{
    ts_sample sample;
    do {
        if (m_call->Take(sample) != RAW_MORE) {
            finish(sample);
            return;
        }
    } while (rawDeviceWait(m_call->Descriptor(), 0) > 0);
    m_timer.start(RAW_WAIT_US / kUsInMs);
}

void TouchSampler::onTimeOut()
{
    if (m_call && rawDeviceWait(m_call->Descriptor(), 0) > 0)
        onReady();
    else
        finish(silence());
}

ts_sample TouchSampler::silence() const
{
    ts_sample sample;
    sample.pressure = m_nPressure;
    return sample;
}

void TouchSampler::finish(const ts_sample& sample)
{
    m_bLost = m_call && m_call->IsLost();
    const Taken taken = std::exchange(m_taken, nullptr);
    end();
    taken(sample);
}
