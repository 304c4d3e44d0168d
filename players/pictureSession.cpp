#include "players/pictureSession.h"
#include "players/callDesk.h"
#include "support/host/trace.h"
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <poll.h>
#include <utility>

namespace {

constexpr int kStepMs = 20;
constexpr int kMaxTaken = 600;        // packets in one step
constexpr qint64 kAskUs = 500000;     // between two questions for a new picture
constexpr qint64 kMaxAskUs = 8000000; // the same, of who makes none
constexpr qint64 kMsUs = 1000;
constexpr qint64 kKeyUs = 300000;        // between two new pictures that are asked for
constexpr int kReceiveBytes = 512 << 10; // in the socket: a new picture comes all at once

} // namespace

pictureSession::pictureSession(std::unique_ptr<callSockets> sockets, pictureEnd& end, pictureCamera& camera)
    : m_sockets(std::move(sockets)), m_end(end), m_camera(camera),
      m_reports(callCrypto::randomNumber<quint32>(), callCrypto::randomBytes(9).toBase64()),
      m_nSequence(callCrypto::randomNumber<quint16>() & 0x7fff), m_nTime(callCrypto::randomNumber<quint32>())
{
    const int bytes = kReceiveBytes;
    setsockopt(m_sockets->descriptor(false), SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

pictureSession::~pictureSession()
{
    m_bRuns = false;
    if (m_thread.joinable())
        m_thread.join();
    endEncoder();
    if (m_peer.rtcp().sin_port != 0)
        sealedSendReport(wayOut(), m_reports.farewell());
    m_end.endOther();
}

bool pictureSession::sends() const
{
    const std::lock_guard<std::mutex> lock(m_encoderMutex);
    return m_encoder != nullptr;
}

void pictureSession::endEncoder()
{
    std::unique_ptr<pictureEncoder> gone;
    {
        const std::lock_guard<std::mutex> lock(m_encoderMutex);
        gone = std::move(m_encoder);
    }
    gone.reset();
    m_end.endOwn();
}

// Of the session's thread: what the other side wants of the encoder.
void pictureSession::steerEncoder()
{
    bool isKey = false;
    bool isRate = false;
    int kbit = 0;
    const std::lock_guard<std::mutex> encoder(m_encoderMutex);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        isKey = std::exchange(m_bKeyWanted, false);
        isRate = std::exchange(m_bRateChanged, false);
        kbit = m_rate.kbit();
    }
    if (m_encoder && isRate)
        m_encoder->setKbit(kbit);
    if (m_encoder && isKey)
        m_encoder->askKeyPicture();
}

void pictureSession::agree(const tagAgreedPicture& agreed)
{
    if (m_encoder && (!agreed.bSends || !m_encoder->isFor(agreed)))
        endEncoder();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const tagAgreedPicture before = std::exchange(m_agreed, agreed);
        m_keys.agree(agreed);
        m_bRateChanged = true;
        // Of who holds the call the last picture is of no use.
        const bool isHeld = agreed.bHeldByPeer && !before.bHeldByPeer;
        if (m_peer.agree(agreed) || !agreed.bReceives || isHeld) {
            m_order.clear();
            m_ready.clear();
            m_bNewDecoder = true;
        }
        m_rate.setMost(agreed.nKbit);
    }
    renewEncoder();
    if (!m_bRuns && agreed.bPicture) {
        m_bRuns = true;
        m_thread = std::thread([this] { run(); });
    }
}

void pictureSession::setCamera(bool own)
{
    m_bCamera = own;
    m_nTriedUs = 0;
    renewEncoder();
}

void pictureSession::renewEncoder()
{
    const bool isWanted = m_bCamera && wantsCamera();
    if (m_encoder && !isWanted)
        endEncoder();
    if (m_encoder || !isWanted)
        return;
    int kbit = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        kbit = m_rate.kbit();
    }
    m_nTriedUs = callDesk::nowUs();
    QByteArray fault;
    std::unique_ptr<pictureEncoder> made = pictureEncoder::make(
        m_camera, m_agreed, kbit, [this](const unsigned char* packet, int size) { sendPacket(packet, size); },
        [this](const GstVideoFrame& frame) { m_end.showOwn(frame); }, fault);
    if (!made)
        tellFault(fault);
    const std::lock_guard<std::mutex> lock(m_encoderMutex);
    m_encoder = std::move(made);
}

// Once, and not whenever it is tried again.
void pictureSession::tellFault(const QByteArray& fault)
{
    if (fault != m_fault)
        nuxTrace(TRACE_NOTE, "the camera sends no picture: %s", fault.constData());
    m_fault = fault;
}

