#pragma once
// Reference-counted objects. The count may be changed on any thread.
#include "support/host/api.h"
#include "support/host/message.h"
#include <atomic>

class HX_HOST_API chObject
{
public:
    chObject() = default;
    chObject(const chObject&) = delete;
    chObject& operator=(const chObject&) = delete;
    virtual ~chObject();
    void AddRef();
    // Takes one reference away. The last one deletes an object that was made with SetCreatFlag(1).
    void Release();
    // Gives up the creator's own reference.
    void DestroyObject();
    // 1: the object stands alone on the heap and is deleted with its last reference; 0 (at construction):
    // it is a member or a static, and is never deleted by its count.
    void SetCreatFlag(int flag);
    int GetRefCount() const;

private:
    std::atomic<int> m_nReference{0};
    std::atomic<int> m_nCreateFlag{0};
};

// A counted handle on a chObject; may be null.
class HX_HOST_API chReferObject
{
public:
    chReferObject() = default;
    chReferObject(chObject* object);
    chReferObject(const chReferObject& other);
    chReferObject& operator=(const chReferObject& other);
    ~chReferObject();
    chObject* data() const { return m_pObject; }

private:
    chObject* m_pObject = nullptr;
};

class HX_HOST_API chObjectProcesser : public chMsgProcesser
{
public:
    // objects: valid during the call; copy a handle to keep the object.
    virtual int OnReceiveObjects(unsigned int message, unsigned int wParam, int lParam,
                                 chReferObject* objects, int count);
};
// Delivers the objects to target on its own thread; the queue holds a reference until then.
HX_HOST_API int msgPostObjects(chObjectProcesser* target, unsigned int message, unsigned int wParam,
                               int lParam, const chReferObject* objects, int count);
