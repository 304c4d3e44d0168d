#pragma once
// Network facts and the phone's system services. None of these calls waits for the network.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <netinet/in.h>

enum NET_STATE { NET_DOWN = 0, NET_STARTING = 1, NET_UP = 2 };
enum NET_TYPE { NET_TYPE_DHCP = 0, NET_TYPE_PPPOE = 1, NET_TYPE_STATIC = 2 };

// Live values; 0.0.0.0 when there is none.
HX_HOST_API in_addr netGetLocalIPv4();
HX_HOST_API in_addr netGetWanNetmask();
HX_HOST_API in_addr netGetWanGateway();
HX_HOST_API in_addr netGetWanPrimaryDNS();
HX_HOST_API in_addr netGetWanSecondaryDNS();
HX_HOST_API chString addr2String(const in_addr& address);
// The phone's, upper case, with that character between the bytes; 0 stands for ":". Zeros when there is none.
HX_HOST_API chString netGetMACText(int separator);

HX_HOST_API int netGetNetworkType(); // NET_TYPE
HX_HOST_API int netGetNetworkSta();  // NET_STATE
HX_HOST_API int netIsCableConnected();
// 1 when another host answers for the address.
HX_HOST_API int netIsIPUsed(const char* address);
HX_HOST_API int netIsIPConflictting();
// Applies the stored network settings now.
HX_HOST_API void netFlushNetworkConfig();

// Local wall clock, as seconds for chTime(long): in the zone that is stored, with its summer time.
HX_HOST_API long netGetLocalTime();
// Seconds that summer time adds, at that moment of UTC, to the hours with which the stored zone begins; 0 for
// a zone without rules.
HX_HOST_API long netGetSummerTime(long utcSeconds);
// 1 when the clock is set, and right after the next start as well; else it is as it was: it is no time, or
// cannot be stored.
HX_HOST_API int netSetLocalTime(int year, int month, int day, int hour, int minute, int second);

// Restarts the phone; mode is 1.
HX_HOST_API void sysreboot(int mode);
// Runs a shell command with the device root before every device path in it. The exit status, or -1.
HX_HOST_API int sysCommand(const char* command);

// Validators: 1 or 0.
HX_HOST_API int IsValidIPv4(chString text);    // four decimal parts; not 0.x, 127.x, multicast or broadcast
HX_HOST_API int IsValidNetMask(chString text); // contiguous ones from the left, /1 to /30
HX_HOST_API int IsValidPort(chString text);    // 1 to 65535
HX_HOST_API int IsValidServerName(chString text); // an IPv4 address or a host name
HX_HOST_API int IsValidUserName(chString text);   // 1 to 99 characters, no control character, quote or angle
HX_HOST_API int IsValidPassword(chString text);   // 1 to 99 characters, no control character
