#pragma once
// The texts of signage layouts, and pictures and photos for them.
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>

namespace kit {

// Seconds as a layout writes them: a number, or whatever a test wants to stand there.
struct SignSeconds
{
    SignSeconds(int seconds) : text(QByteArray::number(seconds)) {}
    SignSeconds(const char* seconds) : text(seconds) {}
    QByteArray text;
};

// Attributes are whole: "bgcolor=\"#ffffff\"".
QByteArray signLayout(const QByteArray& regions, const QByteArray& attributes = {});
QByteArray signRegion(const QRect& rect, const QByteArray& media);
QByteArray signImage(const QByteArray& file, const SignSeconds& seconds, const QByteArray& attributes = {});
QByteArray signVideo(const QByteArray& file, const SignSeconds& seconds, const QByteArray& attributes = {});
QByteArray signText(const QByteArray& html, const SignSeconds& seconds, const QByteArray& attributes = {});

// A picture of one colour.
QByteArray signPicture(const QColor& colour, const QSize& size, const char* format = "PNG");
// A photo as a JPEG file of just that many bytes; each number gives another file.
QByteArray signPhoto(int number, int bytes);

} // namespace kit
