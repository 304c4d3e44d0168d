#pragma once
// Decodes a PNG row by row, so that a picture of any size takes the memory of what is left of it: whole
// numbers of pixels become one. Any thread.
#include <QImage>
#include <QSize>
#include <csetjmp>
#include <cstdint>
#include <vector>

#include <png.h>

class PictureSource;

class PngRows
{
public:
    explicit PngRows(PictureSource& source) : m_source(source) {}
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
    void prepare(const QSize& least);
    void readRows();
    void readInterlaced();
    void addRow(int y, const png_byte* row);
    void finishLine(int line, int rows);

    PictureSource& m_source;
    jmp_buf m_back;
    png_structp m_pPng = nullptr;
    png_infop m_pInfo = nullptr;
    int m_nChannels = 0; // of a row, 3 or 4
    QSize m_size;
    int m_nColumns = 1; // that become one
    int m_nRows = 1;
    std::vector<png_byte> m_row;
    std::vector<png_bytep> m_rows; // of one that is interlaced
    std::vector<uint32_t> m_sums;
    QImage m_image;
};
