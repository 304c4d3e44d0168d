#include "bench/timedFile.h"
#include "bench/soundRelay.h"
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned kLookUs = 500;

}

TimedFile::TimedFile(const QString& file, int rate) : m_file(file.toUtf8()), m_nRate(rate)
{
    m_nFirst = samples();
    m_thread = std::thread([this] { run(); });
}

TimedFile::~TimedFile()
{
    m_bEnds = true;
    m_thread.join();
}

int64_t TimedFile::samples() const
{
    struct stat facts = {};
    return stat(m_file.constData(), &facts) == 0 ? facts.st_size / int64_t(sizeof(float)) : 0;
}

void TimedFile::run()
{
    for (int64_t known = m_nFirst; !m_bEnds; usleep(kLookUs)) {
        const int64_t now = samples();
        if (now == known)
            continue;
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pieces.push_back({SoundRelay::nowUs(), known, now});
        known = now;
    }
}

int64_t TimedFile::timeOf(int64_t sample) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const tagPiece& piece : m_pieces) {
        if (sample >= piece.nFrom && sample < piece.nEnd)
            return piece.nUs + (sample - piece.nFrom) * 1000000 / m_nRate;
    }
    return -1;
}
