#pragma once
// Makes this display known to the signage server. User-interface thread.
#include "support/host/api.h"
#include "support/host/task.h"
#include "support/text/chString.h"

class nDeckRegister : public ActionCallback
{
public:
    // Asks the server; the answer comes to OnCallback.
    void OnRegisterDisplay();
    void OnCallback(taskAction* action) override;
    // 1: the server knows this display.
    int GetRegisterStatus() const { return m_bRegisterSuccess; }
    void SetRegisterStatus(int bSuccess);
    // Whether layouts may be drawn: the server knows this display or, where a show is kept, has not said
    // anything yet.
    bool MayShow() const;

private:
    void TakeReply(const chString& text);

    int m_bRegisterSuccess = 0;
    bool m_bAnswered = false;
};

nDeckRegister& GetNDeckRegister();

HX_MODULE_API void nDeckRegisterDisplay();
// Leaves the server's answer where other processes look for it.
bool WriteRegisterInfo(const chString& text);
