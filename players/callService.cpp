#include "players/callService.h"
#include "players/pictureSource.h"
#include "players/playerRecords.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <utility>

namespace {

QList<QByteArray> parts()
{
    return soundCoder::parts() + QList<QByteArray>{"appsrc", "webrtcdsp", "webrtcechoprobe"};
}

void refuse(const msgObject& msg, const char* fault)
{
    nuxTrace(TRACE_NOTE, "message 0x%x of %d bytes is refused: %s", msg.message, msg.GetExtraSize(), fault);
}

chThreadBase* phone()
{
    return msgGetThreadByName("app_hxPhone");
}

// A device speaks with none of its own programs; phones side by side on one machine do.
bool hasLoopback()
{
    return !deviceGetRoot().IsEmpty();
}

tagOwnMedia ownMedia(const CALL_WISH& wish, int port)
{
    tagOwnMedia own;
    own.address = wish.szLocalIP[0] ? wish.szLocalIP : "127.0.0.1";
    own.nPort = port;
    own.bLoopback = hasLoopback();
    own.nSession = callCrypto::randomNumber<quint32>();
    return own;
}

// Null where nobody is to be asked.
std::unique_ptr<mappedPorts> portsAskedFor(const CALL_WISH& wish, std::unique_ptr<callSockets>& sockets)
{
    sockaddr_in server = {};
    if (inet_pton(AF_INET, wish.szStunIP, &server.sin_addr) != 1)
        return nullptr;
    server.sin_family = AF_INET;
    server.sin_port = htons(uint16_t(wish.nStunPort));
    return std::make_unique<mappedPorts>(std::move(sockets), server, hasLoopback());
}

template <int size>
void copyText(char (&to)[size], const char* from)
{
    qstrncpy(to, from, size);
}

} // namespace

callService::callService(pictureScreen& screen)
    : m_screen(screen), m_desk(m_sound), m_elements([this] { apply(); }, parts()),
      m_pictureElements([this] { applyPictures(); }, pictureEncoder::parts() + pictureDecoder::parts())
{
    m_open.setSingleShot(true);
    QObject::connect(&m_open, &QTimer::timeout, &m_open, [this] { m_sound.open(); });
    m_look.setInterval(LOOK_MS);
    QObject::connect(&m_look, &QTimer::timeout, &m_look, [this] { look(); });
    m_ports.setTimerType(Qt::PreciseTimer);
    m_ports.setInterval(mappedPorts::LOOK_MS);
    QObject::connect(&m_ports, &QTimer::timeout, &m_ports, [this] { stepPorts(); });
}

int callService::TryThreadMessage(msgObject& msg)
{
    if (msg.message == MEDIA_MSG_VOLUME && msg.wParam <= soundVolume::LOUDEST)
        m_sound.setVolume(int(msg.wParam), false);
    return takeDescription(msg) || takeOrder(msg);
}

bool callService::takeDescription(const msgObject& msg)
{
    const auto known = m_calls.find(int(msg.wParam));
    switch (msg.message) {
    case MEDIA_MSG_CALL_PREPARE:
        m_elements.load();
        return true;
    case MEDIA_MSG_CALL_OFFER:
    case MEDIA_MSG_CALL_ANSWER:
        describe(msg);
        return true;
    case MEDIA_MSG_CALL_JUDGE:
        judge(msg);
        return true;
    case MEDIA_MSG_CALL_AGREE:
        agree(msg);
        return true;
    case MEDIA_MSG_CALL_WITHDRAW:
        if (known != m_calls.end())
            known->second.negotiation->withdraw();
        return true;
    default:
        return false;
    }
}

bool callService::takeOrder(const msgObject& msg)
{
    const int call = int(msg.wParam);
    switch (msg.message) {
    case MEDIA_MSG_CALL_BEGIN:
        begin(call);
        return true;
    case MEDIA_MSG_CALL_MUTE:
        setMuted(msg);
        return true;
    case MEDIA_MSG_CALL_STILL:
        setStill(msg);
        return true;
    case MEDIA_MSG_CALL_TONE:
        sendTone(msg);
        return true;
    case MEDIA_MSG_CALL_JOIN:
        join(msg);
        return true;
    case MEDIA_MSG_CALL_SPLIT:
        split(call);
        return true;
    case MEDIA_MSG_CALL_END:
        end(call);
        return true;
    case MEDIA_MSG_OWN_PLACE:
        takeOwnPlace(msg);
        return true;
    default:
        return false;
    }
}

