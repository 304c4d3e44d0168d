#include "media/diskWait.h"
#include "support/host/api.h"
#include "support/host/box.h"
#include "support/host/language.h"
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int kAtOnceMs = 8;     // the page does not wait at all
constexpr int kBoxAfterMs = 250; // a box for less would only flicker

// Calls over on the user-interface thread when the work is, as long as it lives.
class Bell : public QObject
{
public:
    Bell(chDiskWork& work, std::function<void()> over) : m_work(work)
    {
        m_work.Tell([this, over] { QMetaObject::invokeMethod(this, over, Qt::QueuedConnection); });
    }
    ~Bell() override { m_work.Tell(nullptr); }

private:
    chDiskWork& m_work;
};

void waitWithoutTouches(chDiskWork& work)
{
    QEventLoop loop;
    const Bell bell(work, [&loop] { loop.quit(); });
    QTimer::singleShot(kBoxAfterMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

int diskWait(chDiskWork& work, QWidget* page, const char* text, const std::function<int()>& percent)
{
    if (work.Wait(kAtOnceMs))
        return 1;
    const QPointer<QWidget> stays(page);
    waitWithoutTouches(work);
    if (work.IsOver() || !stays)
        return work.IsOver();
    xProgressBox box(Translate(HX_TR("Note")), Translate(text), page, percent);
    const Bell bell(work, [&box] { box.Finish(); });
    return box.Exec();
}
