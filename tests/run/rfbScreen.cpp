#include "tests/run/rfbScreen.h"
#include <QtEndian>
#include <cstring>

namespace {

template <typename Number>
Number numberAt(const QByteArray& bytes, qsizetype at)
{
    return qFromBigEndian<Number>(bytes.constData() + at);
}

template <typename Number>
QByteArray bytesOf(Number number)
{
    QByteArray bytes(sizeof number, 0);
    qToBigEndian(number, bytes.data());
    return bytes;
}

// 32 bits a pixel, as QImage::Format_RGB32 has them in memory.
const QByteArray kPixels = QByteArray::fromHex("00000000 20180001 00ff00ff00ff 100800 000000");
const QByteArray kRawOnly = QByteArray::fromHex("02000001 00000000");

} // namespace

void RfbScreen::take(const QByteArray& bytes)
{
    m_input += bytes;
    while (takeOne())
        continue;
}

bool RfbScreen::takeOne()
{
    if (m_step == Step::Version && m_input.size() >= 12) {
        m_send(m_input.left(12));
        m_input.remove(0, 12);
        m_step = Step::Security;
        return true;
    }
    if (m_step == Step::Security && m_input.size() > 1 && m_input.size() > m_input[0]) {
        m_input.remove(0, 1 + m_input[0]);
        m_send(QByteArray(1, 1)); // none
        m_step = Step::Result;
        return true;
    }
    if (m_step == Step::Result && m_input.size() >= 4) {
        m_input.remove(0, 4);
        m_send(QByteArray(1, 1)); // shared
        m_step = Step::Init;
        return true;
    }
    return m_step == Step::Init ? takeInit() : m_step == Step::Messages && takeMessage();
}

bool RfbScreen::takeInit()
{
    const qsizetype size = m_input.size() < 24 ? 24 : 24 + numberAt<quint32>(m_input, 20);
    if (m_input.size() < size)
        return false;
    m_nWidth = numberAt<quint16>(m_input, 0);
    m_nHeight = numberAt<quint16>(m_input, 2);
    m_input.remove(0, size);
    m_send(kPixels + kRawOnly);
    m_step = Step::Messages;
    askForAll();
    return true;
}

bool RfbScreen::takeMessage()
{
    if (m_input.isEmpty())
        return false;
    if (m_input[0] == 0)
        return takePicture();
    const qsizetype size = m_input[0] == 2 ? 1 : m_input.size() < 8 ? 8 : 8 + numberAt<quint32>(m_input, 4);
    if (m_input.size() < size)
        return false;
    m_input.remove(0, size);
    return true;
}

bool RfbScreen::takePicture()
{
    qsizetype size = 4;
    const int count = m_input.size() < 4 ? 1 : numberAt<quint16>(m_input, 2);
    for (int i = 0; i < count; ++i) {
        if (m_input.size() < size + 12)
            return false;
        size +=
            12 + 4 * qsizetype(numberAt<quint16>(m_input, size + 4)) * numberAt<quint16>(m_input, size + 6);
    }
    if (m_input.size() < size)
        return false;
    if (m_picture.isNull())
        m_picture = QImage(m_nWidth, m_nHeight, QImage::Format_RGB32);
    qsizetype at = 4;
    for (int i = 0; i < count; ++i) {
        const int x = numberAt<quint16>(m_input, at), y = numberAt<quint16>(m_input, at + 2);
        const int width = numberAt<quint16>(m_input, at + 4), height = numberAt<quint16>(m_input, at + 6);
        at += 12;
        for (int row = 0; row < height && x + width <= m_nWidth && y + row < m_nHeight; ++row)
            memcpy(m_picture.scanLine(y + row) + 4 * x, m_input.constData() + at + 4 * qsizetype(row) * width,
                   4 * size_t(width));
        at += 4 * qsizetype(width) * height;
    }
    m_input.remove(0, size);
    return true;
}

void RfbScreen::askForAll()
{
    m_send(QByteArray::fromHex("0300 0000 0000") + bytesOf(quint16(m_nWidth)) + bytesOf(quint16(m_nHeight)));
}

void RfbScreen::tap(int x, int y)
{
    for (const char button : {0, 1, 0})
        pointer(x, y, button);
}

void RfbScreen::pointer(int x, int y, char button)
{
    m_send(QByteArray(1, 5) + QByteArray(1, button) + bytesOf(quint16(x)) + bytesOf(quint16(y)));
}

void RfbScreen::key(quint32 symbol)
{
    for (const char down : {1, 0})
        m_send(QByteArray(1, 4) + QByteArray(1, down) + QByteArray(2, 0) + bytesOf(symbol));
}
