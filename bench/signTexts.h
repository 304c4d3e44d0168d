#pragma once
// The texts of layouts, and pictures of a wanted size.
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>

QByteArray signLayout(const QByteArray& regions, const QByteArray& attributes = QByteArray());
QByteArray signRegion(const QRect& rect, const QByteArray& media);
// Durations in seconds.
QByteArray signImage(const QByteArray& file, int seconds);
QByteArray signVideo(const QByteArray& file, int seconds);
QByteArray signText(const QByteArray& html, int seconds, const QByteArray& attributes = QByteArray());

// A picture of one colour.
QByteArray signPicture(const QColor& colour, const QSize& size);
// A photo as a JPEG file of just that many bytes; each number gives another file.
QByteArray signPhoto(int number, int bytes);
