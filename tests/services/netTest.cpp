#include "support/host/net.h"
#include "host/services/system/netFacts.h"
#include "host/services/system/netWorld.h"
#include "support/host/clock.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QRegularExpression>
#include <arpa/inet.h>
#include <ctime>

namespace {

class Net : public PhoneTest
{
protected:
    Net() { netWorld() = tagNetWorld(); }
    ~Net() override { netWorld() = tagNetWorld(); }
    static in_addr address(const char* text)
    {
        in_addr result = {};
        EXPECT_EQ(inet_pton(AF_INET, text, &result), 1);
        return result;
    }
};

long machineTime()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec;
}

} // namespace

TEST_F(Net, TheWorldOverridesTheMachine)
{
    netWorld().address = address("192.168.1.20");
    netWorld().netmask = address("255.255.255.0");
    netWorld().gateway = address("192.168.1.1");
    netWorld().primaryDNS = address("9.9.9.9");
    netWorld().secondaryDNS = address("8.8.8.8");
    netWorld().mac = "00:11:22:33:44:55";
    EXPECT_EQ(addr2String(netGetLocalIPv4()), "192.168.1.20");
    EXPECT_EQ(addr2String(netGetWanNetmask()), "255.255.255.0");
    EXPECT_EQ(addr2String(netGetWanGateway()), "192.168.1.1");
    EXPECT_EQ(addr2String(netGetWanPrimaryDNS()), "9.9.9.9");
    EXPECT_EQ(addr2String(netGetWanSecondaryDNS()), "8.8.8.8");
    EXPECT_EQ(netGetMACText(0), "00:11:22:33:44:55");
    EXPECT_EQ(netGetMACText(':'), "00:11:22:33:44:55");
    EXPECT_EQ(netGetMACText('-'), "00-11-22-33-44-55");
}

TEST_F(Net, LinkFactsAreTheWorlds)
{
    for (int value : {NET_DOWN, NET_STARTING, NET_UP}) {
        netWorld().state = value;
        EXPECT_EQ(netGetNetworkSta(), value);
        netWorld().type = value;
        EXPECT_EQ(netGetNetworkType(), value);
    }
    for (int value : {0, 1}) {
        netWorld().cable = value;
        EXPECT_EQ(netIsCableConnected(), value);
        netWorld().conflict = value;
        EXPECT_EQ(netIsIPConflictting(), value);
    }
}

TEST_F(Net, TheTypeIsTheConfiguredOne)
{
    nuxSetRegistryInt("/rundata/config/system.ini", "Network", "eWANType", NET_TYPE_STATIC);
    EXPECT_EQ(netGetNetworkType(), NET_TYPE_STATIC);
    nuxSetRegistryInt("/rundata/config/system.ini", "Network", "eWANType", NET_TYPE_PPPOE);
    EXPECT_EQ(netGetNetworkType(), NET_TYPE_PPPOE);
}

TEST_F(Net, FactsOfTheMachineAreWellFormed)
{
    const QRegularExpression mac(QRegularExpression::anchoredPattern("([0-9A-F]{2}:){5}[0-9A-F]{2}"));
    EXPECT_TRUE(mac.match(QString::fromUtf8(netGetMACText(0).GetText())).hasMatch());
    const int state = netGetNetworkSta();
    EXPECT_TRUE(state == NET_DOWN || state == NET_STARTING || state == NET_UP);
    if (state == NET_UP) {
        EXPECT_NE(netGetLocalIPv4().s_addr, 0u);
        EXPECT_NE(netGetWanNetmask().s_addr, 0u);
        EXPECT_EQ(netIsCableConnected(), 1);
    }
}

TEST_F(Net, TheDefaultRouteIsTheOneWithTheSmallestMetric)
{
    const QByteArray table =
        "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n"
        "eth0\t0001A8C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0\n"
        "wlan0\t00000000\t0201A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n"
        "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n"
        "eth1\t00000000\t0301A8C0\t0002\t0\t0\t1\t00000000\t0\t0\t0\n";
    in_addr gateway = {};
    EXPECT_EQ(netFacts::defaultRouteInterface(table, &gateway), "eth0");
    EXPECT_EQ(addr2String(gateway), "192.168.1.1");
    EXPECT_EQ(netFacts::defaultRouteInterface("garbage\n\n", &gateway), "");
    EXPECT_EQ(netFacts::defaultRouteInterface("", nullptr), "");
}

TEST_F(Net, NameServersComeInTheOrderOfTheirFile)
{
    const QList<in_addr> servers = netFacts::nameServersOf(
        "# made\nsearch lan\nnameserver 9.9.9.9\nnameserver fe80::1\n nameserver\t8.8.8.8 \nnameserver\n");
    ASSERT_EQ(servers.size(), 2);
    EXPECT_EQ(addr2String(servers[0]), "9.9.9.9");
    EXPECT_EQ(addr2String(servers[1]), "8.8.8.8");
}

