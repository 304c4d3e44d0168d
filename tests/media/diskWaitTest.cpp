// A page that waits for a disk which hangs.
#include "media/diskWait.h"
#include "support/host/screen.h"
#include "tests/kit/heldName.h"
#include "tests/kit/kitTime.h"
#include "tests/media/mediaTest.h"
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <future>

namespace {

class DiskWait : public MediaTest
{
protected:
    DiskWait()
    {
        page = new QWidget;
        page->setGeometry(0, 0, 800, 480);
        screenBringUp(page);
        kit::settle();
    }
    ~DiskWait() override
    {
        delete page;
        kit::holdClocks(false);
    }
    // A disk that answers 7, when the test lets it.
    chDiskWork work()
    {
        end = std::promise<void>();
        return chDiskWork([ended = end.get_future().share()] {
            ended.wait();
            return 7;
        });
    }
    int wait(chDiskWork& work) const
    {
        return diskWait(work, page, "Importing...", [] { return 0; });
    }
    static bool isBox()
    {
        return !kit::windows().isEmpty() && kit::windows().at(0)->objectName() == "dlgProgressBox";
    }

    QPointer<QWidget> page;
    std::promise<void> end;
};

TEST_F(DiskWait, TheBoxComesAfterAQuarterOfASecond)
{
    kit::holdClocks(true);
    chDiskWork slow = work();
    QList<bool> boxes;
    QTimer turn;
    turn.setSingleShot(true);
    turn.callOnTimeout([&] {
        boxes.append(isBox());
        if (boxes.size() == 3) {
            end.set_value();
            return;
        }
        kit::stepTime(boxes.size() == 1 ? 240 : 20);
        turn.start(0);
    });
    turn.start(0);
    EXPECT_EQ(wait(slow), 1);
    EXPECT_EQ(slow.Result(), 7);
    EXPECT_EQ(boxes, QList<bool>({false, false, true}));
    EXPECT_FALSE(isBox());
}

TEST_F(DiskWait, ThePageGoesOnWithItsEventsAtOnce)
{
    EXPECT_TRUE(kit::isQuick([this] {
        chDiskWork slow = work();
        QTimer::singleShot(0, [this] { end.set_value(); });
        EXPECT_EQ(wait(slow), 1);
    }));
}

TEST_F(DiskWait, APageThatGoesBeforeTheBoxIsWaitedForNoLonger)
{
    kit::holdClocks(true);
    chDiskWork slow = work();
    bool isSeen = false;
    QTimer turn;
    turn.callOnTimeout([&] {
        delete page;
        turn.stop();
        kit::stepTime(300);
        turn.start(0);
        isSeen = isSeen || isBox();
        if (isBox())
            kit::key(Qt::Key_F4);
    });
    turn.start(0);
    EXPECT_EQ(wait(slow), 0);
    EXPECT_FALSE(isSeen);
    end.set_value();
}

} // namespace
