// The accounts of the files as the SIP user agent is told them, and the states of lines that it tells.
#include "host/services/phone/mediaSessions.h"
#include "host/services/system/netWorld.h"
#include "support/host/registry.h"
#include "tests/services/recorder.h"
#include "tests/services/sipStand.h"

namespace {

class SipAccounts : public SipPhone
{
protected:
    const tagSipAccount& told()
    {
        static tagSipAccount none;
        const auto* account = agent.next<tagSipAccount>(SIP_ACCOUNT);
        EXPECT_TRUE(account);
        return account ? *account : none;
    }
    static QString whyNot(int line)
    {
        tagAccountInfo info;
        EXPECT_TRUE(phone_GetAccountInfoById(line, &info));
        return info.szWhyNot;
    }
    bool comesTo(int line, LINE_STATE state)
    {
        return kit::waitUntil([=] { return stateOf(line) == state; });
    }
};

} // namespace

TEST_F(SipAccounts, AllOfAnAccountIsTold)
{
    writeAccount(0, "[account]\nEnable=1\nDisplayName=Ann\xc3\xa4\nAuthName=auth\nUserName=100\n"
                    "password=s3cret word\nSIPServerHost=sip.example.com\nSIPServerPort=5070\n"
                    "UseOutboundProxy=1\nOutboundHost=proxy.example.com\nOutboundPort=5080\n"
                    "Transport=tls\nExpires=600\nRealm=home\nPickUpCode=*8\n"
                    "[NAT]\nNATTraversal=1\nSTUNServer=stun.example.com\nSTUNPort=3479\n");
    boot();
    agentComes();
    const tagSipAccount& account = told();
    EXPECT_EQ(account.head.nId, 0u);
    EXPECT_STREQ(account.szDisplayName, "Ann\xc3\xa4");
    EXPECT_STREQ(account.szAuthName, "auth");
    EXPECT_STREQ(account.szUser, "100");
    EXPECT_STREQ(account.szPassword, "s3cret word");
    EXPECT_STREQ(account.szServer, "sip.example.com");
    EXPECT_EQ(account.nPort, 5070u);
    EXPECT_STREQ(account.szProxy, "proxy.example.com");
    EXPECT_EQ(account.nProxyPort, 5080u);
    EXPECT_EQ(account.eTransport, uint32_t(SIP_TLS));
    EXPECT_EQ(account.nExpires, 600u);
    EXPECT_STREQ(account.szRealm, "home");
    EXPECT_STREQ(account.szPickUp, "*8");
    EXPECT_STREQ(account.szStun, "stun.example.com");
    EXPECT_EQ(account.nStunPort, 3479u);
    EXPECT_TRUE(traces().filter("s3cret").isEmpty());
}

TEST_F(SipAccounts, WhatAFileLeavesOutIsTheUsual)
{
    writeAccount(0, "[account]\nEnable=1\nUserName=100\nSIPServerHost=sip.example.com\nSIPServerPort=5060\n"
                    "OutboundHost=proxy.example.com\nExpires=7\n"
                    "[NAT]\nNATTraversal=0\nSTUNServer=stun.example.com\nSTUNPort=3479\n");
    boot();
    agentComes();
    const tagSipAccount& account = told();
    EXPECT_EQ(account.nPort, 0u) << "the domain's records say";
    EXPECT_STREQ(account.szStun, "") << "it is not switched on";
    EXPECT_STREQ(account.szProxy, "");
    EXPECT_EQ(account.nProxyPort, 0u);
    EXPECT_EQ(account.eTransport, uint32_t(SIP_UDP));
    EXPECT_EQ(account.nExpires, 60u);
    EXPECT_STREQ(account.szRealm, "");
    EXPECT_STREQ(account.szAuthName, "");
}

TEST_F(SipAccounts, APortThatIsNoneIsTheUsualOne)
{
    for (const char* port : {"5060123", "65536", "99999999999", "0", "-1", "many"}) {
        SCOPED_TRACE(port);
        const auto line = [port](const char* key) { return QByteArray(key) + '=' + port + '\n'; };
        writeAccount(0, "[account]\nEnable=1\nUserName=100\nSIPServerHost=sip.example.com\n" +
                            line("SIPServerPort") + "UseOutboundProxy=1\nOutboundHost=proxy.example.com\n" +
                            line("OutboundPort") + "DisplayName=" + port +
                            "\n[NAT]\nNATTraversal=1\nSTUNServer=stun.example.com\n" + line("STUNPort"));
        if (*port == '5') {
            boot();
            agentComes();
        } else {
            tellAccountChanged(0);
        }
        const tagSipAccount& account = told();
        EXPECT_STREQ(account.szServer, "sip.example.com");
        EXPECT_EQ(account.nPort, 0u) << "the domain's records say";
        EXPECT_STREQ(account.szProxy, "proxy.example.com");
        EXPECT_EQ(account.nProxyPort, 0u);
        EXPECT_STREQ(account.szStun, "stun.example.com");
        EXPECT_EQ(account.nStunPort, 3478u);
    }
}

