// What the phone and its SIP user agent read from each other. The first byte says in pieces of which size the
// stream comes; whatever is accepted must keep the limits of its kind, and its texts their ends.
#include "sip/sipWire.h"
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void demand(bool holds)
{
    if (!holds)
        abort();
}

template <size_t size>
void demandText(const char (&text)[size])
{
    const void* end = memchr(text, 0, size);
    demand(end != nullptr);
    if (size == SIP_SDP_SIZE)
        return;
    demand(std::none_of(text, static_cast<const char*>(end), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f;
    }));
}

void demandAccount(const tagSipAccount& account)
{
    demand(account.head.nId < SIP_LINE_COUNT && account.eTransport <= SIP_TLS && account.nPort <= 65535);
    demandText(account.szUser);
    demandText(account.szPassword);
    demandText(account.szServer);
    demandText(account.szProxy);
    demandText(account.szPickUp);
}

void demandArrived(const tagSipArrived& call)
{
    demand(call.nLine < SIP_LINE_COUNT && call.nForwards <= SIP_FORWARDS_MAX);
    demand(call.bWantsEarly == 0 || (call.bWantsEarly == 1 && !call.szSdp[0]));
    demandText(call.szNumber);
    demandText(call.szName);
    demandText(call.szPicture);
    for (const auto& text : call.szForwardedBy)
        demandText(text);
    demandText(call.szSdp);
}

void demandDial(const tagSipDial& dial)
{
    demand(dial.nLine < SIP_LINE_COUNT && dial.nForwards <= SIP_FORWARDS_MAX);
    demandText(dial.szTarget);
    for (const auto& text : dial.szForwardedBy)
        demandText(text);
    demandText(dial.szSdp);
}

void demandEvent(const sipWire::Reader& reader)
{
    switch (reader.head().eKind) {
    case SIP_PEER:
        demand(reader.as<tagSipPeer>().szAddress[0] != 0);
        demandText(reader.as<tagSipPeer>().szAddress);
        demandText(reader.as<tagSipPeer>().szName);
        break;
    case SIP_PLACE:
        demand(reader.as<tagSipTarget>().szTarget[0] != 0);
        demandText(reader.as<tagSipTarget>().szTarget);
        break;
    case SIP_WATCH:
        demand(reader.head().nId > 0 && reader.as<tagSipWatch>().nLine < SIP_LINE_COUNT);
        demandText(reader.as<tagSipWatch>().szNumber);
        break;
    case SIP_WATCH_LIST:
        demandText(reader.as<tagSipTarget>().szTarget);
        break;
    case SIP_PICK_UP:
        demand(reader.as<tagSipPickUp>().nLine < SIP_LINE_COUNT);
        demandText(reader.as<tagSipPickUp>().szNumber);
        demandText(reader.as<tagSipPickUp>().szSdp);
        break;
    case SIP_EARLY:
        demand(reader.as<tagSipMedia>().szSdp[0] != 0);
        demandText(reader.as<tagSipMedia>().szSdp);
        break;
    case SIP_HANG_UP:
        demand(reader.as<tagSipStatus>().nStatus == 0 || reader.as<tagSipStatus>().nStatus >= 400);
        break;
    case SIP_MESSAGES:
        demand(reader.as<tagSipMessages>().nNew <= SIP_MESSAGES_MAX);
        break;
    case SIP_LAMP:
        demand(reader.as<tagSipLamp>().eLamp <= SIP_LAMP_BUSY);
        break;
    case SIP_LIST:
        demand(reader.as<tagSipList>().nMembers <= SIP_MEMBERS_MAX);
        break;
    case SIP_MEMBER:
        demand(reader.as<tagSipMember>().nIndex < SIP_MEMBERS_MAX);
        demandText(reader.as<tagSipMember>().szNumber);
        demandText(reader.as<tagSipMember>().szName);
        break;
    default:
        break;
    }
}

void demandRecord(const sipWire::Reader& reader)
{
    const tagSipHead& head = reader.head();
    demand(head.nLength == sipWire::sizeOf(head.eKind));
    switch (head.eKind) {
    case SIP_ACCOUNT:
        demandAccount(reader.as<tagSipAccount>());
        break;
    case SIP_DIAL:
        demandDial(reader.as<tagSipDial>());
        break;
    case SIP_CONNECT:
        demand(reader.as<tagSipConnect>().nOther != head.nId);
        break;
    case SIP_REFERRED:
        demand(reader.as<tagSipReferred>().bReplaces <= 1);
        demandText(reader.as<tagSipReferred>().szTarget);
        break;
    case SIP_MAPPED:
        demand(head.nId < SIP_LINE_COUNT && reader.as<tagSipMapped>().nPort - 1 < 65535);
        demandText(reader.as<tagSipMapped>().szAddress);
        break;
    case SIP_ARRIVED:
        demandArrived(reader.as<tagSipArrived>());
        break;
    case SIP_ENDED:
        demandText(reader.as<tagSipEnded>().szReason);
        demandText(reader.as<tagSipEnded>().szTarget);
        break;
    case SIP_LINE:
        demandText(reader.as<tagSipLine>().szReason);
        demand(reader.as<tagSipLine>().eState <= SIP_LINE_REFUSED);
        break;
    default:
        demandEvent(reader);
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const size_t piece = size_t(data[0]) * 64 + 1;
    sipWire::Reader reader;
    for (size_t at = 1; at < size; at += piece) {
        reader.add(data + at, std::min(piece, size - at));
        sipWire::TAKEN taken;
        while ((taken = reader.take()) == sipWire::TAKEN::RECORD)
            demandRecord(reader);
        if (taken == sipWire::TAKEN::BAD)
            return 0;
        demand(reader.size() < sizeof(tagSipDial)); // the longest
    }
    return 0;
}
