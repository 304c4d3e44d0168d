#pragma once
// Unpacks the data of a PNG much quicker than the library that knows the rest of the format, and only where
// nothing is unusual about them: all else is left to that library, and its verdict. One thread at a time.
#include <QtGlobal>
#include <cstddef>
#include <memory>
#include <vector>

class PictureSource;
struct inflate_state;

class PngInflater
{
public:
    enum STEP {
        MORE,
        WHOLE,  // to the last byte, and every checksum is right
        UNUSUAL // damaged perhaps
    };

    explicit PngInflater(PictureSource& source);
    ~PngInflater();

    // Looks for the first chunk of data.
    bool find();
    qint64 begin() const { return m_nBegin; } // in the file, of the first chunk
    qint64 end() const { return m_nAt; }      // behind the last one, once WHOLE
    // Does a bounded piece of work, of which count bytes come out: none perhaps.
    STEP unpack(uchar* out, size_t room, size_t& count);

private:
    bool readInput();
    bool readNextChunk(const uchar* head);

    PictureSource& m_source;
    std::unique_ptr<inflate_state> m_pState;
    std::vector<uchar> m_input;
    qint64 m_nBegin = 0;
    qint64 m_nAt = 0;    // in the file: what is read next
    quint32 m_nLeft = 0; // bytes of the chunk
    quint32 m_nSum = 0;  // of the chunk so far
    bool m_bInChunk = false;
    bool m_bAtStart = true;
    bool m_bFull = false; // the last room was too small
};
