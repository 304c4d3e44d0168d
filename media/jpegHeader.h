#pragma once
// The size of the picture in a JPEG file, by the file's real structure. Takes the same memory for a file of
// any size. Any thread.

class chFileStdio;

class jpegHeader
{
public:
    // path: device path. False when there is no such file, when it lacks the mark of the start or the end of
    // a picture, or when its header is broken.
    bool Read(const char* path);
    // As the picture comes out of the decoder, in pixels.
    unsigned GetWidth() const { return m_nWidth; }
    unsigned GetHeight() const { return m_nHeight; }

private:
    static bool isJPGImage(chFileStdio& file);
    bool ReadSize(chFileStdio& file);

    unsigned m_nWidth = 0;
    unsigned m_nHeight = 0;
};
