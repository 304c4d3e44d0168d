#pragma once
// Pictures of VP8 of packets of RFC 7741. One thread.
#include "players/codedPictures.h"

class vp8Pictures : public codedPictures
{
public:
    explicit vp8Pictures(CodedHandler onCoded) : codedPictures(std::move(onCoded)) {}

protected:
    void putContent(const tagRtpHead& head, const QByteArray& content) override;
    void dropParts() override;

private:
    void endPicture();

    QByteArray m_coded; // the picture so far; empty: its first packet is missing
    quint32 m_nTime = 0;
};