TEST_F(SipAccounts, AnAccountThatDidNotChangeKeepsItsRegistration)
{
    begin();
    writeAccount(0, "[account]\nEnable=1\nUserName=100\nAuthName=auth\npassword=s3cret\n"
                    "SIPServerHost=sip.example.com\nSIPServerPort=5060\nDisplayName=Anna\nVoiceMail=8000\n");
    tellAccountChanged(0);
    EXPECT_TRUE(agent.isQuiet(SIP_ACCOUNT));
    EXPECT_EQ(stateOf(0), LINE_DEFAULT_ACCOUNT);

    writeAccount(0, "[account]\nEnable=1\nUserName=100\nAuthName=auth\npassword=other\n"
                    "SIPServerHost=sip.example.com\nSIPServerPort=5060\nDisplayName=Anna\nVoiceMail=8000\n");
    tellAccountChanged(0);
    EXPECT_STREQ(told().szPassword, "other");
    EXPECT_EQ(stateOf(0), LINE_REGISTERING);

    writeAccount(0, "[account]\nEnable=0\nUserName=100\nSIPServerHost=sip.example.com\n");
    tellAccountChanged(0);
    EXPECT_STREQ(told().szUser, "");
    EXPECT_EQ(stateOf(0), LINE_DISABLED);
    // What the agent still says of the one before is of no interest.
    tellLine(0, SIP_LINE_REGISTERED);
    kit::settle();
    EXPECT_EQ(stateOf(0), LINE_DISABLED);
}

TEST_F(SipAccounts, WhateverOfAnAccountChangesRegistersItAnew)
{
    begin();
    QByteArray keys = readFile("/rundata/config/user/voip/sipAccount0.cfg");
    const QPair<QByteArray, QByteArray> changes[] = {
        {"AuthName=auth", "AuthName=other"},          {"UserName=100", "UserName=101"},
        {"DisplayName=Anna", "DisplayName=Bert"},     {"sip.example.com", "pbx.example.com"},
        {"SIPServerPort=5060", "SIPServerPort=5070"}, {"Enable=1", "Enable=1\nTransport=tls"},
        {"Enable=1", "Enable=1\nExpires=600"},        {"Enable=1", "Enable=1\nEncrypt=1"}};
    for (const auto& [before, after] : changes) {
        SCOPED_TRACE(after.toStdString());
        ASSERT_TRUE(keys.contains(before));
        keys.replace(before, after);
        writeAccount(0, keys);
        tellAccountChanged(0);
        EXPECT_TRUE(agent.next<tagSipAccount>(SIP_ACCOUNT));
        EXPECT_EQ(stateOf(0), LINE_REGISTERING);
        tellLine(0, SIP_LINE_REGISTERED, 200);
        EXPECT_TRUE(comesTo(0, LINE_DEFAULT_ACCOUNT));
    }
}

TEST_F(SipAccounts, TheStatesOfLinesAreShownAtOnce)
{
    writeAccount(1, "[account]\nEnable=1\nUserName=101\nSIPServerHost=sip.example.com\n");
    writeAccount(2, "[account]\nEnable=1\nUserName=\nSIPServerHost=sip.example.com\n");
    boot();
    EXPECT_EQ(stateOf(0), LINE_REGISTERING);
    EXPECT_EQ(stateOf(2), LINE_UNREGISTERED);
    EXPECT_EQ(stateOf(3), LINE_DISABLED);
    agentComes();
    told();
    EXPECT_EQ(told().head.nId, 1u);
    Recorder recorder;
    phone_RegAccountNotify(&recorder, -1);
    tellLine(1, SIP_LINE_REGISTERED, 200);
    EXPECT_TRUE(comesTo(1, LINE_DEFAULT_ACCOUNT));
    tellLine(0, SIP_LINE_REFUSED, 403, "Forbidden");
    EXPECT_TRUE(comesTo(0, LINE_REGISTER_FAILED));
    EXPECT_FALSE(traces().filter("line 1 was refused: 403 Forbidden").isEmpty());
    tellLine(0, SIP_LINE_REGISTERED, 200);
    EXPECT_TRUE(comesTo(0, LINE_DEFAULT_ACCOUNT));
    EXPECT_EQ(stateOf(1), LINE_REGISTERED);
    tellLine(0, SIP_LINE_FAILED, 503);
    EXPECT_TRUE(comesTo(1, LINE_DEFAULT_ACCOUNT));
    tellLine(1, SIP_LINE_NONE);
    EXPECT_TRUE(comesTo(1, LINE_UNREGISTERED));
    tagAccountInfo info;
    EXPECT_EQ(phone_GetDefaultAccount(&info), 0);
    EXPECT_GE(recorder.received.size(), 6);
}

