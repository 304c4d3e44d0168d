#pragma once
// The way out of a call's stream: what is agreed to be sealed never leaves in clear. One thread at a time.
#include "players/callSockets.h"
#include "players/rtpPeer.h"
#include "players/secureRtp.h"

struct tagWayOut
{
    callSockets& sockets;
    const rtpPeer& peer;
    const tagAgreedStream& agreed;
    secureRtp* pSeal; // null where nothing is sealed, or there is no key
};

// packet: of size bytes, with secureRtp::MAX_MORE more that are free. False when it cannot be sealed.
bool sealedSend(const tagWayOut& way, unsigned char* packet, int size);
// One that is too long, or that the other side has no port for, is left out.
void sealedSendReport(const tagWayOut& way, const QByteArray& report);
