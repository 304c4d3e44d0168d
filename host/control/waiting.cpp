#include "host/control/waiting.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/screen.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

using Reply = ControlReply;

namespace {

constexpr int kLookEveryMs = 5;
constexpr int kQuietMs = 60; // nothing painted, shown or typed for so long counts as idle

// Remembers when something last happened that a person would notice.
class ActivityWatch : public QObject
{
public:
    static ActivityWatch& instance()
    {
        static ActivityWatch* watch = new ActivityWatch(qApp);
        return *watch;
    }
    qint64 quietMs() const { return m_since.elapsed(); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::Paint:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::DeferredDelete:
            m_since.restart();
            break;
        default:
            break;
        }
        return false;
    }

private:
    explicit ActivityWatch(QObject* parent) : QObject(parent)
    {
        m_since.start();
        qApp->installEventFilter(this);
    }
    QElapsedTimer m_since;
};

// Looks at the condition every few milliseconds until it holds or the time is over.
void waitFor(const std::function<bool()>& condition, int ms, const Reply& reply)
{
    auto* timer = new QTimer(qApp);
    QElapsedTimer waited;
    waited.start();
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
        const bool holds = condition();
        if (!holds && waited.elapsed() < ms)
            return;
        timer->deleteLater();
        timer->stop();
        reply(holds ? controlDone() : controlError("timed out"));
    });
    timer->start(kLookEveryMs);
}

bool isOnTop(const QString& className)
{
    const QList<QWidget*> windows = QWSServer::clientWindows();
    return !windows.isEmpty() && QLatin1String(windows.first()->metaObject()->className()) == className;
}

bool isIdle()
{
    return ActivityWatch::instance().quietMs() >= kQuietMs && taskPendingCount() == 0;
}

} // namespace

void controlWait(const QStringList& arguments, const Reply& reply)
{
    bool isNumber = false;
    const int ms = arguments.last().toInt(&isNumber);
    const bool isPage = arguments[0] == "page" && arguments.size() == 3;
    const bool isQuiet = arguments[0] == "idle" && arguments.size() == 2;
    if (!isNumber || (!isPage && !isQuiet)) {
        reply(controlUsage("wait page CLASS MS | wait idle MS"));
        return;
    }
    ActivityWatch::instance();
    const QString className = arguments[1];
    waitFor(isPage ? std::function<bool()>([className] { return isOnTop(className); })
                   : std::function<bool()>(isIdle),
            ms, reply);
}
