#pragma once
// Counts the pixels that the codes of a GIF frame stand for, without making them. Any thread.
#include <QtGlobal>
#include <array>

class GifPixels
{
public:
    // bits: those of a colour, as the frame tells them; other numbers than 1 to 11 make no pixels.
    explicit GifPixels(int bits);
    // One of the frame's bytes, in their order.
    void addByte(int byte);
    qint64 count() const { return m_nCount; }

private:
    enum { MOST_BITS = 12 };
    void forgetCodes();
    void take(int code);
    int lengthOf(int code) const;

    const int m_nBits;
    bool m_bOver; // at the end, or at a code that says nothing
    int m_nCodes = 0;
    int m_nCodeBits = 0;
    int m_nLast = 0; // pixels of the last code
    std::array<int, 1 << MOST_BITS> m_lengths = {};
    unsigned m_nWaiting = 0;
    int m_nWaitingBits = 0;
    qint64 m_nCount = 0;
};
