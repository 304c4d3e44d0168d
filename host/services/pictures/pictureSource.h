#pragma once
// The bytes of a picture file for a decoder, which is given up by reading no further: when nobody wants the
// picture any more, or when it has used up its time. One thread; readAt() any.
#include <QIODevice>
#include <atomic>

class PictureSource : public QIODevice
{
public:
    // cancel: set by any thread; null for never. cpuMs: processor time of this thread that may be used,
    // that of another one that helps counted in.
    PictureSource(const std::atomic<bool>* cancel, int cpuMs);
    ~PictureSource() override;
    bool openPath(const char* path);

    // Processor time in all of one other thread that works for this picture; that thread.
    void useElsewhere(qint64 ns) { m_nElsewhereNs = ns; }
    static qint64 threadNs(); // processor time of this thread

    qint64 size() const override { return m_nSize; }
    bool seek(qint64 position) override;
    // All count bytes from the position on; false when there are not as many.
    bool readAt(qint64 position, void* data, qint64 count);

    // A decoder asked for bytes behind the last one.
    bool isAskedBeyondEnd() const { return m_bBeyondEnd; }
    // Less came than was asked for.
    bool isReadShort() const { return m_bShort; }
    void forgetEnd() { m_bBeyondEnd = m_bShort = false; }
    // Looks whether it should be given up; once it is, it stays so.
    bool isGivenUp();

protected:
    qint64 readData(char* data, qint64 most) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    const std::atomic<bool>* m_pCancel;
    const qint64 m_nEndNs; // of this thread's processor time
    std::atomic<qint64> m_nElsewhereNs = 0;
    int m_nFile = -1;
    qint64 m_nSize = 0;
    qint64 m_nAt = 0;
    bool m_bBeyondEnd = false;
    bool m_bShort = false;
    bool m_bGivenUp = false;
};