callService::tagCallEntry* callService::entryFor(int call, const CALL_WISH& wish)
{
    const auto known = m_calls.find(call);
    if (known != m_calls.end())
        return &known->second;
    std::unique_ptr<callSockets> sockets;
    if (m_calls.size() < MAX_CALLS)
        sockets = callSockets::open();
    if (!sockets)
        return nullptr;
    tagCallEntry& entry = m_calls[call];
    entry.negotiation = std::make_unique<callNegotiation>(ownMedia(wish, sockets->port()));
    entry.told.nQuality = -1;
    m_look.start();
    entry.soundPorts = portsAskedFor(wish, sockets);
    if (!entry.soundPorts)
        addSession(call, std::move(sockets));
    return &entry;
}

void callService::addSession(int call, std::unique_ptr<callSockets> sockets)
{
    m_desk.add(call, std::make_unique<callSession>(std::move(sockets)));
}

bool callService::openPictures(int call, tagCallEntry& entry, const CALL_WISH& wish)
{
    if (entry.pictures || entry.picturePorts)
        return true;
    std::unique_ptr<callSockets> sockets = callSockets::open();
    if (!sockets)
        return false;
    entry.negotiation->setPicturePort(sockets->port());
    m_pictureElements.load();
    entry.picturePorts = portsAskedFor(wish, sockets);
    if (!entry.picturePorts)
        beginPictures(call, entry, std::move(sockets));
    return true;
}

void callService::beginPictures(int call, tagCallEntry& entry, std::unique_ptr<callSockets> sockets)
{
    entry.end = std::make_unique<tagEnd>(m_screen, call, [this] {
        QMetaObject::invokeMethod(
            &m_look, [this] { tellAll(); }, Qt::QueuedConnection);
    });
    entry.pictures = std::make_unique<pictureSession>(std::move(sockets), *entry.end, m_camera);
    entry.pictures->setStill(entry.bStill);
}

void callService::stepPorts()
{
    bool waits = false;
    for (auto entry = m_calls.begin(); entry != m_calls.end();) {
        const auto each = entry++; // it may end
        waits = (each->second.waiting && !stepPorts(each->first, each->second)) || waits;
    }
    if (!waits)
        m_ports.stop();
}

bool callService::stepPorts(int call, tagCallEntry& entry)
{
    const bool isSoundSeen = !entry.soundPorts || entry.soundPorts->step();
    const bool arePicturesSeen = !entry.picturePorts || entry.picturePorts->step();
    if (!isSoundSeen || !arePicturesSeen)
        return false;
    if (const auto ports = std::exchange(entry.soundPorts, nullptr)) {
        entry.negotiation->setMapped(ports->place());
        addSession(call, ports->take());
        m_desk.with(call, [&](callSession& session) {
            session.setMuted(entry.bMuted);
            session.setStill(entry.bStill);
        });
    }
    if (const auto ports = std::exchange(entry.picturePorts, nullptr)) {
        entry.negotiation->setPictureMapped(ports->place());
        beginPictures(call, entry, ports->take());
    }
    const tagQuestion question = *std::exchange(entry.waiting, std::nullopt);
    reply(call, entry, question);
    return true;
}

void callService::takeOwnPlace(const msgObject& msg)
{
    const QRect place(int(msg.wParam >> 16), int(msg.wParam & 0xffff), int(msg.lParam >> 16),
                      int(msg.lParam & 0xffff));
    if (place.right() >= playerRecords::MAX_WIDTH || place.bottom() >= playerRecords::MAX_HEIGHT)
        refuse(msg, "the place is out of range");
    else
        m_screen.setOwnPlace(place);
}

void callService::tellDescription(int call, unsigned int number, const QByteArray& description)
{
    const bool isThere = !description.isEmpty() && description.size() < CALL_DESCRIPTION_SIZE;
    msgPostMsgToThreadEx(phone(), MEDIA_MSG_CALL_DESCRIBED, unsigned(call), number,
                         isThere ? int(description.size()) + 1 : 0,
                         isThere ? description.constData() : nullptr);
}

void callService::describe(const msgObject& msg)
{
    m_elements.load();
    tagQuestion question;
    question.nNumber = msg.lParam;
    question.bAnswer = msg.message == MEDIA_MSG_CALL_ANSWER;
    const CALL_WISH& wish = question.wish;
    const char* fault =
        playerRecords::readWish(msg.GetExtraData(), msg.GetExtraSize(), question.wish, question.offer);
    if (!fault && question.offer.isEmpty() == question.bAnswer)
        fault = "the size is wrong";
    const int call = int(msg.wParam);
    question.bNew = m_calls.count(call) == 0;
    tagCallEntry* entry = fault ? nullptr : entryFor(call, wish);
    if (!fault && !entry)
        fault = "there are too many calls";
    if (fault) {
        refuse(msg, fault);
        tellDescription(call, question.nNumber, {});
        return;
    }
    entry->bPreview = wish.bPreview != 0;
    if (!entry->bPreview)
        m_open.start(0); // behind the reply: somebody waits for that
    if (wish.bVideo != 0)
        openPictures(call, *entry, wish);
    if (!entry->soundPorts && !entry->picturePorts) {
        reply(call, *entry, question);
        return;
    }
    question.bNew = question.bNew || (entry->waiting && entry->waiting->bNew);
    entry->waiting = question;
    m_ports.start();
}

