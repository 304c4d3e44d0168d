#include "sip/sipWire.h"
#include <algorithm>
#include <cstring>

namespace {

enum class FIELD { TEXT, SDP, NUMBER };

struct tagField
{
    FIELD eKind;
    size_t nOffset;
    size_t nSize;
    uint32_t nLeast;
    uint32_t nMost;
};

struct tagShape
{
    uint32_t eKind;
    size_t nSize;
    uint32_t nFirstId;
    uint32_t nLastId;
    std::vector<tagField> fields;
};

#define TEXT_FIELD(record, name)                                                                             \
    {                                                                                                        \
        FIELD::TEXT, offsetof(record, name), sizeof(record::name), 0, 0                                      \
    }
#define SDP_FIELD(record, name)                                                                              \
    {                                                                                                        \
        FIELD::SDP, offsetof(record, name), sizeof(record::name), 0, 0                                       \
    }
#define NUMBER_FIELD(record, name, least, most)                                                              \
    {                                                                                                        \
        FIELD::NUMBER, offsetof(record, name), sizeof(record::name), least, most                             \
    }

constexpr uint32_t kMaxPort = 65535;
constexpr uint32_t kLastLine = SIP_LINE_COUNT - 1;
constexpr uint32_t kLastId = 0xffffffffu;
constexpr uint32_t kMaxStatus = 699;
constexpr uint32_t kFirstRefusal = 400;
constexpr uint32_t kFirstWarning = 300;
constexpr uint32_t kLastWarning = 399;
constexpr uint32_t kLeastExpires = 60;
constexpr uint32_t kFirstWatch = 1;

tagField forwardField(size_t number)
{
    return {FIELD::TEXT, offsetof(tagSipArrived, szForwardedBy) + number * SIP_TEXT_SIZE, SIP_TEXT_SIZE, 0,
            0};
}

tagField dialForwardField(size_t number)
{
    return {FIELD::TEXT, offsetof(tagSipDial, szForwardedBy) + number * SIP_TARGET_SIZE, SIP_TARGET_SIZE, 0,
            0};
}

const std::vector<tagShape>& shapes()
{
    static const std::vector<tagField> media = {SDP_FIELD(tagSipMedia, szSdp)};
    static const std::vector<tagField> target = {TEXT_FIELD(tagSipTarget, szTarget)};
    static const std::vector<tagShape> all = {
        {SIP_SETUP,
         sizeof(tagSipSetup),
         0,
         0,
         {TEXT_FIELD(tagSipSetup, szAddress), NUMBER_FIELD(tagSipSetup, nPort, 0, kMaxPort),
          NUMBER_FIELD(tagSipSetup, nTlsPort, 0, kMaxPort), TEXT_FIELD(tagSipSetup, szAgent),
          TEXT_FIELD(tagSipSetup, szCertificates), TEXT_FIELD(tagSipSetup, szNames),
          NUMBER_FIELD(tagSipSetup, nSilentMs, 100, 30000), NUMBER_FIELD(tagSipSetup, nRetryMs, 50, 600000),
          NUMBER_FIELD(tagSipSetup, nRetryLastMs, 50, 3600000),
          NUMBER_FIELD(tagSipSetup, nRingSeconds, 1, 600), NUMBER_FIELD(tagSipSetup, nOfferMs, 100, 30000),
          NUMBER_FIELD(tagSipSetup, nKeepMs, 0, 600000)}},
        {SIP_ACCOUNT,
         sizeof(tagSipAccount),
         0,
         kLastLine,
         {TEXT_FIELD(tagSipAccount, szUser), TEXT_FIELD(tagSipAccount, szDisplayName),
          TEXT_FIELD(tagSipAccount, szAuthName), TEXT_FIELD(tagSipAccount, szPassword),
          TEXT_FIELD(tagSipAccount, szRealm), TEXT_FIELD(tagSipAccount, szServer),
          NUMBER_FIELD(tagSipAccount, nPort, 0, kMaxPort), TEXT_FIELD(tagSipAccount, szProxy),
          NUMBER_FIELD(tagSipAccount, nProxyPort, 0, kMaxPort),
          NUMBER_FIELD(tagSipAccount, eTransport, SIP_UDP, SIP_TLS),
          NUMBER_FIELD(tagSipAccount, nExpires, 0, 86400), TEXT_FIELD(tagSipAccount, szPickUp),
          TEXT_FIELD(tagSipAccount, szStun), NUMBER_FIELD(tagSipAccount, nStunPort, 0, kMaxPort)}},
        {SIP_END, sizeof(tagSipHead), 0, 0, {}},
        {SIP_DIAL,
         sizeof(tagSipDial),
         SIP_CALL_FIRST,
         SIP_CALL_FIRST_INCOMING - 1,
         {NUMBER_FIELD(tagSipDial, nLine, 0, kLastLine), NUMBER_FIELD(tagSipDial, bAnonymous, 0, 1),
          NUMBER_FIELD(tagSipDial, nReferrer, 0, kLastId),
          NUMBER_FIELD(tagSipDial, nForwards, 0, SIP_FORWARDS_MAX), dialForwardField(0), dialForwardField(1),
          dialForwardField(2), dialForwardField(3), dialForwardField(4), TEXT_FIELD(tagSipDial, szTarget),
          SDP_FIELD(tagSipDial, szSdp)}},
        {SIP_RING, sizeof(tagSipMedia), SIP_CALL_FIRST_INCOMING, kLastId, media},
        {SIP_ANSWER, sizeof(tagSipMedia), SIP_CALL_FIRST_INCOMING, kLastId, media},
        {SIP_REFUSE,
         sizeof(tagSipStatus),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipStatus, nStatus, kFirstRefusal, kMaxStatus),
          NUMBER_FIELD(tagSipStatus, bTaken, 0, 0), NUMBER_FIELD(tagSipStatus, nWarning, 0, kLastWarning)}},
        {SIP_DEFLECT, sizeof(tagSipTarget), SIP_CALL_FIRST_INCOMING, kLastId, target},
        {SIP_HANG_UP,
         sizeof(tagSipStatus),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipStatus, nStatus, 0, kMaxStatus), NUMBER_FIELD(tagSipStatus, bTaken, 0, 0),
          NUMBER_FIELD(tagSipStatus, nWarning, 0, 0)}},
        {SIP_MEDIA, sizeof(tagSipMedia), SIP_CALL_FIRST, kLastId, media},
        {SIP_TRANSFER, sizeof(tagSipTarget), SIP_CALL_FIRST, kLastId, target},
        {SIP_TONE,
         sizeof(tagSipTone),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipTone, nTone, '#', 'D'), NUMBER_FIELD(tagSipTone, nMs, 40, 5000)}},
        {SIP_NO_MEDIA, sizeof(tagSipHead), SIP_CALL_FIRST, kLastId, {}},
        {SIP_CONNECT,
         sizeof(tagSipConnect),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipConnect, nOther, SIP_CALL_FIRST, kLastId)}},
        {SIP_NETWORK, sizeof(tagSipHead), 0, 0, {}},
        {SIP_PING, sizeof(tagSipHead), 0, 0, {}},
        {SIP_PONG, sizeof(tagSipHead), 0, 0, {}},
        {SIP_WATCH,
         sizeof(tagSipWatch),
         kFirstWatch,
         kLastId,
         {NUMBER_FIELD(tagSipWatch, nLine, 0, kLastLine), TEXT_FIELD(tagSipWatch, szNumber)}},
        {SIP_UNWATCH, sizeof(tagSipHead), kFirstWatch, kLastId, {}},
        {SIP_WATCH_LIST, sizeof(tagSipTarget), 0, kLastLine, target},
        {SIP_PICK_UP,
         sizeof(tagSipPickUp),
         SIP_CALL_FIRST,
         SIP_CALL_FIRST_INCOMING - 1,
         {NUMBER_FIELD(tagSipPickUp, nLine, 0, kLastLine), NUMBER_FIELD(tagSipPickUp, bAnonymous, 0, 1),
          TEXT_FIELD(tagSipPickUp, szNumber), SDP_FIELD(tagSipPickUp, szSdp)}},
        {SIP_MESSAGES,
         sizeof(tagSipMessages),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipMessages, bKnown, 0, 1), NUMBER_FIELD(tagSipMessages, nNew, 0, SIP_MESSAGES_MAX),
          NUMBER_FIELD(tagSipMessages, nOld, 0, SIP_MESSAGES_MAX)}},
        {SIP_LAMP,
         sizeof(tagSipLamp),
         kFirstWatch,
         kLastId,
         {NUMBER_FIELD(tagSipLamp, eLamp, SIP_LAMP_UNKNOWN, SIP_LAMP_BUSY)}},
        {SIP_LIST,
         sizeof(tagSipList),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipList, nMembers, 0, SIP_MEMBERS_MAX)}},
        {SIP_MEMBER,
         sizeof(tagSipMember),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipMember, nIndex, 0, SIP_MEMBERS_MAX - 1),
          NUMBER_FIELD(tagSipMember, eLamp, SIP_LAMP_UNKNOWN, SIP_LAMP_BUSY),
          TEXT_FIELD(tagSipMember, szNumber), TEXT_FIELD(tagSipMember, szName)}},
        {SIP_HELLO, sizeof(tagSipHead), 0, 0, {}},
        {SIP_LINE,
         sizeof(tagSipLine),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipLine, eState, SIP_LINE_NONE, SIP_LINE_REFUSED),
          NUMBER_FIELD(tagSipLine, nStatus, 0, kMaxStatus), NUMBER_FIELD(tagSipLine, nRetryMs, 0, 3600000),
          NUMBER_FIELD(tagSipLine, eTls, SIP_TLS_NO_FAULT, SIP_TLS_NOT_SPOKEN),
          TEXT_FIELD(tagSipLine, szReason)}},
        {SIP_MAPPED,
         sizeof(tagSipMapped),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipMapped, nPort, 1, kMaxPort), TEXT_FIELD(tagSipMapped, szAddress)}},
        {SIP_STUN,
         sizeof(tagSipStun),
         0,
         kLastLine,
         {NUMBER_FIELD(tagSipStun, nPort, 0, kMaxPort), NUMBER_FIELD(tagSipStun, bSilent, 0, 1),
          TEXT_FIELD(tagSipStun, szAddress)}},
        {SIP_ARRIVED,
         sizeof(tagSipArrived),
         SIP_CALL_FIRST_INCOMING,
         kLastId,
         {NUMBER_FIELD(tagSipArrived, nLine, 0, kLastLine), NUMBER_FIELD(tagSipArrived, bAnonymous, 0, 1),
          NUMBER_FIELD(tagSipArrived, bAutoAnswer, 0, 1),
          NUMBER_FIELD(tagSipArrived, nForwards, 0, SIP_FORWARDS_MAX),
          NUMBER_FIELD(tagSipArrived, nReplaces, 0, kLastId),
          NUMBER_FIELD(tagSipArrived, nRefusal, 0, kMaxStatus),
          NUMBER_FIELD(tagSipArrived, bWantsEarly, 0, 1), TEXT_FIELD(tagSipArrived, szNumber),
          TEXT_FIELD(tagSipArrived, szName), TEXT_FIELD(tagSipArrived, szPicture), forwardField(0),
          forwardField(1), forwardField(2), forwardField(3), forwardField(4),
          SDP_FIELD(tagSipArrived, szSdp)}},
        {SIP_PROGRESS,
         sizeof(tagSipProgress),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipProgress, nStatus, 0, 199), SDP_FIELD(tagSipProgress, szSdp)}},
        {SIP_TALK, sizeof(tagSipMedia), SIP_CALL_FIRST, kLastId, media},
        {SIP_OFFER, sizeof(tagSipMedia), SIP_CALL_FIRST, kLastId, media},
        {SIP_EARLY, sizeof(tagSipMedia), SIP_CALL_FIRST_INCOMING, kLastId, media},
        {SIP_ENDED,
         sizeof(tagSipEnded),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipEnded, eEnding, SIP_HUNG_UP, SIP_REPLACED),
          NUMBER_FIELD(tagSipEnded, nStatus, 0, kMaxStatus), TEXT_FIELD(tagSipEnded, szReason),
          TEXT_FIELD(tagSipEnded, szTarget)}},
        {SIP_TRANSFERRED,
         sizeof(tagSipStatus),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipStatus, nStatus, 200, kMaxStatus), NUMBER_FIELD(tagSipStatus, bTaken, 0, 1),
          NUMBER_FIELD(tagSipStatus, nWarning, 0, 0)}},
        {SIP_PLACE, sizeof(tagSipTarget), SIP_CALL_FIRST, SIP_CALL_FIRST_INCOMING - 1, target},
        {SIP_TONES_REFUSED, sizeof(tagSipHead), SIP_CALL_FIRST, kLastId, {}},
        {SIP_PEER,
         sizeof(tagSipPeer),
         SIP_CALL_FIRST,
         SIP_CALL_FIRST_INCOMING - 1,
         {TEXT_FIELD(tagSipPeer, szAddress), TEXT_FIELD(tagSipPeer, szName)}},
        {SIP_REFERRED,
         sizeof(tagSipReferred),
         SIP_CALL_FIRST,
         kLastId,
         {NUMBER_FIELD(tagSipReferred, bReplaces, 0, 1), TEXT_FIELD(tagSipReferred, szTarget)}},
    };
    return all;
}

