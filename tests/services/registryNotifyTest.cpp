#include "support/file/path.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <QFile>
#include <QThread>

namespace {

const char* const kFile = "/rundata/config/user/test.ini";

class Notify : public qRegistryNotify
{
public:
    QList<HREGISTRY> told;
    QThread* thread = nullptr;

protected:
    void OnRegistryChanged(HREGISTRY section) override
    {
        told.append(section);
        thread = QThread::currentThread();
    }
};

class RegistryNotify : public PhoneTest
{
};

} // namespace

TEST_F(RegistryNotify, AChangeByThisProcessIsToldOnce)
{
    Notify notify;
    notify.MonitorSection(kFile, "Weather");
    ASSERT_EQ(nuxSetRegistryString(kFile, "Weather", "strDefaultCity", "Paris"), 1);
    ASSERT_TRUE(kit::waitUntil([&] { return !notify.told.isEmpty(); }));
    kit::settle();
    ASSERT_EQ(notify.told.size(), 1);
    EXPECT_EQ(notify.told[0], registryOpen(kFile, "Weather"));
    EXPECT_EQ(notify.thread, QThread::currentThread());
}

TEST_F(RegistryNotify, AChangeByAForeignProgramIsTold)
{
    writeFile(kFile, "[Volume]\nnRing=20\n");
    Notify notify;
    notify.MonitorSection(kFile, "Volume");
    const QByteArray command = "echo '[Volume]\nnRing=70' > '" + hostPath(kFile).toUtf8() + "'";
    ASSERT_EQ(system(command.constData()), 0);
    ASSERT_TRUE(kit::waitUntil([&] { return !notify.told.isEmpty(); }));
    EXPECT_EQ(nuxGetRegistryInt(kFile, "Volume", "nRing", 0), 70);
}

TEST_F(RegistryNotify, AChangeOfAnotherSectionOrOfAnotherFileIsNotTold)
{
    writeFile(kFile, "[Volume]\nnRing=20\n");
    Notify notify;
    notify.MonitorSection(kFile, "Volume");
    Notify other;
    other.MonitorSection(kFile, "Weather");
    nuxSetRegistryString("/rundata/config/user/user.ini", "Volume", "nRing", "3");
    nuxSetRegistryString(kFile, "Weather", "nUnit", "1");
    ASSERT_TRUE(kit::waitUntil([&] { return !other.told.isEmpty(); }));
    kit::settle();
    EXPECT_TRUE(notify.told.isEmpty());
}

TEST_F(RegistryNotify, AChangeThatLeavesEveryValueIsNotTold)
{
    writeFile(kFile, "[Volume]\nnRing=20\n[Mark]\nn=0\n");
    Notify notify;
    notify.MonitorSection(kFile, "Volume");
    Notify mark;
    mark.MonitorSection(kFile, "Mark");
    writeFile(kFile, "# again\n[volume]\nNRING = \"20\"\n[Mark]\nn=1\n");
    ASSERT_TRUE(kit::waitUntil([&] { return !mark.told.isEmpty(); }));
    kit::settle();
    EXPECT_TRUE(notify.told.isEmpty());
}

TEST_F(RegistryNotify, ARemovedFileIsAChangeToDefaults)
{
    writeFile(kFile, "[Volume]\nnRing=20\n");
    Notify notify;
    notify.MonitorSection(kFile, "Volume");
    ASSERT_TRUE(QFile::remove(hostPath(kFile)));
    ASSERT_TRUE(kit::waitUntil([&] { return !notify.told.isEmpty(); }));
    EXPECT_EQ(nuxGetRegistryInt(kFile, "Volume", "nRing", 5), 5);
}

TEST_F(RegistryNotify, AFileInAFolderThatIsMadeLaterIsTold)
{
    const char* const later = "/rundata/later/deep/x.ini";
    Notify notify;
    notify.MonitorSection(later, "A");
    ASSERT_TRUE(pathMakeDirectories("/rundata/later/deep"));
    kit::settle();
    ASSERT_EQ(nuxSetRegistryString(later, "A", "k", "1"), 1);
    EXPECT_TRUE(kit::waitUntil([&] { return !notify.told.isEmpty(); }));
}

TEST_F(RegistryNotify, SeveralSectionsAreToldEachByItsHandle)
{
    Notify notify;
    notify.MonitorSection(kFile, "A");
    notify.MonitorSection(kFile, "B");
    notify.MonitorSection(kFile, "B");
    nuxSetRegistryString(kFile, "B", "k", "1");
    ASSERT_TRUE(kit::waitUntil([&] { return !notify.told.isEmpty(); }));
    kit::settle();
    EXPECT_EQ(notify.told, QList<HREGISTRY>{registryOpen(kFile, "B")});
}

TEST_F(RegistryNotify, ABroadcastOfAChangeBringsTheNewsAtOnce)
{
    Notify notify;
    notify.MonitorSection(kFile, "A");
    nuxSetRegistryString(kFile, "A", "k", "1");
    msgObject msg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PHONE, 0);
    EXPECT_EQ(notify.TryThreadMessage(msg), 0);
    EXPECT_EQ(notify.told.size(), 1);
}

TEST_F(RegistryNotify, AnOwnerMayEndItselfWhenItIsTold)
{
    class Ending : public qRegistryNotify
    {
    public:
        int* calls;

    protected:
        void OnRegistryChanged(HREGISTRY) override
        {
            ++*calls;
            delete this;
        }
    };
    int calls = 0;
    auto* notify = new Ending;
    notify->calls = &calls;
    notify->MonitorSection(kFile, "A");
    notify->MonitorSection(kFile, "B");
    writeFile(kFile, "[A]\nk=1\n[B]\nk=1\n");
    ASSERT_TRUE(kit::waitUntil([&] { return calls > 0; }));
    kit::settle();
    EXPECT_EQ(calls, 1);
}
