#pragma once
// Decodes a PNG row by row, so that a picture of any size takes the memory of what is left of it: whole
// numbers of pixels become one. Any thread.
#include "host/services/pictures/pixelSums.h"
#include <QImage>
#include <QSize>
#include <csetjmp>
#include <vector>

#include <png.h>

class PictureSource;
class PngUnpacked;

class PngRows
{
public:
    // unpacked: where the bytes come from, and lives longer than this; null for the source itself.
    explicit PngRows(PictureSource& source, PngUnpacked* unpacked = nullptr)
        : m_source(source), m_pUnpacked(unpacked)
    {
    }
    ~PngRows();
    PngRows(const PngRows&) = delete;
    PngRows& operator=(const PngRows&) = delete;

    // Of at least as many pixels as asked for in both directions, when there are so many, and about twice as
    // many at most. Null when the file is damaged, cut short or given up.
    QImage read(const QSize& least);

private:
    static void takeBytes(png_structp png, png_bytep bytes, size_t count);
    [[noreturn]] static void jumpBack(png_structp png, png_const_charp text);
    static void ignoreWarning(png_structp, png_const_charp) {}
    bool readAll(const QSize& least);
    void readHead();
    void lookAtSums(bool isNeeded);
    void prepare(const QSize& least);
    void readRows();
    void readInterlaced();

    PictureSource& m_source;
    PngUnpacked* const m_pUnpacked;
    jmp_buf m_back;
    png_structp m_pPng = nullptr;
    png_infop m_pInfo = nullptr;
    QSize m_size;
    std::vector<png_byte> m_row;
    std::vector<png_bytep> m_rows; // of one that is interlaced
    PixelSums m_sums;
};