const tagShape* shapeOf(uint32_t kind)
{
    for (const tagShape& shape : shapes()) {
        if (shape.eKind == kind)
            return &shape;
    }
    return nullptr;
}

bool isControl(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7f;
}

// Those of a description of media; what else controls something has no business there.
bool isLayout(char c)
{
    return c == '\r' || c == '\n' || c == '\t';
}

bool isSoundText(const char* text, const tagField& field)
{
    const void* end = memchr(text, 0, field.nSize);
    if (!end)
        return false;
    return std::none_of(text, static_cast<const char*>(end),
                        [&](char c) { return isControl(c) && !(field.eKind == FIELD::SDP && isLayout(c)); });
}

bool isSoundField(const char* record, const tagField& field)
{
    const char* at = record + field.nOffset;
    if (field.eKind != FIELD::NUMBER)
        return isSoundText(at, field);
    uint32_t number;
    memcpy(&number, at, sizeof number);
    return number >= field.nLeast && number <= field.nMost;
}

// What no range says.
bool isSoundWhole(const void* record, uint32_t kind)
{
    if (kind == SIP_TONE) {
        const uint32_t tone = static_cast<const tagSipTone*>(record)->nTone;
        return strchr("0123456789*#ABCD", int(tone)) != nullptr;
    }
    if (kind == SIP_ACCOUNT) {
        const auto* account = static_cast<const tagSipAccount*>(record);
        return (!account->szUser[0] || account->nExpires >= kLeastExpires) &&
               (!account->szStun[0] || account->nStunPort > 0);
    }
    if (kind == SIP_STUN) {
        const auto* stun = static_cast<const tagSipStun*>(record);
        return !stun->szAddress[0] || (stun->nPort > 0 && !stun->bSilent);
    }
    if (kind == SIP_REFUSE) {
        const uint32_t warning = static_cast<const tagSipStatus*>(record)->nWarning;
        return warning == 0 || warning >= kFirstWarning;
    }
    if (kind == SIP_HANG_UP) {
        const uint32_t status = static_cast<const tagSipStatus*>(record)->nStatus;
        return status == 0 || status >= kFirstRefusal;
    }
    if (kind == SIP_ARRIVED) {
        const auto* arrived = static_cast<const tagSipArrived*>(record);
        return (arrived->nRefusal == 0 || (arrived->nRefusal >= kFirstRefusal && !arrived->szSdp[0])) &&
               !(arrived->bWantsEarly && arrived->szSdp[0]);
    }
    if (kind == SIP_EARLY)
        return static_cast<const tagSipMedia*>(record)->szSdp[0] != 0;
    if (kind == SIP_PLACE)
        return static_cast<const tagSipTarget*>(record)->szTarget[0] != 0;
    if (kind == SIP_WATCH)
        return static_cast<const tagSipWatch*>(record)->szNumber[0] != 0;
    if (kind == SIP_PICK_UP)
        return static_cast<const tagSipPickUp*>(record)->szNumber[0] != 0;
    if (kind == SIP_PEER)
        return static_cast<const tagSipPeer*>(record)->szAddress[0] != 0;
    if (kind == SIP_SETUP) {
        const auto* setup = static_cast<const tagSipSetup*>(record);
        return setup->nRetryLastMs >= setup->nRetryMs && (setup->nKeepMs == 0 || setup->nKeepMs >= 100);
    }
    if (kind == SIP_CONNECT) {
        const auto* connect = static_cast<const tagSipConnect*>(record);
        return connect->nOther != connect->head.nId;
    }
    return true;
}

} // namespace

