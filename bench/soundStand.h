#pragma once
// A phone that nobody here wrote calls ours, through a network that the bench makes.
#include "bench/soundRelay.h"
#include "tests/pbx/baresipProcess.h"
#include "tests/pbx/registrarProcess.h"
#include "tests/pbx/talkingPhone.h"
#include <memory>

class SoundStand
{
public:
    // says: of our phone, in the words of HX_SOUND_SOURCE. peerSays: a WAV file; empty: what it hears.
    // False, with a line on the standard error stream, when not everybody comes up.
    bool begin(const QByteArray& codec, const QByteArray& says, const QString& peerSays = {},
               bool bProcesses = false, const QByteArray& peerSettings = {});
    // Ours rings, and is not answered yet.
    bool ring();
    // One call, from its ring until both talk.
    bool talk();
    bool hangUp();

    TalkingPhone& phone() { return *m_phone; }
    BaresipProcess& peer() { return *m_peer; }
    SoundRelay& network() { return *m_network; }

private:
    bool complain(const char* what);

    std::unique_ptr<RegistrarProcess> m_exchange;
    std::unique_ptr<SoundRelay> m_network;
    std::unique_ptr<TalkingPhone> m_phone;
    std::unique_ptr<BaresipProcess> m_peer;
};
