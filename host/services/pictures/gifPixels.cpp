#include "host/services/pictures/gifPixels.h"

GifPixels::GifPixels(int bits) : m_nBits(bits), m_bOver(bits < 1 || bits >= MOST_BITS)
{
    if (!m_bOver)
        forgetCodes();
}

void GifPixels::addByte(int byte)
{
    if (m_bOver)
        return;
    m_nWaiting |= unsigned(byte) << m_nWaitingBits;
    m_nWaitingBits += 8;
    while (!m_bOver && m_nWaitingBits >= m_nCodeBits) {
        const int bits = m_nCodeBits; // the code may change it
        take(int(m_nWaiting & ((1u << bits) - 1)));
        m_nWaiting >>= bits;
        m_nWaitingBits -= bits;
    }
}

// The colours are there, and two codes behind them: to begin anew, and to end.
void GifPixels::forgetCodes()
{
    m_nCodes = (1 << m_nBits) + 2;
    m_nCodeBits = m_nBits + 1;
    m_nLast = 0;
}

void GifPixels::take(int code)
{
    if (code == 1 << m_nBits) {
        forgetCodes();
        return;
    }
    const int length = lengthOf(code);
    m_bOver = length == 0;
    m_nCount += length;
    if (m_nLast > 0 && m_nCodes < 1 << MOST_BITS)
        m_lengths[size_t(m_nCodes++)] = m_nLast + 1;
    if (m_nCodes == 1 << m_nCodeBits && m_nCodeBits < MOST_BITS)
        ++m_nCodeBits;
    m_nLast = length;
}

// 0 for the end, and for a code that is not known.
int GifPixels::lengthOf(int code) const
{
    const int colours = 1 << m_nBits;
    if (code < colours)
        return 1;
    if (code < m_nCodes)
        return m_lengths[size_t(code)];
    return code == m_nCodes && m_nLast > 0 ? m_nLast + 1 : 0;
}
