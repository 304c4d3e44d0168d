#pragma once
// The viewer's side of RFB, as far as seeing and touching a screen needs it. It does not know what carries
// the bytes.
#include <QByteArray>
#include <QImage>
#include <functional>

class RfbScreen
{
public:
    explicit RfbScreen(std::function<void(const QByteArray&)> send) : m_send(std::move(send)) {}
    // What has come from the display server, in pieces of any size.
    void take(const QByteArray& bytes);

    bool isOpen() const { return m_step == Step::Messages; }
    // Empty until the whole screen has come once.
    const QImage& picture() const { return m_picture; }
    void askForAll();
    void tap(int x, int y);
    // Of the pointer, with no button down.
    void move(int x, int y) { pointer(x, y, 0); }
    // A key by its number in X11.
    void key(quint32 symbol);

private:
    enum class Step { Version, Security, Result, Init, Messages };

    // Takes one whole piece of the input; false when more has to come.
    bool takeOne();
    bool takeInit();
    bool takeMessage();
    bool takePicture();
    void pointer(int x, int y, char button);

    std::function<void(const QByteArray&)> m_send;
    Step m_step = Step::Version;
    QByteArray m_input;
    QImage m_picture;
    int m_nWidth = 0;
    int m_nHeight = 0;
};
