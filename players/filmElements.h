#pragma once
// The parts of the media toolkit that show a film: loaded when the first one comes, on a thread of its own,
// so that the process starts cheaply and answers its messages meanwhile. Main thread.
#include <QObject>
#include <QThread>
#include <functional>
#include <memory>

class filmElements
{
public:
    using ThereCall = std::function<void()>;
    // onThere: called once, on the main thread, some time after load().
    explicit filmElements(ThereCall onThere) : m_onThere(std::move(onThere)) {}
    // Waits for what is being loaded.
    ~filmElements();

    // Begins at the first call.
    void load();
    // Being loaded: what is built of them now would wait for that.
    bool areComing() const { return m_thread && !m_bThere; }

private:
    ThereCall m_onThere;
    std::unique_ptr<QThread> m_thread;
    bool m_bThere = false;
    QObject m_here; // lives on the main thread
};
