#pragma once
// Pictures of H.264 of packets of RFC 6184: single units, several in one packet, one in several. Each picture
// is its units behind start codes (annex B). One thread.
#include "players/codedPictures.h"

class h264Pictures : public codedPictures
{
public:
    enum : int {
        MAX_SET = 1024,  // bytes of a set of a sequence, or of pictures
        MAX_SETS = 32,   // of pictures: their highest name, and one
        MAX_SLICES = 256 // of a picture
    };

    explicit h264Pictures(CodedHandler onCoded) : codedPictures(std::move(onCoded)) {}

protected:
    void putContent(const tagRtpHead& head, const QByteArray& content) override;
    void dropParts() override;

private:
    void putUnit(const QByteArray& unit);
    void putTogether(const QByteArray& content);
    void putPart(const QByteArray& content);
    void putSequence(const QByteArray& unit);
    void putSlice(const QByteArray& unit);
    bool append(const QByteArray& unit);
    void endPicture();

    QByteArray m_coded; // the picture so far
    QByteArray m_part;  // of a unit in several packets
    quint32 m_nTime = 0;
    bool m_bSequence = false; // one that can be shown is announced
    bool m_bKey = false;      // the picture, as the next ones
    bool m_bTooLarge = false;
    int m_nSlices = 0;
    quint32 m_nFirstBlock = 0; // of the last slice
};
