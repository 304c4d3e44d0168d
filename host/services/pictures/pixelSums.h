#pragma once
// Adds the pixels of a picture up, rectangle by rectangle, each of which becomes one pixel: their mean. One
// thread.
#include <QImage>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <vector>

class PixelSums
{
public:
    enum { COLOURS = 3, COLOURS_AND_ALPHA = 4 }; // bytes of a pixel
    enum { PADDING = 64 };                       // bytes behind a row that are looked at as well

    // size: pixels of the picture; together: of them that become one in each direction, 128 at most.
    void start(const QSize& size, const QSize& together, int channels);
    // The rows in their order, the alpha not multiplied; with PADDING bytes behind, whatever they are.
    void addRow(const uchar* row);
    // As far as rows were added; RGB32, or ARGB32_Premultiplied with alpha.
    const QImage& image() const { return m_image; }

private:
    void finishLine();
    void finishColours(const uint16_t* columns, uint32_t rows, QRgb* pixels) const;
    void finishAlpha(const uint32_t* columns, uint32_t rows, QRgb* pixels) const;

    QSize m_size;
    QSize m_together;
    int m_nChannels = COLOURS;
    int m_nAdded = 0; // rows
    // Columns are added up first: whole rows at a time, which the compiler makes a few instructions of.
    std::vector<uint16_t> m_colours;
    std::vector<uint32_t> m_weighted;
    QImage m_image;
};
