#pragma once
// The streams of the films that were asked for, kept until the file changes. One thread.
#include "support/file/fileTools.h"
#include "support/host/player.h"
#include <QByteArray>
#include <QHash>
#include <QList>

class streamCache
{
public:
    enum : int {
        MAX_FILES = 64,   // the oldest goes
        MAX_ASK_MS = 2000 // nobody waits for longer
    };

    // device: its device path. False when it is no film; sdp is then empty.
    bool find(const QByteArray& device, MOV_SDP& sdp);

private:
    struct tagEntry
    {
        tagFileStat stat;
        bool bGood;
        MOV_SDP sdp;
    };
    QHash<QByteArray, tagEntry> m_entries;
    QList<QByteArray> m_order; // the oldest first
};
