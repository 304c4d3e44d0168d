#pragma once
// Asks hxSignCheck, in a process of its own, what a phone makes of a picture or a film: what is in a file may
// be damaged, or made to do damage. One thread.
#include "tools/signServer/LayoutText.h"
#include "tools/signServer/SignFolder.h"
#include <atomic>

class FileCheck
{
public:
    // stopping: ends a check that runs when it becomes true.
    explicit FileCheck(const std::atomic<bool>& stopping) : m_stopping(stopping) {}

    // Why no phone shows the file, a line each; known from before while the file is the same. Takes some
    // seconds at most. Nothing while the file is still being written, or when the check is not there.
    QStringList FaultsOf(const QByteArray& path, const OpenFile& file, MediaKind kind);
    // True when a file was left for later since the last call of ForgetOthers.
    bool IsOwing() const { return m_owing; }
    // Forgets the files that were not asked for since the last call.
    void ForgetOthers();
    // Empty, or why files cannot be checked.
    const QString& Hindrance() const { return m_hindrance; }

private:
    struct Known
    {
        qint64 size = -1, seconds = 0, nanoseconds = 0;
        QStringList faults;
        bool asked = false;
    };

    int Run(const QByteArray& path, MediaKind kind, QStringList& faults);

    const std::atomic<bool>& m_stopping;
    QHash<QByteArray, Known> m_known; // by kind and path
    QString m_hindrance;
    bool m_owing = false;
};
