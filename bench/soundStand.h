#pragma once
// A phone that nobody here wrote calls ours, through a network that the bench makes.
#include "bench/soundRelay.h"
#include "tests/pbx/baresipPair.h"
#include <memory>

class SoundStand
{
public:
    // What ours hears goes nowhere, as with the peer whose loudspeaker is its microphone. Before begin().
    void recordNothing() { m_bRecords = false; }
    // says: of our phone, in the words of HX_SOUND_SOURCE. peerSays: a WAV file; empty: what it hears.
    // False, with a line on the standard error stream, when not everybody comes up.
    bool begin(const QByteArray& codec, const QByteArray& says, const QString& peerSays = {},
               bool bProcesses = false, const QByteArray& peerSettings = {});
    // As BaresipPair's, with a line on the standard error stream.
    bool ring() { return m_pair->ring() || complain(); }
    bool talk() { return m_pair->talk() || complain(); }
    bool hangUp() { return m_pair->hangUp() || complain(); }

    TalkingPhone& phone() { return m_pair->phone(); }
    BaresipProcess& peer() { return m_pair->other(); }
    SoundRelay& network() { return *m_network; }

private:
    bool complain();

    bool m_bRecords = true;
    std::unique_ptr<SoundRelay> m_network; // outlives the phones
    std::unique_ptr<BaresipPair> m_pair;
};