size_t sipWire::sizeOf(uint32_t kind)
{
    const tagShape* shape = shapeOf(kind);
    return shape ? shape->nSize : 0;
}

bool sipWire::isSound(const void* record, size_t size)
{
    tagSipHead head;
    if (size < sizeof head)
        return false;
    memcpy(&head, record, sizeof head);
    const tagShape* shape = shapeOf(head.eKind);
    if (!shape || shape->nSize != size || head.nLength != size || head.nUnused != 0)
        return false;
    if (head.nId < shape->nFirstId || head.nId > shape->nLastId)
        return false;
    const char* bytes = static_cast<const char*>(record);
    return std::all_of(shape->fields.begin(), shape->fields.end(),
                       [&](const tagField& field) { return isSoundField(bytes, field); }) &&
           isSoundWhole(record, head.eKind);
}

void sipWire::setText(char* field, size_t size, const std::string& text, bool isSdp)
{
    std::string clean;
    for (char c : text) {
        if (!isControl(c) || (isSdp && isLayout(c)))
            clean += c;
    }
    if (clean.size() >= size) {
        size_t end = size - 1;
        while (end > 0 && (static_cast<unsigned char>(clean[end]) & 0xc0) == 0x80)
            --end;
        clean.resize(end);
    }
    memset(field, 0, size);
    memcpy(field, clean.data(), clean.size());
}

void sipWire::Reader::add(const void* bytes, size_t size)
{
    const char* begin = static_cast<const char*>(bytes);
    m_bytes.insert(m_bytes.end(), begin, begin + size);
}

sipWire::TAKEN sipWire::Reader::take()
{
    tagSipHead head;
    if (m_bytes.size() < sizeof head)
        return TAKEN::NEED_MORE;
    memcpy(&head, m_bytes.data(), sizeof head);
    const size_t size = sizeOf(head.eKind);
    if (size == 0 || head.nLength != size)
        return TAKEN::BAD;
    if (m_bytes.size() < size)
        return TAKEN::NEED_MORE;
    m_record.assign((size + sizeof(uint32_t) - 1) / sizeof(uint32_t), 0);
    memcpy(m_record.data(), m_bytes.data(), size);
    if (!isSound(m_record.data(), size))
        return TAKEN::BAD;
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + std::ptrdiff_t(size));
    return TAKEN::RECORD;
}