// Nothing is opened for a call that may never ring.
void callService::judge(const msgObject& msg)
{
    CALL_WISH wish;
    QByteArray offer;
    CALL_FIT fit = CALL_NO_DESCRIPTION;
    if (const char* fault = playerRecords::readWish(msg.GetExtraData(), msg.GetExtraSize(), wish, offer)) {
        refuse(msg, fault);
    } else {
        tagMediaWant want;
        want.bEncrypt = wish.bEncrypt != 0;
        fit = callNegotiation(ownMedia(wish, 0)).judge(offer, want);
    }
    msgPostMsgToThread(phone(), MEDIA_MSG_CALL_JUDGED, fit, msg.lParam);
}

void callService::reply(int call, tagCallEntry& entry, const tagQuestion& question)
{
    const CALL_WISH& wish = question.wish;
    tagMediaWant want;
    want.bHeld = wish.bHeld != 0;
    want.bEncrypt = wish.bEncrypt != 0;
    want.bVideo = wish.bVideo != 0 && entry.pictures;
    want.bCamera = want.bVideo && wish.eCamera != CALL_CAMERA_OFF && pictureSourceIsThere();
    want.bCameraNow = wish.eCamera == CALL_CAMERA_NOW;
    want.nKbit = int(std::min<uint32_t>(wish.nBandwidth, pictureRate::MOST_KBIT));
    want.nRate = wish.nFrameRate > 0 ? int(std::min<uint32_t>(wish.nFrameRate, 30)) : 30;
    QByteArray text =
        question.bAnswer ? entry.negotiation->answer(question.offer, want) : entry.negotiation->offer(want);
    // A preview of nothing would only take the ringing from the other side's ear.
    const bool isShown = entry.negotiation->agreedPicture().bReceives;
    if (entry.bPreview && question.bAnswer && question.bNew && !isShown)
        text.clear();
    tellDescription(call, question.nNumber, text);
    if (text.isEmpty() && question.bNew) {
        end(call);
    } else if (question.bAnswer && !text.isEmpty()) {
        entry.bAgreed = entry.bPicturesAgreed = true;
        apply();
        applyPictures();
    }
}

void callService::begin(int call)
{
    const auto known = m_calls.find(call);
    if (known == m_calls.end() || !std::exchange(known->second.bPreview, false))
        return;
    known->second.bAgreed = known->second.bPicturesAgreed = true;
    m_open.start(0);
    apply();
    applyPictures();
}

void callService::agree(const msgObject& msg)
{
    QByteArray answer;
    const char* fault = playerRecords::readCallDescription(msg.GetExtraData(), msg.GetExtraSize(), answer);
    const auto known = m_calls.find(int(msg.wParam));
    if (known == m_calls.end()) {
        refuse(msg, "there is no such call");
        return;
    }
    if (!fault && !known->second.negotiation->agree(answer))
        fault = "the answer does not fit";
    if (fault) {
        refuse(msg, fault);
        msgPostMsgToThread(phone(), MEDIA_MSG_CALL_UNFIT, msg.wParam, msg.lParam);
        return;
    }
    known->second.bAgreed = known->second.bPicturesAgreed = true;
    apply();
    applyPictures();
}

void callService::apply()
{
    if (m_elements.areComing())
        return;
    for (auto& [call, entry] : m_calls) {
        if (!std::exchange(entry.bAgreed, false))
            continue;
        tagAgreedSound agreed = entry.negotiation->agreed();
        if (entry.bPreview)
            agreed.bSends = agreed.bReceives = false;
        callSession::tagParts sound = callSession::build(agreed);
        m_desk.with(call, [&](callSession& session) { session.agree(agreed, sound); });
        tell(call, entry);
    }
}

// Behind the sound: a camera takes a while.
void callService::applyPictures()
{
    if (m_pictureElements.areComing())
        return;
    for (auto& [call, entry] : m_calls) {
        if (!std::exchange(entry.bPicturesAgreed, false) || !entry.pictures)
            continue;
        tagAgreedPicture agreed = entry.negotiation->agreedPicture();
        agreed.bSends = agreed.bSends && !entry.bPreview;
        entry.pictures->agree(agreed);
    }
    giveCamera();
    tellAll();
}

