#include "bench/soundStand.h"
#include <cstdio>

bool SoundStand::complain()
{
    fprintf(stderr, "%s\n", m_pair->fault().constData());
    return false;
}

bool SoundStand::begin(const QByteArray& codec, const QByteArray& says, const QString& peerSays,
                       bool bProcesses, const QByteArray& peerSettings)
{
    m_pair = std::make_unique<BaresipPair>();
    if (!m_pair->startExchange())
        return complain();
    m_network = std::make_unique<SoundRelay>(m_pair->port());
    if (m_network->port() == 0) {
        fprintf(stderr, "no ports are free\n");
        return false;
    }
    tagPhoneSetup ours;
    ours.says = says;
    ours.bProcesses = bProcesses;
    ours.bRecords = m_bRecords;
    tagBaresipSound theirs;
    theirs.codec = codec;
    theirs.says = peerSays;
    theirs.bRecords = !peerSays.isEmpty();
    theirs.nThrough = m_network->port();
    theirs.settings = peerSettings;
    return m_pair->startPhones(ours, theirs) || complain();
}
