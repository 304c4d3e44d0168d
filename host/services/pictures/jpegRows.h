#pragma once
// Decodes a JPEG row by row, in about the size in which it is shown, and tells one of which a part is missing
// from one with bytes too many. Any thread.
#include <QImage>
#include <QSize>
#include <csetjmp>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

class PictureSource;

class JpegRows
{
public:
    explicit JpegRows(PictureSource& source) : m_source(source) {}
    ~JpegRows();
    JpegRows(const JpegRows&) = delete;
    JpegRows& operator=(const JpegRows&) = delete;

    // Of at least as many pixels as asked for in both directions, when there are so many. Null when the file
    // is damaged, cut short or given up, and for arithmetic codes, of which no cut can be told.
    QImage read(const QSize& least);

private:
    static JpegRows* of(j_common_ptr info) { return static_cast<JpegRows*>(info->client_data); }
    [[noreturn]] static void jumpBack(j_common_ptr info);
    static void judgeWarning(j_common_ptr info, int level);
    static void lookAtTime(j_common_ptr info);
    static boolean takeBytes(j_decompress_ptr info);
    static void skipBytes(j_decompress_ptr info, long count);
    bool readAll(const QSize& least);
    void prepare(const QSize& least);
    void readRows();
    bool hasAllRounds() const;

    PictureSource& m_source;
    jmp_buf m_back;
    jpeg_decompress_struct m_info = {};
    jpeg_error_mgr m_errors = {};
    jpeg_progress_mgr m_progress = {};
    jpeg_source_mgr m_bytes = {};
    std::vector<JOCTET> m_block;
    std::vector<JSAMPLE> m_row; // of one in four inks
    QImage m_image;
};
