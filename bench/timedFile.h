#pragma once
// A file into which somebody writes sound as it comes, and when each piece came.
#include <QString>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

class TimedFile
{
public:
    // Of floats of one channel, from what is in it now on.
    TimedFile(const QString& file, int rate);
    ~TimedFile();
    TimedFile(const TimedFile&) = delete;
    TimedFile& operator=(const TimedFile&) = delete;

    // Samples that were there before.
    int64_t first() const { return m_nFirst; }
    // When that sample, counted from the file's beginning, sounds, by SoundRelay::nowUs(); -1: it has not
    // come. A piece comes when its first sample does.
    int64_t timeOf(int64_t sample) const;

private:
    void run();
    int64_t samples() const;

    const QByteArray m_file;
    const int m_nRate;
    int64_t m_nFirst = 0;
    struct tagPiece
    {
        int64_t nUs;
        int64_t nFrom;
        int64_t nEnd;
    };
    mutable std::mutex m_mutex;
    std::vector<tagPiece> m_pieces;
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread;
};
