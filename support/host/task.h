#pragma once
// Background work. An action is posted, runs away from the user-interface thread, and its callback is
// told on the thread that made the callback.
#include "support/host/api.h"
#include "support/host/message.h"
#include "support/host/object.h"

class taskAction;

class HX_HOST_API ActionCallback : public chMsgProcesser, public chObject
{
public:
    int TryThreadMessage(msgObject& msg) override;
    ~ActionCallback() override;
    virtual void OnCallback(taskAction* action);
    // Carries a completion over to this object's thread, where OnCallback runs. Any thread.
    void Callback(taskAction* action);
};

class HX_HOST_API taskAction : public chObject
{
public:
    ~taskAction() override;
    // callback: not owned; null for none. An action holds no reference on it: a callback that is destroyed
    // before the action is done hears nothing.
    void SetCallback(ActionCallback* callback);
    ActionCallback* GetCallback() const { return m_pCallback; }
    // The work; runs on a task thread of the host. Returns 1 when the action is complete, and 0 when it
    // completes later by itself (as transfers do).
    virtual int exec() = 0;

private:
    ActionCallback* m_pCallback = nullptr;
};

// Queues the action and returns 1; the queue holds a reference on it until its callback was told.
HX_HOST_API int PostAction(taskAction& action);