TEST_F(SipAccounts, AnAgentThatIsGoneLeavesNoLineAndNoCallBegins)
{
    begin();
    agent.leave();
    EXPECT_TRUE(comesTo(0, LINE_REGISTER_FAILED));
    EXPECT_EQ(phone_CallNumber("300", 0, -1), 0);
    EXPECT_EQ(lastEnded().strReason, "The line is not registered");
    agentComes();
    EXPECT_STREQ(told().szUser, "100");
    tellLine(0, SIP_LINE_REGISTERED, 200);
    EXPECT_TRUE(comesTo(0, LINE_DEFAULT_ACCOUNT));
}

TEST_F(SipAccounts, AfterALongOutageOfTheServerALineIsSoonBack)
{
    boot();
    ASSERT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    const auto* setup = agent.next<tagSipSetup>(SIP_SETUP);
    ASSERT_TRUE(setup);
    constexpr uint32_t kMostPatientUser = 2 * 60 * 1000;
    EXPECT_LE(setup->nRetryLastMs, kMostPatientUser);
    EXPECT_GT(setup->nRetryLastMs, setup->nRetryMs) << "a server that is down is not asked all the time";
}

TEST_F(SipAccounts, NoRegistrationIsLongerThanOneMayBe)
{
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") + "Expires=864000\n");
    boot();
    agentComes();
    EXPECT_EQ(told().nExpires, 86400u);
}

TEST_F(SipAccounts, ABlankAtTheEndOfAPasswordIsPartOfIt)
{
    ASSERT_EQ(
        nuxSetRegistryString("/rundata/config/user/voip/sipAccount0.cfg", "account", "password", " s3cret "),
        1);
    boot();
    agentComes();
    EXPECT_STREQ(told().szPassword, " s3cret ");
}

TEST_F(SipAccounts, ALineThatIsRegisteredHasItsMediaMadeReady)
{
    boot();
    agentComes();
    told();
    EXPECT_EQ(media->nPrepared, 0) << "nobody can call as yet";
    tellLine(0, SIP_LINE_REGISTERED, 200);
    EXPECT_TRUE(comesTo(0, LINE_DEFAULT_ACCOUNT));
    EXPECT_GT(media->nPrepared, 0);
}

TEST_F(SipAccounts, TheAgentIsToldItsPortsItsCertificatesAndHowLongItMayWait)
{
    const auto setup = [this] {
        boot();
        EXPECT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
        const auto* record = agent.next<tagSipSetup>(SIP_SETUP);
        EXPECT_TRUE(record);
        return record ? *record : tagSipSetup();
    };
    const char* const folder = "/rundata/config/certificates";
    nuxSetRegistryInt("/rundata/config/system.ini", "SIP", "nPort", 5070);
    nuxSetRegistryInt("/rundata/config/system.ini", "SIP", "nTlsPort", 5071);
    tagSipSetup told = setup();
    EXPECT_EQ(told.nPort, 5070u);
    EXPECT_EQ(told.nTlsPort, 5071u);
    EXPECT_STREQ(told.szCertificates, hostPath(folder).toUtf8().constData()) << "they may come later";
    EXPECT_GT(told.nOfferMs, uint32_t(mediaSessions::ANSWER_MS)) << "the media process has its time";
    constexpr uint32_t kMostPatientCaller = 6000;
    EXPECT_LE(told.nSilentMs, kMostPatientCaller);
    EXPECT_GT(told.nSilentMs, 1000u) << "a slow server is none that is silent";
    nuxSetRegistryInt("/rundata/config/system.ini", "SIP", "nPort", 70000);
    told = setup();
    EXPECT_EQ(told.nPort, 0u) << "there is no such port";
}

