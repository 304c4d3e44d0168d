#pragma once
// How pictures go over a stream, as descriptions have it: H.264 (RFC 6184) of the constrained baseline, and
// VP8 (RFC 7741). Any thread.
#include "players/pictureCodec.h"
#include <QList>

struct tagPictureFormat
{
    PICTURE_CODEC eCodec = PICTURE_CODEC::NONE;
    int nPayload = 0;
    int nMode = 1;               // of H.264's packets: 0: each unit in a packet of its own
    QByteArray profile = "42e0"; // of H.264, four hexadecimal digits
    int nLevel = 0x1f;           // ten times the number of H.264's level
    bool bAsymmetric = true;     // each side has a level of its own
    int nMaxBlocks = 0;          // of 16 by 16 pixels in a VP8 picture; 0: any
    int nMaxRate = 0;            // VP8 pictures a second; 0: any
};

// What pictures may be at most.
struct tagPictureBounds
{
    int nWidth = 640;
    int nHeight = 480;
    int nRate = 30; // pictures a second
};

namespace pictureFormat {

enum : int { OWN_LEVEL = 0x1f };

// All that are spoken here, by preference; the numbers are still to be given.
QList<tagPictureFormat> known();
// The parameters of a=fmtp ("packetization-mode=1; profile-level-id=42e01f").
void readParameters(const QByteArray& text, tagPictureFormat& format);
// Can be spoken here: a profile that what we send is part of.
bool isSpoken(const tagPictureFormat& format);
// The same thing, but for numbers and levels.
bool isSame(const tagPictureFormat& one, const tagPictureFormat& other);
// Its lines of a description.
QByteArray lines(const tagPictureFormat& format);
// What the side that wrote the format bears of pictures that should be wanted.
tagPictureBounds boundsOf(const tagPictureFormat& format, const tagPictureBounds& wanted);

} // namespace pictureFormat