// A camera may be somebody else's for a while, or be pulled out and put in again.
void pictureSession::watchCamera()
{
    const qint64 now = callDesk::nowUs();
    const QByteArray fault = m_encoder ? m_encoder->fault() : QByteArray();
    if (!fault.isEmpty()) {
        tellFault(fault);
        endEncoder();
        m_nTriedUs = now;
    } else if (!m_encoder && now - m_nTriedUs > CAMERA_MS * kMsUs) {
        renewEncoder();
    }
}

pictureSession::tagCounts pictureSession::counts() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    tagCounts counts = m_counts;
    counts.nShown = m_nShown;
    counts.nDecoders = m_nDecoders;
    counts.bRefused = m_bRefused;
    counts.nKbit = m_rate.kbit();
    return counts;
}

void pictureSession::run()
{
    while (m_bRuns) {
        waitForPackets();
        const qint64 now = callDesk::nowUs();
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            receive();
            follow(now);
        }
        steerEncoder();
        decode(now);
        watchPictures(now);
    }
    // Of this thread to the end: whoever ends the session waits for nothing but this.
    m_decoder.reset();
}

void pictureSession::waitForPackets() const
{
    pollfd sockets[] = {{m_sockets->descriptor(false), POLLIN, 0}, {m_sockets->descriptor(true), POLLIN, 0}};
    poll(sockets, 2, kStepMs);
}

const tagPictureFormat* pictureSession::formatOf(int payload) const
{
    for (const tagPictureFormat& format : m_agreed.take) {
        if (format.nPayload == payload)
            return &format;
    }
    return nullptr;
}

void pictureSession::receive()
{
    unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE];
    const qint64 now = callDesk::nowUs();
    for (const bool isReport : {false, true}) {
        for (int i = 0; i < kMaxTaken; ++i) {
            sockaddr_in from = {};
            qint64 ageUs = 0;
            const int size = m_sockets->take(isReport, packet, sizeof packet, from, ageUs);
            if (size == 0)
                break;
            if (size > 0 && (isReport || rtpPacket::isRtcp(packet, size)))
                takeReport(packet, size, from, now - ageUs);
            else if (size > 0)
                takePacket(packet, size, from, now - ageUs);
        }
    }
    QByteArray next;
    bool isLost = false;
    while (m_order.take(now, next, isLost))
        m_ready.append({next, isLost});
}

void pictureSession::takePacket(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs)
{
    tagRtpHead head;
    int start = 0;
    int length = 0;
    const bool isFromPeer = m_agreed.bPicture && m_peer.is(from);
    if (isFromPeer && !m_packets.take(nowUs)) {
        ++m_counts.nTooMany;
        return;
    }
    const int opened = isFromPeer ? m_keys.open(packet, size, false) : 0;
    const bool isWhole = opened > 0 && rtpPacket::read(packet, opened, head, start, length);
    const tagPictureFormat* format = isWhole ? formatOf(head.nPayload) : nullptr;
    if (!format || !m_peer.takes(from, head, nowUs)) {
        ++m_counts.nStrangers;
        return;
    }
    bool begins = false;
    if (!m_peer.isSource(head.nSource, begins))
        return;
    m_reports.took(head, PICTURE_CLOCK, nowUs, true);
    if (begins || format->eCodec != m_eCodec) {
        m_order.clear();
        m_bNewDecoder = true;
        m_eCodec = format->eCodec;
    }
    if (m_agreed.bReceives && length > 0)
        m_order.put(head.nSequence, QByteArray(reinterpret_cast<const char*>(packet), opened), nowUs);
}

void pictureSession::takeReport(unsigned char* packet, int size, const sockaddr_in& from, qint64 nowUs)
{
    if (!m_agreed.bPicture || !m_peer.isAt(from) || !rtpPacket::isRtcp(packet, size))
        return;
    const int opened = m_keys.open(packet, size, true);
    if (opened > 0)
        m_reports.read(packet, opened, nowUs);
}

// What reports say, and what they want.
void pictureSession::follow(qint64 nowUs)
{
    if (m_agreed.bPicture && m_agreed.nRtcpPort != 0 && m_reports.isDue(nowUs))
        sealedSendReport(wayOut(), m_reports.report(nowUs));
    if (m_agreed.bPicture)
        m_way.step(wayOut(), nowUs);
    if (m_reports.reportsRead() != m_nReportsSeen) {
        m_nReportsSeen = m_reports.reportsRead();
        m_bRateChanged = m_rate.told(m_reports.lossThereInPercent()) || m_bRateChanged;
    }
    if (m_reports.picturesWanted() == m_nWantedSeen || nowUs - m_nKeyedUs < kKeyUs)
        return;
    m_nWantedSeen = m_reports.picturesWanted();
    m_nKeyedUs = nowUs;
    m_bKeyWanted = true;
    ++m_counts.nKeyed;
}

