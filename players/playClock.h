#pragma once
// When each part of a film is due. Sound and picture of one play count their time from the same instant and
// carry the same source number, so one offset to the local clock keeps them together. Times are nanoseconds.
// Any thread.
#include <QtGlobal>
#include <mutex>

class playClock
{
public:
    static constexpr qint64 RESERVE = 250 * 1000000ll; // between what comes and what is due

    // A part of play number source with time streamNs came at nowNs of the local clock. The offset is taken
    // anew when another play begins, and when parts come too late or far too early, as after a pause.
    void arrived(quint32 source, qint64 streamNs, qint64 nowNs);
    // When such a part is due on the local clock; never negative. It may belong to the play before.
    qint64 due(quint32 source, qint64 streamNs);

private:
    struct tagPlay
    {
        bool bSet = false;
        quint32 nSource = 0;
        qint64 nOffset = 0;
    };
    std::mutex m_mutex;
    tagPlay m_present;
    tagPlay m_before;
};