void callService::join(const msgObject& msg)
{
    const int call = int(msg.wParam);
    const int other = int(msg.lParam);
    m_screen.split(call);
    m_screen.split(other);
    if (m_desk.join(call, other))
        m_screen.join(call, other);
    else
        refuse(msg, "a call has no sound");
    giveCamera();
}

// The call goes on as it was, with what the two had in common.
void callService::split(int call)
{
    m_desk.split(call);
    m_screen.split(call);
    if (m_cameraCalls.removeOne(call))
        m_cameraCalls.append(call);
    giveCamera();
}

// Who wants it last has it, with whom he is joined; with his end, or when he does not want it any more, it
// goes back.
void callService::giveCamera()
{
    m_cameraCalls.removeIf([this](int call) {
        const auto known = m_calls.find(call);
        return known == m_calls.end() || !known->second.pictures->wantsCamera();
    });
    for (const auto& [call, entry] : m_calls) {
        if (entry.pictures && entry.pictures->wantsCamera() && !m_cameraCalls.contains(call))
            m_cameraCalls.append(call);
    }
    const int owner = m_cameraCalls.isEmpty() ? 0 : m_cameraCalls.last();
    const QList<int> owners{owner, m_desk.joinedWith(owner)};
    for (const bool own : {false, true}) {
        for (const auto& [call, entry] : m_calls) {
            if (entry.pictures && owners.contains(call) == own)
                entry.pictures->setCamera(own);
        }
    }
}

void callService::look()
{
    for (auto& [call, entry] : m_calls) {
        if (entry.pictures)
            entry.pictures->watchCamera();
        tell(call, entry, true);
    }
}

void callService::tellAll()
{
    for (auto& [call, entry] : m_calls)
        tell(call, entry);
}

void callService::tell(int call, tagCallEntry& entry, bool measures)
{
    if (entry.soundPorts)
        return;
    CALL_STREAMS streams = {};
    streams.nQuality = entry.told.nQuality;
    m_desk.with(call, [&](callSession& session) {
        const tagSoundCodec* codec = soundCodec(session.agreed().send.eCodec);
        if (session.agreed().bSound && codec)
            copyText(streams.szSound, codec->pShown);
        if (measures)
            streams.nQuality = session.quality(callDesk::nowUs());
        streams.bEncrypted = session.agreed().eSuite != CRYPTO_SUITE::NONE;
        streams.nTones = session.tonesTaken();
        streams.bOtherHolds = session.agreed().bHeldByPeer;
    });
    const tagAgreedPicture& picture = entry.negotiation->agreedPicture();
    const tagPictureCodec* codec = pictureCodec(picture.send.eCodec);
    if (picture.bPicture && picture.bReceives && codec) {
        copyText(streams.szPicture, codec->pShown);
        streams.bEncrypted = streams.bEncrypted && picture.eSuite != CRYPTO_SUITE::NONE;
    }
    streams.bOwnPicture = entry.pictures && entry.pictures->sends();
    streams.bOtherPicture = entry.end && entry.end->bSeen;
    if (memcmp(&streams, &entry.told, sizeof streams) == 0)
        return;
    entry.told = streams;
    msgPostMsgToThreadEx(phone(), MEDIA_MSG_CALL_STREAMS, unsigned(call), 0, int(sizeof streams), &streams);
}

void callService::setMuted(const msgObject& msg)
{
    const auto known = m_calls.find(int(msg.wParam));
    if (known == m_calls.end()) {
        refuse(msg, "there is no such call");
        return;
    }
    known->second.bMuted = msg.lParam != 0;
    m_desk.with(known->first, [&](callSession& session) { session.setMuted(known->second.bMuted); });
}

void callService::setStill(const msgObject& msg)
{
    const auto known = m_calls.find(int(msg.wParam));
    if (known == m_calls.end()) {
        refuse(msg, "there is no such call");
        return;
    }
    tagCallEntry& entry = known->second;
    entry.bStill = msg.lParam != 0;
    m_desk.with(known->first, [&](callSession& session) { session.setStill(entry.bStill); });
    if (!entry.pictures)
        return;
    entry.pictures->setStill(entry.bStill);
    giveCamera();
    tellAll();
}

void callService::sendTone(const msgObject& msg)
{
    bool isSent = false;
    const int ms = int(msg.lParam >> 8);
    m_desk.with(int(msg.wParam),
                [&](callSession& session) { isSent = session.sendTone(char(msg.lParam & 0xff), ms); });
    if (!isSent)
        refuse(msg, "the tone cannot be sent");
}

void callService::end(int call)
{
    if (const int other = m_desk.joinedWith(call))
        split(other);
    m_desk.remove(call);
    m_calls.erase(call);
    giveCamera();
    if (!m_calls.empty())
        return;
    m_look.stop();
    m_open.stop();
    m_sound.close();
}
