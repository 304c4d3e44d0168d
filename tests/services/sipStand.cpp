#include "tests/services/sipStand.h"
#include "support/host/message.h"
#include "tests/kit/kitTime.h"
#include <QTimer>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

int kit::ScriptedMedia::judge(const QByteArray& offer, const tagMediaWish& wish)
{
    judgedOffer = offer;
    judgedWish = wish;
    const int question = ++nJudged;
    QTimer::singleShot(0, &m_late, [this, question, said = fit, judges = bJudges] {
        if (m_pNews && judges)
            m_pNews->mediaJudged(question, said);
    });
    return question;
}

void kit::ScriptedMedia::describe(int call, const QString& what, const tagMediaWish& wish)
{
    lastWish = wishes[call] = wish;
    orders.append(what + (wish.bHeld ? " held" : ""));
    if (bSilent)
        return;
    const QByteArray sdp =
        bEmpty ? QByteArray()
               : (what.startsWith("offer") ? "offer " : "answer ") + QByteArray::number(++m_nCount);
    QTimer::singleShot(0, &m_late, [this, call, sdp, missing = bMissing] {
        if (m_pNews && missing)
            m_pNews->mediaMissing(call);
        else if (m_pNews)
            m_pNews->mediaDescribed(call, sdp);
    });
}

bool kit::ScriptedAgent::comeTo(const QString& path)
{
    leave();
    m_bLeft = false;
    m_reader = {};
    m_questions = {};
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    strncpy(address.sun_path, path.toUtf8().constData(), sizeof address.sun_path - 1);
    m_nSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(m_nSocket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        return false;
    m_pNotifier = std::make_unique<QSocketNotifier>(m_nSocket, QSocketNotifier::Read);
    QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(),
                     [this] { receive(); });
    return true;
}

void kit::ScriptedAgent::leave()
{
    m_pNotifier.reset();
    if (m_nSocket >= 0)
        close(m_nSocket);
    m_nSocket = -1;
}

void kit::ScriptedAgent::tellBytes(const void* bytes, size_t size)
{
    const char* at = static_cast<const char*>(bytes);
    const bool isTold = kit::waitUntilHeld([&] {
        while (size > 0) {
            const ssize_t count = send(m_nSocket, at, size, MSG_NOSIGNAL | MSG_DONTWAIT);
            if (count < 0 && errno != EAGAIN)
                return true; // the phone wants no more
            if (count <= 0)
                return false;
            at += count;
            size -= size_t(count);
        }
        return true;
    });
    EXPECT_TRUE(isTold);
}

void kit::ScriptedAgent::receive()
{
    char bytes[65536];
    const ssize_t count = recv(m_nSocket, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        m_bLeft = true;
        if (m_pNotifier)
            m_pNotifier->setEnabled(false);
    }
    if (count <= 0)
        return;
    m_reader.add(bytes, size_t(count));
    m_questions.add(bytes, size_t(count));
    while (m_questions.take() == sipWire::TAKEN::RECORD) {
        if (m_questions.head().eKind != SIP_PING)
            continue;
        ++nPings;
        const auto pong = sipWire::make<tagSipHead>(SIP_PONG, 0);
        if (!bFrozen) {
            EXPECT_EQ(send(m_nSocket, &pong, sizeof pong, MSG_NOSIGNAL), ssize_t(sizeof pong));
        }
    }
}

const void* kit::ScriptedAgent::nextOf(SIP_RECORD kind, int ms)
{
    const void* found = nullptr;
    kit::waitUntil(
        [&] {
            receive();
            sipWire::TAKEN taken = m_reader.take();
            while (taken == sipWire::TAKEN::RECORD && m_reader.head().eKind != kind)
                taken = m_reader.take();
            EXPECT_NE(int(taken), int(sipWire::TAKEN::BAD));
            if (taken == sipWire::TAKEN::RECORD)
                found = &m_reader.head();
            return found || m_bLeft;
        },
        ms);
    return found;
}

bool kit::ScriptedAgent::isQuiet(SIP_RECORD kind)
{
    kit::settle();
    return nextOf(kind, 50) == nullptr;
}

bool kit::ScriptedAgent::isLeft()
{
    return kit::waitUntil([&] {
        receive();
        return m_bLeft;
    });
}

SipPhone::SipPhone()
{
    m_nListener =
        phoneService::instance().addCallListener([this](const tagCall& call) { heard.append(call); });
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line)
        writeAccount(line, "[account]\nEnable=0\n");
    writeAccount(0, "[account]\nEnable=1\nUserName=100\nAuthName=auth\npassword=s3cret\n"
                    "SIPServerHost=sip.example.com\nSIPServerPort=5060\nDisplayName=Anna\n");
}

// The history is written on another thread; the device root is not taken away under it.
SipPhone::~SipPhone()
{
    int ended = 0;
    for (const tagCall& call : heard)
        ended += call.eState == CALL_ENDED;
    const int kept = nKept < 0 ? ended : nKept;
    EXPECT_EQ(history("number", kept).size(), kept);
    phoneService::instance().removeCallListener(m_nListener);
    phoneService::instance().setBackend(nullptr);
}

