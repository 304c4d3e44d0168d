// What other processes send to the players, and what the media server leaves in the memory of pictures. The
// first byte says which; whatever is accepted must keep the limits that the players rely on.
#include "host/services/players/videoFrameStore.h"
#include "players/playerRecords.h"
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

void demand(bool holds)
{
    if (!holds)
        abort();
}

template <int size>
void demandText(const char (&text)[size])
{
    demand(memchr(text, 0, size) != nullptr);
}

void demandPort(int port)
{
    demand(port == 0 || port >= playerRecords::MIN_PORT);
}

void tryPath(const uint8_t* data, int size)
{
    QByteArray path;
    if (!playerRecords::readPath(data, size, path))
        demand(path.startsWith('/') && path.size() == size - 1 && !path.contains('\0'));
}

void tryStreams(const uint8_t* data, int size)
{
    PLAYER_STREAMS streams;
    if (playerRecords::readStreams(data, size, streams))
        return;
    demandText(streams.sdp.szAudName);
    demandText(streams.sdp.szAudParam);
    demandText(streams.sdp.szVidName);
    demandText(streams.sdp.szVidParam);
    demandPort(streams.nSoundFrom);
    demandPort(streams.nPictureFrom);
    demand(streams.nQuarterTurns < 4);
}

void tryPlay(const uint8_t* data, int size)
{
    ADDR_PARAM play;
    if (playerRecords::readPlay(data, size, play))
        return;
    demandText(play.szFile);
    demand(play.szFile[0] == '/');
    demandPort(play.nRemoteAudioPort);
    demandPort(play.nRemoteVideoPort);
}

void trySession(const uint8_t* data, int size)
{
    VOICE_PARAM session;
    if (playerRecords::readSession(data, size, session))
        return;
    demandText(session.szAudMime);
    demandText(session.szVidMime);
    demandText(session.szAudSdpParam);
    demandText(session.szVidSdpParam);
    demandPort(session.nAudRemotePort);
    demandPort(session.nVidRemotePort);
    demand(session.rcRemote.width <= playerRecords::MAX_WIDTH && session.rcRemote.width >= 0);
    demand(session.rcRemote.height <= playerRecords::MAX_HEIGHT && session.rcRemote.height >= 0);
}

void tryStore(const uint8_t* data, size_t size)
{
    static std::vector<uint32_t> store(VIDEO_STORE_BYTES / sizeof(uint32_t));
    memset(store.data(), 0, sizeof(tagVideoHead));
    memcpy(static_cast<void*>(store.data()), data, size < sizeof(tagVideoHead) ? size : sizeof(tagVideoHead));
    tagVideoPicture picture;
    if (!videoStoreNewest(store.data(), VIDEO_STORE_BYTES, picture))
        return;
    const auto* begin = reinterpret_cast<const unsigned char*>(store.data());
    const size_t bytes = size_t(picture.nWidth) * size_t(picture.nHeight) * VIDEO_STORE_PIXEL;
    demand(picture.nWidth > 0 && picture.nHeight > 0 && bytes <= VIDEO_STORE_SLOT_BYTES);
    demand(size_t(picture.pPixels - begin) + bytes <= VIDEO_STORE_BYTES);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const uint8_t* block = data + 1;
    const int length = int(size - 1);
    switch (data[0] % 5) {
    case 0:
        tryPath(block, length);
        break;
    case 1:
        tryStreams(block, length);
        break;
    case 2:
        tryPlay(block, length);
        break;
    case 3:
        trySession(block, length);
        break;
    default:
        tryStore(block, size - 1);
        break;
    }
    return 0;
}