TEST_F(Net, ANeighbourIsOneThatAnswered)
{
    const QByteArray table =
        "IP address       HW type     Flags       HW address            Mask     Device\n"
        "192.168.1.1      0x1         0x2         00:11:22:33:44:55     *        eth0\n"
        "192.168.1.9      0x1         0x0         00:00:00:00:00:00     *        eth0\n";
    EXPECT_TRUE(netFacts::isNeighbourIn(table, address("192.168.1.1")));
    EXPECT_FALSE(netFacts::isNeighbourIn(table, address("192.168.1.9")));
    EXPECT_FALSE(netFacts::isNeighbourIn(table, address("192.168.1.2")));
}

TEST_F(Net, AnAddressIsUsedWhenTheWorldSaysSo)
{
    netWorld().address = address("192.168.1.5");
    netWorld().usedAddresses = QStringList{"192.168.1.20", "192.168.1.21"};
    EXPECT_EQ(netIsIPUsed("192.168.1.20"), 1);
    EXPECT_EQ(netIsIPUsed("192.168.1.21"), 1);
    EXPECT_EQ(netIsIPUsed("192.168.1.22"), 0);
    EXPECT_EQ(netIsIPUsed("192.168.1.5"), 0);
    EXPECT_EQ(netIsIPUsed("192.168.1"), 0);
    EXPECT_EQ(netIsIPUsed(""), 0);
    EXPECT_EQ(netIsIPUsed(nullptr), 0);
}

TEST_F(Net, TheScriptsMarkIsAConflict)
{
    EXPECT_EQ(netIsIPConflictting(), 0);
    writeFile("/rundata/run/address-conflict", "");
    EXPECT_EQ(netIsIPConflictting(), 1);
}

TEST_F(Net, ApplyingTheSettingsIsRecorded)
{
    netFlushNetworkConfig();
    EXPECT_EQ(logged("flush"), QStringList{"network"});
}

TEST_F(Net, ARestartIsRecordedAndDoesNotHappen)
{
    sysreboot(1);
    EXPECT_EQ(logged("reboot"), QStringList{"1"});
}

TEST_F(Net, ARestartIsThePhonesWhereTheMachineStaysAsItIs)
{
    static int s_nRestarts = 0;
    netWorldSetRestart([] { ++s_nRestarts; });
    sysreboot(1);
    netWorldSetRestart(nullptr);
    sysreboot(1);
    EXPECT_EQ(s_nRestarts, 1);
}

TEST_F(Net, TheClockIsTheLocalWallClock)
{
    nuxSetRegistryString("/rundata/config/system.ini", "LocalTime", "strTimeName", "");
    time_t now = machineTime();
    tm parts = {};
    localtime_r(&now, &parts);
    const chTime time(netGetLocalTime());
    EXPECT_EQ(time.GetYear(), parts.tm_year + 1900);
    EXPECT_EQ(time.GetHour(), parts.tm_hour);
}

TEST_F(Net, ASetClockRunsOnAndLeavesTheMachinesAlone)
{
    const long before = machineTime();
    netSetLocalTime(2030, 2, 28, 23, 59, 50);
    EXPECT_LE(machineTime() - before, 2);
    EXPECT_EQ(logged("clock"), QStringList{"2030-02-28 23:59:50"});
    EXPECT_EQ(chTime(netGetLocalTime()).Format("%Y-%m-%d"), "2030-02-28");
    kit::stepTime(15000);
    const chTime later(netGetLocalTime());
    EXPECT_EQ(later.Format("%Y-%m-%d"), "2030-03-01");
    EXPECT_LE(later.GetTime() - chTime(2030, 3, 1, 0, 0, 0).GetTime(), 10);
}

TEST_F(Net, WhatIsNoTimeDoesNotSetTheClock)
{
    const long before = netGetLocalTime();
    netSetLocalTime(2023, 2, 29, 0, 0, 0);
    netSetLocalTime(2023, 13, 1, 0, 0, 0);
    netSetLocalTime(2023, 1, 1, 24, 0, 0);
    netSetLocalTime(2023, 1, 1, 0, 60, 0);
    EXPECT_LE(netGetLocalTime() - before, 2);
    EXPECT_TRUE(logged("clock").isEmpty());
    netSetLocalTime(2024, 2, 29, 0, 0, 0);
    EXPECT_EQ(logged("clock").size(), 1);
}

TEST_F(Net, TheWorldsClockIsNotAnActOfThePhone)
{
    netWorldSetClock(chTime(2031, 1, 2, 3, 4, 5).GetTime());
    EXPECT_EQ(chTime(netGetLocalTime()).Format("%Y-%m-%d %H:%M"), "2031-01-02 03:04");
    EXPECT_TRUE(logged("clock").isEmpty());
}
