#include "support/host/object.h"
#include "host/services/messages/threadQueue.h"
#include "support/text/nuxError.h"
#include <QList>

chObject::~chObject() = default;

void chObject::AddRef()
{
    ++m_nReference;
}

void chObject::Release()
{
    const int left = --m_nReference;
    // The count of a member or a static is nobody's lifetime, and may go anywhere.
    if (!m_nCreateFlag)
        return;
    if (NUX_ASSERT(left >= 0, "chObject released more often than referenced") && left == 0)
        delete this;
}

void chObject::DestroyObject()
{
    Release();
}

void chObject::SetCreatFlag(int flag)
{
    m_nCreateFlag = flag;
}

int chObject::GetRefCount() const
{
    return m_nReference;
}

chReferObject::chReferObject(chObject* object) : m_pObject(object)
{
    if (m_pObject)
        m_pObject->AddRef();
}

chReferObject::chReferObject(const chReferObject& other) : chReferObject(other.m_pObject) {}

chReferObject& chReferObject::operator=(const chReferObject& other)
{
    chObject* old = m_pObject;
    m_pObject = other.m_pObject;
    if (m_pObject)
        m_pObject->AddRef();
    if (old)
        old->Release();
    return *this;
}

chReferObject::~chReferObject()
{
    if (m_pObject)
        m_pObject->Release();
}

int chObjectProcesser::OnReceiveObjects(unsigned int, unsigned int, int, chReferObject*, int)
{
    return 0;
}

int msgPostObjects(chObjectProcesser* target, unsigned int message, unsigned int wParam, int lParam,
                   const chReferObject* objects, int count)
{
    const tagProcesserRef receiver = processerBook::find(target);
    if (!receiver.queue || count < 0 || (count > 0 && !objects))
        return 0;
    auto kept = std::make_shared<QList<chReferObject>>(objects, objects + count);
    tagDelivery delivery;
    delivery.nTarget = receiver.nNumber;
    delivery.keep = kept;
    delivery.call = [target, message, wParam, lParam, kept] {
        target->OnReceiveObjects(message, wParam, lParam, kept->data(), int(kept->size()));
    };
    return receiver.queue->post(std::move(delivery));
}
