// The room that transfers share: asked for in steps, and never past the reserve.
#include "host/services/storage/diskRoom.h"
#include "support/file/deviceRoot.h"
#include "tests/kit/phoneTest.h"

namespace {

class DiskRoom : public PhoneTest
{
protected:
    DiskRoom() { writeFile("/fs/here", ""); }
    ~DiskRoom() override { deviceSetRoot(root().toUtf8()); }

    // The kernel's own file system has no room at all.
    static void fillDisk() { deviceSetRoot("/sys"); }

    diskRoom room;
};

} // namespace

TEST_F(DiskRoom, IsAskedForAgainWhenAStepIsUsedUp)
{
    EXPECT_TRUE(room.take("/fs", diskRoom::STEP));
    fillDisk();
    EXPECT_FALSE(room.take("/fs", 1));
}

TEST_F(DiskRoom, IsNotAskedForWithinAStep)
{
    EXPECT_TRUE(room.take("/fs", 100));
    fillDisk();
    EXPECT_TRUE(room.take("/fs", diskRoom::STEP - 100));
    EXPECT_FALSE(room.take("/fs", 1));
}

TEST_F(DiskRoom, OfOneFolderIsSharedByAllWhoTakeFromIt)
{
    EXPECT_TRUE(room.take("/fs", diskRoom::STEP / 2));
    EXPECT_TRUE(room.take("/other", diskRoom::STEP / 4));
    EXPECT_TRUE(room.take("/fs", diskRoom::STEP / 4));
    fillDisk();
    EXPECT_FALSE(room.take("/fs", diskRoom::STEP / 2));
    EXPECT_TRUE(room.take("/other", diskRoom::STEP / 2));
}

TEST_F(DiskRoom, IsRefusedInAdvanceForMoreThanThereIs)
{
    EXPECT_TRUE(room.has("/fs", 1000));
    EXPECT_FALSE(room.has("/fs", 1LL << 60));
    fillDisk();
    EXPECT_TRUE(room.has("/fs", diskRoom::STEP)); // was granted before
    EXPECT_FALSE(room.has("/fs", diskRoom::STEP + 1));
    EXPECT_FALSE(room.has("/fs", 1));
}

TEST_F(DiskRoom, OfADiskThatDoesNotSayIsGranted)
{
    EXPECT_TRUE(room.has("relative/none", 1LL << 40));
    EXPECT_TRUE(room.take("relative/none", 1000));
}
