#include "support/host/message.h"
#include "host/services/messages/messageWire.h"
#include "host/services/messages/processerBook.h"
#include "host/services/messages/replyBook.h"

NUX_MsgQueueHelper::msgObject::msgObject(unsigned int messageCode, unsigned int w, unsigned int l,
                                         const void* extra, int extraSize)
    : message(messageCode), wParam(w), lParam(l)
{
    if (extra && extraSize > 0)
        m_extra = QByteArray(static_cast<const char*>(extra), extraSize);
}

const void* NUX_MsgQueueHelper::msgObject::GetExtraData() const
{
    return m_extra.isEmpty() ? nullptr : m_extra.constData();
}

int NUX_MsgQueueHelper::msgObject::GetExtraSize() const
{
    return int(m_extra.size());
}

int NUX_MsgQueueHelper::msgObject::SetReplyData(const void* data, int size)
{
    const bool fits = size <= messageWire::MAX_EXTRA;
    m_reply = fits && data && size > 0 ? QByteArray(static_cast<const char*>(data), size) : QByteArray();
    return fits ? 1 : 0;
}

chMsgProcesser::chMsgProcesser()
{
    processerBook::add(this);
}

chMsgProcesser::~chMsgProcesser()
{
    processerBook::remove(this);
}

int chMsgProcesser::TryThreadMessage(msgObject&)
{
    return 0;
}

msgObject* chThreadBase::AllocThreadMessage(int message, bool bWaitReply, int extraSize, const void* extra)
{
    msgObject* msg = new msgObject(static_cast<unsigned int>(message), 0, 0, extra, extraSize);
    if (bWaitReply)
        SetTicket(*msg, replyBook::newTicket());
    return msg;
}

void chThreadBase::CloseSendMessage(msgObject& msg)
{
    if (Ticket(msg))
        replyBook::forget(Ticket(msg));
    delete &msg;
}

int chThreadRemote::CreateRemoteThread(const char* name)
{
    m_pThread = msgGetThreadByName(name);
    return m_pThread != nullptr;
}

void chThreadRemote::DestroyRemoteThread()
{
    m_pThread = nullptr;
}
