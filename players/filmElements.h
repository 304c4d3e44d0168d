#pragma once
// Parts of the media toolkit, those that show a film or others: loaded when they are first needed, on a
// thread of its own, so that the process starts cheaply and answers its messages meanwhile. Main thread.
#include <QByteArray>
#include <QList>
#include <QObject>
#include <QThread>
#include <functional>
#include <memory>

class filmElements
{
public:
    using ThereCall = std::function<void()>;
    // onThere: called once, on the main thread, some time after load().
    explicit filmElements(ThereCall onThere, const QList<QByteArray>& names = film())
        : m_onThere(std::move(onThere)), m_names(names)
    {
    }
    // Waits for what is being loaded.
    ~filmElements();

    // Begins at the first call.
    void load();
    // Being loaded: what is built of them now would wait for that.
    bool areComing() const { return m_thread && !m_bThere; }

    static QList<QByteArray> film();

private:
    ThereCall m_onThere;
    QList<QByteArray> m_names;
    std::unique_ptr<QThread> m_thread;
    bool m_bThere = false;
    QObject m_here; // lives on the main thread
};
