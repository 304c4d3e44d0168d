// A reset of the settings, as the running phone follows it. One test: it ends what is started once in a
// process.
#include "host/desktop/restart.h"
#include "host/services/system/folderWatch.h"
#include "tests/desktop/signageStand.h"
#include <QApplication>
#include <QFile>
#include <QTimer>

namespace {

const char* const kMark = "/rundata/run/restart";

class Restart : public SignageTest
{
protected:
    // Until everybody who watches the run folder was told of it.
    void leaveTheMark()
    {
        bool seen = false;
        folderWatch watch;
        watch.SetCall([&seen] { seen = true; });
        watch.Add(hostPath("/rundata/run").toStdString());
        writeFile(kMark, "");
        EXPECT_TRUE(kit::waitUntil([&seen] { return seen; }));
        kit::settle();
    }
    // Calls while the note is up, once.
    template <class Action>
    void whileTheNoteIsUp(Action action)
    {
        auto* look = new QTimer(qApp);
        QObject::connect(look, &QTimer::timeout, look, [look, action] {
            if (!QApplication::activeModalWidget())
                return;
            look->stop();
            look->deleteLater();
            action();
        });
        look->start(1);
    }
};

} // namespace

TEST_F(Restart, IsToldOnceEndsTheOldSignageAndEndsTheEventLoop)
{
    writeFile(kMark, "");
    hostFollowFactoryReset();
    EXPECT_FALSE(QFile::exists(hostPath(kMark))) << "a phone that only starts";
    kit::settle();
    EXPECT_EQ(asked(), "");
    std::string before;
    whileTheNoteIsUp([&] {
        before = asked();
        leaveTheMark();
        kit::stepTime(3000);
    });
    QTimer::singleShot(0, qApp, [&] { writeFile(kMark, ""); });
    EXPECT_EQ(QCoreApplication::exec(), HOST_START_ANEW);
    EXPECT_EQ(before, "end") << "before the user is told";
    EXPECT_EQ(asked(), "end");
    EXPECT_EQ(logged("box"), "Note|The phone restarts with its factory settings.");
}
