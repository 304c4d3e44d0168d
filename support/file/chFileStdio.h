#pragma once
// A buffered file. One thread at a time.
#include "support/text/nuxExport.h"
#include <stdio.h>

class NUX_API chFileStdio
{
public:
    chFileStdio() = default;
    chFileStdio(const char* path, const char* mode) { Open(path, mode); }
    ~chFileStdio() { Close(); }
    chFileStdio(const chFileStdio&) = delete;
    chFileStdio& operator=(const chFileStdio&) = delete;

    // path: device path; mode as in the C library ("rb", "wb", "ab", "r+b"). Closes what was open.
    // 0 when it cannot be opened; a folder never can.
    int Open(const char* path, const char* mode);
    int IsOpen() const { return m_pFile ? 1 : 0; }
    // Bytes read or written; less than size at the end of the file or when it failed.
    int Read(void* buffer, int size);
    int Write(const void* buffer, int size);
    // 1 when nothing is left to read, also before a read has run into the end. A file that is not open
    // or cannot be read is not at its end.
    int IsEOF();
    // offset in bytes from origin (SEEK_SET, SEEK_CUR, SEEK_END).
    int Seek(long long offset, int origin = SEEK_SET);
    long long Tell(); // -1 when not open
    // For a library that reads by itself; null when not open. Stays this object's.
    FILE* GetStream() const { return m_pFile; }
    int Flush();
    // 0 when what was written did not all reach the file. Closing a closed file is 1.
    int Close();

private:
    enum LAST { LAST_NONE, LAST_READ, LAST_WRITE };
    void Turn(LAST next);

    LAST m_eLast = LAST_NONE;
    bool m_bFailed = false; // something written is lost
    FILE* m_pFile = nullptr;
};
