#include "players/pictureFormat.h"
#include <algorithm>

namespace {

const QByteArray kEnd = "\r\n";

// Of H.264, table A-1: blocks of 16 by 16 pixels in a picture and in a second.
struct tagLevel
{
    int nLevel;
    int nBlocks;
    int nBlocksPerSecond;
};
constexpr tagLevel kLevels[] = {{10, 99, 1485},     {11, 396, 3000},    {12, 396, 6000},   {13, 396, 11880},
                                {20, 396, 11880},   {21, 792, 19800},   {22, 1620, 20250}, {30, 1620, 40500},
                                {31, 3600, 108000}, {32, 5120, 216000}, {40, 8192, 245760}};
constexpr int kBlock = 16;
constexpr int kLeastRate = 5;
struct tagSize
{
    int nWidth;
    int nHeight;
};
constexpr tagSize kSizes[] = {{640, 480}, {352, 288}, {176, 144}};

int blocksIn(const tagSize& size)
{
    return size.nWidth / kBlock * (size.nHeight / kBlock);
}

// Four digits of a profile and two of a level.
void readProfile(const QByteArray& text, tagPictureFormat& format)
{
    const QByteArray digits = QByteArray::fromHex(text).toHex();
    if (text.size() != 6 || digits != text.toLower())
        return;
    format.profile = digits.left(4);
    format.nLevel = digits.mid(4).toInt(nullptr, 16);
}

} // namespace

QList<tagPictureFormat> pictureFormat::known()
{
    QList<tagPictureFormat> all;
    for (const int mode : {1, 0}) {
        all.append(tagPictureFormat());
        all.last().eCodec = PICTURE_CODEC::H264;
        all.last().nMode = mode;
    }
    all.append(tagPictureFormat());
    all.last().eCodec = PICTURE_CODEC::VP8;
    return all;
}

void pictureFormat::readParameters(const QByteArray& text, tagPictureFormat& format)
{
    for (const QByteArray& part : text.split(';')) {
        const qsizetype at = part.indexOf('=');
        const QByteArray name = part.left(at).trimmed().toLower();
        const QByteArray value = at < 0 ? QByteArray() : part.mid(at + 1).trimmed();
        if (name == "profile-level-id")
            readProfile(value, format);
        else if (name == "packetization-mode")
            format.nMode = value == "0" ? 0 : value == "1" ? 1 : 2;
        else if (name == "level-asymmetry-allowed")
            format.bAsymmetric = value == "1";
        else if (name == "max-fs")
            format.nMaxBlocks = std::max(0, value.toInt());
        else if (name == "max-fr")
            format.nMaxRate = std::max(0, value.toInt());
    }
}

// The constrained baseline is part of the baseline, and of the main profile where its first two marks say so.
bool pictureFormat::isSpoken(const tagPictureFormat& format)
{
    if (format.eCodec == PICTURE_CODEC::VP8)
        return true;
    if (format.eCodec != PICTURE_CODEC::H264 || format.nMode > 1 || format.nLevel < kLevels[0].nLevel)
        return false;
    const int marks = format.profile.mid(2).toInt(nullptr, 16);
    return format.profile.startsWith("42") || (format.profile.startsWith("4d") && (marks & 0x80) != 0) ||
           (format.profile.startsWith("58") && (marks & 0xc0) == 0xc0);
}

bool pictureFormat::isSame(const tagPictureFormat& one, const tagPictureFormat& other)
{
    return one.eCodec == other.eCodec && (one.eCodec != PICTURE_CODEC::H264 || one.nMode == other.nMode);
}

QByteArray pictureFormat::lines(const tagPictureFormat& format)
{
    const QByteArray number = QByteArray::number(format.nPayload);
    QByteArray text = "a=rtpmap:" + number + ' ' + pictureCodec(format.eCodec)->pName + '/' +
                      QByteArray::number(int(PICTURE_CLOCK)) + kEnd;
    if (format.eCodec == PICTURE_CODEC::H264)
        text += "a=fmtp:" + number + " profile-level-id=" + format.profile +
                QByteArray::number(format.nLevel, 16).rightJustified(2, '0') +
                ";packetization-mode=" + QByteArray::number(format.nMode) +
                (format.bAsymmetric ? ";level-asymmetry-allowed=1" : "") + kEnd;
    return text;
}

tagPictureBounds pictureFormat::boundsOf(const tagPictureFormat& format, const tagPictureBounds& wanted)
{
    tagLevel most = {0, format.nMaxBlocks > 0 ? format.nMaxBlocks : 1 << 20, 1 << 30};
    if (format.eCodec == PICTURE_CODEC::H264) {
        most = kLevels[0];
        for (const tagLevel& level : kLevels) {
            if (level.nLevel <= format.nLevel)
                most = level;
        }
    }
    int rate = std::max(1, wanted.nRate);
    if (format.nMaxRate > 0)
        rate = std::min(rate, format.nMaxRate);
    tagPictureBounds bounds = {kSizes[2].nWidth, kSizes[2].nHeight, 1};
    for (const tagSize& size : kSizes) {
        const int blocks = blocksIn(size);
        const int possible = std::min(rate, most.nBlocksPerSecond / blocks);
        if (size.nWidth > wanted.nWidth || blocks > most.nBlocks || possible < std::min(rate, kLeastRate))
            continue;
        bounds = {size.nWidth, size.nHeight, possible};
        break;
    }
    return bounds;
}
