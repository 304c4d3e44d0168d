#pragma once
// Messages between named threads, in this process and in others. Messages of one sender arrive in the
// order in which they were sent, on the thread that owns the receiver.
#include "support/host/api.h"
#include <QByteArray>
#include <functional>

class chThreadBase;

namespace NUX_MsgQueueHelper {

// One message. Receivers read the three words and the byte block; for a message that was sent (not
// posted) the receiver may set nResult and the reply's byte block, which the sender gets.
class HX_HOST_API msgObject
{
public:
    msgObject() = default;
    msgObject(unsigned int messageCode, unsigned int w, unsigned int l, const void* extra = nullptr,
              int extraSize = 0);
    // The byte block that travelled with the message; null and 0 when there is none. Owned by the message.
    const void* GetExtraData() const;
    int GetExtraSize() const;
    // By the receiver of a message that was sent: what GetExtraData() gives to the sender when it has waited.
    // 0, and no block, when it is larger than a message may be (1 MB).
    int SetReplyData(const void* data, int size);
    const QByteArray& GetReplyData() const { return m_reply; }

    unsigned int message = 0;
    unsigned int wParam = 0;
    unsigned int lParam = 0;
    int nResult = 0;

private:
    friend class ::chThreadBase;
    QByteArray m_extra;
    QByteArray m_reply;
    unsigned int m_nTicket = 0; // ties a reply to the sender that waits for it; 0: nobody waits
};

} // namespace NUX_MsgQueueHelper
using NUX_MsgQueueHelper::msgObject;

// Base of anything that receives messages on the thread it was constructed on. Each message posted to
// a thread is offered to the thread's processers in the order of their construction until one takes
// it; a broadcast is offered to all. A processer that is destroyed gets nothing any more.
class HX_HOST_API chMsgProcesser
{
public:
    chMsgProcesser();
    virtual ~chMsgProcesser();
    chMsgProcesser(const chMsgProcesser&) = delete;
    chMsgProcesser& operator=(const chMsgProcesser&) = delete;
    // Non-zero when the message was taken.
    virtual int TryThreadMessage(msgObject& msg);
};

// A periodic timer on the thread that sets it. Deleting the timer or its target ends it.
class HX_HOST_API chThreadTimer
{
public:
    // id: reported as wParam of the timer's message.
    explicit chThreadTimer(unsigned int id = 0);
    ~chThreadTimer();
    chThreadTimer(const chThreadTimer&) = delete;
    chThreadTimer& operator=(const chThreadTimer&) = delete;

    // Calls (target->*handler)(msg) every periodMs milliseconds (at least 1). cookie is for the caller's
    // own use: GetCookie(). A running timer is started anew. Returns 1.
    template <class T, class R>
    int SetTimer(long long periodMs, void* cookie, T* target, R (T::*handler)(msgObject&))
    {
        return Start(periodMs, cookie, target,
                     [target, handler](msgObject& msg) { (target->*handler)(msg); });
    }
    void KillTimer();
    bool IsTimerRuning() const;
    void* GetCookie() const { return m_pCookie; }

private:
    int Start(long long periodMs, void* cookie, chMsgProcesser* target, std::function<void(msgObject&)> call);
    struct Private;
    Private* m_p;
    void* m_pCookie = nullptr;
};

// A named thread, here or in another process. Handles live until the process ends; the handle of a
// process that died reaches its successor of the same name.
class HX_HOST_API chThreadBase
{
public:
    virtual ~chThreadBase() = default;
    // A message for this thread; the caller ends it with CloseSendMessage.
    msgObject* AllocThreadMessage(int message, bool bWaitReply, int extraSize, const void* extra);
    // 1 when the message is on its way.
    virtual int EmitThreadMessage(msgObject& msg) = 0;
    // Waits at most timeoutMs (-1: for ever) for the reply and puts its result into msg.nResult, and its byte
    // block in the place of the message's own. 0 at once when the peer dies, or when the time is over.
    virtual int WaitThreadMessageReply(msgObject& msg, int timeoutMs) = 0;
    void CloseSendMessage(msgObject& msg);

protected:
    static unsigned int Ticket(const msgObject& msg) { return msg.m_nTicket; }
    static void SetTicket(msgObject& msg, unsigned int ticket) { msg.m_nTicket = ticket; }
    static const QByteArray& Extra(const msgObject& msg) { return msg.m_extra; }
    static void SetExtra(msgObject& msg, const QByteArray& extra) { msg.m_extra = extra; }
};

