#pragma once
#include "host/services/system/hostLog.h"
#include "host/services/transfers/httpService.h"
#include "tests/kit/phoneTest.h"
#include <QAbstractEventDispatcher>
#include <QMetaObject>

// Lets the network thread look at its timers after the clocks were moved.
inline void letNetworkLook()
{
    httpService& service = httpService::instance();
    for (int round = 0; round < 3; ++round) {
        QAbstractEventDispatcher::instance(service.thread())->wakeUp();
        QMetaObject::invokeMethod(
            &service, [] {}, Qt::BlockingQueuedConnection);
    }
    kit::settle();
}

// The trace line of the last transfer that failed; empty when none did.
inline QString lastTransferFailure()
{
    QString last;
    for (const tagLogEntry& entry : hostLogFrom(1)) {
        if (entry.strKind == "trace" && entry.strText.contains("transfer"))
            last = entry.strText;
    }
    return last;
}
