// Files that come into use between two layouts, when there are more of them than a turn of the thread holds.
#include "support/host/message.h"
#include "tests/signage/displayFixture.h"
#include <QFile>

namespace {

constexpr int kFiles = 3000;

class ManyFiles : public DisplayTest
{
    // A turn of the thread is over when its time is.
    kit::RunningClocks m_running;

protected:
    void SetUp() override
    {
        DisplayTest::SetUp();
        addFile("red.png", picture(Qt::red));
        for (const char* name : {"a.xml", "b.xml", "c.xml"})
            addLayout(name, layout(region(image("red.png", "60"))));
        takeUp();
        for (int i = 0; i < kFiles; ++i)
            addFile(waiting(i), QByteArray::number(i));
        kit::settle();
    }
    static QByteArray waiting(int number) { return QByteArray::number(number) + ".bin.new"; }
    bool isInUse(int number) const
    {
        const QByteArray path = NDECK_FOLDER + QByteArray::number(number) + ".bin";
        return readFile(path) == QByteArray::number(number);
    }
    // The time of the layout on show is over; what follows takes turns.
    void endLayout()
    {
        ASSERT_EQ(current(), "a.xml");
        msgObject tick;
        EXPECT_EQ(display().OnTimerLoadNextLayout(tick), 1);
        ASSERT_FALSE(isInUse(kFiles - 1)) << "all came into use in one turn";
    }
};

} // namespace

TEST_F(ManyFiles, TheLayoutOnShowStaysUntilAllAreInUseAndThenChangesOnce)
{
    endLayout();
    EXPECT_TRUE(isInUse(0));
    EXPECT_EQ(current(), "a.xml");
    kit::settle();
    EXPECT_TRUE(kit::waitUntil([this] { return current() == "b.xml"; }));
    for (int i = 0; i < kFiles; ++i)
        ASSERT_TRUE(isInUse(i)) << i;
    kit::stepTime(30000);
    EXPECT_EQ(current(), "b.xml");
    kit::stepTime(31000);
    EXPECT_EQ(current(), "c.xml");
}

TEST_F(ManyFiles, AFrameThatIsTakenUpMeanwhileTakesThePlaceOfTheChange)
{
    endLayout();
    m_frame.layouts.clear();
    addLayout("x.xml", layout(region(image("red.png", "60"))));
    addLayout("y.xml", layout(region(image("red.png", "60"))));
    display().UpdateDisplay(&m_frame);
    EXPECT_EQ(current(), "x.xml");
    EXPECT_TRUE(isInUse(kFiles - 1));
    kit::settle();
    kit::stepTime(30000);
    EXPECT_EQ(current(), "x.xml");
    kit::stepTime(31000);
    EXPECT_EQ(current(), "y.xml");
}

TEST_F(ManyFiles, AShowThatEndsMeanwhileStaysEnded)
{
    endLayout();
    display().DestroyDisplay();
    EXPECT_EQ(current(), "");
    kit::settle();
    EXPECT_TRUE(kit::waitUntil([this] { return isInUse(kFiles - 1); }));
    kit::stepTime(70000);
    EXPECT_EQ(current(), "");
}

TEST_F(ManyFiles, AFileWhoseContentChangedMeanwhileWaitsForTheNextChange)
{
    nDeckFileManager& files = GetNDeckFileManager();
    bool done = false;
    files.PutFilesIntoUse([&done] { done = true; });
    ASSERT_FALSE(done);
    const QByteArray last = waiting(kFiles - 1);
    files.UpdateFileList(last.constData(), "", "", "", "", "", "", "", 1);
    files.UpdateFileList(last.constData(), "other", "media", "1", "", "", "", "", 0);
    ASSERT_TRUE(kit::waitUntil([&done] { return done; }));
    EXPECT_TRUE(isInUse(kFiles - 2));
    EXPECT_FALSE(isInUse(kFiles - 1));
    files.RemoveOldFileByFileList();
    EXPECT_TRUE(isInUse(kFiles - 1));
}

TEST_F(ManyFiles, WithoutAnyTheEndIsToldAtOnce)
{
    GetNDeckFileManager().RemoveOldFileByFileList();
    int calls = 0;
    GetNDeckFileManager().PutFilesIntoUse([&calls] { ++calls; });
    kit::settle();
    EXPECT_EQ(calls, 1);
}
