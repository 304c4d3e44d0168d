#pragma once
// The other side of a call's pictures, which sends what it likes: single packets, what a camera gives, and
// the heads of pictures of any size.
#include "players/callNegotiation.h"
#include "players/callSockets.h"
#include "players/pictureEncoder.h"
#include "players/rtpPacket.h"
#include <atomic>
#include <mutex>

class RawPictures
{
public:
    enum KEYS { ALL, NO_KEYS };

    RawPictures();
    // Where there was an answer or an agreement: to the address of that.
    void send(const QByteArray& content, quint32 time, bool marker, int payload = -1);
    // As many as a picture of the usual kind has.
    void sendPaced(const QByteArray& content, quint32 time, bool marker);
    void setSource(quint32 source) { m_nSource = source; }
    // What HX_PICTURE_SOURCE shows, until it ends.
    void sendCamera(KEYS keys = ALL);
    void endCamera() { m_encoder.reset(); }
    void askKey() { m_encoder->askKeyPicture(); }
    // Between two packets of the camera.
    void sendAside(const QByteArray& content);

    // A set of a sequence with so many blocks of 16 pixels; id: its name.
    static QByteArray sequenceSet(quint32 wide, quint32 high, quint32 id = 0);
    // The same, of the high profile; moreBits: beyond eight.
    static QByteArray highSet(quint32 wide, quint32 high, quint32 colours, quint32 moreBits, bool lists);

    std::unique_ptr<callNegotiation> negotiation;

private:
    void take(const unsigned char* packet, int size, KEYS keys);

    std::unique_ptr<callSockets> m_sockets;
    std::mutex m_mutex; // of what follows
    quint32 m_nSource = 4711;
    quint16 m_nSequence = 100;
    quint32 m_nFirst = 0; // time of the camera's first picture
    quint32 m_nTime = 0;  // of its last one
    bool m_bBegan = false;
    int m_nSent = 0;
    pictureCamera m_camera;
    std::unique_ptr<pictureEncoder> m_encoder;
};