// The handle of a named thread as an object of the caller's.
class HX_HOST_API chThreadRemote
{
public:
    // 1 when a thread of that name is there.
    int CreateRemoteThread(const char* name);
    void DestroyRemoteThread();
    chThreadBase* GetThread() const { return m_pThread; }

private:
    chThreadBase* m_pThread = nullptr;
};

// Null when no thread has the name. Messages to a null handle are lost without a report.
HX_HOST_API chThreadBase* msgGetThreadByName(const char* name);
// Queue and return: 1 when the message is on its way, else 0. The byte block is copied.
HX_HOST_API int msgPostMsgToThread(chThreadBase* thread, unsigned int message, unsigned int wParam,
                                   unsigned int lParam);
HX_HOST_API int msgPostMsgToThreadEx(chThreadBase* thread, unsigned int message, unsigned int wParam,
                                     unsigned int lParam, int extraSize, const void* extraData);
// Send and wait for the result; 0 when there is none (no such thread, or it died).
HX_HOST_API int msgSendMsgToThread(chThreadBase* thread, unsigned int message, unsigned int wParam,
                                   unsigned int lParam);
HX_HOST_API int msgSendMsgToThreadEx(chThreadBase* thread, unsigned int message, unsigned int wParam,
                                     unsigned int lParam, int extraSize, const void* extraData);
// To every thread that listens, the sender's own included, in this process and in all others.
HX_HOST_API void msgBroadpostThreadMsg(unsigned int message, unsigned int wParam, unsigned int lParam);

enum : unsigned int {
    CONFIG_MSG_BCAST_CHANGED = 0x10007,            // a setting changed; wParam: one of CONFIG_CHANGED
    DEVICE_MSG_EVENT = 0x10020,                    // storage; wParam: DEVICE_EVENT_REFRESH or _REMOVE
    DEVICE_EVENT_REFRESH = 0xFFFF2001,             // a storage device came or changed
    DEVICE_EVENT_REMOVE = 0xFFFF2002,              // a storage device went
    PHONE_PUBLIC_MSG_ACCOUNT_REFRESH = 0xFFFF1001, // wParam: account index, lParam: LINE_STATE
    MEDIA_MSG_STOP = 0x70002                       // to "app_hxMedia": a video surface is given up
};

// wParam of CONFIG_MSG_BCAST_CHANGED.
enum CONFIG_CHANGED : unsigned int {
    CONFIG_CHANGED_ACCOUNT = 3, // lParam: the account index
    CONFIG_CHANGED_DIAL_PLAN = 4,
    CONFIG_CHANGED_DSS_KEY_FIRST = 10, // sent together with CONFIG_CHANGED_DSS_KEY
    CONFIG_CHANGED_PHONE = 0x0B,
    CONFIG_CHANGED_CALL_WAITING = 0x0D,
    CONFIG_CHANGED_VOICE_MAIL = 0x10,
    CONFIG_CHANGED_WALLPAPER = 0x11,
    CONFIG_CHANGED_SOUND = 0x12,
    CONFIG_CHANGED_DATE_TIME = 0x13,
    CONFIG_CHANGED_PASSWORD = 0x15,
    CONFIG_CHANGED_KEY_AS_SEND = 0x16,
    CONFIG_CHANGED_DOOR_PHONE = 0x17,
    CONFIG_CHANGED_IP_CAMERA = 0x18,
    CONFIG_CHANGED_DSS_KEY = 0x1A
};
