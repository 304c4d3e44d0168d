#include "support/host/net.h"
#include <gtest/gtest.h>
#include <string>

namespace {

using Validator = int (*)(chString);

void expectEach(Validator validator, int answer, std::initializer_list<const char*> texts)
{
    for (const char* text : texts)
        EXPECT_EQ(validator(chString(text)), answer) << "\"" << text << "\"";
}

std::string repeated(const char* text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

TEST(Validators, IPv4AddressesOfHostsAreValid)
{
    expectEach(
        IsValidIPv4, 1,
        {"192.168.1.20", "1.0.0.1", "10.0.0.0", "10.0.0.255", "172.16.0.1", "223.255.255.254", "128.0.0.1"});
}

TEST(Validators, OtherIPv4AddressesAreNot)
{
    expectEach(IsValidIPv4, 0, {"",          "0.0.0.0",         "0.1.2.3",          "127.0.0.1",
                                "224.0.0.1", "239.255.255.255", "240.0.0.1",        "255.255.255.255",
                                "256.1.1.1", "1.2.3",           "1.2.3.4.5",        "1.2.3.",
                                ".1.2.3",    "1..2.3",          "1.2.3.4 ",         " 1.2.3.4",
                                "1.2.3.a",   "01.2.3.4",        "1.2.3.04",         "-1.2.3.4",
                                "+1.2.3.4",  "1.2.3.0x4",       "1,2,3,4",          "1.2.3.1000",
                                "::1",       "1.2.3.4/24",      "1.2.3.99999999999"});
}

TEST(Validators, ANetMaskIsContiguousOnesFromTheLeft)
{
    expectEach(IsValidNetMask, 1,
               {"128.0.0.0", "192.0.0.0", "255.0.0.0", "255.128.0.0", "255.255.0.0", "255.255.255.0",
                "255.255.255.128", "255.255.255.248", "255.255.255.252"});
    expectEach(IsValidNetMask, 0,
               {"", "0.0.0.0", "255.255.255.254", "255.255.255.255", "255.0.255.0", "0.255.255.0",
                "255.255.255.1", "255.255.255", "64.0.0.0", "255.255.253.0", "255.255.255.0 ", "24", "/24",
                "255.255.255.00"});
}

TEST(Validators, APortIs1To65535)
{
    expectEach(IsValidPort, 1, {"1", "80", "5060", "65535"});
    expectEach(
        IsValidPort, 0,
        {"", "0", "65536", "99999", "100000", "-1", "+1", "5060 ", " 5060", "5o60", "0x50", "00080", "1.5"});
}

TEST(Validators, AServerIsAnAddressOrAHostName)
{
    const std::string label63(63, 'a');
    const std::string name253 = repeated((label63 + ".").c_str(), 3) + std::string(61, 'b');
    expectEach(IsValidServerName, 1,
               {"sip.example.com", "localhost", "pool.ntp.org", "a", "a-b.c", "3com.com", "x1.",
                "192.168.1.1", "127.0.0.1", "10.0.0.1", "EXAMPLE.COM", label63.c_str(), name253.c_str()});
    expectEach(IsValidServerName, 0,
               {"",
                ".",
                "a..b",
                ".a",
                "-a.com",
                "a-.com",
                "a b.com",
                "a_b.com",
                "http://a.com",
                "a.com/",
                "a.com:5060",
                "1.2.3",
                "1.2.3.256",
                "12345",
                "0.0.0.0",
                "224.0.0.1",
                "255.255.255.255",
                "ü.com",
                "a\n",
                (label63 + "a").c_str(),
                (name253 + "b").c_str()});
}

TEST(Validators, AUserNameIs1To99CharactersWithoutControlQuoteOrAngle)
{
    expectEach(IsValidUserName, 1,
               {"a", "1001", "Anna Müller", "O'Brien", "+49 (30) 12", "user@host", "中文", "😀", " ",
                repeated("x", 99).c_str(), repeated("é", 99).c_str()});
    expectEach(IsValidUserName, 0,
               {"", "a\"b", "<a", "a>", "a\tb", "a\nb", "\x01", "a\x7F", "\xC2\x85", "\xFF", "\xC3",
                repeated("x", 100).c_str(), repeated("é", 100).c_str()});
}

TEST(Validators, APasswordIs1To99CharactersWithoutControl)
{
    expectEach(IsValidPassword, 1,
               {"a", "p\"<>w", " ", "pä§$%&/()=?", repeated("x", 99).c_str(), repeated("é", 99).c_str()});
    expectEach(IsValidPassword, 0,
               {"", "a\tb", "a\n", "\x1B", "\xC2\x80", "\xFF\xFE", repeated("x", 100).c_str(),
                repeated("é", 100).c_str()});
}
