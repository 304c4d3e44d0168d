#include "support/host/object.h"
#include "support/text/nuxError.h"
#include "tests/kit/phoneTest.h"
#include <thread>
#include <vector>

namespace {

class Counted : public chObject
{
public:
    explicit Counted(int* deleted) : m_pDeleted(deleted) {}
    ~Counted() override { ++*m_pDeleted; }

private:
    int* m_pDeleted;
};

class Objects : public PhoneTest
{
protected:
    // As the module makes one: the creator's reference, and the mark that it stands alone.
    Counted* create()
    {
        Counted* object = new Counted(&deleted);
        object->AddRef();
        object->SetCreatFlag(1);
        return object;
    }
    int deleted = 0;
};

TEST_F(Objects, LastReferenceDeletesACreatedObject)
{
    Counted* object = create();
    object->AddRef();
    EXPECT_EQ(object->GetRefCount(), 2);
    object->DestroyObject();
    EXPECT_EQ(deleted, 0);
    object->Release();
    EXPECT_EQ(deleted, 1);
}

TEST_F(Objects, MemberIsNeverDeletedByItsCount)
{
    Counted object(&deleted);
    object.AddRef();
    object.Release();
    object.Release();
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(object.GetRefCount(), -1);
}

TEST_F(Objects, HandleKeepsItsObject)
{
    Counted* object = create();
    {
        const chReferObject handle(object);
        object->DestroyObject();
        EXPECT_EQ(deleted, 0);
        const chReferObject copy(handle);
        EXPECT_EQ(copy.data(), object);
        EXPECT_EQ(object->GetRefCount(), 2);
    }
    EXPECT_EQ(deleted, 1);
}

TEST_F(Objects, HandleMayBeAssignedToItselfAndToNothing)
{
    Counted* object = create();
    chReferObject handle(object);
    object->DestroyObject();
    const chReferObject& same = handle;
    handle = same;
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(object->GetRefCount(), 1);
    handle = chReferObject();
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(handle.data(), nullptr);
}

TEST_F(Objects, CountIsRightWhenManyThreadsHoldTheObject)
{
    Counted* object = create();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([object] {
            for (int i = 0; i < 20000; ++i)
                const chReferObject handle(object);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(object->GetRefCount(), 1);
    object->DestroyObject();
    EXPECT_EQ(deleted, 1);
}

class Receiver : public chObjectProcesser
{
public:
    int OnReceiveObjects(unsigned int message, unsigned int wParam, int lParam, chReferObject* objects,
                         int count) override
    {
        words = {int(message), int(wParam), lParam};
        for (int i = 0; i < count; ++i)
            kept.append(objects[i]);
        return 1;
    }
    QList<int> words;
    QList<chReferObject> kept;
};

TEST_F(Objects, PostedObjectsAreDeliveredLaterAndHeldUntilThen)
{
    Receiver receiver;
    Counted* object = create();
    {
        const chReferObject handles[] = {chReferObject(object), chReferObject()};
        EXPECT_EQ(msgPostObjects(&receiver, 1, 2, -3, handles, 2), 1);
    }
    object->DestroyObject();
    EXPECT_EQ(deleted, 0);
    EXPECT_TRUE(receiver.kept.isEmpty());
    kit::settle();
    EXPECT_EQ(receiver.words, (QList<int>{1, 2, -3}));
    ASSERT_EQ(receiver.kept.size(), 2);
    EXPECT_EQ(receiver.kept[0].data(), object);
    EXPECT_EQ(receiver.kept[1].data(), nullptr);
    receiver.kept.clear();
    EXPECT_EQ(deleted, 1);
}

TEST_F(Objects, ObjectsForADestroyedReceiverAreLetGo)
{
    auto receiver = std::make_unique<Receiver>();
    Counted* object = create();
    const chReferObject handle(object);
    EXPECT_EQ(msgPostObjects(receiver.get(), 1, 2, 3, &handle, 1), 1);
    receiver.reset();
    kit::settle();
    EXPECT_EQ(object->GetRefCount(), 2);
    object->DestroyObject();
}

TEST_F(Objects, ImpossiblePostsAreRefused)
{
    Receiver receiver;
    EXPECT_EQ(msgPostObjects(nullptr, 1, 2, 3, nullptr, 0), 0);
    EXPECT_EQ(msgPostObjects(&receiver, 1, 2, 3, nullptr, 1), 0);
    EXPECT_EQ(msgPostObjects(&receiver, 1, 2, 3, nullptr, -1), 0);
    EXPECT_EQ(msgPostObjects(&receiver, 1, 2, 3, nullptr, 0), 1);
    kit::settle();
    EXPECT_EQ(receiver.words, (QList<int>{1, 2, 3}));
}

} // namespace