TEST_F(SipAccounts, WaitingMessagesAreThoseOfTheServer)
{
    begin();
    auto messages = sipWire::make<tagSipMessages>(SIP_MESSAGES, 0);
    messages.bKnown = 1;
    messages.nNew = 3;
    messages.nOld = 2;
    agent.tell(messages);
    tagAccountInfo info;
    EXPECT_TRUE(kit::waitUntil([&] { return phone_GetAccountInfoById(0, &info) && info.nNewMessages == 3; }));
    EXPECT_EQ(info.nOldMessages, 2);
    messages.bKnown = 0;
    agent.tell(messages);
    EXPECT_TRUE(kit::waitUntil([&] { return phone_GetAccountInfoById(0, &info) && info.nNewMessages == 0; }));
    messages.bKnown = 1;
    agent.tell(messages);
    EXPECT_TRUE(kit::waitUntil([&] { return phone_GetAccountInfoById(0, &info) && info.nNewMessages == 3; }));
    agent.leave();
    EXPECT_TRUE(kit::waitUntil([&] { return phone_GetAccountInfoById(0, &info) && info.nNewMessages == 0; }));
}

TEST_F(SipAccounts, OtherAddressesOfThePhoneAreToldToTheAgent)
{
    in_addr address = {};
    address.s_addr = htonl(0xc0000207);
    netWorld().address = address;
    begin();
    EXPECT_TRUE(agent.isQuiet(SIP_NETWORK));
    kit::stepTime(sipBackend::LOOK_MS);
    EXPECT_TRUE(agent.isQuiet(SIP_NETWORK)) << "nothing is new";
    netWorld().address = in_addr();
    kit::stepTime(sipBackend::LOOK_MS);
    EXPECT_TRUE(agent.isQuiet(SIP_NETWORK)) << "it has none, and nobody to reach";
    netWorld().address = address;
    kit::stepTime(sipBackend::LOOK_MS);
    EXPECT_TRUE(agent.isQuiet(SIP_NETWORK)) << "it is back where it was";
    address.s_addr = htonl(0xc0000208);
    netWorld().address = address;
    kit::stepTime(sipBackend::LOOK_MS);
    EXPECT_TRUE(agent.next<tagSipHead>(SIP_NETWORK));
    kit::stepTime(sipBackend::LOOK_MS);
    EXPECT_TRUE(agent.isQuiet(SIP_NETWORK)) << "once";
    netWorld() = tagNetWorld();
}

TEST_F(SipAccounts, WhoDialsIsToldWhyTheLineIsNotThere)
{
    const struct
    {
        SIP_LINE_STATE eState;
        uint32_t nStatus;
        const char* szTold;
        const char* szReason;
        SIP_TLS_FAULT eTls = SIP_TLS_NO_FAULT;
    } faults[] = {
        {SIP_LINE_REFUSED, 401, "The server does not accept name or password",
         "The server does not accept name or password"},
        {SIP_LINE_REFUSED, 403, "Forbidden", "The server does not accept name or password"},
        {SIP_LINE_REFUSED, 401,
         "The server asks for a password in a way that is not known, or not wanted, here",
         "The server asks for the password in an unknown way"},
        {SIP_LINE_FAILED, 404, "Not Found", "The server does not know the user name"},
        {SIP_LINE_FAILED, 503, "Service Unavailable", "The server is out of service"},
        {SIP_LINE_FAILED, 423, "Interval Too Brief", "The server refuses the registration"},
        {SIP_LINE_FAILED, 200, "The server does not keep the registration",
         "The server refuses the registration"},
        {SIP_LINE_FAILED, 0, "The server does not answer", "The server does not answer"},
        {SIP_LINE_FAILED, 0, "The server's name is not known", "The server's name is not known"},
        {SIP_LINE_FAILED, 0, "The name service does not answer", "The name service does not answer"},
        {SIP_LINE_FAILED, 0, "TLS: ", "There is no secure connection to the server", SIP_TLS_OTHER_FAULT},
        {SIP_LINE_REFUSED, 0, "The certificates of cafile.pem cannot be read",
         "The phone has no usable certificates", SIP_TLS_OWN_FILES},
        {SIP_LINE_FAILED, 0, "TLS: ", "The certificate of the server is for another name",
         SIP_TLS_OTHER_NAME},
        {SIP_LINE_FAILED, 0, "TLS: ", "The certificate of the server is from an unknown authority",
         SIP_TLS_UNKNOWN_AUTHORITY},
        {SIP_LINE_FAILED, 0, "TLS: ", "The certificate of the server has expired", SIP_TLS_EXPIRED},
        {SIP_LINE_FAILED, 0, "TLS: ", "The certificate of the server is not valid yet",
         SIP_TLS_NOT_YET_VALID},
        {SIP_LINE_FAILED, 0, "TLS: ", "The server does not accept the certificate of the phone",
         SIP_TLS_OWN_CERTIFICATE},
        {SIP_LINE_FAILED, 0, "TLS: ", "The server refuses a secure connection", SIP_TLS_REFUSED},
        {SIP_LINE_FAILED, 0, "TLS: ", "The server knows no secure connection", SIP_TLS_NOT_SPOKEN},
        {SIP_LINE_FAILED, 500, "Server Internal Error", "The server is out of service"},
        {SIP_LINE_FAILED, 0, "The account makes no address", "The line is not registered"}};
    begin();
    for (const auto& each : faults) {
        for (const int line : {0, -1}) {
            tellLine(0, SIP_LINE_REGISTERED, 200);
            ASSERT_TRUE(comesTo(0, LINE_DEFAULT_ACCOUNT));
            EXPECT_EQ(whyNot(0), "");
            tellLine(0, each.eState, each.nStatus, each.szTold, each.eTls);
            ASSERT_TRUE(comesTo(0, LINE_REGISTER_FAILED));
            EXPECT_EQ(phone_CallNumber("300", line, -1), 0);
            EXPECT_EQ(lastEnded().strReason, each.szReason) << line;
            EXPECT_EQ(whyNot(0), each.szReason);
            tellLine(0, SIP_LINE_REGISTERING);
            ASSERT_TRUE(comesTo(0, LINE_REGISTERING));
            EXPECT_EQ(phone_CallNumber("300", line, -1), 0);
            EXPECT_EQ(lastEnded().strReason, each.szReason) << "while it is tried again";
            EXPECT_EQ(whyNot(0), each.szReason);
        }
    }
    EXPECT_EQ(phone_CallNumber("300", 1, -1), 0);
    EXPECT_EQ(lastEnded().strReason, "The line is not registered") << "nobody has tried";
}