void SipPhone::boot(sipBackend::AGENT agent)
{
    auto scripted = std::make_unique<kit::ScriptedMedia>();
    media = scripted.get();
    phoneService::instance().setBackend(std::make_unique<sipBackend>(std::move(scripted), agent));
}

void SipPhone::writeAccount(int line, const QByteArray& keys)
{
    const QByteArray file = "/rundata/config/user/voip/sipAccount" + QByteArray::number(line) + ".cfg";
    writeFile(file.constData(), keys);
}

void SipPhone::tellAccountChanged(int line)
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, unsigned(line));
    kit::settle();
}

void SipPhone::agentComes()
{
    ASSERT_TRUE(agent.comeTo(hostPath("/rundata/run/hxSip.link")));
    ASSERT_TRUE(agent.next<tagSipSetup>(SIP_SETUP));
    agent.tell(sipWire::make<tagSipHead>(SIP_HELLO, 0));
}

void SipPhone::tellLine(int line, SIP_LINE_STATE state, uint32_t status, const char* reason,
                        SIP_TLS_FAULT fault)
{
    auto record = sipWire::make<tagSipLine>(SIP_LINE, uint32_t(line));
    record.eState = state;
    record.nStatus = status;
    record.eTls = fault;
    sipWire::setText(record.szReason, reason);
    agent.tell(record);
}

void SipPhone::begin()
{
    boot();
    agentComes();
    ASSERT_TRUE(agent.next<tagSipAccount>(SIP_ACCOUNT));
    tellLine(0, SIP_LINE_REGISTERED, 200);
    ASSERT_TRUE(kit::waitUntil([] { return stateOf(0) == LINE_DEFAULT_ACCOUNT; }));
}

tagSipArrived SipPhone::arrival(uint32_t wire, const char* number, const char* sdp)
{
    auto record = sipWire::make<tagSipArrived>(SIP_ARRIVED, wire);
    sipWire::setText(record.szNumber, number);
    sipWire::setText(record.szSdp, sdp);
    return record;
}

int SipPhone::arrives(const tagSipArrived& record)
{
    const qsizetype before = calls().size();
    agent.tell(record);
    EXPECT_TRUE(kit::waitUntil([&] { return calls().size() == before + 1; }));
    return calls().isEmpty() ? 0 : calls().last().nId;
}

void SipPhone::tellMedia(SIP_RECORD kind, uint32_t wire, const char* sdp)
{
    auto record = sipWire::make<tagSipMedia>(kind, wire);
    sipWire::setText(record.szSdp, sdp);
    agent.tell(record);
    kit::settle();
}

void SipPhone::tellEnd(uint32_t wire, SIP_ENDING ending, uint32_t status, const char* target)
{
    auto record = sipWire::make<tagSipEnded>(SIP_ENDED, wire);
    record.eEnding = ending;
    record.nStatus = status;
    sipWire::setText(record.szTarget, target);
    agent.tell(record);
}

void SipPhone::tellStatus(SIP_RECORD kind, uint32_t wire, uint32_t status)
{
    auto record = sipWire::make<tagSipStatus>(kind, wire);
    record.nStatus = status;
    agent.tell(record);
    kit::settle();
}

uint32_t SipPhone::dials(const char* number)
{
    EXPECT_EQ(phone_CallNumber(number, -1, -1), 1);
    const auto* dial = agent.next<tagSipDial>(SIP_DIAL);
    return dial ? dial->head.nId : 0;
}

uint32_t SipPhone::talksOut(const char* number)
{
    const uint32_t wire = dials(number);
    tellMedia(SIP_TALK, wire, "their answer");
    EXPECT_TRUE(kit::waitUntil([] { return call().eState == CALL_TALKING; }));
    return wire;
}

int SipPhone::talksIn(uint32_t wire)
{
    const int id = arrives(arrival(wire));
    EXPECT_TRUE(phoneService::instance().answer(id));
    EXPECT_TRUE(agent.next<tagSipMedia>(SIP_ANSWER));
    tellMedia(SIP_TALK, wire, "their offer");
    return id;
}

LINE_STATE SipPhone::stateOf(int line)
{
    tagAccountInfo info;
    EXPECT_NE(phone_GetAccountInfoById(line, &info), 0);
    return info.eState;
}

tagCall SipPhone::call()
{
    return calls().isEmpty() ? tagCall() : calls().first();
}

bool SipPhone::waitsForEnd(int count)
{
    return kit::waitUntil([&] {
        int ended = 0;
        for (const tagCall& call : heard)
            ended += call.eState == CALL_ENDED;
        return ended == count;
    });
}

tagCall SipPhone::lastEnded() const
{
    return !heard.isEmpty() && heard.last().eState == CALL_ENDED ? heard.last() : tagCall();
}
