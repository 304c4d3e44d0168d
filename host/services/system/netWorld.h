#pragma once
// What the phone is made to believe about its network; the control interface and tests set it. A value that
// is not set is read from the machine. User-interface thread.
#include "support/host/api.h"
#include <QString>
#include <QStringList>
#include <netinet/in.h>
#include <optional>

struct tagNetWorld
{
    std::optional<int> state;    // NET_STATE
    std::optional<int> type;     // NET_TYPE
    std::optional<int> cable;    // 0 or 1
    std::optional<int> conflict; // 0 or 1
    QStringList usedAddresses;   // other hosts answer for these
    std::optional<in_addr> address;
    std::optional<in_addr> netmask;
    std::optional<in_addr> gateway;
    std::optional<in_addr> primaryDNS;
    std::optional<in_addr> secondaryDNS;
    std::optional<QString> mac;
};
HX_HOST_API tagNetWorld& netWorld();

// What sysreboot() does besides being logged where the machine stays as it is; null: nothing.
HX_HOST_API void netWorldSetRestart(void (*restart)());

// The clock as netGetLocalTime gives it from now on; it runs on from there. The machine's stays as it is.
HX_HOST_API void netWorldSetClock(long localSeconds);
