#include "signage/playerQuestion.h"
#include <QDeadlineTimer>

playerQuestion::~playerQuestion()
{
    drop();
}

bool playerQuestion::ask(const char* thread, unsigned int message, unsigned int wParam, int size,
                         const void* data)
{
    drop();
    m_pThread = thread;
    if (!m_remote.CreateRemoteThread(thread))
        return false;
    m_pMessage = m_remote.GetThread()->AllocThreadMessage(int(message), true, size, data);
    m_pMessage->wParam = wParam;
    if (m_remote.GetThread()->EmitThreadMessage(*m_pMessage))
        return true;
    drop();
    return false;
}

bool playerQuestion::wait(msgObject& answer)
{
    answer = msgObject();
    if (!m_pMessage)
        return true;
    const QDeadlineTimer end(WAIT_MS);
    if (m_remote.GetThread()->WaitThreadMessageReply(*m_pMessage, WAIT_MS))
        answer = *m_pMessage;
    else if (end.hasExpired() && msgGetThreadByName(m_pThread))
        return false;
    drop();
    return true;
}

void playerQuestion::drop()
{
    if (m_pMessage)
        m_remote.GetThread()->CloseSendMessage(*m_pMessage);
    m_pMessage = nullptr;
    m_remote.DestroyRemoteThread();
}