TEST_F(SipAccounts, AStunServerThatDoesNotAnswerIsToldOfALineThatIsRegistered)
{
    writeAccount(0, readFile("/rundata/config/user/voip/sipAccount0.cfg") +
                        "[NAT]\nNATTraversal=1\nSTUNServer=stun.example.com\nSTUNPort=3478\n");
    begin();
    const auto tellStun = [this](const char* address, bool isSilent) {
        auto stun = sipWire::make<tagSipStun>(SIP_STUN, 0);
        sipWire::setText(stun.szAddress, address);
        stun.nPort = 3478;
        stun.bSilent = isSilent;
        agent.tell(stun);
    };
    tellStun("", false);
    kit::settle();
    EXPECT_EQ(whyNot(0), "") << "nobody has asked it yet";
    tellStun("", true);
    EXPECT_TRUE(kit::waitUntil([] { return whyNot(0) == "The STUN server does not answer"; }));
    EXPECT_FALSE(traces().filter("the STUN server of line 1 does not answer").isEmpty());
    tellLine(0, SIP_LINE_FAILED, 0, "The server does not answer");
    EXPECT_TRUE(kit::waitUntil([] { return whyNot(0) == "The server does not answer"; }));
    tellLine(0, SIP_LINE_REGISTERED, 200);
    EXPECT_TRUE(kit::waitUntil([] { return whyNot(0) == "The STUN server does not answer"; }));
    tellStun("192.0.2.1", false);
    EXPECT_TRUE(kit::waitUntil([] { return whyNot(0).isEmpty(); }));
    tellStun("", true);
    EXPECT_TRUE(kit::waitUntil([] { return !whyNot(0).isEmpty(); }));
    agent.leave();
    EXPECT_TRUE(kit::waitUntil([] { return whyNot(0).isEmpty(); }));
}

TEST_F(SipAccounts, WhoLooksAtALineHearsThatItFailsForAnotherReason)
{
    begin();
    Recorder recorder;
    phone_RegAccountNotify(&recorder, 0);
    for (const SIP_TLS_FAULT fault : {SIP_TLS_UNKNOWN_AUTHORITY, SIP_TLS_OTHER_NAME}) {
        const qsizetype before = recorder.received.size();
        tellLine(0, SIP_LINE_FAILED, 0, "TLS: ", fault);
        EXPECT_TRUE(kit::waitUntil([&] { return recorder.received.size() > before; })) << fault;
    }
    EXPECT_EQ(whyNot(0), "The certificate of the server is for another name");
}
