#include "players/playerRecords.h"
#include <QStringView>
#include <arpa/inet.h>
#include <cstring>

namespace {

constexpr int kMaxRate = 1000000; // Hz
constexpr int kMaxChannels = 8;
constexpr int kQuarterTurns = 8; // of the picture, and of its mirror image

template <int size>
bool endsInside(const char (&text)[size])
{
    return memchr(text, 0, size) != nullptr;
}

bool isPrintable(const char* text)
{
    for (; *text; ++text) {
        if (static_cast<unsigned char>(*text) < ' ' || *text == 0x7f)
            return false;
    }
    return true;
}

template <int size>
bool isText(const char (&text)[size])
{
    return endsInside(text) && isPrintable(text);
}

// None, or a dotted IPv4 address.
template <int size>
bool isAddress(const char (&text)[size])
{
    if (!isText(text))
        return false;
    in_addr address;
    return text[0] == 0 || inet_pton(AF_INET, text, &address) == 1;
}

bool isPort(int port)
{
    return port == 0 || port >= playerRecords::MIN_PORT;
}

// Ports of two streams that may be the same only when they are none.
bool arePorts(int audio, int video)
{
    return isPort(audio) && isPort(video) && (audio == 0 || audio != video);
}

bool isPayload(int payload)
{
    return payload >= 0 && payload <= 127;
}

bool isRate(int rate)
{
    return rate >= 0 && rate <= kMaxRate;
}

bool isChannels(int channels)
{
    return channels >= 0 && channels <= kMaxChannels;
}

bool isRect(const MEDIA_RECT& rect)
{
    const bool placed = rect.x >= -playerRecords::MAX_WIDTH && rect.x <= playerRecords::MAX_WIDTH &&
                        rect.y >= -playerRecords::MAX_HEIGHT && rect.y <= playerRecords::MAX_HEIGHT;
    return placed && rect.width >= 0 && rect.width <= playerRecords::MAX_WIDTH && rect.height >= 0 &&
           rect.height <= playerRecords::MAX_HEIGHT;
}

bool isCodec(const MEDIA_CODEC& codec)
{
    return isPayload(codec.nPayload) && isText(codec.szName) && isText(codec.szParam);
}

template <class Record>
bool copyWhole(const void* block, int size, Record& record)
{
    if (!block || size != int(sizeof record))
        return false;
    memcpy(&record, block, sizeof record);
    return true;
}

const char* checkSessionTexts(const VOICE_PARAM& session)
{
    if (!isAddress(session.szLocalIP) || !isAddress(session.szAudRemoteIP) ||
        !isAddress(session.szVidRemoteIP))
        return "an address is none";
    if (!isCodec(session.audEnc) || !isCodec(session.audDec) || !isCodec(session.vidEnc) ||
        !isCodec(session.vidDec))
        return "a codec is none";
    if (!isText(session.szAudMime) || !isText(session.szVidMime) || !isText(session.szAudSdpParam) ||
        !isText(session.szVidSdpParam))
        return "a text does not end";
    return nullptr;
}

const char* checkDescription(const MOV_SDP& sdp)
{
    if (!isText(sdp.szAudName) || !isText(sdp.szAudParam) || !isText(sdp.szVidName) ||
        !isText(sdp.szVidParam))
        return "a text does not end";
    if (!isPayload(sdp.nAudPayload) || !isPayload(sdp.nVidPayload) || !isRate(sdp.nAudRate) ||
        !isRate(sdp.nVidRate) || !isChannels(sdp.nChannels))
        return "a number is out of range";
    return nullptr;
}

} // namespace

const char* playerRecords::readPath(const void* block, int size, QByteArray& path)
{
    const char* text = static_cast<const char*>(block);
    if (!text || size < 2 || size > MAX_PATH + 1 || text[size - 1] != 0 || int(strlen(text)) != size - 1)
        return "the path is no text";
    if (text[0] != '/' || !isPrintable(text))
        return "the path is no device path";
    path = QByteArray(text, size - 1);
    return nullptr;
}

const char* playerRecords::readStreams(const void* block, int size, PLAYER_STREAMS& streams)
{
    PLAYER_STREAMS read;
    if (!copyWhole(block, size, read))
        return "the size is wrong";
    if (const char* fault = checkDescription(read.sdp))
        return fault;
    if (!arePorts(read.nSoundFrom, read.nPictureFrom))
        return "a port is out of range";
    if (read.nQuarterTurns >= kQuarterTurns)
        return "a number is out of range";
    streams = read;
    return nullptr;
}

const char* playerRecords::readPlay(const void* block, int size, ADDR_PARAM& play)
{
    ADDR_PARAM read;
    if (!copyWhole(block, size, read))
        return "the size is wrong";
    if (!isText(read.szFile) || read.szFile[0] != '/')
        return "the path is no device path";
    if (!isAddress(read.szLocalIP) || !isAddress(read.szRemoteIP))
        return "an address is none";
    if (!arePorts(read.nLocalAudioPort, read.nLocalVideoPort) ||
        !arePorts(read.nRemoteAudioPort, read.nRemoteVideoPort))
        return "a port is out of range";
    if (read.nRemoteAudioPort == 0 && read.nRemoteVideoPort == 0)
        return "no stream has a port";
    play = read;
    return nullptr;
}

const char* playerRecords::readSession(const void* block, int size, VOICE_PARAM& session)
{
    VOICE_PARAM read;
    if (!copyWhole(block, size, read))
        return "the size is wrong";
    if (const char* fault = checkSessionTexts(read))
        return fault;
    if (!arePorts(read.nAudLocalPort, read.nVidLocalPort) ||
        !arePorts(read.nAudRemotePort, read.nVidRemotePort))
        return "a port is out of range";
    if (!isRate(read.nAudRate) || !isRate(read.nVidRate) || !isChannels(read.nChannels))
        return "a number is out of range";
    if (!isRect(read.rcRemote) || !isRect(read.rcLocal))
        return "a rectangle is out of range";
    session = read;
    return nullptr;
}

const char* playerRecords::readPorts(unsigned int word, uint16_t& audio, uint16_t& video)
{
    const int first = int(word & 0xFFFF);
    const int second = int(word >> 16);
    if (!arePorts(first, second))
        return "a port is out of range";
    audio = uint16_t(first);
    video = uint16_t(second);
    return nullptr;
}

const char* playerRecords::readCallDescription(const void* block, int size, QByteArray& description)
{
    const char* text = static_cast<const char*>(block);
    if (!text || size < 2 || size > CALL_DESCRIPTION_SIZE || text[size - 1] != 0 ||
        int(strlen(text)) != size - 1)
        return "the description is no text";
    description = QByteArray(text, size - 1);
    return nullptr;
}

const char* playerRecords::readWish(const void* block, int size, CALL_WISH& wish, QByteArray& description)
{
    CALL_WISH read;
    if (size < int(sizeof read) || !copyWhole(block, int(sizeof read), read))
        return "the size is wrong";
    if (!isAddress(read.szLocalIP) || !isAddress(read.szStunIP))
        return "an address is none";
    if (read.szStunIP[0] && (read.nStunPort < 1 || read.nStunPort > 65535))
        return "a port is out of range";
    QByteArray behind;
    const char* text = static_cast<const char*>(block) + sizeof read;
    const char* fault =
        size > int(sizeof read) ? readCallDescription(text, size - int(sizeof read), behind) : nullptr;
    if (fault)
        return fault;
    wish = read;
    description = behind;
    return nullptr;
}