// Less and less often at who makes none.
bool pictureSession::askPicture(qint64 nowUs)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool isSeen = m_nSeenUs != 0;
    if (isSeen || m_nAskUs == 0)
        m_nAskUs = kAskUs;
    if (nowUs - m_nAskedUs < m_nAskUs || m_agreed.nRtcpPort == 0 || !(m_agreed.bPli || m_agreed.bFir))
        return false;
    m_nAskedUs = nowUs;
    if (!isSeen)
        m_nAskUs = std::min(2 * m_nAskUs, kMaxAskUs);
    ++m_counts.nAsked;
    sealedSendReport(wayOut(), m_reports.pictureLost(!m_agreed.bPli));
    return true;
}

void pictureSession::endDecoder()
{
    if (!m_decoder)
        return;
    m_decoder.reset();
    m_nSeenUs = m_nAskUs = 0;
    m_end.endOther();
}

// Whoever changes what he sends with every packet gets no decoder for each of them.
void pictureSession::makeDecoder(PICTURE_CODEC codec)
{
    if (!m_builds.take(callDesk::nowUs()))
        return;
    ++m_nDecoders;
    m_decoder = pictureDecoder::make(codec, [this](const GstVideoFrame& frame) { show(frame); });
}

// Of the decoder's thread.
void pictureSession::show(const GstVideoFrame& frame)
{
    const qint64 now = callDesk::nowUs();
    m_nSeenUs = now;
    if (!m_shows.take(now))
        return;
    ++m_nShown;
    m_end.showOther(frame);
}

void pictureSession::decode(qint64 nowUs)
{
    QList<std::pair<QByteArray, bool>> ready;
    PICTURE_CODEC codec = PICTURE_CODEC::NONE;
    bool isNew = false;
    bool receives = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ready.swap(m_ready);
        isNew = std::exchange(m_bNewDecoder, false);
        receives = m_agreed.bPicture && m_agreed.bReceives;
        codec = m_eCodec;
    }
    if (isNew || !receives || (m_decoder && m_decoder->hasFailed()))
        endDecoder();
    if (!receives || codec == PICTURE_CODEC::NONE)
        return;
    if (!m_decoder)
        makeDecoder(codec);
    for (const auto& [packet, isLost] : ready) {
        if (isLost || !m_decoder || !m_decoder->put(packet))
            m_bDamaged = true;
    }
    // Until there is a picture it is asked for again, but of who has none that can be shown.
    if (!isRefused() && (m_bDamaged || m_nSeenUs == 0))
        m_bDamaged = !askPicture(nowUs);
}

bool pictureSession::isRefused()
{
    const bool isRefused = m_decoder && m_decoder->isRefused();
    if (isRefused && !m_bRefusedTold)
        nuxTrace(TRACE_NOTE, "the other side's pictures are of a kind, or a size, that is not shown");
    m_bRefusedTold = m_bRefusedTold || isRefused;
    m_bRefused = isRefused;
    return isRefused;
}

// A picture that stands still is not taken for one that goes on.
void pictureSession::watchPictures(qint64 nowUs)
{
    const qint64 seen = m_nSeenUs;
    qint64 quietMs = QUIET_MS;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_agreed.bHeldByPeer)
            quietMs = HELD_QUIET_MS;
    }
    if (seen == 0 || nowUs - seen <= quietMs * kMsUs)
        return;
    m_nSeenUs = 0;
    m_end.endOther();
}

// A packet of the encoder's: its number and its source are this session's.
void pictureSession::sendPacket(const unsigned char* made, int size)
{
    unsigned char packet[rtpPacket::MAX_BYTES + secureRtp::MAX_MORE];
    tagRtpHead head;
    int start = 0;
    int length = 0;
    if (size > rtpPacket::MAX_BYTES || !rtpPacket::read(made, size, head, start, length))
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_agreed.bSends)
        return;
    rtpPacket::write(
        {m_agreed.send.nPayload, head.bMarker, m_nSequence++, m_nTime + head.nTime, m_reports.source()},
        packet);
    memcpy(packet + rtpPacket::HEAD_BYTES, made + start, size_t(length));
    if (!sealedSend(wayOut(), packet, rtpPacket::HEAD_BYTES + length))
        return;
    m_way.sent();
    m_reports.sent(m_nTime + head.nTime, length);
}
