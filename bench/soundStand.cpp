#include "bench/soundStand.h"
#include <cstdio>

bool SoundStand::complain(const char* what)
{
    fprintf(stderr, "%s\n%s\n", what, m_peer ? m_peer->output().constData() : "");
    return false;
}

bool SoundStand::begin(const QByteArray& codec, const QByteArray& says, const QString& peerSays,
                       bool bProcesses, const QByteArray& peerSettings)
{
    m_peer.reset();
    m_phone.reset();
    m_network.reset();
    m_exchange = std::make_unique<RegistrarProcess>();
    if (!m_exchange->start({"--md5"}))
        return complain("the exchange does not start");
    m_network = std::make_unique<SoundRelay>(m_exchange->port());
    if (m_network->port() == 0)
        return complain("no ports are free");
    m_phone = std::make_unique<TalkingPhone>();
    tagPhoneSetup setup;
    setup.user = "1001";
    setup.password = RegistrarProcess::passwordOf("1001");
    setup.server = m_exchange->port();
    setup.says = says;
    setup.bProcesses = bProcesses;
    if (!m_phone->start(setup))
        return complain("the phone does not register");
    m_peer = std::make_unique<BaresipProcess>();
    tagBaresipSound sound;
    sound.codec = codec;
    sound.says = peerSays;
    sound.bRecords = !peerSays.isEmpty();
    sound.nThrough = m_network->port();
    sound.settings = peerSettings;
    if (!m_peer->start("1002", m_exchange->port(), RegistrarProcess::passwordOf("1002"), false, sound) ||
        !m_peer->prints("[1 binding]"))
        return complain("the other phone does not register");
    return true;
}

bool SoundStand::ring()
{
    m_peer->command("dial", "sip:1001@127.0.0.1:" + QByteArray::number(m_exchange->port()));
    return m_phone->rings() || complain("it does not ring");
}

bool SoundStand::talk()
{
    if (!ring())
        return false;
    if (!m_phone->answer() || !m_phone->talks() || !m_peer->tells("CALL_ESTABLISHED"))
        return complain("they do not talk");
    return true;
}

bool SoundStand::hangUp()
{
    return (m_phone->hangUp() && m_peer->tells("CALL_CLOSED")) || complain("the call does not end");
}
